"""Files that users attach to a project, each verb a process of its own."""
import os
import unittest

from _solvedesk import SOLVEDESK, DeskTest, files_below, read, write


class Attachments(DeskTest):
    def setUp(self):
        super().setUp()
        self.small_project()
        write('notes.txt', 'some notes')

    def listed(self):
        return {entry['name']: entry for entry in self.document('attachments', 'small')['attachments']}

    def test_a_copy_is_unsaved_until_the_save(self):
        self.run_desk('attach', 'small', 'notes.txt')
        entry = self.listed()['notes.txt']
        self.assertEqual((entry['saved'], entry['size'], read(entry['path'])), (False, 10, b'some notes'))
        self.assertIn('unsaved', self.run_desk('attachments', 'small').stdout)
        self.assertIn('unsaved changes', self.run_desk('info', 'small').stdout)
        self.assertIn('saved', self.run_desk('save', 'small').stdout)
        entry = self.listed()['notes.txt']
        self.assertEqual((entry['saved'], read(entry['path'])), (True, b'some notes'))
        self.assertEqual(read('notes.txt'), b'some notes')

    def test_a_discard_takes_back_what_is_not_saved_and_keeps_the_rest(self):
        self.run_desk('attach', 'small', 'notes.txt', '--to', 'a/kept.txt')
        self.run_desk('save', 'small')
        self.run_desk('attach', 'small', 'notes.txt', '--to', 'gone.txt')
        self.run_desk('detach', 'small', 'a/kept.txt')
        self.assertTrue(self.listed()['a/kept.txt']['detached'])
        gone = self.listed()['gone.txt']['path']
        self.assertIn('changes of the attached files', self.run_desk('discard', 'small').stdout)
        self.assertEqual(list(self.listed()), ['a/kept.txt'])
        self.assertFalse(self.listed()['a/kept.txt']['detached'])
        self.assertFalse(os.path.exists(gone))

    def test_detached_files_go_with_the_save(self):
        self.run_desk('attach', 'small', 'notes.txt')
        self.run_desk('save', 'small')
        path = self.listed()['notes.txt']['path']
        self.run_desk('detach', 'small', 'notes.txt')
        self.assertTrue(os.path.exists(path))
        self.run_desk('save', 'small')
        self.assertFalse(os.path.exists(path))
        self.assertEqual(self.listed(), {})
        self.assertEqual(self.run_desk('attachments', 'small').stdout, 'no attachments\n')

    def test_what_is_attached_and_detached_before_a_save_leaves_nothing(self):
        self.run_desk('attach', 'small', 'notes.txt')
        path = self.listed()['notes.txt']['path']
        self.run_desk('detach', 'small', 'notes.txt')
        self.assertEqual(self.listed(), {})
        self.run_desk('save', 'small')
        self.assertFalse(os.path.exists(path))

    def test_a_name_is_free_again_once_it_is_detached(self):
        self.run_desk('attach', 'small', 'notes.txt')
        self.run_desk('save', 'small')
        write('newer.txt', 'newer')
        self.refuse(2, 'attach', 'small', 'newer.txt', '--to', 'notes.txt')
        self.run_desk('detach', 'small', 'notes.txt')
        self.run_desk('attach', 'small', 'newer.txt', '--to', 'notes.txt')
        self.run_desk('save', 'small')
        self.assertEqual(read(self.listed()['notes.txt']['path']), b'newer')

    def test_names_are_free_text_in_folders(self):
        for name in ('übersicht größe.txt', 'a b/c, d; e="1".tar.gz', 'docs/', 'no_extension', '.hidden'):
            self.run_desk('attach', 'small', 'notes.txt', '--to', name)
        self.run_desk('save', 'small')
        self.assertEqual(set(self.listed()), {'übersicht größe.txt', 'a b/c, d; e="1".tar.gz', 'docs/notes.txt',
                                              'no_extension', '.hidden'})
        for entry in self.listed().values():
            self.assertEqual(read(entry['path']), b'some notes')

    def test_wrong_names_are_refused_and_leave_nothing(self):
        before = files_below()
        for name in ('../out.txt', '/tmp/out.txt', 'a/../../out.txt', 'a/./b.txt', 'a//b.txt', ' ', 'x' * 300,
                     'a\nb.txt', 'ü' * 120 + '.txt', '/'.join(['folder'] * 200)):
            line = self.refuse(2, 'attach', 'small', 'notes.txt', '--to', name)
            self.assertIn('--to', line)
        self.assertEqual(files_below(), before)
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])

    def test_missing_files_and_folders_are_refused(self):
        self.assertIn('absent.txt', self.refuse(2, 'attach', 'small', 'absent.txt'))
        os.mkdir('folder')
        self.assertIn('archive', self.refuse(2, 'attach', 'small', 'folder'))
        self.assertIn('attachments', self.refuse(2, 'detach', 'small', 'absent.txt'))

    def test_a_file_that_was_taken_away_is_told_and_can_be_detached(self):
        self.run_desk('attach', 'small', 'notes.txt')
        self.run_desk('save', 'small')
        os.remove(self.listed()['notes.txt']['path'])
        self.assertTrue(self.listed()['notes.txt']['missing'])
        self.assertIn('missing', self.run_desk('attachments', 'small').stdout)
        self.run_desk('detach', 'small', 'notes.txt')
        self.run_desk('save', 'small')
        self.assertEqual(self.listed(), {})

    def test_a_project_that_another_process_has_shows_the_saved_ones(self):
        self.run_desk('attach', 'small', 'notes.txt')
        self.run_desk('save', 'small')
        self.run_desk('attach', 'small', 'notes.txt', '--to', 'unsaved.txt')
        shell = self.launch(*self.shell_that_waits())
        shell.stdout.readline()
        self.assertEqual(list(self.listed()), ['notes.txt'])
        self.refuse(6, 'attach', 'small', 'notes.txt', '--to', 'third.txt')
        shell.kill()
        shell.wait()

    def shell_that_waits(self):
        os.mkfifo('script')
        fifo = os.open('script', os.O_RDWR)
        os.write(fifo, b'history\n')
        self.addCleanup(os.close, fifo)
        return (SOLVEDESK, 'shell', 'small', 'script', '--json')

    def test_a_shell_attaches_too(self):
        write('script', 'attach notes.txt\nattachments\nsave\n')
        self.run_desk('shell', 'small', 'script')
        self.assertTrue(self.listed()['notes.txt']['saved'])


if __name__ == '__main__':
    unittest.main()
