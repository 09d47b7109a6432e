"""Reports: definitions, tables that equal what the solver stored, gaps, what an edit reaches, undo."""
import csv
import json
import math
import os
import re
import shutil
import unittest

from _reports import FEW, LADDER, ONE_PORT, ReportTest
from _solvedesk import SETUP, index_of, read, write


class Reports(ReportTest):
    def test_a_large_study_equals_the_solvers_numbers(self):
        self.project(LADDER)
        points = ','.join(f'{0.9 + 0.02 * i:.2f}' for i in range(10))
        self.run_desk('solve', 'ladder', '--vary', f'c1={points}', '--vary', f'l2={points}', '--vary', f'c3={points}',
                      '--quiet')
        self.run_desk('report', 'ladder', 'add', 's', '--y', 'S(2,1)', '--y', 'dB(S(1,1))', '--over', 'c1,l2,c3')
        os.mkdir('out')
        self.run_desk('report', 'ladder', 'show', 's', '--csv', 'out/s.csv')
        self.run_desk('touchstone', 'ladder', '--to', 't', '--digits', '17')
        with open('out/s.csv', encoding='utf-8', newline='') as file:
            lines = list(csv.reader(file))
        self.assertEqual(lines[0], ['c1', 'l2', 'c3', 'Freq (Hz)', 're(S(2,1))', 'im(S(2,1))', 'dB(S(1,1)) (dB)'])
        self.assertEqual(len(lines) - 1, 1000 * 201)
        told = {}
        for line in lines[1:]:
            told.setdefault(tuple(map(float, line[:3])), []).append(tuple(map(float, line[3:])))
        for row in index_of('t'):
            point = tuple(float(re.search(name + r'=([^;]+)', row['variation'])[1]) for name in ('c1', 'l2', 'c3'))
            samples = [tuple(map(float, line.split())) for line in read(os.path.join('t', row['file'])).decode().splitlines()
                       if line and line[0] not in '!#']
            self.assertEqual(len(samples), 201)
            for (freq, s11re, s11im, s21re, s21im, *_), (x, re21, im21, db11) in zip(samples, told[point], strict=True):
                self.assertEqual((x, re21, im21), (freq, s21re, s21im))
                self.assertAlmostEqual(db11, 20 * math.log10(math.hypot(s11re, s11im)), delta=1e-9)

    def test_a_report_is_added_listed_shown_and_removed(self):
        self.solved()
        told = self.run_desk('report', 'ladder', 'add', 'gain', '--y', 'dB(S(2,1))', '--over', 'c1').stdout
        self.assertIn('report gain: added, dB(S(2,1)), for each c1', told)
        self.assertIn('gain', self.run_desk('report', 'ladder', 'list').stdout)
        self.assertEqual([r['name'] for r in self.document('report', 'ladder', 'list')['reports']], ['gain'])
        table = self.run_desk('report', 'ladder', 'show', 'gain').stdout.splitlines()
        self.assertEqual(table[0].split(), ['c1', 'Freq', '(Hz)', 'dB(S(2,1))', '(dB)'])
        self.assertEqual(len(table), 1 + 3 * 3)
        self.run_desk('report', 'ladder', 'remove', 'gain')
        self.assertIn('no report of that name', self.refuse(2, 'report', 'ladder', 'show', 'gain'))

    def test_definitions_are_unsaved_work_until_a_save(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'gain', '--y', 'dB(S(2,1))')
        self.assertTrue(self.document('info', 'ladder')['unsaved_changes'])
        self.run_desk('discard', 'ladder')
        self.assertEqual(self.document('report', 'ladder', 'list')['reports'], [])
        self.run_desk('report', 'ladder', 'add', 'gain', '--y', 'dB(S(2,1))')
        self.run_desk('save', 'ladder')
        self.run_desk('discard', 'ladder')
        self.assertEqual(len(self.document('report', 'ladder', 'list')['reports']), 1)
        self.run_desk('report', 'ladder', 'show', 'gain')
        self.assertFalse(self.document('info', 'ladder')['unsaved_changes'], 'looking changes nothing')

    def kept_numbers(self):
        """Where the numbers are that the last save kept."""
        caches = [os.path.join(folder, name) for folder, _, names in os.walk('.') for name in names
                  if name.endswith('.svcache') and 'ladder.' in folder]
        self.assertEqual(len(caches), 1)
        return caches[0]

    def test_numbers_kept_by_a_save_are_those_of_the_solved_data(self):
        self.solved()
        self.run_shell(['report add s --y S(2,1) --y dB(S(1,1)) --over c1,l2', 'report show s', 'save'])
        cache = self.kept_numbers()
        kept = self.rows('s')
        self.assertEqual(len(kept), 3 * 2 * 3)
        whole = read(cache)
        middle = len(whole) // 2
        for damaged in (b'', whole[:middle], whole[:-1], whole + b'x', whole[:middle] + b'7' + whole[middle + 1:],
                        bytes([whole[0] ^ 1]) + whole[1:]):
            with open(cache, 'wb') as file:
                file.write(damaged)
            self.assertEqual(self.rows('s'), kept)
        os.remove(cache)
        self.assertEqual(self.rows('s'), kept)
        self.run_desk('solve', 'ladder', '--vary', 'c1=1.2', '--vary', 'l2=1', '--quiet')
        self.assertEqual([row for row in self.rows('s') if row[0] != 1.2], kept)

    def test_numbers_kept_by_another_save_or_project_are_not_shown(self):
        self.solved()
        self.run_shell(['report add s --y mag(S(2,1)) --over c1', 'report show s', 'save'])
        cache = self.kept_numbers()
        former, numbers = read(cache), self.rows('s')
        self.run_shell(['port V2=75', 'report show s', 'save'])
        later, shown = read(cache), self.rows('s')
        self.assertNotEqual(shown, numbers)
        for other in (former, former[:len(former) // 2] + later[len(later) // 2:]):
            with open(cache, 'wb') as file:
                file.write(other)
            self.assertEqual(self.rows('s'), shown)
        self.small_project('other', FEW.replace('z0 50', 'z0 100'))
        self.run_desk('solve', 'other', '--vary', 'c1=0.9,1,1.1', '--quiet')
        write('other.txt', 'report add s --y mag(S(2,1)) --over c1\nreport show s\nsave\n')
        self.run_desk('shell', 'other', 'other.txt', '--json')
        shutil.copy(cache.replace('ladder', 'other'), cache)
        self.assertNotEqual(read(cache), later)
        self.assertEqual(self.rows('s'), shown)
        with open(cache, 'wb') as file:
            file.write(later)
        self.assertEqual(self.rows('s'), shown)

    def test_numbers_that_an_edit_reached_are_not_kept(self):
        self.solved()
        self.run_shell(['report add s --y mag(S(2,1)) --over c1', 'report show s', 'save'])
        former = self.rows('s')
        self.run_shell(['report show s', 'port V2=75', 'save'])
        shown = self.rows('s')
        self.assertNotEqual(shown, former)
        for folder, _, names in os.walk('.'):
            for name in names:
                if name.endswith('.svcache'):
                    os.remove(os.path.join(folder, name))
        self.assertEqual(self.rows('s'), shown)

    def test_a_missing_variation_is_a_gap_and_no_shift(self):
        self.project()
        self.run_desk('solve', 'ladder', '--vary', 'c1=1', '--vary', 'l2=1', '--quiet')
        self.run_desk('solve', 'ladder', '--vary', 'c1=2', '--vary', 'l2=2', '--quiet')
        self.run_desk('report', 'ladder', 'add', 'g', '--y', 'mag(S(2,1))', '--over', 'c1,l2')
        document = self.document('report', 'ladder', 'show', 'g')
        self.assertEqual(document['gaps'], 2)
        rows = document['rows']
        self.assertEqual([row[:3] for row in rows], [[1, 1, 1e9], [1, 1, 2e9], [1, 1, 3e9], [1, 2, None], [2, 1, None],
                                                     [2, 2, 1e9], [2, 2, 2e9], [2, 2, 3e9]])
        self.assertEqual([row[3] is None for row in rows], [False] * 3 + [True] * 2 + [False] * 3)
        done = self.run_desk('report', 'ladder', 'show', 'g', '--csv', 'g.csv')
        self.assertIn('2 variations have no solved data', done.stderr)
        self.assertIn('\n1,2,,\n2,1,,\n', read('g.csv').decode())

    def test_complex_numbers_come_in_two_columns_that_the_header_tells(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 's', '--y', 'S(2,1)')
        first = self.document('report', 'ladder', 'show', 's')
        second = self.document('report', 'ladder', 'show', 's', '--complex', 'mag-deg')
        self.assertEqual([c['title'] for c in first['columns']], ['Freq', 're(S(2,1))', 'im(S(2,1))'])
        self.assertEqual([c['title'] for c in second['columns']], ['Freq', 'mag(S(2,1))', 'phase(S(2,1))'])
        self.assertEqual(second['columns'][2]['unit'], 'deg')
        for (_, re_, im_), (_, mag, deg) in zip(first['rows'], second['rows'], strict=True):
            self.assertAlmostEqual(complex(re_, im_), mag * complex(math.cos(math.radians(deg)),
                                                                   math.sin(math.radians(deg))), delta=1e-12)

    def test_a_ranged_function_over_a_variable_is_one_row_each(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'worst', '--x', 'c1', '--y', 'max(dB(S(1,1)))', '--over', 'l2')
        self.run_desk('report', 'ladder', 'add', 'all', '--y', 'dB(S(1,1))', '--over', 'l2,c1')
        rows = self.rows('worst')
        self.assertEqual([row[:2] for row in rows], [[l, c] for l in (0.9, 1) for c in (0.9, 1, 1.1)])
        every = self.rows('all')
        for l, c, worst in rows:
            self.assertEqual(worst, max(row[3] for row in every if row[:2] == [l, c]))

    def test_an_edit_in_the_shell_tells_which_traces_it_reaches(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'here', '--y', 'dB(S(2,1))', '--y', 'c1*mag(S(2,1))')
        self.run_desk('report', 'ladder', 'add', 'over', '--y', 'dB(S(2,1))', '--over', 'c1,l2,c3')
        lines = self.run_shell(['report show here', 'report show over', 'report show here', 'set c1=1.1',
                                'report show here', 'report show over', f'setup edit {SETUP} lin 5 1g 3g', 'undo',
                                'report show here'])
        results = [line['result'] for line in lines]
        self.assertEqual([results[i]['updated_traces'] for i in (0, 1, 2)], [2, 1, 0])
        self.assertEqual(results[3]['reports'], [{'report': 'here', 'to_be_updated': 2, 'traces': 2}])
        self.assertEqual([results[i]['updated_traces'] for i in (4, 5)], [2, 0])
        self.assertNotEqual(results[4]['rows'], results[0]['rows'])
        self.assertEqual({r['report'] for r in results[6]['reports']}, {'here', 'over'})
        self.assertEqual(results[8]['rows'], results[4]['rows'])

    def test_curves_over_other_samples_in_one_report_are_told(self):
        self.solved(FEW.replace('3g', '3g voltages=1.5g,2.5g'))
        self.run_desk('report', 'ladder', 'add', 's', '--y', 'mag(S21)')
        self.run_desk('report', 'ladder', 'add', 'v', '--y', 'mag(V(out))')
        self.run_desk('report', 'ladder', 'add', 'both', '--y', 'mag(S21)', '--y', 'mag(V(out))')
        lines = self.run_shell(['report show s', 'report show v', 'report show both', 'set c1=1.1', 'report show v',
                                'report show s'])
        results = [line['result'] for line in lines]
        for shown, count in ((0, 3), (1, 2), (4, 2), (5, 3)):
            self.assertEqual(len(results[shown]['rows']), count)
            self.assertNotIn(None, [row[1] for row in results[shown]['rows']])
            self.assertEqual(results[shown]['notices'], [])
        self.assertEqual([row[:2] for row in results[2]['rows']], results[0]['rows'])
        self.assertEqual([row[2] for row in results[2]['rows']], [None] * 3)
        self.assertIn('runs over other samples', results[2]['notices'][0])

    def test_csv_goes_where_it_is_told_and_makes_no_folders(self):
        self.solved()
        question = ('eval', 'ladder', 'dB(S21)', '--variation', 'Freq=1GHz', '--csv')
        self.assertIn('no folder', self.refuse(7, *question, 'none/x.csv'))
        self.assertFalse(os.path.exists('none'))
        self.refuse(2, *question, '')
        self.run_desk(*question, 'x.csv')
        self.assertEqual(self.run_desk(*question, '-').stdout, read('x.csv').decode())
        self.assertFalse(os.path.exists('-'))
        self.refuse(2, *question, '-', '--json')

    def test_every_edit_is_undone_and_redone(self):
        self.solved()
        lines = self.run_shell(['report add a --y dB(S(2,1))', 'report edit a --y dB(S(1,1)) --over c1',
                                'var add gain=dB(S(2,1))', 'var edit gain=dB(S(1,1))', 'var delete gain',
                                'report remove a'] + ['undo', 'report list', 'var list'] * 6 +
                               ['redo', 'report list', 'var list'] * 6)
        self.assertEqual([line['exit_code'] for line in lines], [0] * len(lines))

        def states(part):
            return [([(r['y'], r['over']) for r in part[i + 1]['result']['reports']],
                     [v['expression'] for v in part[i + 2]['result']['variables']]) for i in range(0, len(part), 3)]
        first, second = (['dB(S(2,1))'], []), (['dB(S(1,1))'], ['c1'])
        forward = [([], []), ([first], []), ([second], []), ([second], ['dB(S(2,1))']), ([second], ['dB(S(1,1))']),
                   ([second], []), ([], [])]
        self.assertEqual(states(lines[6:24]), forward[5::-1])
        self.assertEqual(states(lines[24:]), forward[1:])

    def test_what_a_deleted_port_gave_is_told_and_the_rest_is_shown(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'both', '--y', 'dB(S(1,1))', '--y', 'dB(S(2,1))')
        write('ladder.cir', ONE_PORT)
        self.run_desk('reload', 'ladder')
        self.run_desk('solve', 'ladder', '--quiet')
        done = self.run_desk('report', 'ladder', 'show', 'both')
        self.assertIn('S(2,1)', done.stderr)
        rows = [line.split() for line in done.stdout.splitlines()[1:]]
        self.assertEqual(len(rows), 3)
        self.assertTrue(all(row[-1] == '-' and row[-2] != '-' for row in rows), rows)

    def check_solved_anew(self, edit, netlist=FEW):
        """A report of an earlier session, and another one shown while the data are stale, with which it shares points."""
        self.project()
        self.run_desk('solve', 'ladder', '--quiet')
        self.run_shell(['report add a --y dB(S(2,1))', 'report add v --y dB(S(V1,V1))', 'report show v', 'save'])
        write('ladder.cir', netlist)
        shown = self.run_shell([edit, 'report show a', 'solve', 'report show v'])[3]['result']
        self.assertEqual(shown['updated_traces'], 1)
        self.assertEqual(shown['rows'], self.document('eval', 'ladder', 'dB(S(1,1))')['rows'])

    def test_a_report_of_an_earlier_session_tells_new_numbers_once_a_changed_netlist_was_solved(self):
        self.check_solved_anew('reload', FEW.replace('{l2*1e-8}', '{l2*2e-8}'))

    def test_a_report_of_an_earlier_session_tells_new_numbers_once_a_changed_setup_was_solved(self):
        self.check_solved_anew(f'setup edit {SETUP} lin 2 1g 2g')

    def test_a_deleted_port_gives_no_numbers_and_a_reason_whatever_was_shown_before(self):
        self.project()
        self.run_desk('solve', 'ladder', '--quiet')
        self.run_shell(['report add a --y dB(S(1,1))', 'report add v --y dB(S(V2,V1)) --y dB(S(V1,V1))',
                        'report show v', 'save'])
        write('ladder.cir', ONE_PORT)
        shown = self.run_shell(['reload', 'report show a', 'solve', 'report show v'])[3]['result']
        self.assertEqual([row[1] for row in shown['rows']], [None] * 3)
        self.assertNotIn(None, [row[2] for row in shown['rows']])
        self.assertTrue(any('S(V2,V1)' in notice for notice in shown['notices']), shown['notices'])
        self.assertIn('S(V2,V1)', self.refuse(2, 'eval', 'ladder', 'dB(S(V2,V1))'))

    def test_expressions_that_no_longer_parse_are_told(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'r', '--y', 'l2*mag(S(2,1))', '--y', 'dB(S(1,1))')
        self.run_desk('set', 'ladder', '--remove', 'l2')
        done = self.run_desk('report', 'ladder', 'show', 'r')
        self.assertIn("'l2*mag(S(2,1))' can't be evaluated", done.stderr)
        self.run_desk('report', 'ladder', 'edit', 'r', '--y', 'l2*mag(S(2,1))')
        self.assertIn("can't be evaluated", self.refuse(2, 'report', 'ladder', 'show', 'r'))

    def test_what_a_report_shows_cant_be_deleted(self):
        self.solved()
        self.run_desk('var', 'ladder', 'add', 'gain=dB(S(2,1))')
        self.run_desk('report', 'ladder', 'add', 'r', '--y', '1+Gain')
        self.assertIn('report r shows it', self.refuse(2, 'var', 'ladder', 'delete', 'gain'))
        lines = self.run_shell(['report show r', 'report remove r', 'var delete gain', 'undo', 'undo', 'report show r'])
        self.assertEqual([line['exit_code'] for line in lines], [0] * 6, lines)
        self.assertEqual(lines[0]['result']['rows'], lines[5]['result']['rows'])

    def test_reports_of_one_page_are_those_that_are_shown_one_by_one(self):
        self.solved()
        for name, words in {'over': ('--y', 'dB(S(2,1))', '--over', 'c1,l2'), 'here': ('--y', 'dB(S(2,1))'),
                            'along': ('--x', 'c1', '--y', 'max(dB(S(2,1)))')}.items():
            self.run_desk('report', 'ladder', 'add', name, *words)
        lines = self.run_shell(['report show over here along --html page.html', 'report show over', 'report show here',
                                'report show along'])
        self.assertEqual([line['exit_code'] for line in lines], [0] * 4, lines)
        self.assertEqual([line['result']['updated_traces'] for line in lines[1:]], [0] * 3)
        for name, line in zip(('over', 'here', 'along'), lines[1:], strict=True):
            self.assertEqual(self.rows(name), line['result']['rows'])

    def test_a_damaged_definition_costs_itself_alone(self):
        self.solved()
        for name in 'ab':
            self.run_desk('report', 'ladder', 'add', name, '--y', 'dB(S(2,1))')
        self.run_desk('save', 'ladder')
        self.change_project_file('Name = "a"', 'Nome = "a"')
        done = self.run_desk('report', 'ladder', 'list')
        self.assertIn('is damaged and was left out', done.stderr)
        self.assertEqual([r['name'] for r in self.document('report', 'ladder', 'list')['reports']], ['b'])
        self.run_desk('report', 'ladder', 'show', 'b')

    def test_words_that_make_no_sense_are_refused(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'r', '--y', 'dB(S(2,1))')
        for words in (['add', 'x'], ['add', 'r', '--y', 'a'], ['add', ' x', '--y', 'a'], ['show'], ['list', 'r'],
                      ['show', 'r', '--y', 'a'], ['add', 'x', '--y', 'a', '--csv', 'f'], ['turn', 'r'],
                      ['add', 'x', '--y', 'a', '--over', 'c1,,l2'], ['add', 'x', '--y', 'a', '--over', 'c1,C1'],
                      ['add', 'x', '--y', 'a', '--display', 'carpet'], ['remove', 'none'], ['show', 'r', '--csv', 'no/']):
            with self.subTest(' '.join(words)):
                self.refuse(2, 'report', 'ladder', *words)

    def test_a_report_of_nothing_solved_says_what_to_do(self):
        self.project()
        self.run_desk('report', 'ladder', 'add', 'r', '--y', 'dB(S(2,1))')
        self.assertIn('solvedesk solve ladder', self.refuse(1, 'report', 'ladder', 'show', 'r'))

    def test_a_function_of_a_whole_curve_at_one_sample_is_told(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'at', '--x', 'c1', '--y', 'dB(S(2,1))', '--y', 'max(dB(S(1,1)))',
                      '--variation', 'Freq=2GHz')
        document = self.document('report', 'ladder', 'show', 'at')
        self.assertEqual(len(document['notices']), 1, document['notices'])
        self.assertIn('YAtXVal(dB(S(2,1)),2GHz)', document['notices'][0])
        self.run_desk('report', 'ladder', 'add', 'better', '--x', 'c1', '--y', 'YAtXVal(dB(S(2,1)),2GHz)', '--y',
                      'max(dB(S(1,1)))')
        better = self.document('report', 'ladder', 'show', 'better')
        self.assertEqual(better['notices'], [])
        self.assertEqual([row[:2] for row in better['rows']], [row[:2] for row in document['rows']])

    def test_a_report_that_can_never_be_shown_is_refused_and_one_that_may_be_is_told(self):
        self.solved()
        for words, reason in ((['--y', 'dB(S21'], 'no expression'), (['--y', 'S21', '--x', '1+'], 'no expression'),
                              (['--y', 'S21', '--variation', 'c1=abc'], 'no number'),
                              (['--y', 'S21', '--variation', 'c1'], 'no variation')):
            with self.subTest(words):
                self.assertIn(reason, self.refuse(2, 'report', 'ladder', 'add', 'g', *words))
        self.refuse(2, 'report', 'ladder', 'add', 'a\nb', '--y', 'S21')
        self.assertEqual(self.document('report', 'ladder', 'list')['reports'], [])
        for number, (words, name) in enumerate(((['--over', 'foo'], 'foo'), (['--x', 'foo'], 'foo'),
                                                (['--setup', 'nosuch'], 'nosuch'), (['--variation', 'foo=1'], 'foo'))):
            with self.subTest(words):
                done = self.run_desk('report', 'ladder', 'add', f'r{number}', '--y', 'dB(S(2,1))', *words)
                self.assertIn(f"'{name}'", done.stderr)
                self.assertIn(f"'{name}'", self.refuse(2, 'report', 'ladder', 'show', f'r{number}'))
        done = self.run_desk('report', 'ladder', 'add', 'good', '--y', 'dB(S(2,1))', '--over', 'c1')
        self.assertEqual(done.stderr, '')

    def test_before_anything_is_solved_quantities_may_come_yet(self):
        self.project()
        done = self.run_desk('report', 'ladder', 'add', 'r', '--y', 'V(out)', '--variation', 'Freq=1GHz')
        self.assertEqual(done.stderr, '')
        self.refuse(1, 'report', 'ladder', 'show', 'r')

    def test_an_expression_that_comes_to_mix_kinds_is_told_without_an_assertion(self):
        self.solved(FEW.replace('3g', '3g voltages=1g,2g'))
        lines = ['var add x=mag(S(1,1))', 'report add r --y x+mag(S(2,1)) --y mag(S(2,1))', 'report show r',
                 'var edit x=mag(V(out))', 'set c1=1.1', 'report show r', 'undo', 'undo', 'report show r']
        write('script.txt', '\n'.join(lines) + '\n')
        done = self.run_desk('shell', 'ladder', 'script.txt', '--json')
        self.assertNotIn('assertion', done.stderr)
        results = [json.loads(line)['result'] for line in done.stdout.splitlines()]
        self.assertEqual([row[1] for row in results[5]['rows']], [None] * 3)
        self.assertNotIn(None, [row[2] for row in results[5]['rows']])
        self.assertTrue(any('several kinds' in notice for notice in results[5]['notices']), results[5]['notices'])
        self.assertEqual(results[8]['rows'], results[2]['rows'])
        self.assertIn('several kinds', self.refuse(2, 'var', 'ladder', 'add', 'y=mag(V(out))+mag(S(2,1))'))

    def test_refusals_name_what_is_wrong_with_a_name(self):
        self.solved()
        for name, reason in {'pi': 'constant', '12': 'a number', 'c1': 'design variable', 'sin': 'function'}.items():
            with self.subTest(name):
                self.assertIn(reason, self.refuse(2, 'var', 'ladder', 'add', f'{name}=1+S(1,1)'))
        told = self.refuse(2, 'eval', 'ladder', 'dB(S(2,1))', '--solution', 'SParameters9')
        self.assertIn("solution 'SParameters9'", told)
        self.assertNotIn('report', told)

    def test_info_tells_the_words_of_a_setup(self):
        self.solved(FEW.replace('3g', '3g voltages=1g,2g'))
        self.assertIn('voltages=', self.run_desk('info', 'ladder').stdout)

    def test_help_tells_how_each_is_used(self):
        for verb, word in {'report': '--over', 'var': 'NAME=EXPRESSION', 'eval': '--variation'}.items():
            self.assertIn(word, self.run_desk(verb, '--help').stdout)

    def test_help_of_an_action_tells_of_it_alone(self):
        self.solved()
        show = self.run_desk('report', 'ladder', 'show', '--help').stdout
        self.assertIn('show gain --csv gain.csv', show)
        self.assertNotIn('remove gain', show)
        self.assertIn('var lowpass delete gain', self.run_desk('var', 'ladder', 'delete', '--help').stdout)

    def test_names_that_try_to_be_formats_stay_text(self):
        self.solved()
        names = ['%s%n{}<b>', '%d {0} %%', '{name!r}', '%1$s']
        for name in names:
            done = self.run_desk('report', 'ladder', 'add', name, '--y', 'dB(S(2,1))', '--over', 'c1')
            self.assertIn(f'report {name}: added', done.stdout)
        self.assertEqual([r['name'] for r in self.document('report', 'ladder', 'list')['reports']], names)
        listed = self.run_desk('report', 'ladder', 'list').stdout
        for number, name in enumerate(names):
            self.assertIn(name, listed)
            self.run_desk('report', 'ladder', 'show', name, '--csv', f'{number}.csv')
            self.assertEqual(len(read(f'{number}.csv').splitlines()), 1 + 3 * 3)
            self.assertEqual(self.document('report', 'ladder', 'show', name)['name'], name)
        self.run_desk('save', 'ladder')
        for unknown in ('%s%s%n', '{}{1}'):
            self.assertIn(unknown + ': the project has no report of that name',
                          self.refuse(2, 'report', 'ladder', 'show', unknown))
            self.assertIn(unknown, self.refuse(2, 'eval', 'ladder', 'S(2,1)', '--over', unknown))
            self.assertIn(unknown, self.refuse(2, 'var', 'ladder', 'add', unknown + '=1'))
            self.assertIn(unknown, self.refuse(2, 'eval', 'ladder', 'mag(S(2,1))', '--solution', unknown))
        for name in names:
            self.assertIn(f'report {name}: removed', self.run_desk('report', 'ladder', 'remove', name).stdout)
        self.assertEqual(self.document('report', 'ladder', 'list')['reports'], [])

    def test_kept_numbers_take_about_the_room_of_the_numbers_written_out(self):
        self.solved(LADDER)
        self.run_shell(['report add s --y S(2,1) --y dB(S(1,1)) --over c1,l2', 'report show s --csv s.csv', 'save'])
        ratio = os.path.getsize(self.kept_numbers()) / os.path.getsize('s.csv')
        self.assertTrue(0.8 < ratio < 2, ratio)

    def test_a_variable_that_runs_and_stands_is_refused_when_a_report_is_defined(self):
        self.solved()
        for words in (('--over', 'c1'), ('--x', 'c1'), ('--x', '2*c1')):
            self.assertIn('runs over its solved values', self.refuse(
                2, 'report', 'ladder', 'add', 'bad', '--y', 'max(S(2,1))', '--variation', 'C1=0.9', *words))
        self.run_desk('report', 'ladder', 'add', 'good', '--y', 'max(dB(S(2,1)))', '--x', 'c1', '--variation', 'l2=0.9')
        self.refuse(2, 'report', 'ladder', 'edit', 'good', '--over', 'l2')
        self.assertEqual([r['name'] for r in self.document('report', 'ladder', 'list')['reports']], ['good'])

    def test_samples_that_no_column_tells_apart_are_noted(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'r', '--x', 'l2', '--y', 'dB(S(2,1))', '--over', 'c1')
        note, = self.document('report', 'ladder', 'show', 'r')['notices']
        self.assertIn('report r: each value of l2 has 3 rows, as y runs over Freq, which is not shown', note)
        self.run_desk('report', 'ladder', 'edit', 'r', '--variation', 'Freq=1GHz')
        self.assertEqual(self.document('report', 'ladder', 'show', 'r')['notices'], [])
        self.run_desk('report', 'ladder', 'add', 'n', '--x', 'l2', '--y', 'max(dB(S(2,1)))', '--over', 'c1')
        self.assertEqual(self.document('report', 'ladder', 'show', 'n')['notices'], [])


if __name__ == '__main__':
    unittest.main()
