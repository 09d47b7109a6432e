"""What a project has to tell of files that changed behind its back."""
import os
import unittest

from _solvedesk import SMALL, DeskTest, write


class Notices(DeskTest):
    def solved(self):
        self.small_project()
        self.run_desk('solve', 'small')

    def test_results_of_a_netlist_that_changed_are_shown_with_a_note(self):
        self.solved()
        before = self.document('info', 'small')
        self.assertFalse(before['source']['changed'])
        self.assertEqual(before['notices'], [])
        self.assertTrue(before['source']['path'].endswith('/small.cir'))
        self.assertTrue(before['library'].endswith('/small.results/small.qsol'))
        write('small.cir', SMALL.replace('R1 in 0 {res}', 'R1 in 0 {2*res}'))
        for words in (['info', 'small'], ['touchstone', 'small', '--to', 'out']):
            lines = self.run_desk(*words).stderr.splitlines()
            self.assertEqual(len(lines), 1, lines)
            self.assertIn('results are those of the source as it was read', lines[0])
            self.assertEqual(len(self.document(*words)['notices']), 1)
        self.assertTrue(self.document('info', 'small')['source']['changed'])
        os.remove('small.cir')
        self.assertIn('small.cir', self.run_desk('info', 'small').stderr)

    def test_bytes_behind_the_last_commit_are_told(self):
        self.solved()
        with open('small.results/small.qsol', 'ab') as file:
            file.write(b'x' * 17)
        lines = self.run_desk('info', 'small').stderr.splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertIn("small.qsol: 17 bytes behind the last commit don't count", lines[0])
        self.assertIn('17 bytes', self.document('info', 'small')['notices'][0])
        self.assertIn('17 bytes', self.run_desk('solve', 'small', '--vary', 'res=7').stderr)
        self.assertEqual(self.run_desk('info', 'small').stderr, '')
        self.assertEqual(len(self.variations('small')), 2)

    def test_one_of_a_thing_is_told_as_one(self):
        self.small_project()
        self.assertIn('1 point: 1 solved', self.run_desk('solve', 'small').stdout)
        self.assertIn('1 variation, 1 valid', self.run_desk('info', 'small').stdout)
        self.assertIn('1 file and', self.run_desk('touchstone', 'small', '--to', 'out').stdout)

    def test_saved_is_not_said_when_every_point_failed(self):
        self.small_project(netlist=SMALL.replace('R1 in 0 {res}', 'R1 in 0 {100/(res-20)}'))
        words = ('solve', 'small', '--vary', 'res=20')
        self.assertNotIn('saved', self.run_desk(*words, code=5).stdout)
        self.assertFalse(self.document(*words, code=5)['saved'])


if __name__ == '__main__':
    unittest.main()
