"""qsol on files that are damaged, cut, of another kind, or out of reach."""
import os
import random
import subprocess
import unittest

from _qsol import QSOL, LibraryFile, QsolTest, library

VERBS = {
    'list': [], 'show': ['SolutionBlock1'], 'stats': [], 'verify': [], 'diff': ['PATH'], 'follow': ['--once'],
    'extract': ['--all', '--to', 'out'], 'compact': [], 'convert': ['--to', 'text'],
}


class Damage(QsolTest):
    def refuse_all(self, code, path, text, **options):
        for verb, others in VERBS.items():
            words = [path if word == 'PATH' else word for word in others]
            self.assertIn(text, self.refuse(code, verb, path, *words, **options))

    def test_a_flipped_bit_is_told_with_its_place_and_the_rest_is_read(self):
        made = library()
        at = made.bytes.index(b'Value = 2.5')
        made.bytes = made.bytes[:at] + b'Q' + made.bytes[at + 1:]
        made.write('amp.qsol')
        found = self.document('verify', 'amp.qsol', code=1)
        self.assertEqual((found['fine'], found['good_blocks'], found['lost_blocks']), (False, 2, 1))
        damage = found['damages'][0]
        self.assertEqual(damage['lost'][0]['name'], 'SolutionBlock2')
        self.assertLess(damage['offset'], at)
        self.assertGreater(damage['offset'] + damage['length'], at)
        line = self.refuse(1, 'show', 'amp.qsol', 'SolutionBlock2')
        self.assertIn('is damaged', line)
        self.assertEqual(self.qsol('show', 'amp.qsol', 'SolutionBlock1').stdout, 'SolutionBlock1 {\n  Value = 1.5\n}\n')

    def test_a_cut_library_shows_its_last_commit(self):
        made = library()
        made.block('SolutionBlock9', '  Value = 9')
        made.write('amp.qsol')
        verdict = self.qsol('verify', 'amp.qsol').stdout
        self.assertIn("don't count: a commit that did not come to its end, or the file was cut", verdict)
        self.assertIn('amp.qsol: fine up to its last commit (committed)', verdict)
        self.assertGreater(self.document('verify', 'amp.qsol')['uncounted_bytes'], 0)
        self.assertEqual(len(self.document('list', 'amp.qsol')['blocks']), 3)
        made.bytes = made.bytes[:200]
        made.write('amp.qsol')
        self.assertIn('the file holds no commit', self.qsol('verify', 'amp.qsol', code=1).stdout)

    def test_what_is_no_library_is_refused(self):
        open('empty.qsol', 'w').close()
        self.refuse_all(4, 'empty.qsol', 'is empty')
        with open('cut.qsol', 'wb') as file:
            file.write(library().bytes[:40])
        self.refuse_all(4, 'cut.qsol', 'holds no whole header: cut off, or nothing was stored yet')
        with open('text.qsol', 'w') as file:
            file.write('quite another kind of file\n' * 20)
        self.refuse_all(4, 'text.qsol', 'is no block library')
        LibraryFile(version=2).write('later.qsol')
        self.refuse_all(5, 'later.qsol', 'later format')
        os.mkdir('folder.qsol')
        self.refuse_all(3, 'folder.qsol', 'is a folder')
        self.refuse_all(3, 'missing.qsol', 'there is no such file')
        self.refuse_all(3, 'missing/amp.qsol', 'there is no such file')
        os.mkfifo('pipe.qsol')
        self.refuse_all(3, 'pipe.qsol', 'is no regular file')
        os.symlink('nowhere', 'link.qsol')
        self.refuse_all(3, 'link.qsol', 'leads nowhere')

    def test_random_bytes_are_refused_by_every_verb(self):
        source = random.Random(7)
        for number, head in enumerate((b'', b'#qsol', b'#qsol 0001 public  text   little ')):
            with open(f'{number}.qsol', 'wb') as file:
                file.write(head + source.randbytes(3000))
            lines = {self.refuse_any(verb, f'{number}.qsol', *others) for verb, others in VERBS.items()}
            self.assertEqual(len(lines), 1, lines)

    def refuse_any(self, verb, path, *others):
        done = subprocess.run([QSOL, verb, path, *[path if word == 'PATH' else word for word in others]],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
        self.assertIn(done.returncode, (3, 4), done)
        self.assertEqual((done.stdout, done.stderr.count('\n')), ('', 1))
        return done.stderr

    def test_a_library_cut_at_any_place_is_looked_at_without_harm(self):
        whole = library().bytes
        for length in range(0, len(whole), 37):
            with open('amp.qsol', 'wb') as file:
                file.write(whole[:length])
            for verb in ('verify', 'list', 'diff', 'follow', 'extract'):
                others = ['amp.qsol' if word == 'PATH' else word for word in VERBS[verb]] + ['--force'] * (verb == 'extract')
                done = subprocess.run([QSOL, verb, 'amp.qsol', *others], stdin=subprocess.DEVNULL, capture_output=True,
                                      text=True, timeout=60)
                self.assertIn(done.returncode, (0, 1, 3, 4), (length, done))
            with open('amp.qsol', 'rb') as file:
                self.assertEqual(file.read(), whole[:length])

    def test_what_stands_in_the_place_of_the_private_file_is_never_waited_for(self):
        library().write('amp.qsol')
        os.mkfifo('amp.qsol_priv')
        self.assertIn('is no regular file', self.qsol('list', 'amp.qsol').stderr)
        for words in (['compact', 'amp.qsol'], ['follow', 'amp.qsol']):
            self.assertIn('is no regular file', self.refuse(1 if words[0] == 'compact' else 3, *words))
        os.remove('amp.qsol_priv')
        os.symlink('nowhere', 'amp.qsol_priv')
        self.assertIn('leads nowhere', self.refuse(1, 'compact', 'amp.qsol'))

    def test_a_file_without_permission_is_refused(self):
        library().write('amp.qsol')
        os.chmod('amp.qsol', 0)
        self.refuse_all(3, 'amp.qsol', 'Permission denied', **self.another_user())

    def test_a_library_that_may_not_be_written_is_not_written_anew(self):
        library().write('amp.qsol')
        options = self.another_user()
        os.chmod('amp.qsol', 0o444)
        os.chmod('.', 0o555)
        for words in (['compact', 'amp.qsol'], ['convert', 'amp.qsol', '--to', 'binary']):
            line = self.refuse(1, *words, **options)
            self.assertIn('Permission denied; nothing was changed, check the permissions of the file', line)
            self.assertNotIn('space', line)
        os.chmod('.', 0o755)

    def test_a_library_in_a_folder_that_can_not_be_written_is_read(self):
        library().write('amp.qsol')
        before = os.listdir('.'), os.stat('amp.qsol').st_mtime_ns
        os.chmod('amp.qsol', 0o444)
        os.chmod('.', 0o555)
        self.qsol('verify', 'amp.qsol')
        self.qsol('list', 'amp.qsol', '--private')
        self.assertEqual(before, (os.listdir('.'), os.stat('amp.qsol').st_mtime_ns))
        os.chmod('.', 0o755)

    def test_a_misspelt_verb_is_named_and_the_verbs_are_told(self):
        line = self.refuse(2, 'lsit', 'amp.qsol')
        for part in ("'lsit'", 'list, show, stats, verify, diff, follow, extract, compact, convert'):
            self.assertIn(part, line)


if __name__ == '__main__':
    unittest.main()
