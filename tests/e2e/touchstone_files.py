"""Touchstone files of a project: all of them or none, under names that stay where they belong."""
import math
import os
import resource
import subprocess
import unittest

from _solvedesk import SETUP, SOLVEDESK, SOURCE, DeskTest, files_below, index_of, read, write


class TouchstoneFiles(DeskTest):
    def solved(self, values='10,20'):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=' + values)

    def test_names_are_readable_and_unique(self):
        self.solved()
        self.run_desk('touchstone', 'small', '--to', 'out')
        names = [row['file'] for row in index_of('out')]
        self.assertEqual(names, [f'{SETUP}_cap=1e-12_res=10.s1p', f'{SETUP}_cap=1e-12_res=20.s1p'])
        self.assertEqual(files_below('out'), sorted(names + ['index.csv']))

    def test_folders_are_made_with_their_parents(self):
        self.solved()
        self.run_desk('touchstone', 'small', '--to', 'a/b/c/')
        self.assertEqual(len(files_below('a/b/c')), 3)

    def test_one_variation_is_chosen_by_its_values(self):
        self.solved()
        self.run_desk('touchstone', 'small', '--to', 'out', '--variation', 'res=20.0; CAP=1e-12')
        self.assertEqual([row['variation'] for row in index_of('out')], ['cap=1e-12; res=20'])

    def test_a_variation_that_is_not_solved_is_a_usage_error(self):
        self.solved()
        words = ('touchstone', 'small', '--to', 'out', '--variation', 'cap=1e-12; res=99')
        self.assertIn('res=99', self.refuse(2, *words))
        self.assertFalse(os.path.exists('out'))

    def test_nothing_solved_is_told_with_the_remedy(self):
        self.small_project()
        self.assertIn('solvedesk solve', self.refuse(1, 'touchstone', 'small', '--to', 'out'))
        self.assertFalse(os.path.exists('out'))

    def test_digits_are_significant_ones(self):
        self.solved('10')
        self.run_desk('touchstone', 'small', '--to', 'out', '--digits', '3')
        row = read(os.path.join('out', index_of('out')[0]['file'])).decode().splitlines()[-1]
        self.assertRegex(row.split()[1], r'^-?\d\.\d\de[+-]\d\d$')

    def test_seventeen_digits_are_the_same_bits_every_time(self):
        self.solved()
        self.run_desk('touchstone', 'small', '--to', 'a', '--digits', '17')
        self.run_desk('touchstone', 'small', '--to', 'b', '--digits', '17')
        for name in files_below('a'):
            self.assertEqual(read(os.path.join('a', name)), read(os.path.join('b', name)))

    def test_files_of_the_same_names_are_replaced_and_others_stay(self):
        self.solved()
        os.mkdir('out')
        name = f'{SETUP}_cap=1e-12_res=10.s1p'
        write(f'out/{name}', 'old')
        write('out/notes.txt', 'mine')
        self.run_desk('touchstone', 'small', '--to', 'out')
        self.assertNotEqual(read(f'out/{name}'), b'old')
        self.assertEqual(read('out/notes.txt'), b'mine')
        self.assertEqual(len(files_below('out')), 4)

    def test_a_failure_on_the_way_leaves_the_folder_as_it_was(self):
        self.solved()
        os.mkdir('out')
        first, last = (f'{SETUP}_cap=1e-12_res={value}.s1p' for value in (10, 20))
        write(f'out/{first}', 'old')
        os.mkdir(f'out/{last}')
        self.assertIn(last, self.refuse(7, 'touchstone', 'small', '--to', 'out'))
        self.assertEqual(read(f'out/{first}'), b'old')
        self.assertEqual(files_below('out'), [first])
        self.assertEqual(os.listdir(f'out/{last}'), [])

    def test_a_file_in_place_of_the_folder_is_refused(self):
        self.solved()
        write('out', 'a file')
        self.assertIn('out', self.refuse(7, 'touchstone', 'small', '--to', 'out'))
        self.assertEqual(read('out'), b'a file')

    def test_links_are_replaced_and_not_followed(self):
        self.solved('10')
        os.mkdir('out')
        write('elsewhere', 'untouched')
        name = f'{SETUP}_cap=1e-12_res=10.s1p'
        os.symlink('../elsewhere', f'out/{name}')
        self.run_desk('touchstone', 'small', '--to', 'out')
        self.assertEqual(read('elsewhere'), b'untouched')
        self.assertFalse(os.path.islink(f'out/{name}'))

    def test_points_that_are_not_saved_yet_are_written_too(self):
        self.solved()
        self.run_desk('solve', 'small', '--vary', 'res=30', '--no-save')
        self.run_desk('touchstone', 'small', '--to', 'out')
        self.assertEqual(len(index_of('out')), 3)

    def test_an_export_of_part_keeps_the_rows_of_other_files(self):
        self.solved('10,20,30')
        self.run_desk('touchstone', 'small', '--to', 'out')
        whole = index_of('out')
        self.run_desk('touchstone', 'small', '--to', 'out', '--variation', 'cap=1e-12; res=20')
        self.assertEqual(index_of('out'), whole)
        self.run_desk('solve', 'small', '--vary', 'res=40')
        self.run_desk('touchstone', 'small', '--to', 'out', '--variation', 'cap=1e-12; res=40')
        self.assertEqual([row['variation'].split('res=')[1] for row in index_of('out')], ['10', '20', '30', '40'])

    def test_an_index_of_something_else_is_refused_before_anything_is_written(self):
        self.solved('10')
        os.mkdir('out')
        write('out/index.csv', 'name,price\napple,3\n')
        for words in ([], ['--setup', SETUP]):
            self.assertIn('index.csv', self.refuse(7, 'touchstone', 'small', '--to', 'out', *words))
        self.assertEqual(files_below('out'), ['index.csv'])
        self.assertEqual(read('out/index.csv'), b'name,price\napple,3\n')

    def test_an_empty_variation_is_a_usage_error(self):
        self.solved('10')
        for word in ('', ' '):
            self.assertIn('--variation', self.refuse(2, 'touchstone', 'small', '--to', 'out', '--variation', word))

    def test_a_full_disk_is_told_by_the_place_of_the_file(self):
        self.solved('10')
        done = subprocess.run([SOLVEDESK, 'touchstone', 'small', '--to', 'out'], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=60, check=False,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100)))
        self.assertEqual(done.returncode, 7, done.stderr)
        self.assertIn(f'out/{SETUP}_cap=1e-12_res=10.s1p: ', done.stderr)
        self.assertNotIn('.solvedesk-', done.stderr)
        self.assertFalse(os.path.exists('out'))

    def test_ports_of_different_impedances_are_told_in_version_two_with_the_impedances_of_the_circuit(self):
        self.run_desk('new', 't', '--netlist', os.path.join(SOURCE, 'examples', 'transformer', 'transformer.cir'))
        self.run_desk('solve', 't')
        self.run_desk('touchstone', 't', '--to', 'out', '--digits', '17')
        name, = [row['file'] for row in index_of('out')]
        keywords, points = self.parse_second_version(read(os.path.join('out', name)).decode())
        self.assertEqual(keywords['version'], '2.0')
        self.assertEqual((keywords['number of ports'], keywords['two-port data order']), ('2', '21_12'))
        references = [float(word) for word in keywords['reference'].split()]
        self.assertEqual(references, [50, 200])
        self.assertEqual(int(keywords['number of frequencies']), len(points))
        inductances = [[1e-6, 0.98 * 2e-6], [0.98 * 2e-6, 4e-6]]
        for frequency, s11, s21, s12, s22 in points:
            # z = (1 + S) / (1 - S), normalised by the roots of the references.
            a, b, c, d = 1 - s11, -s12, -s21, 1 - s22
            inverse = [[d / (a * d - b * c), -b / (a * d - b * c)], [-c / (a * d - b * c), a / (a * d - b * c)]]
            plus = [[1 + s11, s12], [s21, 1 + s22]]
            for i in range(2):
                for j in range(2):
                    impedance = sum(plus[i][k] * inverse[k][j] for k in range(2)) * (references[i] * references[j]) ** 0.5
                    expected = 2j * math.pi * frequency * inductances[i][j]
                    self.assertLess(abs(impedance - expected), 1e-6 * abs(expected), (frequency, i, j))

    def parse_second_version(self, text):
        """{keyword: value} and the points of a two-port file in real and imaginary parts."""
        keywords, points, is_data = {}, [], False
        for line in (line.split('!')[0].strip() for line in text.splitlines()):
            if line.startswith('['):
                keyword, value = line[1:].split(']', 1)
                keywords[keyword.lower()] = value.strip()
                is_data = keyword == 'Network Data'
            elif line.startswith('#'):
                self.assertEqual(line.split()[1:4], ['Hz', 'S', 'RI'])
                self.assertEqual(list(keywords), ['version'], 'the version comes first')
            elif line:
                self.assertTrue(is_data, line)
                numbers = [float(word) for word in line.split()]
                points.append((numbers[0], *(complex(*numbers[i:i + 2]) for i in (1, 3, 5, 7))))
        self.assertEqual(list(keywords)[-1], 'end')
        return keywords, points


if __name__ == '__main__':
    unittest.main()
