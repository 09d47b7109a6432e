"""Adaptive sweeps: asked for in a netlist or by the words of a setup, solved, kept, handed out."""
import os
import unittest

from _solvedesk import SOURCE, DeskTest, files_below, read, write

BANDPASS = os.path.join(SOURCE, 'examples', 'bandpass', 'bandpass.cir')
WORDS = ('lin', '2001', '0.95g', '1.05g')


def rows_of(folder, setup):
    """The lines of the setup's one Touchstone file: comments, and numbers."""
    name = next(name for name in files_below(folder) if name.startswith(setup + '_'))
    lines = read(os.path.join(folder, name)).decode().splitlines()
    return ([line for line in lines if line.startswith('!')],
            [[float(word) for word in line.split()] for line in lines if line[0] not in '!#'])


class AdaptiveSweeps(DeskTest):
    def sweep_of(self, setup):
        return next(entry['sweep'] for entry in self.document('info', 'filter')['setups'] if entry['name'] == setup)

    def test_a_netlist_may_ask_for_one(self):
        self.run_desk('new', 'filter', '--netlist', BANDPASS)
        self.run_desk('solve', 'filter')
        self.run_desk('touchstone', 'filter', '--to', 'out')
        comments, rows = rows_of('out', 'SParameters1')
        self.assertEqual(len(rows), 10001)
        self.assertTrue(any('of 10001 points solved, the others fitted' in line for line in comments), comments)
        self.assertTrue(any(', converged' in line for line in comments), comments)

    def test_it_gives_what_a_direct_sweep_gives(self):
        self.run_desk('new', 'filter', '--netlist', BANDPASS)
        self.run_desk('setup', 'filter', 'add', 'Direct', *WORDS)
        self.run_desk('setup', 'filter', 'add', 'Adaptive', *WORDS, 'adaptive', 'target=1e-6', 'passes=3')
        self.run_desk('solve', 'filter', '--setup', 'Direct', '--setup', 'Adaptive')
        self.run_desk('touchstone', 'filter', '--to', 'out')
        _, direct = rows_of('out', 'Direct')
        _, adaptive = rows_of('out', 'Adaptive')
        self.assertEqual(len(direct), 2001)
        for exact, fitted in zip(direct, adaptive, strict=True):
            for left, right in zip(exact, fitted, strict=True):
                self.assertAlmostEqual(left, right, delta=1e-6)

    def test_one_that_is_bounded_too_tightly_says_so_and_keeps_its_best(self):
        self.run_desk('new', 'filter', '--netlist', BANDPASS)
        self.run_desk('setup', 'filter', 'edit', 'SParameters1', *WORDS, 'adaptive', 'most=12')
        solved = self.document('solve', 'filter')
        self.assertEqual((solved['stored'], solved['not_converged']), (1, 1))
        self.assertIn('1 not converged', self.run_desk('solve', 'filter', '--again').stdout)
        self.run_desk('touchstone', 'filter', '--to', 'out')
        comments, rows = rows_of('out', 'SParameters1')
        self.assertEqual(len(rows), 2001)
        self.assertTrue(any('12 of 2001 points' in line and 'NOT converged' in line for line in comments), comments)

    def test_another_target_makes_stale_and_the_former_one_valid_again(self):
        self.run_desk('new', 'filter', '--netlist', BANDPASS)
        self.run_desk('setup', 'filter', 'edit', 'SParameters1', *WORDS, 'adaptive')
        self.run_desk('solve', 'filter')
        self.run_desk('setup', 'filter', 'edit', 'SParameters1', *WORDS, 'adaptive', 'target=1e-8')
        self.assertEqual([entry['valid'] for entry in self.variations('filter').values()], [False])
        self.run_desk('setup', 'filter', 'edit', 'SParameters1', *WORDS, 'adaptive', 'target=1e-5', 'passes=2')
        self.assertEqual([entry['valid'] for entry in self.variations('filter').values()], [True])

    def test_senseless_words_are_refused_with_the_remedy(self):
        self.run_desk('new', 'filter', '--netlist', BANDPASS)
        for words in (('adaptive', 'target=0'), ('adaptive', 'speed=3'), ('direct', 'target=1e-3')):
            self.refuse(2, 'setup', 'filter', 'add', 'Bad', *WORDS, *words)


if __name__ == '__main__':
    unittest.main()
