"""What programs read: JSON documents, events, exit codes, streams."""
import json
import subprocess
import unittest

from _solvedesk import SETUP, SMALL, SOLVEDESK, DeskTest, write


class Documents(DeskTest):
    def test_every_verb_prints_one_document_with_its_schema_version(self):
        write('c.cir', SMALL)
        made = self.document('new', 'p', '--netlist', 'c.cir')
        self.assertEqual(made['setups'], [SETUP])
        self.assertEqual({v['name'] for v in made['variables']}, {'cap', 'res'})
        self.assertEqual(len(self.document('set', 'p', 'res=40')['variables']), 2)
        solved = self.document('solve', 'p', '--no-save')
        self.assertEqual((solved['stored'], solved['failed'], solved['saved'], solved['failures']), (1, 0, False, []))
        self.assertTrue(self.document('save', 'p')['saved'])
        files = self.document('touchstone', 'p', '--to', 'out')['files']
        self.assertEqual([sorted(file) for file in files], [['file', 'setup', 'variation']])

    def test_new_notes_what_it_did_not_read(self):
        write('c.cir', SMALL.replace('.sp', '.temp 27\n.sp'))
        done = self.run_desk('new', 'p', '--netlist', 'c.cir')
        self.assertEqual(done.stderr, 'solvedesk: note: c.cir:6: .temp: ignored\n')
        self.assertEqual(self.document('new', 'q', '--netlist', 'c.cir')['notes'], ['c.cir:6: .temp: ignored'])
        write('d.cir', SMALL)
        self.assertEqual(self.document('new', 'r', '--netlist', 'd.cir')['notes'], [])

    def test_info_tells_sweeps_and_the_state_of_each_variation(self):
        self.small_project()
        self.run_desk('solve', 'small')
        document = self.document('info', 'small')
        setup, = document['setups']
        self.assertEqual(setup['name'], SETUP)
        sweep, = setup['sweeps']
        self.assertEqual((sweep['start'], sweep['stop'], sweep['count']), (1e6, 1e9, 11))
        state, = setup['solutions'][0]['variations']
        self.assertEqual(sorted(state), ['former', 'has_data', 'saved', 'unsaved', 'valid', 'variation', 'version'])

    def test_info_is_written_as_a_tree_of_its_parts_would_be(self):
        write('c.cir', SMALL)
        self.run_desk('new', 'größe "p"', '--netlist', 'c.cir')
        for words in (('solve', 'größe "p"', '--vary', 'res=10:30:10'), ('set', 'größe "p"', 'res=7')):
            printed = self.run_desk('info', 'größe "p"', '--json').stdout
            self.assertEqual(printed, json.dumps(json.loads(printed), indent=2, ensure_ascii=False) + '\n')
            self.run_desk(*words)
        told = self.run_desk('info', 'größe "p"', '--why', '--json').stdout
        self.assertEqual(told, json.dumps(json.loads(told), indent=2, ensure_ascii=False) + '\n')
        write('script', 'info --why\n')
        line = json.loads(self.run_desk('shell', 'größe "p"', 'script', '--json').stdout)
        expected = json.loads(told)
        del expected['schema_version']
        self.assertEqual(json.dumps(line['result']), json.dumps(expected))

    def test_each_stored_point_is_an_event_line_and_the_end_is_one(self):
        self.small_project()
        done = self.run_desk('solve', 'small', '--vary', 'res=10:50:10', '--events')
        events = [json.loads(line) for line in done.stdout.splitlines()]
        stored = [event for event in events if event['event'] == 'stored']
        self.assertEqual({event['setup'] for event in stored}, {SETUP})
        self.assertEqual({event['variation'] for event in stored}, set(self.variations('small')))
        self.assertEqual(events[-1]['event'], 'finished')
        self.assertEqual((events[-1]['stored'], events[-1]['failed'], events[-1]['saved']), (5, 0, True))
        self.assertEqual(len(events), 6)

    def test_points_that_fail_are_told_one_line_each_and_the_others_are_kept(self):
        self.small_project(netlist=SMALL.replace('R1 in 0 {res}', 'R1 in 0 {100/(res-20)}'))
        done = self.run_desk('solve', 'small', '--vary', 'res=10,20,30', '--events', code=5)
        events = [json.loads(line) for line in done.stdout.splitlines()]
        failed = [event for event in events if event['event'] == 'failed']
        self.assertEqual([event['variation'] for event in failed], ['cap=1e-12; res=20'])
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertIn('res=20', done.stderr)
        kept = {v for v, state in self.variations('small').items() if state['has_data'] and state['saved']}
        self.assertEqual(kept, {'cap=1e-12; res=10', 'cap=1e-12; res=30'})

    def test_failed_points_stand_in_the_document_too(self):
        self.small_project(netlist=SMALL.replace('R1 in 0 {res}', 'R1 in 0 {100/(res-20)}'))
        document = self.document('solve', 'small', '--vary', 'res=10,20', code=5)
        self.assertEqual((document['stored'], document['failed']), (1, 1))
        self.assertEqual([failure['variation'] for failure in document['failures']], ['cap=1e-12; res=20'])

    def test_help_and_version_go_to_standard_output(self):
        version = self.run_desk('--version')
        self.assertRegex(version.stdout, r'^solvedesk \d+\.\d+\.\d+\n$')
        top = self.run_desk('--help').stdout
        for text in ('Examples:', 'Exit codes:'):
            self.assertIn(text, top)
        self.assertNotIn('worker', top)
        for verb in ('new', 'info', 'set', 'solve', 'save', 'touchstone'):
            self.assertIn(verb, top)
            help_text = self.run_desk(verb, '--help').stdout
            self.assertIn('Example', help_text)
            self.assertIn('--json', help_text)

    def test_output_holds_no_control_characters_when_it_is_no_terminal(self):
        self.small_project()
        for words in (('solve', 'small', '--vary', 'res=1:20:1'), ('info', 'small'), ('save', 'small')):
            done = self.run_desk(*words)
            self.assertNotIn('\x1b', done.stdout + done.stderr)
            self.assertNotIn('\r', done.stdout + done.stderr)

    def test_output_that_can_not_be_written_is_a_failure(self):
        self.small_project()
        with open('/dev/full', 'w', encoding='utf-8') as full:
            done = subprocess.run([SOLVEDESK, 'info', 'small'], stdout=full, stderr=subprocess.PIPE, text=True,
                                  check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn('standard output', done.stderr)


if __name__ == '__main__':
    unittest.main()
