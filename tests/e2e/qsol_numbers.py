"""qsol on the numbers of two solves: how far they are apart, and as columns for a spreadsheet."""
import csv
import glob
import json
import subprocess
import unittest

from _qsol import QSOL
from _solvedesk import SMALL, DeskTest


class Numbers(DeskTest):
    def qsol(self, *words, code=0):
        done = subprocess.run([QSOL, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120)
        self.assertEqual(done.returncode, code, done.stdout[-2000:] + done.stderr)
        return done.stdout

    def solved(self, name, resistance):
        self.small_project(name, SMALL.replace('{res}', resistance))
        self.run_desk('solve', name)
        return next(path for path in glob.glob(f'{name}.results/**/*.qsol', recursive=True)
                    if 'ManagedFiles' not in path)

    def test_a_solve_as_near_to_another_as_told_is_equal_and_one_beyond_told_once_for_its_column(self):
        one = self.solved('one', '{res+25}')
        near = self.solved('near', '{(res+25)*(1+1e-7)}')
        data = ('diff', one, near, '--kind', 'data')
        found = json.loads(self.qsol(*data, '--json', code=1))
        (block,) = found['changed']
        (column,) = block['differences']
        self.assertEqual(column['path'], 'S')
        self.assertGreater(column['differing'], 10)
        self.assertLess(found['numbers']['largest_relative'], 1e-3)
        self.assertEqual(found['numbers']['at'], column['largest']['path'])
        self.assertIn('numbers differ; first S[', self.qsol(*data, code=1))
        every = json.loads(self.qsol(*data, '--json', '--all', code=1))['changed'][0]['differences']
        self.assertEqual(len(every), column['differing'])
        largest = max(entry['relative'] for entry in every)
        self.assertEqual(found['numbers']['largest_relative'], largest)
        within = json.loads(self.qsol(*data, '--relative', repr(2 * largest), '--json'))
        self.assertEqual((within['changed'], within['numbers']), ([], None))
        self.assertEqual(within['numbers_within']['count'], column['differing'])
        self.qsol(*data, '--absolute', '1e-6')
        self.qsol(*data, '--absolute', '1e-12', code=1)

    def test_the_numbers_of_a_point_come_out_as_columns(self):
        library = self.solved('one', '{res}')
        shown = json.loads(self.qsol('show', library, '--kind', 'data', '--json'))['blocks'][0]['items']
        lists = {item['name']: item['arguments'] for item in shown if 'arguments' in item}
        told = json.loads(self.qsol('extract', library, '--kind', 'data', '--csv', '--to', 'numbers', '--json'))
        with open(told['blocks'][0]['to'], newline='', encoding='utf-8') as file:
            rows = list(csv.DictReader(file))
        for name in ('Frequencies', 'S'):
            self.assertEqual([float(row[name]) for row in rows if row[name]], lists[name])
        self.assertEqual([row['Ports/Port(V1)/Z0'] for row in rows if row['Ports/Port(V1)/Z0']], ['50'])

    def test_a_tolerance_that_is_none_is_refused(self):
        for word in ('-1', 'inf', 'nan', 'near'):
            self.qsol('diff', 'a.qsol', 'b.qsol', f'--relative={word}', code=2)
        told = subprocess.run([QSOL, 'diff', 'a.qsol', 'b.qsol', '--relative', 'near'], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120).stderr
        self.assertIn('--relative near: takes a number; see qsol diff --help', told)


if __name__ == '__main__':
    unittest.main()
