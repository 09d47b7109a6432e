"""qsol on files that are damaged, cut, of another kind, or out of reach."""
import os
import unittest

from _qsol import LibraryFile, QsolTest, library

VERBS = (['list'], ['show'], ['stats'], ['verify'])


class Damage(QsolTest):
    def refuse_all(self, code, path, text, **options):
        for verb in VERBS:
            words = [*verb, path] + (['SolutionBlock1'] if verb == ['show'] else [])
            self.assertIn(text, self.refuse(code, *words, **options))

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
        self.assertIn("don't count: a commit that did not come to its end", verdict)
        self.assertEqual(len(self.document('list', 'amp.qsol')['blocks']), 3)
        made.bytes = made.bytes[:200]
        made.write('amp.qsol')
        self.assertIn('the file holds no commit', self.qsol('verify', 'amp.qsol', code=1).stdout)

    def test_what_is_no_library_is_refused(self):
        open('empty.qsol', 'w').close()
        self.refuse_all(4, 'empty.qsol', 'is empty')
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

    def test_a_file_without_permission_is_refused(self):
        library().write('amp.qsol')
        os.chmod('amp.qsol', 0)
        options = {}
        if os.getuid() == 0:
            # Nothing is refused to root; another user must reach the file to be refused it.
            options = {'user': 65534, 'group': 65534, 'extra_groups': []}
            os.chmod('.', 0o755)
            os.chmod(os.environ['TMPDIR'], 0o755)
            try:
                self.qsol('--version', **options)
            except PermissionError:
                self.skipTest('the programs stand where another user cannot reach them')
        self.refuse_all(3, 'amp.qsol', 'Permission denied', **options)

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
        for part in ("'lsit'", 'list, show, stats, verify'):
            self.assertIn(part, line)


if __name__ == '__main__':
    unittest.main()
