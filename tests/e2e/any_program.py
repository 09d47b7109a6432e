"""Programs as solvers: the example, the manual's own text, failures, edits, and what is left behind: nothing."""
import csv
import io
import json
import math
import os
import re
import signal
import subprocess
import time
import unittest

from _solvedesk import SOLVEDESK, SOURCE, DeskTest, files_below, read, write

BALL = os.path.join(SOURCE, 'examples', 'ball', 'ball.solver')

# y = a * b, by a shell.
SMALL = """variable a = 2
variable b = 3
setting plus = 0
command awk "BEGIN {{ print {a} * {b} + {plus} }"
output table stdout no-header
scalar y = 1
"""


class AnyProgram(DeskTest):
    def project(self, name='small', text=SMALL):
        write(f'{name}.solver', text)
        self.run_desk('new', name, '--source', f'{name}.solver', '--product', 'command')
        return name

    def rows(self, *words):
        """values --csv as dictionaries."""
        return list(csv.DictReader(io.StringIO(self.run_desk('values', *words, '--csv').stdout)))

    def test_a_ball_flies_as_physics_tells(self):
        self.run_desk('new', 'ball', '--source', BALL, '--product', 'command')
        self.run_desk('solve', 'ball', '--setup', 'Fine', '--vary', 'drag=0,0.25', '--vary', 'angle=30:60:15')
        rows = self.rows('ball', '--quantity', 'range', '--quantity', 'top')
        self.assertEqual(len(rows), 6)
        for row in rows:
            angle = math.radians(float(row['angle']))
            far = 30 ** 2 * math.sin(2 * angle) / 9.81
            high = (30 * math.sin(angle)) ** 2 / 2 / 9.81
            if float(row['drag']) == 0:
                self.assertAlmostEqual(float(row['range']), far, delta=1e-3)
                self.assertAlmostEqual(float(row['top']), high, delta=1e-3)
            else:
                self.assertLess(float(row['range']), 0.9 * far)
                self.assertGreater(float(row['range']), 0.5 * far)

    def test_columns_come_back_as_the_program_wrote_them(self):
        self.run_desk('new', 'ball', '--source', BALL, '--product', 'command')
        self.run_desk('solve', 'ball', '--setup', 'Quick')
        os.mkdir('by-hand')
        with open(os.path.join(os.path.dirname(BALL), 'throw.template'), encoding='utf-8') as file:
            values = {'speed': 30, 'angle': 40, 'mass': 0.43, 'diameter': 0.22, 'drag': 0.25, 'step': 0.01}
            write('by-hand/throw.txt', file.read().format(**values))
        subprocess.run(['python3', os.path.join(os.path.dirname(BALL), 'flight.py'), 'throw.txt'], cwd='by-hand', check=True)
        with open('by-hand/flight.csv', encoding='utf-8', newline='') as file:
            path = [tuple(float(row[name]) for name in ('time', 'x', 'height')) for row in csv.DictReader(file)]
        point, = self.document('values', 'ball')['points']
        found = {quantity['name']: quantity for quantity in point['quantities']}
        self.assertEqual([found[name]['values'] for name in ('time', 'x', 'height')], [list(part) for part in zip(*path)])
        self.assertEqual((found['height']['over'], found['height']['unit']), ('time', 'm'))
        self.assertEqual(found['range']['value'], path[-1][1])

    def test_the_house_of_the_manual_loses_heat(self):
        manual = read(os.path.join(SOURCE, 'docs', 'command.md')).decode()
        block, = re.findall(r'(?:^    .*\n)*    # Heat that .*\n(?:^    .*\n)*', manual, re.M)
        self.project('house', block.replace('\n    ', '\n').strip() + '\n')
        self.run_desk('solve', 'house', '--vary', 'insulation=0.1,0.2')
        self.assertEqual([float(row['loss']) for row in self.rows('house')], [1440, 720])
        self.assertIn('loss = 1440 W', self.run_desk('values', 'house').stdout)

    def test_results_survive_and_valid_ones_are_not_run_again(self):
        self.project()
        self.run_desk('solve', 'small', '--vary', 'a=1:3:1', '--no-save')
        done = self.document('solve', 'small', '--vary', 'a=1:4:1')
        self.assertEqual((done['already_valid'], done['stored'], done['saved']), (3, 1, True))
        self.assertEqual([row['y'] for row in self.rows('small')], ['3', '6', '9', '12'])
        self.assertEqual(self.rows('small', '--variation', 'b=3; a=2')[0]['y'], '6')

    def test_settings_are_the_words_of_a_setup(self):
        self.project()
        self.run_desk('setup', 'small', 'add', 'More', 'plus=100')
        self.run_desk('solve', 'small')
        self.assertEqual({row['setup']: row['y'] for row in self.rows('small')}, {'Run': '6', 'More': '106'})
        self.run_desk('setup', 'small', 'edit', 'More', 'plus=200')
        self.assertEqual([row['setup'] for row in self.rows('small')], ['Run'])
        self.run_desk('setup', 'small', 'edit', 'More', 'plus=100')
        self.assertEqual(len(self.rows('small')), 2, 'an edit that leads back makes the data valid again')

    def test_settings_that_the_solver_file_does_not_know_are_refused_with_those_that_it_knows(self):
        self.project('small', SMALL.replace('setting plus = 0', 'setting plus = 0\nsetup Fine plus=1'))
        self.assertIn("there is no setting 'minus'; there are plus",
                      self.refuse(2, 'setup', 'small', 'add', 'Wrong', 'minus=1'))
        self.assertIn("'q'", self.refuse(2, 'setup', 'small', 'edit', 'Fine', 'q=20'))
        self.assertEqual(self.document('setup', 'small', 'edit', 'Fine', 'PLUS=1')['changed'], False,
                         'names of settings are found without case')
        write('small.solver', SMALL.replace('setting plus = 0\n', '').replace(' + {plus}', ''))
        self.run_desk('reload', 'small')
        self.run_desk('setup', 'small', 'add', 'Plain', 'default')

    def test_what_made_data_stale_is_told_by_the_file_that_changed(self):
        write('double.awk', 'BEGIN { print 2 * a }\n')
        write('in.txt', '{a}\n')
        self.project('small', 'variable a = 2\nfile double.awk\ntemplate in.txt\ncommand awk -v a={a} -f double.awk\n'
                              'output table stdout no-header\nscalar y = 1\n')
        for name, text in (('double.awk', 'BEGIN { print 3 * a }\n'), ('in.txt', '# {a}\n')):
            former = read(name).decode()
            self.run_desk('solve', 'small')
            write(name, text)
            self.assertIn(f'content of {name}: as read', self.run_desk('reload', 'small').stdout)
            told = self.run_desk('info', 'small', '--why').stdout
            self.assertRegex(told, f'valid again by: put the former {name} \\(read [^)]*\\) back and reload')
            self.assertNotIn('circuit', told)
            write(name, former)
            self.assertEqual(self.document('reload', 'small')['valid_points'], 1)
        write('double.awk', 'BEGIN { print 4 * a }\n')
        write('in.txt', 'a = {a}\n')
        self.run_desk('reload', 'small')
        self.assertIn('put the former double.awk, in.txt (read', self.run_desk('info', 'small', '--why').stdout)

    def test_an_edited_remark_makes_nothing_stale_and_an_edited_command_does(self):
        self.project()
        self.run_desk('solve', 'small')
        write('small.solver', '# A remark.\n' + SMALL.replace('a = 2', 'a = 5'))
        self.run_desk('reload', 'small')
        self.assertTrue(self.variations('small', 'Run')['a=2; b=3']['valid'])
        self.assertEqual(self.document('info', 'small')['design']['variation'], 'a=5; b=3')
        write('small.solver', SMALL.replace('{a} *', '{a} +'))
        self.run_desk('reload', 'small')
        self.assertFalse(self.variations('small', 'Run')['a=2; b=3']['valid'])
        write('small.solver', SMALL)
        self.run_desk('reload', 'small')
        self.assertTrue(self.variations('small', 'Run')['a=2; b=3']['valid'])

    def test_a_point_that_fails_costs_itself_alone(self):
        self.project('small', SMALL.replace('command awk "BEGIN {{ print {a} * {b} + {plus} }"',
                                            'shell [ {a} -ne 2 ] || {{ echo two is too much >&2; exit 9; }; echo {a}'))
        done = self.document('solve', 'small', '--vary', 'a=1,2,3', code=5)
        self.assertEqual((done['stored'], done['failed']), (2, 1))
        self.assertIn('exit status 9', done['failures'][0]['error'])
        self.assertIn('two is too much', done['failures'][0]['error'])

    def test_nothing_is_left_of_a_solve_that_is_killed(self):
        self.project('small', 'variable a = 1\nshell echo $$ > "$OLDPWD/pid"; echo $PWD > "$OLDPWD/folder"; '
                              "setsid sleep 500 & sleep 500\n" + 'output table stdout no-header\nscalar y = 1\n')
        here = os.getcwd()
        solve = subprocess.Popen([SOLVEDESK, 'solve', 'small', '--jobs', '1'], env=dict(os.environ, OLDPWD=here),
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        def appears(name):
            for _ in range(1000):
                if os.path.exists(name) and read(name).endswith(b'\n'):
                    return read(name).decode().strip()
                time.sleep(0.01)
            self.fail(f'{name} did not appear')
        pid, folder = int(appears('pid')), appears('folder')
        solve.send_signal(signal.SIGKILL)
        solve.wait()
        for _ in range(1000):
            if not os.path.exists(folder) and not self.is_running(pid):
                break
            time.sleep(0.01)
        self.assertFalse(os.path.exists(folder))
        self.assertFalse(self.is_running(pid))

    @staticmethod
    def is_running(pid):
        try:
            os.kill(pid, 0)
            return True
        except ProcessLookupError:
            return False

    def test_bad_solver_files_are_refused_with_file_and_line(self):
        for text, part in ((SMALL.replace('{b}', '{c}'), 'bad.solver:4'), ('frob\n', 'bad.solver:1'),
                           (SMALL.replace('scalar y = 1', 'scalar y = one'), 'bad.solver:6')):
            write('bad.solver', text)
            self.assertIn(part, self.refuse(4, 'new', 'p', '--source', 'bad.solver', '--product', 'command'))
        self.assertEqual(files_below(), ['bad.solver'])

    def test_a_source_of_another_product_is_refused_with_the_words_that_name_it(self):
        write('small.solver', SMALL)
        self.assertIn('; the product command can read it: add --product command',
                      self.refuse(4, 'new', 'p', '--source', 'small.solver'))
        write('bad.solver', 'frob\n')
        self.assertNotIn('--product', self.refuse(4, 'new', 'p', '--source', 'bad.solver'))

    def test_a_reload_of_an_edited_remark_says_that_nothing_counts(self):
        self.project()
        write('small.solver', SMALL + '# A remark.\n')
        self.assertEqual(self.run_desk('reload', 'small').stdout, 'read; nothing that counts has changed in it\n')
        self.assertEqual(self.run_desk('reload', 'small').stdout,
                         'the source is what it was when the project read it\n')

    def test_a_quantity_named_like_a_variable_has_a_column_of_its_own_name(self):
        write('small.solver', SMALL.replace('scalar y', 'scalar A'))
        notes = self.document('new', 'small', '--source', 'small.solver', '--product', 'command')['notes']
        self.assertEqual(len(notes), 1)
        self.assertIn('small.solver:6: A: is the name of a variable too', notes[0])
        self.run_desk('solve', 'small')
        self.assertEqual(self.run_desk('values', 'small', '--csv').stdout, 'setup,a,b,A (quantity)\nRun,2,3,6\n')

    def test_values_refuses_what_is_not_there(self):
        self.project()
        self.assertIn('solvedesk solve', self.refuse(1, 'values', 'small'))
        self.run_desk('solve', 'small')
        self.assertIn('there are y', self.refuse(2, 'values', 'small', '--quantity', 'z'))
        self.assertIn('--variation', self.refuse(2, 'values', 'small', '--variation', 'a=77'))
        self.assertIn('Run', self.refuse(2, 'values', 'small', '--setup', 'None'))
        self.refuse(2, 'values', 'small', '--csv', '--json')
        self.assertIn('no network parameters', self.refuse(2, 'touchstone', 'small', '--to', 'out'))

    def test_values_tells_network_parameters_too(self):
        self.small_project('rf')
        self.run_desk('solve', 'rf')
        rows = self.rows('rf', '--quantity', 'Freq', '--quantity', 'S11.re', '--quantity', 'S11.im')
        self.assertEqual(len(rows), 11)
        admittance = 1 / 50 + 2j * math.pi * float(rows[3]['Freq']) * 1e-12
        reflection = (1 - 50 * admittance) / (1 + 50 * admittance)
        self.assertAlmostEqual(complex(float(rows[3]['S11.re']), float(rows[3]['S11.im'])), reflection, places=12)

    def test_values_in_a_shell_are_a_document_on_one_line(self):
        self.project()
        self.run_desk('solve', 'small')
        write('script', 'values\n')
        line = self.run_desk('shell', 'small', 'script', '--json').stdout
        self.assertEqual(json.loads(line)['result']['points'][0]['quantities'], [{'name': 'y', 'value': 6.0}])


if __name__ == '__main__':
    unittest.main()
