"""The shell: verbs line by line, history, and errors with their places."""
import json
import subprocess
import unittest

from _solvedesk import SETUP, SOLVEDESK, DeskTest, write


class ShellScript(DeskTest):
    def run_shell(self, lines, *options, code=0):
        write('script.txt', lines)
        return self.run_desk('shell', 'small', 'script.txt', *options, code=code)

    def test_lines_run_in_one_process_without_the_projects_name(self):
        self.small_project()
        done = self.run_shell(f'# a study\n\nset res=60   # ohms\nsolve\nhistory\nundo\nhistory\n')
        self.assertIn('variable res: 50 -> 60', done.stdout)
        self.assertIn('1 point: 1 solved', done.stdout)
        self.assertIn('   1  done    set res=60  (saved)', done.stdout)
        self.assertIn('   1  undone  set res=60  (saved)', done.stdout)
        self.assertIn('unsaved changes', done.stderr)

    def test_a_line_that_fails_ends_the_script_with_its_code_and_place(self):
        self.small_project()
        done = self.run_shell('set res=60\nset nothing=1\nset res=70\n', code=2)
        self.assertIn('solvedesk: script.txt:2: ', done.stderr)
        self.assertIn("'nothing'", done.stderr)
        self.assertEqual(self.document('info', 'small')['design']['variation'], 'cap=1e-12; res=60')

    def test_keep_going_goes_on_and_gives_the_first_code(self):
        self.small_project()
        done = self.run_shell('turn\nset "res=6\nset res=70\nundo 2\n', '--keep-going', code=2)
        self.assertEqual([line.split(' ')[1] for line in done.stderr.splitlines()[:3]],
                         ['script.txt:1:', 'script.txt:2:', 'script.txt:4:'])

    def test_json_prints_one_document_on_one_line_for_each_line(self):
        self.small_project()
        done = self.run_shell('set res=60\n\nturn\nundo\n', '--json', '--keep-going', code=2)
        lines = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([(line['line'], line['exit_code']) for line in lines], [(1, 0), (3, 2), (4, 0)])
        self.assertEqual(lines[0]['result']['changes'], [{'what': 'variable res', 'from': '50', 'to': '60'}])
        self.assertIn('turn', lines[1]['error'])
        self.assertEqual(lines[2]['result']['commands'], ['set res=60'])

    def test_lines_come_from_standard_input_without_a_script(self):
        self.small_project()
        done = subprocess.run([SOLVEDESK, 'shell', 'small'], input=f"setup edit '{SETUP}' list 1g\nexit\nturn\n",
                              capture_output=True, text=True, timeout=300)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn('list 1e+09', done.stdout)

    def test_undo_and_redo_say_when_there_is_no_such_step(self):
        self.small_project()
        self.assertIn('nothing to undo', self.run_shell('undo\n', code=2).stderr)
        self.assertIn('redo 2: there is 1 command to redo', self.run_shell('set res=1\nundo\nredo 2\n', code=2).stderr)

    def test_more_steps_than_there_are_change_nothing(self):
        self.small_project()
        done = self.run_shell('set res=60\nset cap=2e-12\nundo 3\nset res=5\n', code=2)
        self.assertIn('undo 3: there are 2 commands to undo; nothing is done', done.stderr)
        self.assertEqual(self.document('info', 'small')['design']['variation'], 'cap=2e-12; res=60')

    def test_the_changes_of_all_steps_are_told(self):
        self.small_project()
        done = self.run_shell(f'setup edit {SETUP} lin 5 1e6 1e9\nset res=60\nundo 2\nredo 2\n', '--json')
        undo, redo = [json.loads(line)['result']['changes'] for line in done.stdout.splitlines()[2:]]
        self.assertEqual([change['what'] for change in undo], ['variable res', f'setup {SETUP}'])
        self.assertEqual([(change['what'], change['to']) for change in redo],
                         [(f'setup {SETUP}', 'lin 5 1e+06 1e+09'), ('variable res', '60')])

    def test_history_lists_commands_as_they_can_be_typed(self):
        self.small_project()
        done = self.run_shell("setup add 'My fine' lin 5 1e6 1e9\nsetup rename 'My fine' 'Finer still'\nhistory\n")
        self.assertIn("setup add 'My fine' lin 5", done.stdout)
        self.assertIn("setup rename 'My fine' 'Finer still'", done.stdout)

    def test_the_projects_name_is_no_word_here(self):
        self.small_project()
        self.assertIn("leave 'small' out", self.run_shell('set small res=60\n', code=2).stderr)
        help_of_set = self.run_shell('help set\n').stdout
        self.assertNotIn('PROJECT', help_of_set)
        self.assertIn('  set cscale=0.95', help_of_set)

    def test_help_of_verbs_is_printed_and_no_failure(self):
        self.small_project()
        done = self.run_shell('--help\nundo --help\nset res=1\n')
        self.assertIn('history', done.stdout)
        self.assertIn('Example:\n  undo 2', done.stdout)
        self.assertNotIn('PROJECT', done.stdout)

    def test_undo_exists_in_a_shell_alone_and_new_outside_of_it(self):
        self.small_project()
        self.refuse(2, 'undo', 'small')
        self.assertIn("'new'", self.run_shell('new other --netlist small.cir\n', code=2).stderr)
        self.refuse(2, 'shell', 'small', 'missing.txt')


if __name__ == '__main__':
    unittest.main()
