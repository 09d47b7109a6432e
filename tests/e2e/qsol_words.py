"""qsol on libraries that were written from the format page alone, and as a well-behaved program."""
import os
import subprocess
import unittest

import _qsol
from _qsol import QSOL, LibraryFile, QsolTest, key, library

VERBS = ('list', 'show', 'stats', 'verify', 'diff', 'follow', 'extract', 'compact', 'convert')


class Words(QsolTest):
    def test_every_verb_has_help_with_examples(self):
        self.assertIn('qsol 0.1.0', self.qsol('--version').stdout)
        self.assertIn('Exit codes', self.qsol('--help').stdout)
        for verb in VERBS:
            self.assertIn(f'  qsol {verb} amp.qsol', self.qsol(verb, '--help').stdout)

    def test_wrong_words_are_a_misuse(self):
        library().write('amp.qsol')
        for words in ([], ['lisst'], ['list'], ['list', 'amp.qsol', '--setup', 'x'], ['show', 'amp.qsol'],
                      ['show', 'amp.qsol', ''], ['extract', 'amp.qsol', '', '--to', 'out'],
                      ['list', 'amp.qsol', '--kind', 'nonsense'], ['list', 'amp.qsol', '--private', '--committed-only'],
                      ['show', 'amp.qsol', 'A', '--raw', '--json'], ['verify', ''], ['diff', 'amp.qsol'],
                      ['convert', 'amp.qsol'], ['convert', 'amp.qsol', '--to', 'paper'], ['compact', ''],
                      ['extract', 'amp.qsol', 'A'], ['extract', 'amp.qsol', '--to', 'out'], ['follow', ''],
                      ['follow', 'amp.qsol', '--for', '-1'], ['follow', 'amp.qsol', '--once', '--for', '1']):
            self.refuse(2, *words)
        self.assertFalse(os.path.exists('out'))

    def test_a_file_made_by_the_format_page_is_read(self):
        library(3).write('amp.qsol')
        blocks = self.document('list', 'amp.qsol')['blocks']
        self.assertEqual([block['name'] for block in blocks],
                         ['SolutionBlock1', 'SolutionBlock2', 'SolutionBlock3', 'BlockMapName'])
        self.assertEqual([block['kind'] for block in blocks], ['data'] * 3 + ['map'])
        self.assertEqual(blocks[1]['variation'], 'a=2')
        self.assertEqual(self.qsol('show', 'amp.qsol', key('a=2')).stdout, 'SolutionBlock2 {\n  Value = 2.5\n}\n')
        self.assertEqual(self.document('stats', 'amp.qsol')['public']['generation'], f'{_qsol.PUBLIC_SALT:016x}')
        verdict = self.qsol('verify', 'amp.qsol').stdout
        self.assertEqual(verdict, 'amp.qsol: fine (committed), 7 records whole, 4 of 4 blocks good\n')

    def test_the_private_file_shows_beside_the_public_one_and_alone(self):
        library().write('amp.qsol')
        private = LibraryFile(private=True, base=_qsol.COMMIT)
        private.block('SolutionBlock1', '  Value = 99')
        private.write('amp.qsol_priv')
        self.assertIn('left by a crash', self.qsol('list', 'amp.qsol').stderr)
        self.assertIn('1.5', self.qsol('show', 'amp.qsol', 'SolutionBlock1').stdout)
        self.assertIn('99', self.qsol('show', 'amp.qsol', 'SolutionBlock1', '--private').stdout)
        self.assertEqual(len(self.document('list', 'amp.qsol', '--private')['blocks']), 3)
        os.remove('amp.qsol')
        self.assertEqual(self.document('list', 'amp.qsol')['shown'], 'private')
        self.assertEqual(len(self.document('list', 'amp.qsol_priv')['blocks']), 1)

    def test_a_reader_that_leaves_early_is_no_failure(self):
        library(5000).write('amp.qsol')
        for words in (['list', 'amp.qsol'], ['list', 'amp.qsol', '--json'], ['show', 'amp.qsol', '--kind', 'data']):
            with subprocess.Popen([QSOL, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE) as program:
                self.assertTrue(program.stdout.readline())
                program.stdout.close()
                self.assertEqual((program.wait(60), program.stderr.read()), (0, b''), words)

    def test_a_message_that_can_not_be_written_changes_no_exit_code(self):
        library().write('amp.qsol')
        LibraryFile(private=True, base=_qsol.COMMIT).write('amp.qsol_priv')
        runs = ((['list', 'amp.qsol'], 0), (['list', 'amp.qsol', '--setup', '99'], 0), (['lsit', 'amp.qsol'], 2),
                (['list'], 2), (['show', 'amp.qsol', 'Nothing'], 1), (['verify', 'missing.qsol'], 3))
        for words, code in runs:
            for where in ('2>&-', '2>/dev/full', '2>&1 >/dev/null | true'):
                shell = f'"$0" "$@" {where}' + ('; exit ${PIPESTATUS[0]}' if '|' in where else '')
                done = subprocess.run(['bash', '-c', shell, QSOL, *words], stdin=subprocess.DEVNULL,
                                      capture_output=True, text=True, timeout=60)
                self.assertEqual(done.returncode, code, (words, where, done))

    def test_closed_streams_harm_no_library_that_is_written(self):
        library().write('amp.qsol')
        done = subprocess.run(['bash', '-c', '"$0" compact amp.qsol <&- >&- 2>&-', QSOL], timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertIn('amp.qsol: fine (committed)', self.qsol('verify', 'amp.qsol').stdout)

    def test_an_output_that_is_full_is_told(self):
        library().write('amp.qsol')
        with open('/dev/full', 'w') as full:
            done = subprocess.run([QSOL, 'list', 'amp.qsol'], stdout=full, stderr=subprocess.PIPE, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn('standard output: can\'t be written: No space left on device', done.stderr)


if __name__ == '__main__':
    unittest.main()
