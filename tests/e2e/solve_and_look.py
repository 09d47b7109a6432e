"""The main road: a project from a netlist, solved over its variables, saved, opened again, handed out, checked."""
import os
import unittest

from _solvedesk import LOWPASS, SETUP, SMALL, DeskTest, closed_form, files_below, index_of, write

GRID = ('--vary', 'cscale=0.9:1.1:0.05', '--vary', 'lscale=0.9:1.1:0.05')


class SolveAndLook(DeskTest):
    def new_lowpass(self):
        self.run_desk('new', 'lowpass', '--netlist', LOWPASS)

    def test_a_grid_is_solved_stored_opened_again_and_agrees_with_closed_forms(self):
        self.new_lowpass()
        self.run_desk('solve', 'lowpass', *GRID)
        variations = self.variations('lowpass')
        self.assertEqual(len(variations), 25)
        for state in variations.values():
            self.assertEqual((state['valid'], state['has_data'], state['saved']), (True, True, True))
        self.run_desk('touchstone', 'lowpass', '--to', 'results')
        files = list(closed_form.read_index('results'))
        self.assertEqual(len(files), 25)
        for path, values in files:
            points = closed_form.read_touchstone(path)
            self.assertEqual(len(points), 201)
            self.assertLess(closed_form.compare(points, values['cscale'], values['lscale']), 1e-10)

    def test_a_check_against_closed_forms_fails_on_wrong_values(self):
        self.new_lowpass()
        self.run_desk('solve', 'lowpass')
        self.run_desk('touchstone', 'lowpass', '--to', 'results')
        (path, values), = closed_form.read_index('results')
        points = closed_form.read_touchstone(path)
        self.assertGreater(closed_form.compare(points, values['cscale'] * (1 + 1e-8), values['lscale']), 1e-10)

    def test_values_of_a_range_are_decimals_and_its_end_belongs_to_it(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=0.9:1.1:0.05')
        self.assertEqual(set(self.variations('small')),
                         {f'cap=1e-12; res={value}' for value in ('0.9', '0.95', '1', '1.05', '1.1')})

    def test_a_range_ends_before_a_stop_that_no_step_reaches(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=1:2:0.3')
        self.assertEqual([v.split('res=')[1] for v in self.variations('small')], ['1', '1.3', '1.6', '1.9'])

    def test_lists_take_suffixes_and_units(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'cap=1p,2.2pF,3e-12')
        self.assertEqual({v.split(';')[0] for v in self.variations('small')}, {'cap=1e-12', 'cap=2.2e-12', 'cap=3e-12'})

    def test_without_vary_the_present_values_are_solved(self):
        self.small_project()
        self.run_desk('set', 'small', 'res=75')
        self.run_desk('solve', 'small')
        self.assertEqual([v.split('res=')[1] for v in self.variations('small')], ['75'])

    def test_what_is_valid_already_is_not_solved_again(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=10,20')
        again = self.document('solve', 'small', '--vary', 'res=10,20,30')
        self.assertEqual((again['points'], again['already_valid'], again['stored']), (3, 2, 1))
        self.assertIn('3 valid already', self.run_desk('solve', 'small', '--vary', 'res=10,20,30').stdout)

    def test_the_same_point_in_another_spelling_is_the_same_point(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=50.0')
        again = self.document('solve', 'small', '--vary', 'RES=5e1')
        self.assertEqual((again['already_valid'], again['stored']), (1, 0))

    def test_results_kept_back_are_there_unsaved_until_they_are_saved(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=10,20', '--no-save')
        for state in self.variations('small').values():
            self.assertEqual((state['valid'], state['has_data'], state['saved']), (True, True, False))
        self.assertTrue(self.document('info', 'small')['unsaved_changes'])
        self.assertTrue(self.document('save', 'small')['saved'])
        for state in self.variations('small').values():
            self.assertEqual((state['valid'], state['has_data'], state['saved']), (True, True, True))
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])
        self.assertFalse(self.document('save', 'small')['saved'])

    def test_variables_that_were_set_stay_set_without_a_save(self):
        self.small_project()
        self.run_desk('set', 'small', 'res=75', 'cap=2p')
        values = {v['name']: v['value'] for v in self.document('info', 'small')['design']['variables']}
        self.assertEqual(values, {'res': '75', 'cap': '2e-12'})

    def test_solved_points_stay_valid_when_a_variable_is_set(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=10,20')
        self.run_desk('set', 'small', 'res=30')
        self.assertTrue(all(state['valid'] for state in self.variations('small').values()))

    def test_one_setup_of_several_is_solved_when_it_is_named(self):
        self.small_project(netlist=SMALL.replace('.end', '.sp dec 2 1meg 100meg\n.end'))
        self.run_desk('solve', 'small', '--setup', 'sparameters2')
        self.assertEqual(len(self.variations('small', SETUP)), 0)
        self.assertEqual(len(self.variations('small', 'SParameters2')), 1)

    def test_info_shows_the_tree_to_people(self):
        self.small_project()
        self.run_desk('solve', 'small')
        text = self.run_desk('info', 'small').stdout
        for part in ('small.sproject', 'cap = 1e-12', 'res = 50', 'setup ' + SETUP, 'valid', 'saved', 'cap=1e-12; res=50'):
            self.assertIn(part, text)

    def test_a_project_works_from_another_folder(self):
        os.mkdir('there')
        write('there/c.cir', SMALL)
        self.run_desk('new', 'there/p', '--netlist', 'there/c.cir')
        os.chdir('there')
        self.run_desk('solve', 'p.sproject')
        os.chdir('..')
        self.assertEqual(len(self.variations('there/p')), 1)

    def test_a_saved_project_leaves_no_working_files(self):
        self.small_project()
        self.run_desk('solve', 'small')
        left = [name for name in files_below() if name.endswith(('.auto', '.qsol_priv'))]
        self.assertEqual(left, [])

    def test_quiet_says_nothing(self):
        self.small_project()
        done = self.run_desk('solve', 'small', '--quiet')
        self.assertEqual((done.stdout, done.stderr), ('', ''))

    def test_the_index_names_setup_and_variation_of_each_file(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=10,20')
        self.run_desk('touchstone', 'small', '--to', 'out')
        rows = index_of('out')
        self.assertEqual([list(row) for row in rows], [['file', 'setup', 'variation']] * 2)
        self.assertEqual({row['setup'] for row in rows}, {SETUP})
        self.assertEqual({row['variation'] for row in rows}, set(self.variations('small')))


if __name__ == '__main__':
    unittest.main()
