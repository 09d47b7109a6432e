"""qsol follow beside a real solve, and the other verbs that must not disturb one."""
import glob
import json
import os
import signal
import subprocess
import unittest

from _qsol import QSOL
from _solvedesk import SMALL, SOLVEDESK, DeskTest

SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 20001 1meg 1g')


class Follow(DeskTest):
    def library(self):
        found = {path.removesuffix('_priv') for path in glob.glob('slow.results/**/*.qsol*', recursive=True)
                 if 'ManagedFiles' not in path}
        self.assertEqual(len(found), 1, found)
        return found.pop()

    def start_solve(self, *words):
        return self.launch(SOLVEDESK, 'solve', 'slow', '--vary', 'res=1:40:1', '--events', *words)

    def start_follow(self, *words):
        """A follower that has begun."""
        process = self.launch(QSOL, 'follow', self.library(), '--json', *words)
        begin = json.loads(process.stdout.readline())
        self.assertEqual((begin['event'], begin['schema_version']), ('begin', 1))
        return process

    def end_of(self, process):
        out, err = self.finish(process)
        return [json.loads(line) for line in out.splitlines()], err

    def test_every_point_of_a_solve_is_told_once_and_the_end_is_seen(self):
        self.small_project('slow', SLOW)
        follow = self.start_follow('--kind', 'data')
        solve = self.start_solve()
        stored = [json.loads(line)['variation'] for line in solve.stdout if '"stored"' in line and 'variation' in line]
        self.assertEqual(solve.wait(240), 0, solve.stderr.read())
        events, err = self.end_of(follow)
        self.assertEqual((follow.returncode, err), (0, ''))
        told = [event['variation'] for event in events if event['event'] == 'block']
        self.assertEqual(len(told), 40, [(e["event"], e.get("variation"), e.get("where"), e.get("offset")) for e in events])
        self.assertEqual(sorted(told), sorted(set(told)))
        self.assertEqual(set(stored), set(told))
        self.assertEqual(events[-1], {'event': 'end', 'why': 'closed in order'})

    def test_a_writer_that_is_killed_is_told(self):
        self.small_project('slow', SLOW)
        solve = self.start_solve()
        self.assertTrue(solve.stdout.readline())
        follow = self.start_follow()
        self.assertEqual(json.loads(follow.stdout.readline())['event'], 'block')
        os.kill(solve.pid, signal.SIGKILL)
        solve.wait()
        events, err = self.end_of(follow)
        self.assertEqual(follow.returncode, 1)
        self.assertIn('went without closing it', err)
        self.assertEqual(events[-1]['why'], 'left by a crash')
        done = subprocess.run([QSOL, 'compact', self.library()], capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertIn('a crash left', done.stderr)

    def test_a_library_that_is_being_written_is_not_rewritten_and_can_be_compared_and_extracted(self):
        self.small_project('slow', SLOW)
        solve = self.start_solve()
        self.assertTrue(solve.stdout.readline())
        for words in (['compact', '--commit'], ['convert', '--to', 'text']):
            done = subprocess.run([QSOL, words[0], self.library(), *words[1:]], capture_output=True, text=True, timeout=60)
            self.assertEqual((done.returncode, done.stdout), (1, ''))
            self.assertIn('another process is writing it', done.stderr)
        done = subprocess.run([QSOL, 'extract', self.library(), '--private', '--kind', 'data', '--to', 'blocks'],
                              capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertGreaterEqual(len(os.listdir('blocks')), 1)
        solve.stdout.read()
        self.assertEqual(solve.wait(240), 0)

    def test_a_project_whose_library_was_compacted_and_converted_goes_on(self):
        self.small_project('slow', SMALL)
        self.run_desk('solve', 'slow', '--vary', 'res=40:60:10')
        before = self.document('info', 'slow')['setups']
        library = self.library()
        for words in (['compact'], ['convert', '--to', 'text'], ['convert', '--to', 'binary']):
            done = subprocess.run([QSOL, words[0], library, *words[1:]], capture_output=True, text=True, timeout=60)
            self.assertEqual((done.returncode, done.stderr), (0, ''), words)
            self.assertEqual(self.document('info', 'slow')['setups'], before)
        self.run_desk('solve', 'slow', '--vary', 'res=70:80:10')
        self.assertEqual(len(self.variations('slow')), 5)


if __name__ == '__main__':
    unittest.main()
