"""A point whose data is damaged: refused with the remedy, and the remedy works."""
import glob
import json
import shlex
import subprocess
import unittest

from _qsol import QSOL
from _solvedesk import DeskTest, index_of, read

POINTS = ('--vary', 'res=1,2,3')


class SolveAgain(DeskTest):
    def verify(self, code):
        library, = glob.glob('small.results/small.qsol')
        done = subprocess.run([QSOL, 'verify', library], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=60)
        self.assertEqual(done.returncode, code, done.stdout + done.stderr)
        return done.stdout

    def damaged(self):
        """A project of three points; one byte of the last data block is flipped."""
        self.small_project()
        self.run_desk('solve', 'small', *POINTS)
        listed = subprocess.run([QSOL, 'list', 'small.results/small.qsol', '--kind', 'data', '--variation',
                                 'cap=1e-12; res=3', '--json'], capture_output=True, text=True, check=True).stdout
        block, = json.loads(listed)['blocks']
        content = bytearray(read('small.results/small.qsol'))
        content[block['offset'] + block['bytes'] // 2] ^= 0x55
        with open('small.results/small.qsol', 'wb') as file:
            file.write(content)

    def test_damaged_data_is_refused_with_the_words_that_solve_it_anew(self):
        self.damaged()
        self.assertIn('--again', self.verify(1))
        self.assertEqual(self.document('solve', 'small', *POINTS)['already_valid'], 3)
        message = self.run_desk('touchstone', 'small', '--to', 'out', code=3).stderr.splitlines()[-1]
        words = shlex.split(message.split('anew: solvedesk ')[1])
        self.assertIn('res=3', words)
        done = self.document(*words)
        self.assertEqual((done['points'], done['already_valid'], done['stored']), (1, 0, 1))
        self.run_desk('touchstone', 'small', '--to', 'out')
        self.assertEqual(len(index_of('out')), 3)
        self.assertIn('fine', self.verify(0))

    def test_again_solves_valid_points_anew_and_others_too(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=1,2')
        done = self.document('solve', 'small', '--again', *POINTS)
        self.assertEqual((done['points'], done['already_valid'], done['stored'], done['saved']), (3, 0, 3, True))
        self.assertEqual(len(self.variations('small')), 3)


if __name__ == '__main__':
    unittest.main()
