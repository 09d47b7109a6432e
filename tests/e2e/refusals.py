"""Bad input: one line that names the thing and the remedy, the documented exit code, and nothing half written."""
import os
import unittest

from _solvedesk import LOWPASS, SMALL, DeskTest, bound_by_permissions, files_below, read, write

USAGE, PROJECT, SOURCE = 2, 3, 4

PORT = 'V1 in 0 dc 0 ac 1 portnum 1 z0 50'
END = '.sp lin 3 1meg 1g\n.end\n'

# What is wrong: the lines of the netlist from its second line on, the line that is to blame, words of the message.
BAD_NETLISTS = {
    'an unknown element': (f'{PORT}\nQ1 in 0 0 model\n', 3, ['Q1']),
    'an undefined parameter': (f'{PORT}\nR1 in 0 {{nothing}}\n', 3, ['nothing']),
    'a cyclic parameter': (f'.param a={{b}} b={{a}}\n{PORT}\nR1 in 0 {{a}}\n', 2, ['a', 'itself']),
    'a recursive subcircuit': (f'{PORT}\n.subckt loop p\nX1 p loop\n.ends\nX2 in loop\n', 4, ['loop']),
    'an undefined subcircuit': (f'{PORT}\nX1 in 0 missing\n', 3, ['missing']),
    'a wrong node count of an instance': (f'{PORT}\n.subckt two a b\nR1 a b 1\n.ends\nX1 in two\n', 6, ['X1']),
    'a missing node': (f'{PORT}\nR1 in\n', 3, ['R1']),
    'a missing value': (f'{PORT}\nR1 in 0\n', 3, ['R1']),
    'a value that is no number': (f'{PORT}\nR1 in 0 5q0\n', 3, ['R1', '5q0']),
    'a coupling of an unknown inductor': (f'{PORT}\nL1 in 0 1n\nK1 L1 L9 0.5\n', 4, ['K1', 'L9']),
    'a coupling above one': (f'{PORT}\nL1 in 0 1n\nL2 in 0 1n\nK1 L1 L2 1.5\n', 5, ['K1']),
    'an open controlled input': (f'{PORT}\nE1 in 0 nowhere 0 2\n', 3, ['E1', 'nowhere']),
    'an unknown controlling source': (f'{PORT}\nF1 in 0 V9 2\n', 3, ['F1', 'V9']),
    'a loop of voltage sources': (f'{PORT}\nV2 a 0 dc 1\nV3 a 0 dc 1\nR1 in a 50\n', 4, ['V3']),
    'a sweep of no points': (f'{PORT}\nR1 in 0 50\n.sp lin 0 1meg 1g\n', 4, ['.sp']),
    'a sweep from zero by decades': (f'{PORT}\nR1 in 0 50\n.sp dec 10 0 1g\n', 4, ['.sp']),
    'a sweep that goes down': (f'{PORT}\nR1 in 0 50\n.sp lin 10 1g 1meg\n', 4, ['.sp']),
    'an unknown command': (f'{PORT}\nR1 in 0 50\n.frobnicate\n', 4, ['.frobnicate']),
    'a subcircuit without an end': (f'{PORT}\n.subckt open a\nR1 a 0 1\n', 3, ['open']),
}


class Refusals(DeskTest):
    def refuse_netlist(self, text, line, words):
        write('bad.cir', text)
        message = self.refuse(SOURCE, 'new', 'p', '--netlist', 'bad.cir')
        self.assertIn(f'bad.cir:{line}:', message)
        for word in words:
            self.assertIn(word.lower(), message.lower())
        self.assertIn('; ', message, 'the remedy is missing')
        self.assertEqual(files_below(), ['bad.cir'])

    def test_a_bad_netlist_is_refused_with_file_line_thing_and_remedy(self):
        for what, (text, line, words) in BAD_NETLISTS.items():
            with self.subTest(what):
                self.refuse_netlist(f'title\n{text}{END}', line, words)

    def test_words_that_are_no_numbers_are_told_as_the_option_has_them(self):
        self.small_project()
        self.assertIn('--jobs x: takes a number; see', self.refuse(2, 'solve', 'small', '--jobs', 'x'))

    def test_a_frequency_with_a_blank_in_quotes_is_one_number(self):
        self.small_project()
        done = self.document('setup', 'small', 'add', 'Fine', 'lin', '5', '1 GHz', '2GHz')
        self.assertEqual(done['changes'][0]['to'], 'lin 5 1e+09 2e+09')
        self.assertIn('two ways', self.refuse(2, 'setup', 'small', 'add', 'Milli', 'lin', '5', '1 MHz', '2 GHz'))

    def test_a_netlist_that_is_not_there_is_named(self):
        self.assertIn('none.cir', self.refuse(SOURCE, 'new', 'p', '--netlist', 'none.cir'))
        self.assertEqual(files_below(), [])

    def test_a_netlist_that_is_a_folder_is_refused(self):
        os.mkdir('folder')
        self.assertIn('folder', self.refuse(SOURCE, 'new', 'p', '--netlist', 'folder'))

    def test_a_netlist_without_ports_or_sweeps_is_refused(self):
        write('bad.cir', 'title\nR1 a 0 50\n' + END)
        self.assertIn('port', self.refuse(SOURCE, 'new', 'p', '--netlist', 'bad.cir'))
        write('bad.cir', f'title\n{PORT}\nR1 in 0 50\n.end\n')
        self.assertIn('.sp', self.refuse(SOURCE, 'new', 'p', '--netlist', 'bad.cir'))
        self.assertEqual(files_below(), ['bad.cir'])

    def test_a_netlist_of_random_bytes_is_refused(self):
        with open('bad.cir', 'wb') as file:
            file.write(bytes(range(256)) * 40)
        self.assertIn('bad.cir', self.refuse(SOURCE, 'new', 'p', '--netlist', 'bad.cir'))
        self.assertEqual(files_below(), ['bad.cir'])

    def test_a_project_that_is_not_there_is_named_by_every_verb(self):
        for words in (['info', 'none'], ['set', 'none', 'a=1'], ['solve', 'none'], ['save', 'none'], ['discard', 'none'],
                      ['recover', 'none'], ['recover', 'none', '--dry-run'], ['recover', 'none', '--set-aside'],
                      ['touchstone', 'none', '--to', 'out'],
                      ['export', 'none', '--point', 'a=1', '--to', 'out'], ['report', 'none', 'list'], ['var', 'none', 'list'],
                      ['eval', 'none', '1']):
            with self.subTest(words[0]):
                self.assertIn('none.sproject', self.refuse(PROJECT, *words))
        self.assertEqual(files_below(), [])

    def test_a_project_in_a_folder_that_is_not_there_is_refused(self):
        self.refuse(PROJECT, 'new', 'no/such/p', '--netlist', LOWPASS)
        self.assertEqual(files_below(), [])

    def test_a_project_that_is_there_is_not_overwritten(self):
        self.small_project()
        before = read('small.sproject')
        self.assertIn('small.sproject', self.refuse(PROJECT, 'new', 'small', '--netlist', LOWPASS))
        self.assertEqual(read('small.sproject'), before)

    def test_a_damaged_project_is_refused_and_left_as_it_is(self):
        for content in ('', 'not a project\n', '{', '\0' * 1000):
            with self.subTest(content[:10]):
                write('bad.sproject', content)
                self.assertIn('bad.sproject', self.refuse(PROJECT, 'info', 'bad'))
                self.assertEqual(read('bad.sproject').decode(), content)

    def test_a_netlist_that_changed_is_not_solved(self):
        self.small_project()
        write('small.cir', SMALL.replace('R1 in 0 {res}', 'R1 in 0 {2*res}'))
        self.assertIn('small.cir', self.refuse(SOURCE, 'solve', 'small'))
        self.assertEqual(self.variations('small'), {})

    def test_a_netlist_that_went_is_named(self):
        self.small_project()
        os.remove('small.cir')
        self.assertIn('small.cir', self.refuse(SOURCE, 'solve', 'small'))

    def test_an_unknown_variable_is_refused_with_the_known_ones(self):
        self.small_project()
        for words in (['set', 'small', 'rse=1'], ['solve', 'small', '--vary', 'rse=1,2']):
            message = self.refuse(USAGE, *words)
            for part in ('rse', 'cap', 'res'):
                self.assertIn(part, message)
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])

    def test_bad_assignments_change_nothing(self):
        self.small_project()
        for word in ('res', 'res=', '=5', 'res=abc', 'res=1e999', 'res=nan', 'res=inf', 'res=1m', 'res=1..2'):
            with self.subTest(word):
                self.refuse(USAGE, 'set', 'small', 'cap=2p', word)
        self.refuse(USAGE, 'set', 'small', 'res=1', 'RES=2')
        self.refuse(USAGE, 'set', 'small')
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])

    def test_bad_ranges_are_refused_before_anything_is_solved(self):
        self.small_project()
        ranges = {'res=1:2': 'A:B:STEP', 'res=1:2:3:4': 'A:B:STEP', 'res=1:2:0': 'step', 'res=1:2:-0.1': 'step',
                  'res=2:1:0.1': 'empty', 'res=1:2:x': "'x'", 'res=:2:1': "''", 'res=1,,2': "''", 'res=': 'value',
                  'res=0:1:1e-9': '2000000', 'res=0:1e300:1e-300': '2000000',
                  'res=1:1.0000000000000002:1e-17': 'step', 'res=1,2,1.0': 'twice', 'res=nan:1:1': 'nan'}
        for word, part in ranges.items():
            with self.subTest(word):
                self.assertIn(part, self.refuse(USAGE, 'solve', 'small', '--vary', word))
        grid = ('--vary', 'res=1:10000:1', '--vary', 'cap=1:10000:1')
        self.assertIn('2000000', self.refuse(USAGE, 'solve', 'small', *grid))
        self.assertIn('twice', self.refuse(USAGE, 'solve', 'small', '--vary', 'res=1', '--vary', 'RES=2'))
        self.assertEqual(self.variations('small'), {})

    def test_wrong_words_are_usage_errors(self):
        self.small_project()
        for words in ([], ['frobnicate'], ['new', 'p'], ['solve'], ['solve', 'small', '--jobs', 'many'],
                      ['solve', 'small', '--jobs', '-1'], ['solve', 'small', '--time-limit', '0'],
                      ['solve', 'small', '--events', '--json'], ['solve', 'small', '--frobnicate'],
                      ['touchstone', 'small'], ['touchstone', 'small', '--to', 'o', '--digits', '18'],
                      ['touchstone', 'small', '--to', 'o', '--digits', '0'], ['info', ''], ['info', 'folder/'],
                      ['new', 'p', '--netlist', LOWPASS, '--product', 'frobnicator']):
            with self.subTest(' '.join(words)):
                self.refuse(USAGE, *words)

    def test_a_misspelt_verb_is_named_and_the_verbs_are_told(self):
        message = self.refuse(USAGE, 'slove', 'small')
        verbs = ('new, info, set, reload, setup, delete, solve, watch, convergence, profile, save, discard, values, '
                 'report, var, eval, port, '
                 'touchstone, import, compare, export, attach, attachments, detach, connect, connections, refresh, '
                 'disconnect, functions, recover, shell')
        for part in ("'slove'", verbs):
            self.assertIn(part, message)
        self.assertNotIn('worker', message)

    def test_numbers_beyond_what_can_be_held_are_told_as_such(self):
        self.small_project()
        for word, part in {'1e400': 'too large', '-1e400': 'too large', '1e-400': 'too small'}.items():
            self.assertIn(part, self.refuse(USAGE, 'set', 'small', 'res=' + word))
            self.assertIn(part, self.refuse(USAGE, 'solve', 'small', '--vary', 'res=' + word))
        self.run_desk('set', 'small', 'res=0e-400')

    def test_a_name_whose_companions_would_not_fit_is_refused(self):
        for name in ('n' * 230, 'ü' * 115):
            self.assertIn('name too long', self.refuse(USAGE, 'new', name, '--netlist', LOWPASS))
        self.assertEqual(files_below(), [])
        name = 'n' * 225
        self.run_desk('new', name, '--netlist', LOWPASS)
        self.run_desk('set', name, 'cscale=2')
        self.run_desk('solve', name)

    def test_an_unknown_setup_is_refused_with_the_known_ones(self):
        self.small_project()
        for words in (['solve', 'small', '--setup', 'Nope'], ['touchstone', 'small', '--to', 'o', '--setup', 'Nope']):
            self.assertIn('SParameters1', self.refuse(USAGE, *words))

    def test_a_name_that_is_no_text_is_refused(self):
        self.assertIn('UTF-8', self.refuse(USAGE, 'info', os.fsdecode(b'a\xff')))

    def test_a_folder_without_permission_is_named(self):
        os.mkdir('shut', 0o500)
        self.addCleanup(os.chmod, os.path.abspath('shut'), 0o700)
        done = self.run_desk('new', 'shut/p', '--netlist', LOWPASS, code=7, preexec_fn=bound_by_permissions)
        self.assertIn('shut', done.stderr)
        self.assertEqual(os.listdir('shut'), [])


if __name__ == '__main__':
    unittest.main()
