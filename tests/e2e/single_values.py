"""Single values: eval, output variables, ports, samples that are named, what is refused and why."""
import unittest

from _reports import FEW, LADDER, ReportTest
from _solvedesk import SETUP


class SingleValues(ReportTest):
    def test_output_variables_are_used_like_quantities_and_follow_their_rules(self):
        self.solved()
        self.run_desk('var', 'ladder', 'add', 'gain=dB(S(2,1))')
        self.run_desk('var', 'ladder', 'add', 'more=gain+20')
        self.assertEqual(self.document('var', 'ladder', 'list')['variables'],
                         [{'name': 'gain', 'expression': 'dB(S(2,1))'}, {'name': 'more', 'expression': 'gain+20'}])
        self.assertIn('refers to it', self.refuse(2, 'var', 'ladder', 'delete', 'gain'))
        self.run_desk('report', 'ladder', 'add', 'v', '--y', 'gain', '--y', 'more')
        for _, gain, more in self.rows('v'):
            self.assertAlmostEqual(more, gain + 20)
        self.assertIn('already', self.refuse(2, 'var', 'ladder', 'add', 'GAIN=1+S(2,1)'))
        self.assertIn('refer to itself', self.refuse(2, 'var', 'ladder', 'edit', 'gain=more*2'))
        self.assertIn('quantity', self.refuse(2, 'var', 'ladder', 'add', 'S(2,1)=1+S(1,1)'))
        self.assertIn('one single word', self.refuse(2, 'var', 'ladder', 'add', 'a b=S(1,1)'))
        self.assertIn('nothing', self.refuse(2, 'var', 'ladder', 'add', 'x=S(1,1)+nothing'))
        for words in (['add', 'gain'], ['add', 'x='], ['delete'], ['list', 'x'], ['turn', 'x=1']):
            self.refuse(2, 'var', 'ladder', *words)

    def test_eval_gives_a_number_a_curve_or_a_row_for_each_variation(self):
        self.solved()
        self.run_desk('var', 'ladder', 'add', 'gain=dB(S(2,1))')
        curve = self.document('eval', 'ladder', 'gain')['rows']
        self.assertEqual([row[0] for row in curve], [1e9, 2e9, 3e9])
        best = self.document('eval', 'ladder', 'max(gain)')['rows']
        self.assertEqual(best, [[max(row[1] for row in curve)]])
        one = self.document('eval', 'ladder', 'gain', '--variation', 'Freq=2GHz')['rows']
        self.assertEqual([row[-1] for row in one], [curve[1][1]])
        over = self.document('eval', 'ladder', 'max(gain)', '--over', 'c1', '--variation', 'l2=0.9')['rows']
        self.assertEqual([row[0] for row in over], [0.9, 1, 1.1])
        named = self.document('eval', 'ladder', 'max(gain)', '--solution', SETUP)['rows']
        self.assertEqual(named, best)
        self.refuse(2, 'eval', 'ladder', 'max(gain', )
        self.refuse(2, 'eval', 'ladder', 'gain', '--solution', 'None')
        self.refuse(2, 'eval', 'ladder', 'gain', '--variation', 'x=1')
        self.assertIn("'x' is no design variable", self.refuse(2, 'eval', 'ladder', 'gain', '--over', 'x'))
        for words in (('--over', 'c1,l2', '--variation', 'l2=0.9'), ('--over', 'l2', '--variation', 'c1=1; L2=0.9')):
            self.assertIn("'l2' runs over its solved values", self.refuse(2, 'eval', 'ladder', 'gain', *words))
        self.refuse(2, 'eval', 'ladder', '')

    def test_a_port_impedance_reaches_the_traces_that_hang_on_it_and_makes_nothing_stale(self):
        self.solved()
        self.run_desk('report', 'ladder', 'add', 'p', '--y', 'mag(S(1,1))', '--y', 'mag(Z(1,1))', '--y', 'c1')
        lines = self.run_shell(['report show p', 'port V1=75', 'report show p', 'undo', 'report show p', 'port'])
        results = [line['result'] for line in lines]
        self.assertEqual(results[1]['reports'], [{'report': 'p', 'to_be_updated': 1, 'traces': 3}])
        self.assertEqual(results[1]['valid_points'], results[1]['valid_points_before'])
        self.assertEqual(results[2]['updated_traces'], 1)
        for before, after in zip(results[0]['rows'], results[2]['rows'], strict=True):
            self.assertNotAlmostEqual(before[1], after[1])
            self.assertEqual(before[2:], after[2:])
        self.assertEqual(results[4]['rows'], results[0]['rows'])
        self.assertEqual([port['shown'] for port in results[5]['ports']], [50, 50])
        self.run_desk('port', 'ladder', 'V2=75')
        self.run_desk('save', 'ladder')
        self.assertEqual([port['shown'] for port in self.document('port', 'ladder')['ports']], [50, 75])
        for words in (['V9=75'], ['V1=0'], ['V1=-5'], ['V1=x'], ['V1']):
            self.refuse(2, 'port', 'ladder', *words)

    def shown_ports(self):
        return [port['shown'] for port in self.document('port', 'ladder')['ports']]

    def test_a_port_impedance_is_unsaved_work_that_the_next_process_goes_on_with(self):
        self.solved()
        self.run_desk('save', 'ladder')
        self.run_desk('port', 'ladder', 'V2=75')
        self.assertEqual(self.shown_ports(), [50, 75])
        self.assertIn('unsaved changes', self.run_desk('info', 'ladder').stdout.splitlines()[0])
        self.assertEqual(self.document('eval', 'ladder', 'Zo(2)', '--variation', 'Freq=1GHz')['rows'][0][0], 75)
        self.run_desk('discard', 'ladder')
        self.assertEqual(self.shown_ports(), [50, 50])
        self.run_desk('port', 'ladder', 'V2=75')
        self.run_desk('save', 'ladder')
        self.assertEqual(self.shown_ports(), [50, 75])
        self.assertNotIn('unsaved', self.run_desk('info', 'ladder').stdout.splitlines()[0])
        self.run_desk('port', 'ladder', 'V2=solved')
        self.assertEqual(self.shown_ports(), [50, 50])
        self.run_desk('discard', 'ladder')
        self.assertEqual(self.shown_ports(), [50, 75])
        self.run_desk('port', 'ladder', 'V2=solved')
        self.run_desk('save', 'ladder')
        self.assertEqual(self.shown_ports(), [50, 50])
        self.assertEqual(self.run_desk('discard', 'ladder').returncode, 0)
        self.assertEqual(self.shown_ports(), [50, 50])

    def voltage(self, expression='mag(V(out))', at='Freq=2GHz'):
        return self.document('eval', 'ladder', expression, '--variation', at)['rows'][0][0]

    def test_node_voltages_stay_known_beside_output_variables(self):
        self.solved(FEW.replace('3g', '3g voltages=1g,2g'))
        there = self.voltage()
        self.run_desk('var', 'ladder', 'add', 'x=1+c1')
        self.assertEqual(self.voltage(), there)
        self.run_desk('var', 'ladder', 'edit', 'x=max(mag(V(out)))')
        self.assertGreaterEqual(self.document('eval', 'ladder', 'x')['rows'][0][0], there)

    def test_voltages_run_over_their_own_frequencies(self):
        self.solved(FEW.replace('3g', '3g voltages=1.5g,2.5g'))
        one = self.voltage(at='Freq=1.5GHz')
        rows = self.document('eval', 'ladder', 'mag(V(out))')['rows']
        self.assertEqual([row[0] for row in rows], [1.5e9, 2.5e9])
        self.assertEqual(rows[0][1], one)
        self.assertIn('no such sample', self.refuse(2, 'eval', 'ladder', 'dB(S21)', '--variation', 'Freq=1.5GHz'))
        self.assertIn('no such sample', self.refuse(2, 'eval', 'ladder', 'V(out)', '--variation', 'Freq=1GHz'))
        rows = self.document('eval', 'ladder', 'mag(V(out))', '--over', 'c1')['rows']
        self.assertEqual([row[1] for row in rows], [1.5e9, 2.5e9] * 3)

    def test_names_that_mean_something_else_cant_name_an_output_variable(self):
        self.solved()
        for name in ('dB', 'bandwidth', 'KFACTOR', 'MaxGain', 'IL', 'rl'):
            with self.subTest(name):
                told = self.refuse(2, 'var', 'ladder', 'add', f'{name}=7')
                self.assertIn('choose another name', told)
        self.assertEqual(self.document('var', 'ladder', 'list')['variables'], [])

    def test_quantities_of_two_kinds_in_one_expression_are_refused(self):
        self.project(FEW.replace('.sp lin 3 1g 3g', '.sp lin 3 1g 3g voltages=1g'))
        self.run_desk('solve', 'ladder', '--quiet')
        for expression in ('mag(V(out))+mag(S(2,1))', 'max(mag(V(out)))*max(mag(S(2,1)))'):
            told = self.refuse(2, 'eval', 'ladder', expression)
            self.assertIn('kinds', told)
            self.assertNotIn('assertion', told)

    def test_what_isnt_solved_is_told_with_the_solve_that_brings_it(self):
        self.solved()
        told = self.refuse(1, 'eval', 'ladder', 'dB(S(2,1))', '--variation', 'c1=2; Freq=1GHz')
        self.assertIn('nothing is solved at c1=2', told)
        self.assertIn('`solvedesk solve ladder --vary c1=2`', told)
        self.run_desk('solve', 'ladder', '--vary', 'c1=2', '--quiet')
        self.run_desk('eval', 'ladder', 'dB(S(2,1))', '--variation', 'c1=2; Freq=1GHz')
        done = self.run_desk('eval', 'ladder', 'max(dB(S(2,1)))', '--over', 'c1,l2')
        self.assertIn('1 variation has no solved data: c1=2; l2=0.9; '
                      '`solvedesk solve ladder --vary c1=2 --vary l2=0.9` solves it', done.stderr)

    def test_values_that_are_no_numbers_are_refused(self):
        self.solved()
        for value, reason in {'abc': 'is no number', '3m': 'two ways'}.items():
            self.assertIn(reason, self.refuse(2, 'eval', 'ladder', 'dB(S(2,1))', '--variation', f'c1={value}'))

    def test_an_output_variable_that_leads_back_to_itself_is_told(self):
        self.solved()
        for words in ('gain=dB(S(2,1))', 'more=gain+20', 'other=dB(S(1,1))'):
            self.run_desk('var', 'ladder', 'add', words)
        self.run_desk('report', 'ladder', 'add', 'r', '--y', 'other', '--y', 'more')
        self.run_desk('save', 'ladder')
        self.change_project_file('"dB(S(2,1))"', '"1+More"')
        for expression in ('gain', 'max(gain)', '2*more'):
            told = self.refuse(2, 'eval', 'ladder', expression)
            self.assertRegex(told, r"'(gain|more)' refers to itself: (gain -> more -> gain|more -> gain -> more); "
                                   r"edit it with `var edit`")
        done = self.run_desk('report', 'ladder', 'show', 'r')
        self.assertIn("report r: 'more' can't be evaluated: 'more' refers to itself", done.stderr)
        self.assertEqual([row[2] for row in self.rows('r')], [None] * 3)
        self.assertNotIn(None, [row[1] for row in self.rows('r')])
        self.run_desk('var', 'ladder', 'edit', 'gain=dB(S(2,1))')
        self.assertNotIn(None, [row[2] for row in self.rows('r')])

    def test_a_sample_is_met_by_its_round_number_and_to_one_part_in_a_billion(self):
        self.project(LADDER)
        self.run_desk('solve', 'ladder', '--quiet')
        curve = dict(self.document('eval', 'ladder', 'mag(S(2,1))')['rows'])
        for number in range(1, 202):
            frequency = f'{number / 100:.2f}GHz'
            if number % 40 == 0 or number == 105:
                at = self.document('eval', 'ladder', 'mag(S(2,1))', '--variation', f'Freq={frequency}')['rows']
                self.assertEqual([row[-1] for row in at], [curve[number * 10_000_000]], frequency)
        for near in ('1.0500000005GHz', '1.0499999995GHz'):
            at = self.document('eval', 'ladder', 'mag(S(2,1))', '--variation', f'Freq={near}')['rows']
            self.assertEqual([row[-1] for row in at], [curve[1_050_000_000]])
        for off in ('1.050000003GHz', '1.049999997GHz'):
            self.assertIn('there is no such sample',
                          self.refuse(2, 'eval', 'ladder', 'mag(S(2,1))', '--variation', f'Freq={off}'))

    def test_samples_that_lie_close_together_are_told_apart(self):
        self.project(FEW.replace('lin 3 1g 3g', 'lin 3 1g 1.000000005g'))
        self.run_desk('solve', 'ladder', '--quiet')
        samples = [row[0] for row in self.document('eval', 'ladder', 'mag(S(2,1))')['rows']]
        self.assertEqual(len(samples), 3)
        for sample in samples:
            at = self.document('eval', 'ladder', 'Freq', '--variation', f'Freq={sample!r}')['rows']
            self.assertEqual([row[-1] for row in at], [sample])

    def test_results_of_ranged_functions_tell_units(self):
        self.solved()
        self.run_desk('var', 'ladder', 'add', 'where=XAtYMax(dB(S(2,1)))')
        units = {expression: self.document('eval', 'ladder', expression)['columns'][-1].get('unit')
                 for expression in ('where', 'XAtYMax(dB(S(2,1)))', 'max(dB(S(1,1)))', 'max(mag(S(1,1)))')}
        self.assertEqual(list(units.values()), ['Hz', 'Hz', 'dB', None], units)

    def test_a_single_number_is_one_row_whatever_was_shown_before(self):
        self.solved()
        shows = ['report add a --y Zo(1) --y dB(S(2,1)) --over c1', 'report show a', 'eval max(mag(S(2,1)))',
                 'report add b --y max(mag(S(2,1)))', 'report show b', 'eval max(mag(S(2,1)))',
                 'var add m=max(mag(S(2,1)))', 'report add c --y m --x c1', 'report show c', 'eval m']
        results = [line['result'] for line in self.run_shell(shows)]
        for index in (2, 5, 9):
            self.assertEqual(len(results[index]['rows']), 1)

    def test_ports_go_by_number_too(self):
        self.solved()
        self.run_desk('port', 'ladder', '2=75')
        self.assertEqual(self.shown_ports(), [50, 75])
        for word in ('0=75', '3=75', 'V1=1e300', 'V1=1e-300'):
            self.refuse(2, 'port', 'ladder', word)

    def test_infinite_numbers_are_words_in_json(self):
        self.solved()
        self.assertEqual(self.document('eval', 'ladder', '1/(0*mag(S(2,1)))')['rows'][0][1], 'inf')
        self.assertEqual(self.document('eval', 'ladder', '-1/(0*mag(S(2,1)))')['rows'][0][1], '-inf')

    def test_a_design_that_stands_where_nothing_is_solved_is_told_with_the_ways_out(self):
        self.solved()
        self.run_desk('set', 'ladder', 'l2=0.95')
        self.run_desk('report', 'ladder', 'add', 'r', '--y', 'max(dB(S(2,1)))', '--over', 'c1')
        told = self.refuse(1, 'eval', 'ladder', 'dB(S(2,1))', '--over', 'c1')
        self.assertIn('nothing is solved at l2=0.95, where the design stands; l2 is solved at 0.9, 1: '
                      '--variation "l2=0.9" stands there, --over l2 runs over all', told)
        self.assertIn('in `report edit` --variation "l2=0.9"', self.refuse(1, 'report', 'ladder', 'show', 'r'))
        given = self.refuse(1, 'eval', 'ladder', 'dB(S(2,1))', '--over', 'c1', '--variation', 'l2=3')
        self.assertIn('nothing is solved at l2=3; l2 is solved at 0.9, 1', given)
        self.assertIn('`solvedesk solve ladder --vary l2=3`', given)
        self.run_desk('set', 'ladder', 'c1=7')
        self.assertIn('c1=7; l2=0.95, where the design stands; c1 is solved at 0.9, 1, 1.1, l2 is solved at 0.9, 1',
                      self.refuse(1, 'eval', 'ladder', '1+1'))
        self.run_desk('eval', 'ladder', 'max(dB(S(2,1)))', '--over', 'c1', '--variation', 'l2=0.9')

    def test_a_sample_that_is_missing_is_told_with_its_neighbours(self):
        self.solved()
        told = self.refuse(2, 'eval', 'ladder', 'dB(S(2,1))', '--variation', 'Freq=1.5GHz')
        self.assertIn('the nearest are 1e+09 and 2e+09, and YAtXVal(dB(S(2,1)),1.5GHz) takes the value between them', told)
        self.run_desk('eval', 'ladder', 'YAtXVal(dB(S(2,1)),1.5GHz)')
        self.assertIn('a report over Freq', self.refuse(2, 'eval', 'ladder', 'dB(S(2,1))', '--variation', 'Freq=9GHz'))


if __name__ == '__main__':
    unittest.main()
