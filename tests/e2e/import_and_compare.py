"""Measured data: taken in from Touchstone files, read like solved data, held against what was solved."""
import csv
import io
import json
import math
import os
import subprocess
import unittest

from _page import numbers_of
from _solvedesk import LOWPASS, SETUP, SMALL, SOLVEDESK, DeskTest, read, write

# What a browser must not take for markup.
MARKUP = '<script>alert(1)</script>'


class ImportAndCompare(DeskTest):
    def exported(self, name='small', digits='17', netlist=SMALL):
        """A solved project and the Touchstone file of its only point."""
        self.small_project(name, netlist)
        self.run_desk('solve', name)
        self.run_desk('touchstone', name, '--to', 'out', '--digits', digits)
        return os.path.join('out', next(file for file in os.listdir('out') if not file.endswith('.csv')))

    def imported(self, project='small'):
        return {entry['name']: entry for entry in self.document('info', project)['setups'] if entry['imported']}

    def perturbed(self, file, offset, target='other.s1p', places=None):
        """The file with an offset on the real parts of all its points, or of those of some numbers."""
        lines, number = [], 0
        for line in read(file).decode().splitlines():
            words = line.split()
            if words and words[0][0] not in '!#[':
                if places is None or number in places:
                    words[1] = repr(float(words[1]) + offset)
                number += 1
                line = ' '.join(words)
            lines.append(line)
        write(target, '\n'.join(lines) + '\n')
        return target

    def test_a_file_that_was_exported_comes_back_bit_for_bit(self):
        file = self.exported()
        document = self.document('import', 'small', file, '--name', 'Measured')
        self.assertEqual((document['setup'], document['notices']), ('Measured', []))
        self.assertIn('11 points', document['changes'][0]['to'])
        values = {point['setup']: point['quantities'] for point in self.document('values', 'small')['points']}
        self.assertEqual(values[SETUP], values['Measured'])
        compared = self.document('compare', 'small', SETUP, 'Measured')
        self.assertEqual((compared['summary']['largest'], compared['summary']['rms']), (0, 0))
        self.assertEqual(len(compared['places']), 11)

    def test_it_equals_the_solved_one_within_the_digits_that_were_written(self):
        self.run_desk('new', 'lowpass', '--netlist', LOWPASS)
        self.run_desk('solve', 'lowpass')
        self.run_desk('touchstone', 'lowpass', '--to', 'out', '--digits', '6')
        file = next(name for name in os.listdir('out') if name.endswith('.s2p'))
        self.run_desk('import', 'lowpass', f'out/{file}', '--name', 'Six digits')
        document = self.document('compare', 'lowpass', SETUP, 'Six digits')
        self.assertEqual([one['name'] for one in document['parameters']], ['S(1,1)', 'S(1,2)', 'S(2,1)', 'S(2,2)'])
        self.assertLess(document['summary']['largest'], 1e-5)
        self.assertGreater(document['summary']['largest'], 0)

    def test_info_lists_it_as_imported_and_valid(self):
        self.run_desk('import', self.exported_project(), 'out.s1p')
        self.run_desk('save', 'small')
        entry = self.imported()['out']
        self.assertIn('1 port', entry['summary'])
        self.assertTrue(entry['file'].endswith('/out.s1p'))
        state = entry['solutions'][0]['variations'][0]
        self.assertTrue(state['valid'] and state['has_data'] and state['saved'] and not state['unsaved'])
        text = self.run_desk('info', 'small').stdout
        self.assertIn('setup out, imported', text)
        self.run_desk('import', 'small', 'out.s1p')
        state = self.imported()['out']['solutions'][0]['variations'][0]
        self.assertTrue(state['valid'] and state['unsaved'] and not state['saved'])

    def exported_project(self):
        os.rename(self.exported(), 'out.s1p')
        return 'small'

    def test_expressions_and_reports_read_it_like_solved_data(self):
        self.run_desk('import', self.exported_project(), 'out.s1p', '--name', 'Measured')
        words = ('eval', 'small', 'max(mag(S(1,1)))')
        solved = self.document(*words)
        measured = self.document(*words, '--solution', 'Measured')
        self.assertEqual([row[-1] for row in solved['rows']], [row[-1] for row in measured['rows']])
        self.assertEqual(measured['solution'], 'Measured : Data')
        self.run_desk('var', 'small', 'add', 'level=dB(S(1,1))')
        self.run_desk('report', 'small', 'add', 'Level', '--setup', 'Measured', '--y', 'level', '--y', 'VSWR1', '--y', 're(Z(1,1))')
        shown = self.run_desk('report', 'small', 'show', 'Level', '--csv', '-').stdout
        self.run_desk('save', 'small')
        self.assertEqual(self.run_desk('report', 'small', 'show', 'Level', '--csv', '-').stdout, shown)
        self.run_desk('report', 'small', 'edit', 'Level', '--setup', SETUP)
        again = self.run_desk('report', 'small', 'show', 'Level', '--csv', '-').stdout
        self.assertEqual(shown, again)
        self.assertEqual(len(shown.splitlines()), 12)

    def test_design_variables_in_expressions_stand_at_their_present_values(self):
        self.run_desk('import', self.exported_project(), 'out.s1p', '--name', 'Measured')
        write('script.txt', 'report add Scaled --setup Measured --y mag(S(1,1))*res\nreport show Scaled\n'
                            'set res=100\nreport show Scaled\nundo\nreport show Scaled\n')
        done = self.run_desk('shell', 'small', 'script.txt', '--json')
        results = [json.loads(line)['result'] for line in done.stdout.splitlines()]
        last = [result['rows'][-1][-1] for result in results if 'rows' in result]
        self.assertAlmostEqual(last[1], 2 * last[0], places=12)
        self.assertEqual(last[2], last[0])

    def test_a_perturbed_file_shows_where_and_how_far(self):
        file = self.exported()
        self.run_desk('import', 'small', self.perturbed(file, 0.125, places={3}), '--name', 'Measured')
        document = self.document('compare', 'small', SETUP, 'Measured')
        self.assertAlmostEqual(document['summary']['largest'], 0.125, places=15)
        self.assertEqual(document['summary']['at'], document['places'][3])
        self.assertAlmostEqual(document['summary']['rms'], 0.125 / 11 ** 0.5, places=15)
        text = self.run_desk('compare', 'small', SETUP, 'Measured', '--parameter', 's11').stdout
        self.assertIn('0.125', text)
        self.assertIn('nothing is interpolated', text)
        self.assertEqual(len(text.split('S(1,1)\n')[1].splitlines()), 12, 'a header and a row for each frequency')

    def test_other_frequencies_are_interpolated_and_that_is_said(self):
        self.exported()
        self.run_desk('setup', 'small', 'add', 'Wide', 'lin', '41', '0.5meg', '2g')
        self.run_desk('solve', 'small', '--setup', 'Wide')
        document = self.document('compare', 'small', 'Wide', SETUP)
        self.assertLess(len(document['places']), 41)
        self.assertIn('interpolated linearly', document['method'][0])
        self.assertTrue(any('outside the range' in line for line in document['method']), document['method'])
        places = document['places']
        self.assertTrue(places[0] >= 1e6 and places[-1] <= 1e9)

    def test_two_variations_of_one_setup_are_compared(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=40,50')
        document = self.document('compare', 'small', SETUP, SETUP, '--variation-a', 'res=40', '--variation-b', 'res=50')
        self.assertGreater(document['summary']['largest'], 0.01)
        self.assertIn('res=40', document['a'])
        self.assertIn('res=60', self.refuse(1, 'compare', 'small', SETUP, SETUP, '--variation-a', 'res=60'))
        self.assertIn('nosuch', self.refuse(2, 'compare', 'small', SETUP, SETUP, '--variation-a', 'nosuch=60'))

    def test_numbers_go_to_a_file_and_read_back(self):
        file = self.exported()
        self.run_desk('import', 'small', self.perturbed(file, 0.5), '--name', 'Measured')
        self.run_desk('compare', 'small', SETUP, 'Measured', '--csv', 'numbers.csv')
        rows = list(csv.DictReader(io.StringIO(read('numbers.csv').decode())))
        self.assertEqual(len(rows), 11)
        for row in rows:
            self.assertEqual(row['parameter'], 'S(1,1)')
            self.assertAlmostEqual(float(row['A.re']) - float(row['B.re']), -0.5, places=12)
            self.assertAlmostEqual(float(row['|A-B|']), 0.5, places=12)

    def test_the_plots_of_its_page_hold_the_numbers(self):
        file = self.exported()
        self.run_desk('import', 'small', self.perturbed(file, 0.125, places={3, 7}), '--name', 'Measured')
        self.run_desk('compare', 'small', SETUP, 'Measured', '--html', 'page.html', '--csv', 'numbers.csv')
        rows = list(csv.DictReader(io.StringIO(read('numbers.csv').decode())))
        data, columns = numbers_of('page.html')
        (section,) = data['sections']
        table, magnitudes, differences = section['items']
        curves = {series['name']: (columns[series['x']], columns[series['y']])
                  for plot in (magnitudes, differences) for series in plot['series']}
        solved = f'S(1,1), {SETUP} : Sweep at cap=1e-12; res=50'
        self.assertEqual(list(curves), [solved, 'S(1,1), Measured', 'S(1,1)'])
        places = tuple(float(row['Freq [Hz]']) for row in rows)
        for of, name in ((solved, 'A'), ('S(1,1), Measured', 'B')):
            self.assertEqual(curves[of][0], places)
            for told, row in zip(curves[of][1], rows):
                value = complex(float(row[name + '.re']), float(row[name + '.im']))
                self.assertAlmostEqual(told, 20 * math.log10(abs(value)))
        self.assertEqual(curves['S(1,1)'], (places, tuple(float(row['|A-B|']) for row in rows)))
        self.assertEqual([round(value, 12) for value in curves['S(1,1)'][1]],
                         [0.125 if place in (3, 7) else 0 for place in range(11)])
        largest = {column['title']: columns[column['numbers']] for column in table['columns'] if 'numbers' in column}
        self.assertAlmostEqual(largest['Largest'][0], 0.125)
        self.assertIn(largest['At'][0], (places[3], places[7]))

    def test_markup_in_names_stays_text(self):
        file = self.exported()
        name = 'a ' + MARKUP
        self.run_desk('import', 'small', file, '--name', name)
        self.run_desk('compare', 'small', SETUP, name, '--html', 'page.html')
        page = read('page.html').decode()
        self.assertNotIn(MARKUP, page)
        self.assertIn('alert(1)', page)
        self.assertIn(name, self.imported())
        self.run_desk('setup', 'small', 'delete', name)
        self.assertEqual(self.imported(), {})

    def test_a_second_file_of_the_name_replaces_the_first_and_undo_brings_it_back(self):
        file = self.exported()
        self.run_desk('import', 'small', file, '--name', 'Measured')
        write('script.txt', '\n'.join([f'import {self.perturbed(file, 1.0)} --name measured',
                                       f'compare {SETUP} Measured', 'undo', f'compare {SETUP} Measured', 'redo',
                                       f'compare {SETUP} Measured', 'setup delete Measured', 'info', 'undo',
                                       f'compare {SETUP} Measured']) + '\n')
        done = self.run_desk('shell', 'small', 'script.txt', '--json')
        results = [json.loads(line)['result'] for line in done.stdout.splitlines()]
        largest = [round(result['summary']['largest'], 9) for result in results if 'summary' in result]
        self.assertEqual(largest, [1, 0, 1, 1])
        self.assertFalse(any(entry['imported'] for entry in results[7]['setups']))

    def test_it_outlives_the_file_and_the_death_of_the_process(self):
        file = self.exported()
        self.run_desk('save', 'small')
        write('script.txt', f'import {file} --name Measured\nsolve --vary res=1:20000:1\n')
        shell = self.launch(SOLVEDESK, 'shell', 'small', 'script.txt', '--json')
        self.assertEqual(json.loads(shell.stdout.readline())['result']['setup'], 'Measured')
        shell.kill()
        shell.wait()
        os.remove(file)
        self.assertIn('Measured', self.imported())
        self.assertEqual(self.document('compare', 'small', SETUP, 'Measured')['summary']['largest'], 0)
        self.run_desk('save', 'small')
        self.assertEqual(self.document('compare', 'small', SETUP, 'Measured')['summary']['largest'], 0)

    def test_discard_takes_it_away(self):
        self.run_desk('import', self.exported_project(), 'out.s1p')
        self.assertTrue(self.imported())
        self.run_desk('discard', 'small')
        self.assertEqual(self.imported(), {})

    def test_another_number_of_ports_is_told_and_not_compared(self):
        file = self.exported()
        write('two.s2p', '# GHz S RI R 50\n1 0 0 1 0 1 0 0 0\n2 0 0 1 0 1 0 0 0\n')
        document = self.document('import', 'small', 'two.s2p')
        self.assertTrue(any('2 ports, the circuit 1' in notice for notice in document['notices']), document)
        self.assertIn('ports', self.refuse(1, 'compare', 'small', SETUP, 'two'))
        self.run_desk('eval', 'small', 'mag(S(2,1))', '--solution', 'two')
        self.run_desk('import', 'small', file, '--name', 'one')

    def test_bad_files_are_refused_and_change_nothing(self):
        file = self.exported()
        before = read('small.sproject.auto') if os.path.exists('small.sproject.auto') else None
        whole = read(file).decode()
        write('cut.s1p', whole[:whole.rstrip().rindex(' ')])
        write('text.s1p', 'this is no data\n')
        write('empty.s1p', '')
        write('huge.s999999999p', '# GHz S RI R 50\n1 0 0\n')
        write('measured.txt', whole)
        os.mkdir('folder.s1p')
        for name in ('cut.s1p', 'text.s1p', 'empty.s1p', 'huge.s999999999p', 'missing.s1p', 'folder.s1p'):
            self.assertIn(name, self.refuse(4, 'import', 'small', name))
        for name, place in (('cut.s1p', r'\d+:\d+'), ('text.s1p', '1:1'), ('empty.s1p', '1:1')):
            self.assertRegex(self.refuse(4, 'import', 'small', name), f': .*{name}:{place}: .*expected')
        self.assertIn('.s1p', self.refuse(2, 'import', 'small', 'measured.txt'))
        self.assertIn('already', self.refuse(2, 'import', 'small', file, '--name', SETUP.lower()))
        self.assertIn('colon', self.refuse(2, 'import', 'small', file, '--name', 'a:b'))
        self.assertEqual(self.imported(), {})
        self.assertEqual(read('small.sproject.auto') if os.path.exists('small.sproject.auto') else None, before)

    def test_it_is_not_solved_nor_edited(self):
        self.run_desk('import', self.exported_project(), 'out.s1p', '--name', 'Measured')
        self.assertIn('imported', self.refuse(2, 'solve', 'small', '--setup', 'Measured'))
        self.assertIn('imported', self.refuse(2, 'setup', 'small', 'edit', 'Measured', 'lin', '3', '1meg', '1g'))
        self.run_desk('solve', 'small', '--again')
        self.run_desk('setup', 'small', 'rename', 'Measured', 'Unit')
        self.assertEqual(self.document('compare', 'small', SETUP, 'Unit')['summary']['largest'], 0)

    def test_unknown_names_are_refused_with_the_known_ones(self):
        self.run_desk('import', self.exported_project(), 'out.s1p', '--name', 'Measured')
        self.assertIn('Measured : Data', self.refuse(2, 'compare', 'small', SETUP, 'nobody'))
        self.assertIn('S(1,1)', self.refuse(2, 'compare', 'small', SETUP, 'Measured', '--parameter', 'S(2,1)'))
        self.assertIn('--variation-b', self.refuse(2, 'compare', 'small', SETUP, 'Measured', '--variation-b', 'res=1'))

    def test_a_reader_beside_a_writer_sees_what_was_saved(self):
        self.run_desk('import', self.exported_project(), 'out.s1p', '--name', 'Measured')
        self.run_desk('save', 'small')
        shell = subprocess.Popen([SOLVEDESK, 'shell', 'small'], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(shell.stdout.close)
        shell.stdin.write('info --json\n')
        shell.stdin.flush()
        shell.stdout.readline()
        compared = self.document('compare', 'small', SETUP, 'Measured')
        self.assertEqual(compared['summary']['largest'], 0)
        shell.stdin.close()
        shell.wait(60)


if __name__ == '__main__':
    unittest.main()
