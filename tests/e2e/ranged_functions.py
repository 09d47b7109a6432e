"""Ranged functions applied to the columns of a file, against the same arithmetic written down once more in Python."""
import cmath
import json
import math
import random
import unittest

from _solvedesk import DeskTest, write


def meeting(xa, ya, xb, yb, level):
    return xa + (level - ya) / (yb - ya) * (xb - xa)


def integral(x, v):
    return sum((x[i + 1] - x[i]) * (v[i] + v[i + 1]) / 2 for i in range(len(x) - 1))


def crossings(x, y, level):
    """[(place, is rising)]"""
    found, side, on_level = [], 0, None
    for i, value in enumerate(y):
        now = (value > level) - (value < level)
        if now == 0:
            on_level = x[i] if on_level is None else on_level
            continue
        if side and now != side:
            place = meeting(x[i - 1], y[i - 1], x[i], value, level) if on_level is None else on_level
            found.append((place, now > 0))
        side, on_level = now, None
    return found


def expected_of(x, y):
    """{words: value} of a real trace."""
    span, n = x[-1] - x[0], len(x)
    average, mean = integral(x, y) / span, sum(y) / n
    variance = sum((v - mean) ** 2 for v in y) / n
    rms = math.sqrt(integral(x, [v * v for v in y]) / span)
    absolute = integral(x, [abs(v) for v in y])
    ac = math.sqrt(integral(x, [(v - average) ** 2 for v in y]) / span)
    found = crossings(x, y, 0.25)
    rising = [place for place, up in found if up]
    plus = [found[i + 1][0] - found[i][0] for i in range(len(found) - 1) if found[i][1]]
    minus = [found[i + 1][0] - found[i][0] for i in range(len(found) - 1) if not found[i][1]]
    periods = [b - a for a, b in zip(rising, rising[1:])]
    error = [v - 0.5 for v in y]
    level = '--param', 'Threshold=0.25'
    target = '--param', 'Target=0.5'
    return {
        ('max',): max(y), ('min',): min(y), ('pk2pk',): max(y) - min(y), ('rms',): rms, ('avg',): average,
        ('integ',): average * span, ('sum',): sum(y), ('mean',): mean, ('variance',): variance,
        ('stddev',): math.sqrt(variance), ('integabs',): absolute, ('avgabs',): absolute / span, ('rmsAC',): ac,
        ('ripple',): ac / abs(average), ('pkavg',): (max(y) - min(y)) / abs(average),
        ('XAtYMin',): x[y.index(min(y))], ('XAtYMax',): x[y.index(max(y))], ('YAtXMin',): y[0], ('YAtXMax',): y[-1],
        ('crestfactor',): max(map(abs, y)) / rms, ('formfactor',): rms * span / absolute,
        ('pw_plus', *level): plus[0], ('pw_minus', *level): minus[0],
        ('pw_plus_avg', *level): sum(plus) / len(plus), ('pw_minus_avg', *level): sum(minus) / len(minus),
        ('pw_plus_max', *level): max(plus), ('pw_minus_min', *level): min(minus),
        ('pw_plus_rms', *level): math.sqrt(sum(w * w for w in plus) / len(plus)),
        ('per', *level): sum(periods) / len(periods), ('pmax', *level): max(periods), ('pmin', *level): min(periods),
        ('prms', *level): math.sqrt(sum(p * p for p in periods) / len(periods)),
        ('iae', *target): integral(x, list(map(abs, error))), ('ise', *target): integral(x, [e * e for e in error]),
        ('itae', *target): integral(x, [t * abs(e) for t, e in zip(x, error)]),
        ('itse', *target): integral(x, [t * e * e for t, e in zip(x, error)]),
    }


class RangedFunctions(DeskTest):
    def value(self, *words):
        return self.document('functions', *words)['value']

    def test_a_random_trace_gives_what_python_says(self):
        numbers = random.Random(5)
        for name in ('one.csv', 'two.csv'):
            x, y = [numbers.uniform(0, 1)], [0.1]
            for _ in range(60):
                x.append(x[-1] + numbers.choice((0.5, 1, 2)) * numbers.random())
                y.append(numbers.uniform(-1, 2))
            write(name, 'time,voltage\n' + ''.join(f'{a!r},{b!r}\n' for a, b in zip(x, y)))
            for words, expected in expected_of(x, y).items():
                value = self.value(words[0], '--csv', name, *words[1:])
                self.assertTrue(math.isclose(value, expected, rel_tol=1e-12, abs_tol=1e-14), (words, value, expected))

    def test_a_complex_response_gives_its_margins_and_cutoffs(self):
        # Three equal lags with a gain of 4: -180 degrees at sqrt(3) of the corner, with a margin of 6 dB.
        corner = 2 * math.pi * 1e3
        x = [10 ** (1 + i / 500) for i in range(2001)]
        y = [4 / (1 + 2j * math.pi * f / corner) ** 3 for f in x]
        write('loop.csv', ''.join(f'{f!r},{v.real!r},{v.imag!r}\n' for f, v in zip(x, y)))
        crossover = 1e3 * math.sqrt(4 ** (2 / 3) - 1)
        expected = {'phasecrossover': 1e3 * math.sqrt(3), 'gainmargin': 20 * math.log10(2),
                    'gaincrossover': crossover,
                    'phasemargin': 180 - 3 * math.degrees(math.atan(crossover / 1e3)),
                    'peakgain': 20 * math.log10(4), 'uppercutoff': 1e3 * math.sqrt(2 ** (1 / 3) - 1),
                    'bandwidth': 1e3 * math.sqrt(2 ** (1 / 3) - 1), 'max': 4}
        for name, right in expected.items():
            self.assertTrue(math.isclose(self.value(name, '--csv', 'loop.csv'), right, rel_tol=1e-3), name)
        self.assertIsNone(self.value('lowercutoff', '--csv', 'loop.csv'))
        turned = self.value('phasemargin', '--csv', 'loop.csv', '--param', 'Base Phase=10deg')
        self.assertAlmostEqual(turned, self.value('phasemargin', '--csv', 'loop.csv') - 10, 9)
        self.assertAlmostEqual(cmath.phase(y[0]), 0, 1)

    def test_an_eye_is_read_with_units(self):
        bits, lines = '0110100110010110', []
        for k, bit in enumerate(bits):
            lines += [f'{k + 0.1!r}ns,{bit}', f'{k + 0.9!r}ns,{bit}']
        write('bits.csv', '\n'.join(lines) + '\n')
        document = self.document('functions', 'eyerisetime', '--csv', 'bits.csv', '--param', 'Unit Interval=1ns')
        self.assertAlmostEqual(document['value'] * 1e9, 0.12, 12)
        self.assertEqual(document['function'], 'EyeRiseTime')
        self.assertEqual(document['parameters'], {'Unit Interval': 1e-9, 'Start Offset': 0.0, 'End Offset': 0.0,
                                                  'Auto Crossing Amplitude': 1.0, 'Crossing Amplitude': 0.0})
        self.assertEqual(document['schema_version'], 1)

    def test_a_file_may_have_a_header_comments_blank_lines_and_holes(self):
        write('some.csv', '\ufeff# measured\r\nt,"v, volts"\r\n\r\n0,1\r\n1,nan\r\n2,inf\r\n3,"4"\r\n')
        document = self.document('functions', 'avg', '--csv', 'some.csv')
        self.assertEqual((document['value'], document['samples'], document['holes']), (2.5, 2, 2))
        self.assertEqual(self.run_desk('functions', 'MAX', '--csv', 'some.csv').stdout, '4\n')

    def test_a_bare_m_is_refused_as_metres_and_thousandths_look_alike(self):
        write('step.csv', 't,v\n0,0\n1,1\n')
        done = self.run_desk('functions', 'risetime', '--csv', 'step.csv', '--param', 'Target=900m', code=2)
        self.assertIn("--param Target: '900m' may be metres or thousandths; write 0.9 for thousandths, or 900meter",
                      done.stderr)
        write('lengths.csv', 'l,v\n0,0\n1 m,1\n')
        done = self.run_desk('functions', 'max', '--csv', 'lengths.csv', code=2)
        self.assertIn("lengths.csv:3: column 1 (l): '1 m' may be metres or thousandths; write 0.001", done.stderr)
        for word in ('Target=900mV', 'Target=0.9', 'Target=900e-3'):
            self.assertAlmostEqual(self.value('risetime', '--csv', 'step.csv', '--param', word), 0.72, 12)
        self.assertAlmostEqual(self.value('delaytime', '--csv', 'step.csv', '--param', 'Target=1meter'), 0.5, 12)

    def test_no_value_is_null_and_told_in_words(self):
        write('flat.csv', '0,0\n1,0\n')
        self.assertEqual(self.run_desk('functions', 'ripple', '--csv', 'flat.csv').stdout, 'no value\n')
        self.assertIsNone(self.value('ripple', '--csv', 'flat.csv'))
        left = self.run_desk('functions', 'eyewidth', '--csv', 'flat.csv', '--param', 'Start Offset=1ns').stderr
        self.assertIn("no value with the defaults 'Unit Interval' 0, 'End Offset' 0", left)
        self.assertNotIn('Start Offset', left)
        self.assertEqual(self.run_desk('functions', 'ripple', '--csv', 'flat.csv').stderr, '')
        write('back.csv', '0,0\n2,0\n1,5\n')
        done = self.run_desk('functions', 'max', '--csv', 'back.csv', '--json')
        self.assertIsNone(json.loads(done.stdout)['value'])
        self.assertIn('back.csv:3: x steps back', done.stderr)

    def test_the_list_holds_all_by_category(self):
        functions = self.document('functions')['functions']
        self.assertEqual(len(functions), 87)
        self.assertEqual(functions[0]['name'], 'max')
        one = self.document('functions', '--category', 'tr & dc')['functions']
        self.assertEqual([f['name'] for f in one], ['crestfactor', 'formfactor', 'distortion', 'fundamentalmag',
                                                    'delaytime', 'risetime', 'deadtime', 'settlingtime'])
        text = self.run_desk('functions').stdout
        for function in functions:
            self.assertIn('  ' + function['name'] + ' ', text)
        self.assertIn('\n\nPulse Width\n', text)

    def test_one_is_explained(self):
        document = self.document('functions', 'settlingtime')
        self.assertEqual([p['name'] for p in document['parameters']], ['Target', 'Tolerance'])
        self.assertEqual(document['result'], 'x')
        text = self.run_desk('functions', 'eyewidth').stdout
        self.assertTrue(text.startswith('EyeWidth (Eye Measurements)\nCalculates width of Eye\n'), text)
        self.assertRegex(text, r'\n  Unit Interval +0\.0ns +Unit Interval of signal\n')

    def test_refusals_name_the_thing_and_the_remedy(self):
        write('good.csv', '0,1\n1,2\n')
        write('empty.csv', '')
        write('header.csv', 'x,y\n')
        write('word.csv', 'x,y\n0,1\n1,two\n')
        write('hole.csv', 'x,y\n0,\n')
        write('ragged.csv', '0,1\n1,2,3\n')
        write('wide.csv', '1,2,3,4\n')
        write('one.csv', '1\n')
        write('letter.csv', 'O,1\n1,2\n2,3\n')
        write('tiny.csv', '1e-400,1\n1,2\n2,3\n')
        write('quotes.csv', '0,1\n"1,2\n')
        for words, parts in {
            ('risetme',): ("'risetme' is no ranged function; did you mean risetime? `solvedesk functions` lists all",),
            ('dB',): ("'dB' gives a value for each sample, in expressions",),
            ('xyzzy123',): ("'xyzzy123' is no ranged function; `solvedesk functions` lists all",),
            ('--category', 'Maths'): ("--category 'Maths'", "'Math'", "'Eye Measurements'"),
            ('max', '--category', 'Math'): ('--category',),
            ('max', '--param', 'x=1'): ('--param', '--csv'),
            ('--csv', 'good.csv'): ('--csv', 'name the function'),
            ('max', '--csv', 'good.csv', '--param', 'x=1'): ('max takes no parameters',),
            ('per', '--csv', 'good.csv', '--param', 'Treshold=1'): ("'Threshold', 'Number of Points'",),
            ('per', '--csv', 'good.csv', '--param', 'Threshold'): ('give it a value',),
            ('per', '--csv', 'good.csv', '--param', 'Threshold=high'): ("'high' is no real number",),
            ('per', '--csv', 'good.csv', '--param', 'Threshold=1', '--param', 'threshold=2'): ('given twice',),
            ('max', '--csv', 'missing.csv'): ('missing.csv', 'No such file'),
            ('max', '--csv', '.'): ('Is a directory',),
            ('max', '--csv', 'empty.csv'): ('empty.csv: has no samples',),
            ('max', '--csv', 'header.csv'): ('header.csv: has no samples',),
            ('max', '--csv', 'word.csv'): ("word.csv:3: column 2 (y): 'two' is no number",),
            ('max', '--csv', 'hole.csv'): ('hole.csv:2: column 2 (y) is empty; write nan',),
            ('max', '--csv', 'ragged.csv'): ('ragged.csv:2: the line has 3 values, and the lines before have 2',),
            ('max', '--csv', 'wide.csv'): ('wide.csv:1: the line has 4 columns',),
            ('max', '--csv', 'one.csv'): ('one.csv:1: the line has 1 column; write x,y',),
            ('sum', '--csv', 'letter.csv'): ("letter.csv:1: column 1: 'O' is no number",),
            ('sum', '--csv', 'tiny.csv'): ("tiny.csv:1: column 1: '1e-400' is no number",),
            ('max', '--csv', 'quotes.csv'): ('quotes.csv:2: ',),
        }.items():
            line = self.refuse(2, 'functions', *words)
            for part in parts:
                self.assertIn(part, line)


if __name__ == '__main__':
    unittest.main()
