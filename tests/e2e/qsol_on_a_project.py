"""qsol on the library of a real project: at rest, while a solve is writing it, and after the solve was killed."""
import glob
import json
import os
import pathlib
import signal
import subprocess
import time
import unittest

from _qsol import QSOL
from _solvedesk import SMALL, SOLVEDESK, DeskTest

SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 20001 1meg 1g')


class OnAProject(DeskTest):
    def qsol(self, verb, *words, code=0):
        done = subprocess.run([QSOL, verb, self.library(), *words, '--json'], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120)
        self.assertEqual(done.returncode, code, done.stdout[-2000:] + done.stderr)
        return json.loads(done.stdout)

    def library(self):
        """The design's library; the project has others, of managed files, which need not be there."""
        found = [path.removesuffix('_priv') for path in glob.glob('*.results/**/*.qsol*', recursive=True)
                 if 'ManagedFiles' not in path and path.endswith(('.qsol', '.qsol_priv'))]
        self.assertEqual(len(set(found)), 1, found)
        return found[0]

    def variations(self, *words):
        return {block['variation'] for block in self.qsol('list', '--kind', 'data', *words)['blocks']}

    def files(self):
        return {path: pathlib.Path(path).read_bytes() for path in glob.glob(self.library() + '*')}

    def start_solve(self):
        process = subprocess.Popen([SOLVEDESK, 'solve', 'slow', '--vary', 'res=1:60:1', '--events'],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        return process, json.loads(process.stdout.readline())['variation']

    def test_every_solved_point_is_listed_counted_and_whole(self):
        self.small_project('small', SMALL)
        self.run_desk('solve', 'small', '--vary', 'res=40:60:10')
        blocks = self.qsol('list')['blocks']
        kinds = {block['kind'] for block in blocks}
        self.assertLessEqual({'data', 'definition', 'header', 'map'}, kinds)
        self.assertEqual(len(self.variations()), 3)
        figures = self.qsol('stats')
        self.assertEqual(figures['variations'], 3)
        self.assertEqual(figures['blocks'], len(blocks))
        found = self.qsol('verify')
        self.assertEqual((found['fine'], found['good_blocks']), (True, len(blocks)))
        for variation in self.variations():
            self.assertTrue(self.qsol('show', '--variation', variation)['blocks'][0]['items'])

    def test_a_library_that_is_being_written_is_read_and_its_writer_not_hindered(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve()
        seen = set()
        while process.poll() is None:
            now = self.variations('--private')
            self.assertLessEqual(seen, now, 'what was once seen stays')
            seen = now
            self.assertTrue(self.qsol('verify')['fine'])
            # Events are small; the pipe holds them all.
            time.sleep(0.05)
        self.assertEqual(process.wait(), 0)
        self.assertIn(first, seen | self.variations())
        self.assertEqual(len(self.variations()), 60)

    def test_what_a_killed_solve_acknowledged_is_seen_in_the_private_file(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve()
        os.kill(process.pid, signal.SIGKILL)
        acknowledged = {first} | {json.loads(line)['variation'] for line in process.stdout
                                  if line.endswith('\n') and '"stored"' in line}
        process.wait()
        before = self.files()
        self.assertLessEqual(acknowledged, self.variations('--private'))
        self.assertTrue(self.qsol('verify')['fine'])
        self.assertEqual(self.qsol('stats', '--private')['private_state'], 'left by a crash')
        self.assertEqual(before, self.files())


if __name__ == '__main__':
    unittest.main()
