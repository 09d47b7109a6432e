#!/usr/bin/env python3
"""Measures `solvedesk info --json` over a project with many solved variations.

usage: info_of_many.py SOLVEDESK [--n N] [--repeat R] [--keep FOLDER]

The project is made by solving a small circuit at N points.  Prints one JSON object: seconds of `info` on the wall
and of processor, the one in the middle of R, with as many seconds for reading the same library file byte by byte as a
floor.  A FOLDER that is kept is used again, so that N points are solved once.
"""
import argparse
import json
import os
import resource
import subprocess
import sys
import tempfile
import time

CIRCUIT = """many variations of a small circuit
.param cap=1e-12 res=50
V1 in 0 dc 0 ac 1 portnum 1 z0 50
R1 in 0 {res}
C1 in 0 {cap}
.sp lin 3 1meg 1g
.end
"""


def run(*words, **more):
    return subprocess.run(words, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **more).stdout


def make(solvedesk, folder, n):
    with open(os.path.join(folder, 'many.cir'), 'w', encoding='utf-8') as file:
        file.write(CIRCUIT)
    run(solvedesk, 'new', 'many', '--netlist', 'many.cir', cwd=folder)
    rows, rest = max(1, n // 1000), min(n, 1000)
    run(solvedesk, 'solve', 'many', '--vary', f'res=50:{50 + rows - 1}:1',
        '--vary', f'cap=1e-12:{1000 + rest - 1}e-15:1e-15', cwd=folder)


def processor_seconds():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def measure(work):
    wall, processor = time.monotonic(), processor_seconds()
    result = work()
    return time.monotonic() - wall, processor_seconds() - processor, result


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('solvedesk')
    parser.add_argument('--n', type=int, default=100000, help='variations: up to 1000, or a multiple of 1000')
    parser.add_argument('--repeat', type=int, default=5)
    parser.add_argument('--keep', help='make the project here, or use the one that is here')
    words = parser.parse_args()
    solvedesk = os.path.abspath(words.solvedesk)
    with tempfile.TemporaryDirectory(prefix='bench-data-', dir=os.path.dirname(solvedesk)) as temporary:
        folder = os.path.abspath(words.keep) if words.keep else temporary
        os.makedirs(folder, exist_ok=True)
        if not os.path.exists(os.path.join(folder, 'many.sproject')):
            make(solvedesk, folder, words.n)
        times = sorted(measure(lambda: run(solvedesk, 'info', 'many', '--json', cwd=folder))
                       for _ in range(words.repeat))
        wall, processor, output = times[len(times) // 2]
        variations = [v for setup in json.loads(output)['setups'] for s in setup['solutions'] for v in s['variations']]
        if len(variations) != words.n or not all(v['valid'] and v['saved'] for v in variations):
            sys.exit(f'{len(variations)} variations, or some of them not valid and saved; {words.n} were solved')
        library = next(os.path.join(at, name) for at, _, names in os.walk(folder) for name in names
                       if name.endswith('.qsol'))
        reading, _, _ = measure(lambda: open(library, 'rb').read())
        print(json.dumps({'workload': 'info', 'n': words.n, 'seconds': round(wall, 4),
                          'processor_seconds': round(processor, 4), 'per_op_us': round(wall * 1e6 / words.n, 3),
                          'library_bytes': os.path.getsize(library), 'read_file_seconds': round(reading, 4)}))


if __name__ == '__main__':
    main()
