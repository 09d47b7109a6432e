"""info --why: the edit that made data stale, across saves and sessions, and remedies that work."""
import glob
import os
import shlex
import shutil
import unittest

from _solvedesk import SETUP, SMALL, DeskTest, write


class WhyStale(DeskTest):
    def why(self):
        """{variation: why} of the stale ones, and the solution's document."""
        solution = self.document('info', 'small', '--why')['setups'][0]['solutions'][0]
        return {v['variation']: v['why'] for v in solution['variations'] if 'why' in v}, solution

    def stale(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=40,50')
        self.run_desk('setup', 'small', 'edit', SETUP, 'lin', '21', '1meg', '1g')

    def carry_out(self, remedy):
        verb, *rest = shlex.split(remedy)
        return self.document(verb, 'small', *rest)

    def test_every_stale_point_names_the_edit_with_from_and_to_after_a_save_too(self):
        self.stale()
        before, _ = self.why()
        self.run_desk('save', 'small')
        after, _ = self.why()
        self.assertEqual(before, after)
        self.assertEqual(list(after), ['cap=1e-12; res=40', 'cap=1e-12; res=50'])
        why = after['cap=1e-12; res=40']
        self.assertEqual(why['command'], f'setup edit {SETUP} lin 21 1meg 1g')
        self.assertEqual(why['changes'], [{'what': f'setup {SETUP}', 'from': 'lin 11 1e+06 1e+09',
                                           'to': 'lin 21 1e+06 1e+09'}])

    def test_the_edit_back_and_the_solve_that_it_names_work(self):
        for index in (0, 1):
            self.stale()
            why, _ = self.why()
            remedies = why['cap=1e-12; res=40']['remedies']
            self.assertEqual(len(remedies), 2)
            self.carry_out(remedies[index])
            entries = self.document('info', 'small')['setups'][0]['solutions'][0]['variations']
            self.assertTrue(any(v['valid'] for v in entries if v['variation'] == 'cap=1e-12; res=40'), remedies[index])
            for name in ('small.sproject', 'small.results'):
                (shutil.rmtree if os.path.isdir(name) else os.remove)(name)
            for name in glob.glob('small.sproject.*'):
                os.remove(name)

    def test_a_reload_is_told_with_the_way_back(self):
        self.small_project()
        self.run_desk('solve', 'small')
        write('small.cir', SMALL.replace('C1 in 0 {cap}', 'C1 in 0 {cap}\nR2 in 0 100'))
        self.run_desk('reload', 'small')
        why, _ = self.why()
        reason = why['cap=1e-12; res=50']
        self.assertEqual(reason['command'], 'reload small.cir')
        self.assertRegex(reason['remedies'][0],
                         r'^put the former small.cir \(read 20\d\d-\d\d-\d\d [\d:]{8} UTC\) back and reload$')
        self.assertIn(reason['remedies'][0], self.run_desk('info', 'small', '--why').stdout)

    def test_what_a_reload_did_to_a_sweep_comes_back_with_the_netlist(self):
        self.small_project()
        self.run_desk('solve', 'small')
        write('small.cir', SMALL.replace('C1 in 0 {cap}', 'C1 in 0 {cap}\nR2 in 0 100').replace('lin 11', 'lin 21'))
        self.run_desk('reload', 'small')
        self.assertNotIn('setup edit', self.why()[0]['cap=1e-12; res=50']['remedies'][0])
        write('small.cir', SMALL)
        self.assertEqual(self.document('reload', 'small')['valid_points'], 1)

    def test_a_variable_that_a_reload_removed_is_told_with_a_remedy_that_works(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=40,50')
        write('small.cir', SMALL.replace(' res=50', '').replace('{res}', '50'))
        self.run_desk('reload', 'small')
        text = self.run_desk('info', 'small', '--why').stdout
        self.assertIn('2 points are stale since', text)
        self.assertIn('valid again by: put the former small.cir', text)
        self.assertNotIn('solve --', text)
        write('small.cir', SMALL)
        self.assertEqual(self.document('reload', 'small')['valid_points'], 2)

    def test_an_older_version_of_a_valid_point_is_history(self):
        self.stale()
        self.run_desk('solve', 'small', '--vary', 'res=40')
        text = self.run_desk('info', 'small', '--why').stdout
        self.assertIn('2 variations, 1 valid, 2 with data, 2 saved, 1 former version', text)
        self.assertIn('1 point is stale', text)
        self.assertEqual(list(self.why()[0]), ['cap=1e-12; res=50'])

    def test_the_solve_that_is_told_for_several_points_solves_just_these(self):
        self.stale()
        self.assertIn(f'solve --stale --setup {SETUP}', self.run_desk('info', 'small', '--why').stdout)
        done = self.document('solve', 'small', '--stale', '--setup', SETUP)
        self.assertEqual((done['points'], done['stored']), (2, 2))
        self.assertEqual(self.why()[0], {})
        self.assertEqual(self.document('solve', 'small', '--stale')['points'], 0)
        self.refuse(2, 'solve', 'small', '--stale', '--vary', 'res=1')

    def test_a_point_that_is_not_solved_tells_what_moved_it(self):
        self.small_project()
        self.run_desk('solve', 'small')
        self.run_desk('set', 'small', 'res=75')
        _, solution = self.why()
        point = solution['present_point']
        self.assertEqual((point['variation'], point['valid_before']), ('cap=1e-12; res=75', 'cap=1e-12; res=50'))
        self.assertEqual(point['why']['remedies'], ['set res=50', f'solve --setup {SETUP}'])
        text = self.run_desk('info', 'small', '--why').stdout
        self.assertIn("is not solved, since 'set res=75'", text)
        self.carry_out(point['why']['remedies'][0])
        self.assertNotIn('present_point', self.why()[1])

    def test_within_a_shell_undo_is_the_first_remedy(self):
        self.stale()
        write('script.txt', f'setup edit {SETUP} lin 31 1meg 1g\nset res=1\ninfo --why\n')
        text = self.run_desk('shell', 'small', 'script.txt').stdout
        self.assertIn('2 points are stale', text)
        self.assertIn('valid again by: setup edit', text, 'the edit is one of an earlier session')
        write('script.txt', f'setup edit {SETUP} lin 11 1meg 1g\nsetup edit {SETUP} lin 5 1meg 1g\nset res=2\n'
                            'info --why\n')
        self.assertIn('valid again by: undo 2; or setup edit', self.run_desk('shell', 'small', 'script.txt').stdout)

    def test_info_warns_when_the_netlist_is_newer_than_the_design(self):
        self.small_project()
        write('small.cir', SMALL + '* a remark\n')
        self.assertIn("until 'solvedesk reload'", self.run_desk('info', 'small').stderr)
        self.assertIn("'solvedesk reload'", self.refuse(4, 'solve', 'small'))


if __name__ == '__main__':
    unittest.main()
