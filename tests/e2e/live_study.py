"""A study as people see it: progress on a terminal, watching it from elsewhere, what its solves reported and cost."""
import fcntl
import json
import os
import pty
import re
import signal
import struct
import subprocess
import termios
import threading
import time
import unittest

from _qsol import QSOL
from _solvedesk import SETUP, SMALL, SOLVEDESK, DeskTest, read

# Enough frequencies for a point to take a while.
SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 20001 1meg 1g')
STUDY = ('--vary', 'res=1:40:1')
# Has no value at res=20.
FAILING = SMALL.replace('R1 in 0 {res}', 'R1 in 0 {100/(res-20)}')


class LiveStudy(DeskTest):
    def events(self, text):
        return [json.loads(line) for line in text.splitlines()]

    def adaptive_project(self, name='small'):
        self.small_project(name)
        self.run_desk('setup', name, 'add', 'Fast', 'lin', '2001', '1meg', '1g', 'adaptive')
        return name


class Watch(LiveStudy):
    def test_each_point_is_seen_once_and_the_end_of_the_writer_too(self):
        self.small_project('slow', SLOW)
        solve = self.launch(SOLVEDESK, 'solve', 'slow', *STUDY, '--events')
        first = json.loads(solve.stdout.readline())
        watch = self.launch(SOLVEDESK, 'watch', 'slow', '--json')
        begin = json.loads(watch.stdout.readline())
        self.assertEqual(begin, {'event': 'begin', 'schema_version': 1, 'has_writer': True})
        stored = [event['variation'] for event in [first] + self.events(self.finish(solve)[0])
                  if event['event'] == 'stored']
        self.assertEqual(solve.returncode, 0)
        out, err = self.finish(watch)
        self.assertEqual((watch.returncode, err), (0, ''))
        told = [event for event in self.events(out) if event['event'] == 'point']
        self.assertEqual(len(stored), 40)
        self.assertEqual(sorted(event['variation'] for event in told), sorted(stored))
        self.assertTrue(all(event['setup'] == SETUP and event['seconds'] > 0 for event in told), told)
        end = self.events(out)[-1]
        self.assertEqual(end, {'event': 'end', 'why': 'the writer is done', 'points': 40, 'failed': 0})

    def test_a_killed_study_is_told_and_the_same_command_goes_on_where_it_stopped(self):
        self.small_project('slow', SLOW)
        solve = self.launch(SOLVEDESK, 'solve', 'slow', *STUDY, '--events')
        acknowledged = [json.loads(solve.stdout.readline())['variation'] for _ in range(5)]
        watch = self.launch(SOLVEDESK, 'watch', 'slow', '--json')
        watch.stdout.readline()
        os.kill(solve.pid, signal.SIGKILL)
        solve.wait()
        out, err = self.finish(watch)
        self.assertEqual(watch.returncode, 1, out + err)
        self.assertIn('went without closing it', err)
        self.assertEqual(self.events(out)[-1]['why'], 'left by a crash')
        seen = {event['variation'] for event in self.events(out) if event['event'] == 'point'}
        self.assertLessEqual(set(acknowledged), seen)
        again = self.document('solve', 'slow', *STUDY)
        self.assertGreaterEqual(again['already_valid'], 5)
        self.assertEqual(again['stored'] + again['already_valid'], 40)
        # What the crash met between data and records has no record; all that was acknowledged has one.
        costs = {entry['variation'] for entry in self.document('profile', 'slow')['records']}
        self.assertLessEqual(set(acknowledged), costs)
        self.assertGreaterEqual(len(costs), again['stored'] + 5)

    def test_without_a_writer_it_shows_what_is_unsaved_and_ends(self):
        self.small_project()
        self.run_desk('solve', 'small', '--vary', 'res=50,75')
        self.run_desk('solve', 'small', '--vary', 'res=100', '--no-save')
        for words in (['--once'], []):
            out = self.run_desk('watch', 'small', '--json', *words).stdout
            told = [event['variation'] for event in self.events(out) if event['event'] == 'point']
            self.assertEqual(told, ['cap=1e-12; res=100'])

    def test_a_setup_that_is_not_saved_yet_is_told_by_its_name(self):
        self.small_project()
        self.run_desk('setup', 'small', 'add', 'Fine', 'lin', '3', '1meg', '1g')
        self.run_desk('solve', 'small', '--setup', 'Fine', '--no-save')
        self.assertIn('Fine at cap=1e-12; res=50: solved', self.run_desk('watch', 'small').stdout)

    def test_passes_are_told_as_they_are_stored(self):
        self.adaptive_project()
        self.run_desk('solve', 'small', '--setup', 'Fast', '--no-save')
        events = self.events(self.run_desk('watch', 'small', '--json').stdout)
        passes = [event for event in events if event['event'] == 'pass']
        self.assertGreater(len(passes), 1)
        self.assertEqual([event['pass'] for event in passes], list(range(1, len(passes) + 1)))
        self.assertTrue(all(event['setup'] == 'Fast' and event['values'] for event in passes))
        self.assertEqual([event['passes'] for event in events if event['event'] == 'converged'], [len(passes)])

    def test_a_point_that_is_solved_again_is_told_with_its_passes_anew(self):
        self.adaptive_project()
        shell = subprocess.Popen([SOLVEDESK, 'shell', 'small'], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True)
        self.addCleanup(shell.stdout.close)
        self.addCleanup(shell.stderr.close)
        self.addCleanup(lambda: shell.poll() is None and shell.kill())
        watch = self.launch(SOLVEDESK, 'watch', 'small', '--wait', '--json')
        told = []
        for words in ('solve --setup Fast --no-save', 'solve --setup Fast --no-save --again'):
            shell.stdin.write(words + '\n')
            shell.stdin.flush()
            told.append([])
            while not told[-1] or told[-1][-1]['event'] != 'point':
                told[-1].append(json.loads(watch.stdout.readline()))
        shell.stdin.close()
        self.finish(watch)
        self.assertEqual(shell.wait(120), 0)
        first, again = [[event['event'] for event in events if event['event'] in ('pass', 'converged')]
                        for events in told]
        self.assertGreater(first.count('pass'), 1)
        self.assertEqual(first.count('converged'), 1)
        self.assertEqual(again, first)

    def test_points_that_were_stopped_are_neither_solved_nor_failed(self):
        self.small_project('slow', SLOW.replace('20001', '2000001'))
        solve = self.launch(SOLVEDESK, 'solve', 'slow', *STUDY, '--jobs', '2', '--no-save')
        time.sleep(1)
        solve.send_signal(signal.SIGINT)
        solve.send_signal(signal.SIGTERM)
        out, _ = solve.communicate(timeout=240)
        self.assertEqual(solve.returncode, 8, out)
        events = self.events(self.run_desk('watch', 'slow', '--json').stdout)
        stopped = [event for event in events if event['event'] == 'stopped']
        self.assertGreaterEqual(len(stopped), 1)
        self.assertEqual([event for event in events if event['event'] == 'failed'], [])
        self.assertEqual(events[-1]['failed'], 0)
        points = events[-1]['points']
        self.assertEqual(self.document('profile', 'slow')['total']['solves'], points)

    def test_points_that_fail_are_told_with_their_reason(self):
        self.small_project(netlist=FAILING)
        self.run_desk('solve', 'small', '--vary', 'res=20,50', '--no-save', code=5)
        out = self.run_desk('watch', 'small').stdout
        self.assertRegex(out, r'res=20: failed: ')
        self.assertIn('1 point, 1 failed', out)

    def test_a_reader_who_goes_away_ends_it(self):
        self.small_project('slow', SLOW)
        solve = self.launch(SOLVEDESK, 'solve', 'slow', *STUDY, '--events')
        solve.stdout.readline()
        watch = self.launch(SOLVEDESK, 'watch', 'slow', '--json')
        watch.stdout.readline()
        watch.stdout.close()
        self.assertEqual(watch.wait(120), 0)
        self.finish(solve)
        self.assertEqual(solve.returncode, 0)

    def test_waiting_ends_with_the_time(self):
        self.small_project()
        out = self.run_desk('watch', 'small', '--wait', '--for', '0.3', '--json').stdout
        self.assertEqual([event['event'] for event in self.events(out)], ['begin', 'end'])


class Records(LiveStudy):
    def test_each_solve_leaves_its_cost_also_one_that_failed(self):
        self.small_project(netlist=FAILING)
        self.run_desk('solve', 'small', '--vary', 'res=20,50', code=5)
        self.run_desk('solve', 'small', '--vary', 'res=50', '--again')
        document = self.document('profile', 'small')
        solves = {entry['variation']: entry for entry in document['records']}
        self.assertEqual(set(solves), {'cap=1e-12; res=20', 'cap=1e-12; res=50'})
        good = solves['cap=1e-12; res=50']
        self.assertEqual(good['total']['solves'], 2)
        self.assertEqual([group['end'] for group in good['groups'] if group['start'].startswith(SETUP + ' at ')],
                         ['solved', 'solved'])
        self.assertGreater(good['total']['memory_bytes'], 1e6)
        self.assertGreater(good['total']['wall_seconds'], 0)
        bad = solves['cap=1e-12; res=20']['groups'][0]
        self.assertTrue(bad['end'].startswith('failed: '), bad)
        self.assertEqual(document['total']['solves'], 3)
        text = self.run_desk('profile', 'small', '--brief', '--variation', 'res=50; cap=1p').stdout
        self.assertEqual(len(text.splitlines()), 2, text)
        self.assertIn('2 solves', text)

    def test_the_group_of_the_whole_solve_comes_before_those_of_its_solver(self):
        self.small_project()
        self.run_desk('solve', 'small')
        groups = self.document('profile', 'small')['records'][0]['groups']
        self.assertGreater(len(groups), 1, 'the product tells of costs of its own')
        self.assertEqual(['Whole solve' in [task['name'] for task in group['tasks']] for group in groups],
                         [True] + [False] * (len(groups) - 1))
        self.assertTrue(groups[0]['start'].startswith(f'{SETUP} at '))

    def test_passes_and_their_target_are_shown(self):
        self.adaptive_project()
        self.run_desk('solve', 'small', '--setup', 'Fast', '--vary', 'res=50,75')
        document = self.document('convergence', 'small')
        self.assertEqual((document['converged'], document['not_converged']), (2, 0))
        [one] = document['records'][0]['sets']
        self.assertTrue(one['converged'])
        self.assertEqual(one['target'], 1e-5)
        self.assertIsInstance(one['passes'][0]['Pass'], int)
        self.assertIn(type(one['max_passes']), (int, type(None)))
        header = self.run_desk('convergence', 'small').stdout.splitlines()[1].split()
        self.assertEqual([word.lower() for word in header].count('pass'), 1, header)
        self.assertIsNotNone(one['criterion'])
        self.assertGreater(len(one['passes']), 1)
        names = [column['name'] for column in one['columns']]
        self.assertEqual(list(one['passes'][0]), names)
        text = self.run_desk('convergence', 'small', '--variation', 'cap=1e-12; res=75').stdout
        self.assertRegex(text, r'Fast at cap=1e-12; res=75: converged, \d+ passes, target ')
        self.assertEqual(len(text.splitlines()), 3 + len(document['records'][1]['sets'][0]['passes']))

    def test_a_solve_again_replaces_the_passes_and_adds_to_the_costs(self):
        self.adaptive_project()
        self.run_desk('solve', 'small', '--setup', 'Fast')
        before = self.document('convergence', 'small')
        self.run_desk('solve', 'small', '--setup', 'Fast', '--again')
        self.assertEqual(self.document('convergence', 'small'), before)
        self.assertEqual(self.document('profile', 'small', '--setup', 'Fast')['total']['solves'], 2)

    def test_other_settings_have_records_of_their_own(self):
        self.adaptive_project()
        self.run_desk('solve', 'small', '--setup', 'Fast')
        self.run_desk('setup', 'small', 'edit', 'Fast', 'lin', '1001', '1meg', '1g', 'adaptive')
        self.assertEqual(self.document('convergence', 'small')['records'], [])
        self.run_desk('setup', 'small', 'edit', 'Fast', 'lin', '2001', '1meg', '1g', 'adaptive')
        self.assertEqual(len(self.document('convergence', 'small')['records']), 1)

    def test_a_damaged_record_is_told_and_the_others_are_shown(self):
        self.adaptive_project()
        self.run_desk('solve', 'small', '--setup', 'Fast', '--vary', 'res=50,75,100')
        for verb, kind in (('profile', 'profile'), ('convergence', 'convergence')):
            listed = subprocess.run([QSOL, 'list', 'small.results/small.qsol', '--kind', kind, '--variation',
                                     'cap=1e-12; res=75', '--json'], capture_output=True, text=True, check=True).stdout
            block, = json.loads(listed)['blocks']
            content = bytearray(read('small.results/small.qsol'))
            content[block['offset'] + block['bytes'] // 2] ^= 0x55
            with open('small.results/small.qsol', 'wb') as file:
                file.write(content)
            done = self.run_desk(verb, 'small', '--json', code=3)
            self.assertIn('res=75: the record of its solve', done.stderr)
            shown = [entry['variation'] for entry in json.loads(done.stdout)['records']]
            self.assertEqual(sorted(shown), ['cap=1e-12; res=100', 'cap=1e-12; res=50'])

    def test_where_there_is_none_it_is_said(self):
        self.small_project()
        self.assertIn('no solve', self.run_desk('profile', 'small').stdout)
        self.assertIn('no solve', self.run_desk('convergence', 'small').stdout)
        self.assertIn('res=7', self.refuse(2, 'profile', 'small', '--variation', 'res=7'))
        self.assertIn('Other', self.refuse(2, 'convergence', 'small', '--setup', 'Other'))
        self.assertIn('--variation', self.refuse(2, 'convergence', 'small', '--variation', ' '))


class Terminal(LiveStudy):
    def solve_on_terminal(self, *words):
        """What the terminal of a solve receives."""
        process, terminal = pty.fork()
        if process == 0:
            os.environ['TERM'] = 'xterm'
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack('HHHH', 24, 160, 0, 0))  # Room for all that a line tells.
            os.execv(SOLVEDESK, [SOLVEDESK, 'solve', 'slow', *words])
        guard = threading.Timer(240, os.kill, (process, signal.SIGKILL))
        guard.start()
        text = b''
        while True:
            try:
                piece = os.read(terminal, 65536)
            except OSError:  # what Linux tells of a terminal that nobody holds any more
                break
            if not piece:
                break
            text += piece
        guard.cancel()
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), 0, text)
        return text.decode()

    def test_each_worker_and_the_whole_have_lines_that_vanish_at_the_end(self):
        self.small_project('slow', SLOW)
        text = self.solve_on_terminal(*STUDY, '--jobs', '2')
        self.assertRegex(text, r'SParameters1 at cap=1e-12; res=\d+')
        self.assertRegex(text, r'solving: \d+ of 40')
        last = text[text.rindex('\x1b[J'):]
        self.assertEqual(re.sub(r'\x1b\[J', '', last).strip(), '40 points: 40 solved, 0 valid already; saved')

    def test_the_line_of_a_point_tells_what_its_last_pass_came_to_and_the_target(self):
        # Half-wave resonances of a long line keep the sweep busy for a while.
        self.small_project('slow', SMALL.replace('C1 in 0 {cap}', 'T1 in 0 far 0 z0=75 td=500n\nR2 far 0 {res}')
                           .replace('.sp lin 11 1meg 1g', '.sp lin 20001 1meg 1g'))
        self.run_desk('setup', 'slow', 'edit', SETUP, 'lin', '20001', '1meg', '1g', 'adaptive')
        text = self.solve_on_terminal('--vary', 'res=50,60,70')
        self.assertRegex(text, r'hange.* [0-9.e+-]+ of 1e-0?5')

    def test_events_tell_the_passes_as_they_come(self):
        self.adaptive_project()
        events = self.events(self.run_desk('solve', 'small', '--setup', 'Fast', '--events').stdout)
        passes = [event for event in events if event['event'] == 'pass']
        stored = self.document('convergence', 'small')['records'][0]['sets'][0]['passes']
        self.assertEqual([event['pass'] for event in passes], list(range(1, len(stored) + 1)))
        self.assertEqual([event['values'] for event in passes], stored)
        self.assertLess(events.index(passes[-1]), [event['event'] for event in events].index('stored'))

    def test_quiet_shows_nothing(self):
        self.small_project('slow', SLOW)
        self.assertEqual(self.solve_on_terminal('--vary', 'res=1:10:1', '--quiet'), '')

    def test_elsewhere_a_short_solve_tells_its_result_alone(self):
        self.small_project()
        done = self.run_desk('solve', 'small', '--vary', 'res=1:10:1')
        self.assertEqual((done.stdout, done.stderr), ('10 points: 10 solved, 0 valid already; saved\n', ''))


if __name__ == '__main__':
    unittest.main()
