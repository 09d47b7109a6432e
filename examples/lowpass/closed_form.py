#!/usr/bin/python3
"""usage: closed_form.py FOLDER [--limit LIMIT] [--rows N] [--expect FILESxPOINTS]

Checks Touchstone files of the low-pass example against closed forms, with nothing of the solver in between.

FOLDER holds the .s2p files and the index.csv that `solvedesk touchstone` wrote.  Two references are computed here:
chain (ABCD) matrices of the ladder, for every file, and the Chebyshev formula, for files whose capacitors and inductors
have the same scale.  Prints a table of |S21| and the largest difference of all S-parameters over all files; exits with
1 when it is above LIMIT (1e-10), or when there are not as many files and points in each as expected.
"""
import argparse
import csv
import math
import os
import sys

ORDER, RIPPLE_DB, CUTOFF, Z0 = 7, 0.1, 1e9, 50.0


def prototype(order, ripple_db):
    """Element values g1 ... gn of the Chebyshev low-pass prototype (Matthaei, Young, Jones, section 4.05)."""
    beta = math.log(1 / math.tanh(ripple_db * math.log(10) / 40))
    gamma = math.sinh(beta / (2 * order))
    a = [math.sin((2 * k - 1) * math.pi / (2 * order)) for k in range(1, order + 1)]
    b = [gamma ** 2 + math.sin(k * math.pi / order) ** 2 for k in range(1, order + 1)]
    g = [2 * a[0] / gamma]
    for k in range(1, order):
        g.append(4 * a[k - 1] * a[k] / (b[k - 1] * g[k - 1]))
    return g


def ladder(frequency, cscale, lscale):
    """S11 and S21 of the ladder that begins with a shunt capacitor, by multiplying chain matrices."""
    omega = 2 * math.pi * frequency
    a, b, c, d = 1, 0, 0, 1
    for place, g in enumerate(prototype(ORDER, RIPPLE_DB)):
        if place % 2 == 0:
            y = 1j * omega * cscale * g / (2 * math.pi * CUTOFF * Z0)
            a, c = a + b * y, c + d * y
        else:
            z = 1j * omega * lscale * g * Z0 / (2 * math.pi * CUTOFF)
            b, d = b + a * z, d + c * z
    total = a + b / Z0 + c * Z0 + d
    return (a + b / Z0 - c * Z0 - d) / total, 2 / total


def chebyshev(frequency, scale):
    """|S21| by the formula of the ideal filter, whose cutoff is divided by the scale."""
    x = frequency * scale / CUTOFF
    t = math.cos(ORDER * math.acos(x)) if x <= 1 else math.cosh(ORDER * math.acosh(x))
    return 1 / math.sqrt(1 + (10 ** (RIPPLE_DB / 10) - 1) * t * t)


def read_touchstone(path):
    """A two-port file in `Hz S RI R 50`: a list of (frequency, s11, s21, s12, s22)."""
    points = []
    with open(path, encoding='utf-8') as file:
        for line in file:
            line = line.split('!')[0].strip()
            if line.startswith('#'):
                if line.upper().split() != ['#', 'HZ', 'S', 'RI', 'R', '50']:
                    sys.exit(f'{path}: unexpected option line: {line}')
            elif line:
                f, *numbers = map(float, line.split())
                if len(numbers) != 8 or not all(map(math.isfinite, numbers)):
                    sys.exit(f'{path}: not a point of a two-port: {line}')
                points.append((f, *(complex(*numbers[i:i + 2]) for i in range(0, 8, 2))))
    return points


def read_index(folder):
    """(path, {variable: value}) for each file of the folder."""
    with open(os.path.join(folder, 'index.csv'), encoding='utf-8', newline='') as file:
        for row in csv.DictReader(file):
            pairs = (pair.split('=') for pair in row['variation'].split(';'))
            yield os.path.join(folder, row['file']), {name.strip(): float(value) for name, value in pairs}


def compare(points, cscale, lscale):
    """The largest difference of any S-parameter; the filter is symmetric, so s22 is s11."""
    worst = 0.0
    for f, s11, s21, s12, s22 in points:
        reflected, passed = ladder(f, cscale, lscale)
        worst = max(worst, abs(s11 - reflected), abs(s22 - reflected), abs(s21 - passed), abs(s12 - passed))
        if cscale == lscale:
            worst = max(worst, abs(abs(s21) - chebyshev(f, cscale)))
    return worst


def print_rows(points, cscale, lscale, rows):
    for index in range(0, len(points), max(1, (len(points) - 1) // max(1, rows - 1))):
        f, _, s21, _, _ = points[index]
        exact = abs(ladder(f, cscale, lscale)[1])
        formula = f'{chebyshev(f, cscale):.12f}' if cscale == lscale else '-'
        print(f'{cscale:7g} {lscale:7g} {f / 1e6:10g} {abs(s21):17.12f} {exact:17.12f} {formula:>17}'
              f' {abs(abs(s21) - exact):11.1e}')


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('folder')
    parser.add_argument('--limit', type=float, default=1e-10)
    parser.add_argument('--rows', type=int, default=5, help='frequencies shown of each file shown')
    parser.add_argument('--expect', help='such as 25x201')
    options = parser.parse_args()
    try:
        files = list(read_index(options.folder))
    except OSError as error:
        sys.exit(f'{error.filename}: {error.strerror}; name the folder of a `solvedesk touchstone`')
    if not files:
        sys.exit(f'{options.folder}: index.csv names no file')
    sizes = set()
    shown = {0, len(files) // 3, len(files) // 2, max(0, len(files) - 3)}
    print(f'{"cscale":>7} {"lscale":>7} {"f/MHz":>10} {"|S21| solved":>17} {"ladder":>17} {"Chebyshev":>17}'
          f' {"difference":>11}')
    worst, count = 0.0, 0
    for number, (path, values) in enumerate(files):
        points = read_touchstone(path)
        if not points:
            sys.exit(f'{path}: holds no point')
        scales = values['cscale'], values['lscale']
        if number in shown:
            print_rows(points, *scales, options.rows)
        worst, count = max(worst, compare(points, *scales)), count + len(points)
        sizes.add(len(points))
    found = f'{len(files)}x{"/".join(map(str, sorted(sizes)))}'
    if options.expect and found != options.expect:
        sys.exit(f'{options.folder}: {found} files and points, expected {options.expect}')
    verdict = 'within' if worst <= options.limit else 'ABOVE'
    print(f'largest difference of all S-parameters, {len(files)} variations, {count} points:'
          f' {worst:.2e}, {verdict} {options.limit:g}')
    sys.exit(0 if worst <= options.limit else 1)


if __name__ == '__main__':
    main()
