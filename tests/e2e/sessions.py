"""What each kind of session does to the files of a project, every verb a process of its own."""
import json
import os
import resource
import signal
import subprocess
import unittest

from _qsol import QSOL
from _solvedesk import SMALL, SOLVEDESK, DeskTest, read

PROJECT, AUTOSAVE = 'small.sproject', 'small.sproject.auto'
LIBRARY, PRIVATE = 'small.results/small.qsol', 'small.results/small.qsol_priv'
FAILED_CODES = {'project': 3, 'locked': 6, 'storage': 7}

# Enough frequencies for a point to take a while.
SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 5001 1meg 1g')


def content(name):
    return read(name) if os.path.exists(name) else None


def snapshot():
    return {os.path.join(at, name): read(os.path.join(at, name)) for at, _, names in os.walk('.') for name in names
            if not name.endswith('.lock')}


class Sessions(DeskTest):
    def solve(self, values, *words):
        return self.run_desk('solve', 'small', '--vary', f'res={values}', *words)

    def with_data(self):
        return {name.split('=')[-1] for name, state in self.variations('small').items() if state['has_data']}

    def crash(self, netlist=SLOW, least=3):
        """A project whose solve was killed, with the values of `res` that were acknowledged."""
        self.small_project(netlist=netlist)
        return self.kill_a_solve(least)

    def kill_a_solve(self, least=3):
        process = subprocess.Popen([SOLVEDESK, 'solve', 'small', '--vary', 'res=1:400:1', '--events', '--no-save'],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        lines = [process.stdout.readline() for _ in range(least)]
        process.send_signal(signal.SIGKILL)
        lines += process.stdout.readlines()
        process.wait()
        process.stdout.close()
        self.assertEqual(process.returncode, -signal.SIGKILL)
        events = [json.loads(line) for line in lines if line.endswith('\n')]
        return {event['variation'].split('=')[-1] for event in events if event['event'] == 'stored'}

    def with_file_limit(self, limit, *words):
        return subprocess.run([SOLVEDESK, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)),
                              timeout=300, check=False)

    def test_new_writes_project_file_and_an_empty_committed_library(self):
        self.small_project()
        self.assertTrue(content(PROJECT))
        self.assertTrue(content(LIBRARY))
        self.assertEqual((content(AUTOSAVE), content(PRIVATE)), (None, None))
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])

    def test_a_command_writes_the_autosave_and_nothing_else(self):
        self.small_project()
        before = snapshot()
        self.run_desk('set', 'small', 'res=75')
        after = snapshot()
        self.assertIn(b'75', after.pop('./' + AUTOSAVE))
        self.assertEqual(after, before)

    def test_a_solve_lets_the_private_file_grow_and_leaves_project_file_and_library(self):
        self.small_project()
        project, library = content(PROJECT), content(LIBRARY)
        sizes = []
        for value in '123':
            self.solve(value, '--no-save')
            sizes.append(os.stat(PRIVATE).st_size)
        self.assertEqual(sizes, sorted(set(sizes)))
        self.assertEqual((content(PROJECT), content(LIBRARY)), (project, library))

    def test_a_session_that_is_closed_unsaved_is_gone_on_with_and_shown_as_unsaved(self):
        self.small_project()
        self.run_desk('set', 'small', 'cap=2e-12')
        self.solve('1,2', '--no-save')
        autosave, private = content(AUTOSAVE), content(PRIVATE)
        done = self.run_desk('info', 'small', '--json')
        self.assertEqual(done.stderr, '')
        document = json.loads(done.stdout)
        self.assertTrue(document['unsaved_changes'])
        self.assertEqual({v['value'] for v in document['design']['variables']}, {'2e-12', '50'})
        states = self.variations('small').values()
        self.assertEqual([(s['has_data'], s['valid'], s['saved']) for s in states], [(True, True, False)] * 2)
        self.assertEqual((content(AUTOSAVE), content(PRIVATE)), (autosave, private))

    def test_what_a_crash_left_is_taken_over_and_told(self):
        acknowledged = self.crash()
        done = self.run_desk('info', 'small')
        self.assertRegex(done.stderr, r'small: recovered \d+ points after a crash')
        self.assertLessEqual(acknowledged, self.with_data())
        self.assertEqual(self.run_desk('info', 'small').stderr, '')

    def test_recover_tells_what_came_back_and_a_dry_run_tells_the_same_and_changes_nothing(self):
        acknowledged = self.crash()
        before = snapshot()
        rehearsed = self.document('recover', 'small', '--dry-run')
        self.assertEqual(snapshot(), before)
        document = self.document('recover', 'small')
        self.assertEqual(document['outcome'], 'taken_over')
        self.assertGreaterEqual(document['variations'], len(acknowledged))
        self.assertEqual(document['setups'], ['SParameters1'])
        self.assertEqual(document['dropped'], [])
        for each in (document, rehearsed):
            each.pop('dry_run')
        self.assertEqual(rehearsed, document)
        self.assertEqual(self.document('recover', 'small')['outcome'], 'nothing')
        self.assertIn('nothing to recover', self.run_desk('recover', 'small').stdout)

    def damage_data(self, file, variation):
        """One bit of the data of a point in a library file."""
        listed = json.loads(subprocess.run([QSOL, 'list', file, '--json'], capture_output=True, text=True, timeout=60,
                                           check=True).stdout)
        block, = (block for block in listed['blocks'] if block['kind'] == 'data' and block['variation'] == variation)
        damaged = bytearray(read(file))
        damaged[block['offset'] + block['bytes'] // 2] ^= 4
        with open(file, 'wb') as target:
            target.write(damaged)

    def test_a_point_whose_data_a_crash_left_damaged_is_dropped_by_name_and_all_others_come_back(self):
        acknowledged = self.crash()
        lost = min(acknowledged)
        self.damage_data(PRIVATE, f'cap=1e-12; res={lost}')
        rehearsed = self.document('recover', 'small', '--dry-run')
        text = self.run_desk('recover', 'small', '--dry-run').stdout
        self.assertIn(f'  would be dropped: 1 block\n    SParameters1 at cap=1e-12; res={lost}: its block is lost\n', text)
        document = self.document('recover', 'small')
        dropped, = document['dropped']
        self.assertIn(f'"cap=1e-12; res={lost}"', dropped.pop('block'))
        self.assertEqual(dropped, {'reason': 'its block is lost', 'setup': 'SParameters1', 'solution': 'Sweep',
                                   'variation': f'cap=1e-12; res={lost}'})
        self.assertEqual(document['variations'], rehearsed['variations'])
        self.assertEqual(document['notices'], rehearsed['notices'])
        self.assertIn('; 1 block was not taken over: its block is lost', document['notices'][0])
        there = self.with_data()
        self.assertNotIn(lost, there)
        self.assertLessEqual(acknowledged - {lost}, there)
        self.solve(lost)
        self.assertLessEqual(acknowledged, self.with_data())

    def test_recover_tells_people_which_point_it_dropped(self):
        lost = min(self.crash())
        self.damage_data(PRIVATE, f'cap=1e-12; res={lost}')
        done = self.run_desk('recover', 'small')
        self.assertIn(f'  dropped: 1 block\n    SParameters1 at cap=1e-12; res={lost}: its block is lost\n', done.stdout)
        self.assertRegex(done.stderr, r'recovered \d+ points after a crash; 1 block was not taken over: its block is lost')

    def test_unsaved_data_that_are_damaged_are_told_by_the_save_and_cost_no_other_point(self):
        self.small_project()
        self.solve('1,2,3', '--no-save')
        self.damage_data(PRIVATE, 'cap=1e-12; res=2')
        message = self.refuse(7, 'save', 'small')
        self.assertRegex(message, r'small.qsol_priv: block \w+ at offset \d+ is damaged')
        self.assertIn('save again to save all else', message)
        self.run_desk('save', 'small')
        self.assertEqual(content(PRIVATE), None)
        read_back = self.run_desk('values', 'small', '--json', code=FAILED_CODES['project'])
        self.assertIn('cap=1e-12; res=2', read_back.stderr)
        self.solve('2', '--again')
        self.assertEqual(len(self.document('values', 'small')['points']), 3)

    def test_recover_speaks_to_people(self):
        self.crash()
        text = self.run_desk('recover', 'small', '--dry-run').stdout
        self.assertIn('small.sproject: would be taken over: ', text)
        text = self.run_desk('recover', 'small').stdout
        self.assertRegex(text, r'taken over: \d+ points, stale ones counted; \d+ variations of present versions, \d+ blocks\n')
        self.assertIn('SParameters1 : Sweep: ', text)
        self.assertRegex(text, r'  SParameters1: definition and records of solves, \d+ blocks\n')

    def test_a_private_file_whose_beginning_is_damaged_is_set_aside_as_such(self):
        self.small_project()
        self.solve('1,2', '--no-save')
        damaged = b'XX' + content(PRIVATE)[2:]
        with open(PRIVATE, 'wb') as file:
            file.write(damaged)
        done = self.run_desk('recover', 'small')
        self.assertEqual(content(PRIVATE + '.set-aside-1'), damaged)
        self.assertIn("or its beginning is damaged", done.stderr)

    def test_set_aside_tells_where_it_goes_on(self):
        self.crash()
        self.assertEqual(self.run_desk('recover', 'small', '--set-aside').stdout,
                         'small.sproject: goes on from the saved state\n')

    def test_discard_of_an_edit_alone_speaks_of_no_results(self):
        self.small_project()
        self.solve('1')
        self.run_desk('setup', 'small', 'edit', 'SParameters1', 'lin', '21', '1meg', '1g')
        self.assertEqual(self.run_desk('discard', 'small').stdout, 'small.sproject: discarded changes of the design\n')
        self.run_desk('delete', 'small', '--variation', 'cap=1e-12; res=1')
        self.assertNotIn('unsaved results', self.run_desk('discard', 'small').stdout)

    def test_what_a_takeover_brought_is_unsaved_for_watch_too(self):
        self.crash()
        points = self.document('recover', 'small')['points']
        self.assertGreater(points, 0)
        lines = [json.loads(line) for line in self.run_desk('watch', 'small', '--once', '--json').stdout.splitlines()]
        self.assertEqual(sum(line['event'] == 'point' for line in lines), points)
        self.assertEqual(lines[-1]['points'], points)
        self.run_desk('save', 'small')
        lines = [json.loads(line) for line in self.run_desk('watch', 'small', '--once', '--json').stdout.splitlines()]
        self.assertEqual([line['event'] for line in lines], ['begin', 'end'])

    def test_a_private_file_of_another_generation_is_set_aside_and_told(self):
        self.small_project()
        self.solve('1', '--no-save')
        former = content(PRIVATE)
        self.run_desk('save', 'small')
        self.solve('2')
        with open(PRIVATE, 'wb') as file:
            file.write(former)
        done = self.run_desk('info', 'small')
        self.assertIn('small.qsol_priv: does not belong to the saved results, or its '
                      'beginning is damaged; it was set aside as', done.stderr)
        self.assertEqual(content(PRIVATE + '.set-aside-1'), former)
        self.assertEqual(self.with_data(), {'1', '2'})

    def test_a_project_that_another_process_has_is_refused_for_writing_and_shows_its_saved_state(self):
        self.small_project(netlist=SLOW)
        self.solve('1000')
        process = subprocess.Popen([SOLVEDESK, 'solve', 'small', '--vary', 'res=1:100:1', '--events'], text=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(process.stdout.close)
        process.stdout.readline()
        for words in (['set', 'small', 'res=1'], ['solve', 'small'], ['save', 'small'], ['discard', 'small'],
                      ['recover', 'small'], ['recover', 'small', '--dry-run']):
            self.assertIn('another process', self.refuse(6, *words))
        document = self.document('info', 'small')
        self.assertTrue(document['read_only'])
        self.assertEqual(self.with_data(), {'1000'})
        process.stdout.read()
        self.assertEqual(process.wait(), 0)

    def test_a_save_commits_the_library_and_drops_autosave_and_private_file(self):
        self.small_project()
        project, library = content(PROJECT), content(LIBRARY)
        self.run_desk('set', 'small', 'cap=2e-12')
        self.solve('1,2', '--no-save')
        self.run_desk('save', 'small')
        self.assertEqual((content(AUTOSAVE), content(PRIVATE)), (None, None))
        self.assertNotEqual(content(PROJECT), project)
        self.assertTrue(content(LIBRARY).startswith(library))
        self.assertTrue(all(state['saved'] for state in self.variations('small').values()))

    def test_discard_goes_back_to_what_was_saved_last(self):
        self.small_project()
        self.solve('1')
        saved = snapshot()
        self.run_desk('set', 'small', 'cap=2e-12')
        self.solve('2,3', '--no-save')
        document = self.document('discard', 'small')
        self.assertEqual((document['discarded'], document['design_changes'], document['points']), (True, True, 2))
        self.assertEqual(snapshot(), saved)
        self.assertEqual(self.with_data(), {'1'})
        self.assertIn('nothing to discard', self.run_desk('discard', 'small').stdout)

    def test_discard_drops_what_a_crash_left(self):
        self.small_project(netlist=SLOW)
        self.solve('1000')
        saved = snapshot()
        self.kill_a_solve()
        done = self.run_desk('discard', 'small')
        self.assertRegex(done.stdout, r'discarded \d+ unsaved points')
        self.assertEqual(done.stderr, '')
        self.assertEqual(snapshot(), saved)

    def test_points_that_a_takeover_brought_count_as_unsaved_until_a_save_and_discard_drops_them(self):
        self.small_project(netlist=SLOW)
        self.solve('1000')
        saved = snapshot()
        self.kill_a_solve()
        self.run_desk('recover', 'small')
        states = self.variations('small')
        self.assertEqual({name for name, state in states.items() if state['saved']}, {'cap=1e-12; res=1000'})
        self.assertGreater(len(states), 3)
        self.assertTrue(self.document('info', 'small')['unsaved_changes'])
        self.assertEqual(self.document('discard', 'small')['points'], len(states) - 1)
        self.assertEqual(snapshot(), saved)
        self.assertIn('nothing to discard', self.run_desk('discard', 'small').stdout)

    def test_points_of_a_setup_that_a_damaged_autosave_alone_knew_are_kept_and_told(self):
        self.small_project()
        self.run_desk('setup', 'small', 'add', 'Fine', 'lin', '21', '1meg', '1g')
        self.solve('1,2', '--setup', 'Fine', '--no-save')
        damaged = bytearray(read(AUTOSAVE))
        damaged[len(damaged) // 2] ^= 4
        with open(AUTOSAVE, 'wb') as file:
            file.write(damaged)
        library = content(LIBRARY)
        told = self.run_desk('set', 'small', 'res=60').stderr
        self.assertIn("holds the setup 'Fine', which the project file does not know; it is kept as unsaved work", told)
        self.assertEqual(content(LIBRARY), library)
        self.run_desk('save', 'small')
        states = self.variations('small', setup='Fine').values()
        self.assertEqual([(s['has_data'], s['valid'], s['saved']) for s in states], [(True, True, True)] * 2)
        self.assertEqual(self.run_desk('info', 'small').stderr, '')

    def test_the_autosave_is_there_before_results_are_also_when_the_design_is_what_was_saved(self):
        self.small_project()
        self.solve('50')
        self.assertIsNone(content(AUTOSAVE))
        self.run_desk('solve', 'small', '--again', '--no-save')
        self.assertTrue(content(AUTOSAVE))
        self.assertTrue(content(PRIVATE))

    def test_a_takeover_without_room_changes_nothing_and_no_save_follows(self):
        acknowledged = self.crash()
        before = snapshot()
        limit = os.stat(PRIVATE).st_size
        for words in (['set', 'small', 'res=1'], ['save', 'small'], ['solve', 'small'], ['recover', 'small']):
            done = self.with_file_limit(limit, *words)
            self.assertEqual(done.returncode, FAILED_CODES['storage'], done.stderr)
            self.assertIn("the work that a crash left can't be taken over", done.stderr)
            self.assertEqual(snapshot(), before)
        done = self.with_file_limit(limit, 'info', 'small', '--json')
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(json.loads(done.stdout)['read_only'])
        self.assertEqual(snapshot(), before)
        self.run_desk('save', 'small')
        self.assertLessEqual(acknowledged, self.with_data())

    def test_work_that_can_not_be_taken_over_waits_for_the_users_word(self):
        self.crash()
        damaged = bytearray(read(PRIVATE))
        at = damaged.rindex(b'BlockMapName')
        damaged[at + 40] ^= 4
        with open(PRIVATE, 'wb') as file:
            file.write(damaged)
        before = snapshot()
        for words in (['save', 'small'], ['set', 'small', 'res=1'], ['solve', 'small'], ['recover', 'small'],
                      ['recover', 'small', '--dry-run']):
            message = self.refuse(3, *words)
            self.assertIn("small.qsol_priv: the work that a crash left can't be taken over", message)
            self.assertIn('--set-aside', message)
            self.assertEqual(snapshot(), before)
        self.assertTrue(self.document('info', 'small')['read_only'])
        self.assertEqual(snapshot(), before)
        self.run_desk('recover', 'small', '--set-aside')
        self.assertEqual(content(PRIVATE + '.set-aside-1'), bytes(damaged))
        self.solve('1')
        self.assertEqual(self.with_data(), {'1'})

    def test_set_aside_goes_on_from_the_saved_state_and_keeps_the_files(self):
        self.crash()
        self.run_desk('recover', 'small')
        self.run_desk('set', 'small', 'cap=2e-12')
        autosave, private = content(AUTOSAVE), content(PRIVATE)
        done = self.run_desk('recover', 'small', '--set-aside')
        self.assertIn('it was set aside as', done.stderr)
        self.assertEqual(content(AUTOSAVE + '.set-aside-1'), autosave)
        self.assertEqual(content(PRIVATE + '.set-aside-1'), private)
        self.assertFalse(self.document('info', 'small')['unsaved_changes'])
        self.assertIn('give one of them', self.refuse(2, 'recover', 'small', '--set-aside', '--dry-run'))


if __name__ == '__main__':
    unittest.main()
