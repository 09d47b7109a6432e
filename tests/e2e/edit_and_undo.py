"""Edits of a project: what becomes stale, and what makes it valid again without a solve."""
import json
import unittest

from _solvedesk import SETUP, SMALL, DeskTest, write

POINTS = ('--vary', 'res=40,50')


class EditAndUndo(DeskTest):
    def valid(self, project='small', setup=SETUP):
        """The valid points; one may be there at several versions."""
        setups = {entry['name']: entry for entry in self.document('info', project)['setups']}
        return [v['variation'] for v in setups[setup]['solutions'][0]['variations'] if v['valid']]

    def shell(self, *lines, code=0):
        """Runs lines in a shell; gives the documents of those that print one."""
        write('script.txt', '\n'.join(lines) + '\n')
        done = self.run_desk('shell', 'small', 'script.txt', '--json', code=code)
        return [json.loads(line) for line in done.stdout.splitlines()]

    def solved(self):
        self.small_project()
        self.run_desk('solve', 'small', *POINTS)
        self.assertEqual(len(self.valid()), 2)

    def test_an_edit_makes_points_stale_and_undo_makes_them_valid_without_a_solve(self):
        self.solved()
        edit, info, undo, after, redo = self.shell(f'setup edit {SETUP} lin 21 1meg 1g', 'info', 'undo', 'info', 'redo')
        self.assertEqual((edit['result']['valid_points_before'], edit['result']['valid_points']), (2, 0))
        self.assertEqual((undo['result']['valid_points_before'], undo['result']['valid_points']), (0, 2))
        self.assertEqual(redo['result']['valid_points'], 0)
        sweep = [document['result']['setups'][0]['sweeps'][0]['count'] for document in (info, after)]
        self.assertEqual(sweep, [21, 11])

    def test_undo_reaches_behind_a_save_and_a_solve(self):
        self.solved()
        self.shell(f'setup edit {SETUP} lin 21 1meg 1g', 'solve', 'save', 'undo')
        self.assertEqual(len(self.valid()), 2)
        self.run_desk('touchstone', 'small', '--to', 'out')

    def test_an_edit_that_leads_back_does_what_undo_does_in_a_later_session(self):
        self.solved()
        self.run_desk('setup', 'small', 'edit', SETUP, 'lin', '21', '1meg', '1g')
        self.run_desk('save', 'small')
        self.assertEqual(self.valid(), [])
        document = self.document('setup', 'small', 'edit', SETUP, 'lin', '11', '1e6', '1e9')
        self.assertEqual(document['valid_points'], 2)
        self.assertEqual(self.document('solve', 'small', *POINTS)['already_valid'], 2)

    def test_setups_are_added_renamed_solved_and_deleted(self):
        self.small_project()
        self.run_desk('setup', 'small', 'add', 'Fine', 'list', '1g', '2g')
        self.run_desk('setup', 'small', 'rename', 'Fine', 'Two points')
        self.assertEqual(self.document('solve', 'small', '--setup', 'Two points')['stored'], 1)
        self.assertEqual(len(self.valid(setup='Two points')), 1)
        self.run_desk('setup', 'small', 'delete', 'Two points')
        self.run_desk('save', 'small')
        self.assertEqual([setup['name'] for setup in self.document('info', 'small')['setups']], [SETUP])

    def test_an_invalidated_setup_is_solved_again(self):
        self.solved()
        self.run_desk('setup', 'small', 'invalidate', SETUP)
        self.assertEqual(self.document('solve', 'small', *POINTS)['already_valid'], 0)

    def test_deleted_data_comes_back_with_undo(self):
        self.solved()
        gone, undo = self.shell("delete --variation 'cap=1e-12; res=40'", 'undo')
        self.assertEqual(gone['result']['deleted_blocks'], 1)
        self.assertEqual(undo['result']['valid_points'], 2)
        self.run_desk('touchstone', 'small', '--to', 'out')
        self.run_desk('delete', 'small', '--variation', 'res=40; cap=1p')
        self.assertEqual(self.valid(), ['cap=1e-12; res=50'])

    def test_a_solve_that_stored_nothing_leaves_edits_unsaved(self):
        self.solved()
        self.run_desk('delete', 'small', '--variation', 'cap=1e-12; res=40')
        self.assertIn('nothing to save', self.run_desk('solve', 'small').stdout)
        self.run_desk('discard', 'small')
        self.assertEqual(len(self.valid()), 2)
        self.run_desk('set', 'small', 'cap=2e-12')
        self.assertIn('saved, with what was unsaved before', self.run_desk('solve', 'small').stdout)
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])

    def test_a_solve_of_which_all_points_failed_saves_nothing(self):
        self.small_project(netlist=SMALL.replace('R1 in 0 {res}', 'R1 in 0 {1/res}'))
        self.run_desk('set', 'small', 'res=0')
        self.run_desk('solve', 'small', code=5)
        self.assertTrue(self.document('info', 'small')['unsaved_changes'])
        self.run_desk('discard', 'small')
        self.assertEqual(self.document('info', 'small')['design']['variation'], 'cap=1e-12; res=50')

    def test_a_setup_without_its_solution_is_refused_and_edits_bring_it_back(self):
        for bring_back in (('reload', 'small'), ('setup', 'small', 'edit', SETUP, 'lin', '11', '1meg', '1g')):
            name = bring_back[0]
            self.solved() if name == 'reload' else None
            self.run_desk('delete', 'small', '--solution', 'Sweep')
            self.assertIn('setup edit', self.refuse(2, 'solve', 'small'))
            self.assertTrue(self.document(*bring_back)['changed'])
            self.assertEqual(self.document('solve', 'small')['stored'], 1, name)
            self.assertEqual(self.valid(), ['cap=1e-12; res=50'])

    def test_frequencies_that_can_be_read_in_two_ways_are_refused(self):
        self.small_project()
        self.assertIn('1MHz', self.refuse(2, 'setup', 'small', 'add', 'M', 'lin', '3', '1MHz', '2MHz'))
        self.assertIn('NAME=NEWNAME', self.refuse(2, 'set', 'small', '--rename', 'cap'))

    def test_a_renamed_variable_is_renamed_in_what_is_solved(self):
        self.solved()
        document = self.document('set', 'small', '--rename', 'res=r')
        self.assertEqual([v['name'] for v in document['variables']], ['cap', 'r'])
        self.assertEqual(sorted(self.valid()), ['cap=1e-12; r=40', 'cap=1e-12; r=50'])
        self.run_desk('touchstone', 'small', '--to', 'out')

    def test_reload_takes_a_changed_circuit_over_as_one_edit(self):
        self.solved()
        write('small.cir', SMALL.replace('C1 in 0 {cap}', 'C1 in 0 {cap}\nR2 in 0 100'))
        self.refuse(4, 'solve', 'small')
        info, reload, undo = self.shell('info', 'reload', 'undo')
        self.assertTrue(info['result']['source']['changed'])
        self.assertEqual((reload['result']['valid_points_before'], reload['result']['valid_points']), (2, 0))
        self.assertEqual(undo['result']['valid_points'], 2)
        self.run_desk('reload', 'small')
        self.assertEqual(self.document('solve', 'small', *POINTS)['stored'], 2)
        write('small.cir', SMALL)
        self.assertEqual(self.document('reload', 'small')['valid_points'], 2)

    def test_reload_of_values_sweeps_and_remarks_leaves_points_valid(self):
        self.solved()
        write('small.cir', SMALL.replace('res=50', 'res=75 ; a remark').replace('.end', '.sp list 3g\n.end'))
        document = self.document('reload', 'small')
        self.assertEqual(document['valid_points'], 2)
        self.assertEqual(self.document('info', 'small')['design']['variation'], 'cap=1e-12; res=75')
        self.assertEqual(len(self.document('info', 'small')['setups']), 2)

    def test_a_netlist_that_did_not_change_is_told_so(self):
        self.small_project()
        self.assertFalse(self.document('reload', 'small')['changed'])

    def test_refusals_name_thing_and_remedy(self):
        self.small_project()
        for words, thing in ((('setup', 'small', 'edit', 'None', 'lin', '1', '1', '1'), SETUP),
                             (('setup', 'small', 'edit', SETUP, 'lin', '1', '9', '2'), 'exchange the two'),
                             (('setup', 'small', 'edit', SETUP), 'words are missing'),
                             (('setup', 'small', 'add', SETUP, 'list', '1g'), 'already'),
                             (('setup', 'small', 'turn', SETUP), 'turn'),
                             (('setup', 'small', 'delete', SETUP, 'now'), 'takes no words'),
                             (('delete', 'small'), '--solution'),
                             (('delete', 'small', '--variation', 'res=1'), 'info'),
                             (('set', 'small'), 'NAME=VALUE'),
                             (('set', 'small', '--remove', 'x'), 'cap, res')):
            self.assertIn(thing, self.refuse(2, *words), words)


if __name__ == '__main__':
    unittest.main()
