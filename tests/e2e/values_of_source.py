"""Values that the netlist itself has: a variable that is none of the project counts with its value there."""
import glob
import unittest

from _solvedesk import SETUP, SMALL, DeskTest, read, write


class ValuesOfSource(DeskTest):
    def states(self):
        """{variation: state} as info shows them."""
        document = self.document('info', 'small')
        return {v['variation']: 'former' if v['former'] else 'valid' if v['valid'] else 'stale'
                for v in document['setups'][0]['solutions'][0]['variations']}

    def exported(self, folder):
        self.run_desk('touchstone', 'small', '--to', folder, '--setup', SETUP)
        return {name.split(SETUP)[-1]: read(name) for name in glob.glob(f'{folder}/*.s1p')}

    def test_data_of_another_value_is_not_handed_out_for_the_netlists_value(self):
        self.small_project()
        self.run_desk('set', 'small', 'res=75')
        self.run_desk('solve', 'small')
        document = self.document('set', 'small', '--remove', 'res')
        self.assertEqual((document['valid_points_before'], document['valid_points']), (1, 0))
        self.assertIn({'what': 'value of res', 'from': '75', 'to': "50, the source's own"}, document['changes'])
        self.assertEqual(self.states(), {'cap=1e-12; res=75': 'stale'})
        self.assertIn('no solved and valid', self.refuse(1, 'touchstone', 'small', '--to', 'none'))
        self.assertEqual(self.document('solve', 'small')['stored'], 1)
        once = self.exported('once')
        self.run_desk('solve', 'small', '--again')
        self.assertEqual(self.exported('again'), once)

    def test_what_was_solved_at_the_netlists_value_stays_valid_and_comes_back(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=50,75')
        self.run_desk('set', 'small', '--remove', 'res')
        self.assertEqual(self.states(), {'cap=1e-12': 'valid', 'cap=1e-12; res=75': 'stale'})
        self.assertEqual(len(self.exported('out')), 1)
        self.run_desk('set', 'small', '--add', 'res=60')
        self.assertEqual(self.states(), {'cap=1e-12; res=50': 'valid', 'cap=1e-12; res=75': 'valid'})
        self.assertEqual(self.document('solve', 'small')['stored'], 1, 'nothing was solved at 60')

    def test_a_change_of_such_a_value_is_told_and_makes_data_stale(self):
        self.small_project()
        self.run_desk('set', 'small', '--remove', 'res')
        self.run_desk('solve', 'small')
        write('small.cir', SMALL.replace('res=50', 'res=75'))
        document = self.document('reload', 'small')
        self.assertEqual(document['changes'], [{'what': 'value of res in small.cir', 'from': '50', 'to': '75'}])
        self.assertEqual((document['valid_points_before'], document['valid_points']), (1, 0))
        self.assertEqual(self.document('solve', 'small')['stored'], 1)
        write('small.cir', SMALL)
        self.assertEqual(self.document('reload', 'small')['valid_points'], 1)
        self.assertEqual(self.document('solve', 'small')['already_valid'], 1)

    def test_a_project_without_variables_has_one_point(self):
        self.small_project()
        self.run_desk('set', 'small', '--remove', 'res', '--remove', 'cap')
        self.run_desk('solve', 'small')
        self.assertIn('(no variables)', self.run_desk('info', 'small').stdout)
        self.run_desk('touchstone', 'small', '--to', 'out')

    def test_why_tells_the_variable_and_what_brings_the_point_back(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=75')
        self.run_desk('set', 'small', '--remove', 'res')
        text = self.run_desk('info', 'small', '--why').stdout
        self.assertIn('since the design has no variable res', text)
        self.assertIn('valid again by: set --add res=75', text)
        self.run_desk('set', 'small', '--add', 'res=75')
        self.assertEqual(self.states(), {'cap=1e-12; res=75': 'valid'})


if __name__ == '__main__':
    unittest.main()
