"""One process has a project at a time; workers may die, and a solve may be stopped, without costing other points."""
import json
import os
import signal
import subprocess
import time
import unittest

from _solvedesk import SMALL, SOLVEDESK, DeskTest, read

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


if __name__ == '__main__':
    unittest.main()
