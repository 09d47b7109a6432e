"""Studies: linked variables, points of a file, samples, and what can't be a study."""
import json
import unittest

from _solvedesk import SETUP, SMALL, DeskTest, files_below, read, write

USAGE = 2


class Studies(DeskTest):
    def values(self):
        """The solved points as {(cap, res)}."""
        pairs = [dict(part.split('=') for part in text.split('; ')) for text in self.variations('small')]
        return {(float(pair['cap']), float(pair['res'])) for pair in pairs}

    def solve(self, *words, **options):
        return self.document('solve', 'small', *words, **options)

    def test_names_in_one_word_run_together(self):
        self.small_project()
        done = self.solve('--vary', 'res=1,2,3,cap=1p:3p:1p')
        self.assertEqual((done['points'], done['stored']), (3, 3))
        self.assertEqual(self.values(), {(1e-12, 1), (2e-12, 2), (3e-12, 3)})

    def test_linked_words_and_others_make_a_grid(self):
        self.small_project('small', SMALL.replace('res=50', 'res=50 extra=1'))
        done = self.solve('--vary', 'res=1,2,cap=3,4', '--vary', 'extra=5,6,7')
        self.assertEqual(done['stored'], 6)

    def test_points_of_a_file_are_solved_and_valid_ones_are_not_solved_again(self):
        self.small_project()
        write('points.csv', '# corners\r\nRES,"cap"\r\n10,1p\r\n\r\n20, 2pF\r\n')
        self.assertEqual(self.solve('--points', 'points.csv')['stored'], 2)
        self.assertEqual(self.values(), {(1e-12, 10), (2e-12, 20)})
        write('points.csv', 'res,cap\n10,1p\n30,3p\n')
        done = self.solve('--points', 'points.csv')
        self.assertEqual((done['points'], done['already_valid'], done['stored']), (2, 1, 1))

    def test_repeated_points_count_once_and_are_told_with_their_lines(self):
        self.small_project()
        write('points.csv', 'res\n10\n20\n1e1\n10.0\n')
        run = self.run_desk('solve', 'small', '--points', 'points.csv', '--json')
        done = json.loads(run.stdout)
        self.assertEqual((done['points'], done['repeated'], done['stored']), (2, 2, 2))
        self.assertIn('points.csv:4: is the same point as points.csv:2', run.stderr)
        self.assertIn('points.csv:5', run.stderr)

    def test_the_same_seed_gives_the_same_points(self):
        self.small_project()
        words = ('--vary', 'res=10:20', '--vary', 'cap=1p:2p', '--sample', '8')
        self.assertEqual(self.solve(*words, '--seed', '5')['stored'], 8)
        self.assertEqual(self.solve(*words, '--seed', '5')['already_valid'], 8)
        self.assertEqual(self.solve(*words, '--seed', '6')['already_valid'], 0)
        first = [res for cap, res in self.values()]
        self.assertTrue(all(10 <= res <= 20 for res in first))

    def test_a_sample_has_one_point_in_each_piece_of_each_range(self):
        self.small_project()
        self.solve('--vary', 'res=10:20', '--vary', 'cap=1:2', '--sample', '10')
        self.assertEqual(sorted(int(res) for _, res in self.values()), list(range(10, 20)))
        self.assertEqual(sorted(int(cap * 10) for cap, _ in self.values()), list(range(10, 20)))

    def test_a_sample_and_a_list_make_a_grid(self):
        self.small_project()
        self.assertEqual(self.solve('--vary', 'res=10:20', '--vary', 'cap=1p,2p', '--sample', '3')['stored'], 6)

    def test_impossible_studies_are_refused_before_anything_is_solved(self):
        self.small_project()
        write('unknown.csv', 'res,rse\n1,2\n')
        write('ragged.csv', 'res,cap\n1,2\n1\n')
        write('words.csv', 'res\n1\nfast\n')
        write('empty.csv', 'res\n')
        refused = {('--points', 'none.csv'): ['none.csv'],
                   ('--points', 'unknown.csv'): ['unknown.csv:1', 'rse', 'cap, res'],
                   ('--points', 'ragged.csv'): ['ragged.csv:3'],
                   ('--points', 'words.csv'): ['words.csv:3', "'fast'"],
                   ('--points', 'empty.csv'): ['no points'],
                   ('--vary', 'res=1,2,cap=1,2,3'): ['equally many'],
                   ('--vary', 'res=1:2'): ['A:B:STEP', '--sample'],
                   ('--sample', '5'): ['--vary'],
                   ('--sample', '0', '--vary', 'res=1:2'): ['--sample'],
                   ('--sample', '20000000', '--vary', 'res=1:2'): ['2000000'],
                   ('--sample', 'some', '--vary', 'res=1:2'): ['--sample'],
                   ('--seed', '5'): ['--sample'],
                   ('--vary', 'res=1:1000000:1', '--vary', 'cap=1:1000000:1'): ['1000000000000 points', '2000000'],
                   ('--vary', 'res=1:1e12:1'): ['2000000'],
                   ('--points', 'ragged.csv', '--vary', 'res=1'): ['ragged.csv:3']}
        for words, parts in refused.items():
            with self.subTest(words):
                message = self.refuse(USAGE, 'solve', 'small', *words)
                for part in parts:
                    self.assertIn(part, message)
        write('points.csv', 'res\n1\n')
        self.assertIn('twice', self.refuse(USAGE, 'solve', 'small', '--points', 'points.csv', '--vary', 'res=1'))
        self.assertEqual(self.variations('small'), {})

    def test_a_dry_run_counts_what_would_be_solved_and_changes_nothing(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=40,50')
        before = {name: read(name) for name in files_below() if not name.endswith('.lock')}
        forecast = self.document('solve', 'small', '--vary', 'res=30:60:10', '--dry-run')
        self.assertEqual((forecast['points'], forecast['to_solve'], forecast['already_valid']), (4, 2, 2))
        self.assertEqual(self.run_desk('solve', 'small', '--vary', 'res=30:60:10', '--dry-run', '--again').stdout,
                         '4 points: 4 would be solved, 0 valid already\n')
        self.assertEqual(self.document('solve', 'small', '--stale', '--dry-run')['points'], 0)
        self.refuse(2, 'solve', 'small', '--dry-run', '--events')
        self.assertEqual({name: read(name) for name in files_below() if not name.endswith('.lock')}, before)
        done = self.document('solve', 'small', '--vary', 'res=30:60:10')
        self.assertEqual((done['points'], done['stored'], done['already_valid']), (4, 2, 2))
        self.run_desk('setup', 'small', 'edit', SETUP, 'lin', '5', '1meg', '1g')
        self.assertEqual(self.document('solve', 'small', '--stale', '--dry-run')['to_solve'], 4)


if __name__ == '__main__':
    unittest.main()
