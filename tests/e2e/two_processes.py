"""One process has a project at a time; workers may die, a solve may be stopped and the disk may be full without costing
points that were acknowledged."""
import json
import os
import resource
import signal
import subprocess
import time
import unittest

from _solvedesk import LOWPASS, SMALL, SOLVEDESK, DeskTest, files_below, read, write

# Enough frequencies for a point to take a while.
SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 20001 1meg 1g')
MANY = ('--vary', 'res=1:200:1')


def children(pid):
    """Process ids of the workers."""
    try:
        with open(f'/proc/{pid}/task/{pid}/children', encoding='ascii') as file:
            return [int(word) for word in file.read().split()]
    except FileNotFoundError:
        return []


class TwoProcesses(DeskTest):
    def start_solve(self, *words):
        """A solve that runs, with its first event read."""
        with open('errors', 'w', encoding='utf-8') as errors:
            process = subprocess.Popen([SOLVEDESK, 'solve', 'slow', *MANY, '--events', *words],
                                       stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=errors, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        first = json.loads(process.stdout.readline())
        self.assertEqual(first['event'], 'stored')
        return process, first

    def finish(self, process):
        events = [json.loads(line) for line in process.stdout]
        process.wait()
        return events, read('errors').decode()

    def stored(self, events):
        return {event['variation'] for event in events if event['event'] == 'stored'}

    def with_data(self, project):
        return {v for v, state in self.variations(project).items() if state['has_data'] and state['valid']}

    def test_a_project_that_is_being_solved_is_locked_for_others_and_can_be_looked_at(self):
        self.small_project('slow', SLOW)
        process, _ = self.start_solve()
        for words in (['solve', 'slow'], ['set', 'slow', 'res=1'], ['save', 'slow']):
            self.assertIn('slow', self.refuse(6, *words))
        seen = self.document('info', 'slow')
        self.assertTrue(seen['read_only'])
        events, err = self.finish(process)
        self.assertEqual((process.returncode, err), (0, ''))
        self.assertEqual(events[-1]['stored'], 200)

    def test_an_interrupt_finishes_what_runs_and_keeps_what_is_solved(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve()
        process.send_signal(signal.SIGINT)
        events, _ = self.finish(process)
        self.assertEqual(process.returncode, 8)
        self.assertTrue(events[-1]['interrupted'])
        self.assertLess(events[-1]['stored'], 200)
        self.assertEqual(self.with_data('slow'), self.stored([first] + events))

    def test_a_second_interrupt_stops_at_once_and_keeps_what_is_solved(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve()
        process.send_signal(signal.SIGINT)
        process.send_signal(signal.SIGTERM)
        events, _ = self.finish(process)
        self.assertEqual(process.returncode, 8)
        self.assertEqual(self.with_data('slow'), self.stored([first] + events))

    def test_an_interrupt_after_the_last_point_does_not_cut_the_save_short(self):
        self.small_project('slow')
        process = subprocess.Popen([SOLVEDESK, 'solve', 'slow', '--vary', 'res=1:1000:1', '--events'],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        for _ in range(1000):
            process.stdout.readline()
        process.send_signal(signal.SIGINT)
        process.send_signal(signal.SIGTERM)
        finished = json.loads(process.stdout.readline())
        process.wait(120)
        self.assertEqual((finished['event'], finished['stored'], finished['saved']), ('finished', 1000, True))
        self.assertFalse(self.document('info', 'slow')['unsaved_changes'])

    def test_an_edit_of_the_source_ends_the_solve_and_nothing_of_the_new_one_is_stored(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve('--jobs', '1')
        write('slow.cir', SLOW.replace('R1 in 0 {res}', 'R1 in 0 {res*1000}'))
        events, err = self.finish(process)
        self.assertEqual(process.returncode, 4)
        self.assertIn('slow.cir: the source has changed', err)
        self.assertIn('reload', events[-1]['error'])
        self.assertTrue(events[-1]['saved'])
        stored = self.stored([first] + events)
        self.assertLess(len(stored), 200)
        write('slow.cir', SLOW)
        self.assertEqual(self.with_data('slow'), stored)
        self.run_desk('touchstone', 'slow', '--to', 'during')
        self.run_desk('new', 'right', '--netlist', 'slow.cir')
        values = ','.join(text.split('res=')[1] for text in stored)
        self.run_desk('solve', 'right', '--vary', 'res=' + values)
        self.run_desk('touchstone', 'right', '--to', 'right')
        for name in files_below('right'):
            if name.endswith('.s1p'):
                self.assertEqual(read('during/' + name).splitlines()[-1], read('right/' + name).splitlines()[-1], name)

    def test_a_killed_worker_costs_its_own_point_alone(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve('--jobs', '2')
        victims = children(process.pid)[:1]
        for victim in victims:
            os.kill(victim, signal.SIGKILL)
        events, err = self.finish(process)
        self.assertTrue(victims)
        self.assertLessEqual(events[-1]['failed'], 1)
        self.assertEqual(events[-1]['stored'] + events[-1]['failed'], 200, err)
        self.assertEqual(process.returncode, 5 if events[-1]['failed'] else 0)
        self.assertEqual(self.with_data('slow'), self.stored([first] + events))

    def test_no_worker_outlives_a_killed_solve(self):
        self.small_project('slow', SLOW)
        process, _ = self.start_solve()
        workers = children(process.pid)
        self.assertTrue(workers)
        process.kill()
        process.wait()
        deadline = time.monotonic() + 20
        while any(os.path.exists(f'/proc/{pid}') for pid in workers) and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual([pid for pid in workers if os.path.exists(f'/proc/{pid}')], [])

    def test_points_over_their_time_limit_fail_and_the_run_ends(self):
        self.small_project('slow', SMALL.replace('.sp lin 11', '.sp lin 2000001'))
        started = time.monotonic()
        document = self.document('solve', 'slow', '--vary', 'res=1,2', '--time-limit', '0.05', code=5)
        self.assertEqual((document['failed'], document['stored']), (2, 0))
        self.assertLess(time.monotonic() - started, 60)

    def test_a_full_disk_is_told_and_what_was_acknowledged_is_kept(self):
        self.small_project('slow', read(LOWPASS).decode())
        words = [SOLVEDESK, 'solve', 'slow', '--vary', 'cscale=0.8:1.2:0.02', '--vary', 'lscale=0.8:1.2:0.02']
        for limit in range(4_000_000, 20_000_000, 4_000_000):  # all points together take some 16 MB
            done = subprocess.run(words + ['--events'], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)),
                                  timeout=300, check=False)
            self.assertEqual(done.returncode, 7, done.stderr)
            self.assertIn('slow.results', done.stderr)
            acknowledged = self.stored([json.loads(line) for line in done.stdout.splitlines()])
            self.assertLess(len(acknowledged), 441)
            if acknowledged:
                break
        self.assertTrue(acknowledged)
        self.assertLessEqual(acknowledged, self.with_data('slow'))
        subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, timeout=300, check=True)
        self.assertEqual(len(self.with_data('slow')), 441)

    def test_a_reader_of_events_that_goes_away_stops_the_run_and_costs_nothing(self):
        self.small_project('slow', SLOW)
        process, _ = self.start_solve()
        process.stdout.close()
        process.wait(timeout=120)
        self.assertEqual(process.returncode, 8)
        self.assertIn('went away', read('errors').decode())
        states = self.variations('slow').values()
        self.assertTrue(0 < len(states) < 200)
        self.assertTrue(all(state['saved'] for state in states))

    def test_a_terminal_that_goes_away_stops_the_run(self):
        self.small_project('slow', SLOW)
        process, first = self.start_solve()
        process.send_signal(signal.SIGHUP)
        events, _ = self.finish(process)
        self.assertEqual((process.returncode, events[-1]['event']), (8, 'finished'))
        self.assertEqual(self.with_data('slow'), self.stored([first] + events))

    def test_events_that_can_not_be_written_cost_no_point(self):
        self.small_project('slow')
        with open('/dev/full', 'w', encoding='utf-8') as full:
            done = subprocess.run([SOLVEDESK, 'solve', 'slow', '--vary', 'res=1,2,3', '--events'], stdout=full,
                                  stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn('3 points: 3 solved, 0 valid already; saved', done.stderr)
        self.assertEqual(len(self.with_data('slow')), 3)

    def test_a_save_that_finds_no_room_is_made_up_for_by_save(self):
        self.small_project('slow')
        self.run_desk('solve', 'slow', '--vary', 'res=1:40:1')
        size = os.stat('slow.results/slow.qsol').st_size
        words = [SOLVEDESK, 'solve', 'slow', '--vary', 'res=41:50:1', '--events']
        done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size + 500, size + 500)))
        self.assertEqual(done.returncode, 7, done.stderr)
        self.assertIn('`solvedesk save slow` is enough', done.stderr)
        last = json.loads(done.stdout.splitlines()[-1])
        self.assertEqual((last['event'], last['stored'], last['saved']), ('finished', 10, False))
        self.assertIn('solvedesk save slow', last['error'])
        self.run_desk('save', 'slow')
        self.assertTrue(all(state['saved'] for state in self.variations('slow').values()))
        self.assertEqual(len(self.with_data('slow')), 50)


if __name__ == '__main__':
    unittest.main()
