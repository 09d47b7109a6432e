"""Connections between projects: data of one becomes a part of another's circuit, is refreshed, goes stale, is refused."""
import os
import re
import shutil
import unittest

from _solvedesk import SOLVEDESK, DeskTest, read, write

PART = """L1 in mid {ind}
C1 mid 0 2p
R1 mid out 7
C2 out 0 1p
T1 out 0 far 0 z0=70 td=0.1n
R2 far 0 900
"""
PORTS = 'V1 in 0 dc 0 ac 1 portnum 1 z0 50\nV2 out 0 dc 0 ac 0 portnum 2 z0 50\n'
SWEEP = '.sp lin 11 100meg 2.1g\n'
AMP = f'amplifier\n.param ind=4n\n{PART}{PORTS}{SWEEP}.end\n'
REST = 'R9 in a {series}\nC9 out 0 3p\nL9 b out 2n\n'
BEFORE = f'receiver without its amplifier\n.param series=20\nR8 a b 1\n{REST}{PORTS}{SWEEP}.end\n'
CONNECTED = f'receiver\n.param series=20\nN1 a b amp.s2p\n{REST}{PORTS}{SWEEP}.end\n'


def flat(inductance):
    return (f'both in one\n.param series=20\nX1 a b part\n.subckt part in out\n'
            f'{PART.replace("{ind}", inductance)}.ends\n{REST}{PORTS}{SWEEP}.end\n')


class Connected(DeskTest):
    def solved(self, name, netlist, *words):
        write(f'{name}.cir', netlist)
        self.run_desk('new', name, '--netlist', f'{name}.cir')
        self.run_desk('solve', name, *words)

    def pair(self):
        """Project rx, connected to amp under the name amp, its netlist reading the file."""
        self.solved('amp', AMP)
        write('rx.cir', BEFORE)
        self.run_desk('new', 'rx', '--netlist', 'rx.cir')
        self.run_desk('connect', 'rx', 'amp', '--as', 'amp')
        write('rx.cir', CONNECTED)
        self.run_desk('reload', 'rx')

    def numbers(self, project):
        """Rows of the one solved and valid point's file."""
        shutil.rmtree('out', ignore_errors=True)
        self.run_desk('touchstone', project, '--to', 'out', '--digits', '17')
        name, = [each for each in os.listdir('out') if each.endswith('.s2p')]
        lines = read(os.path.join('out', name)).decode().splitlines()
        return [[float(word) for word in line.split()] for line in lines if line[0] not in '!#']

    def assert_same(self, actual, expected):
        self.assertEqual(len(actual), len(expected))
        for one, other in zip(actual, expected):
            self.assertEqual(one[0], other[0])
            for a, b in zip(one, other):
                self.assertLessEqual(abs(a - b), 1e-9 * max(1.0, abs(b)))

    def state(self):
        entry, = self.document('connections', 'rx')['connections']
        return entry

    def test_a_cascade_of_two_projects_solves_as_one_netlist(self):
        self.pair()
        self.run_desk('solve', 'rx')
        self.solved('flat', flat('4n'))
        self.assert_same(self.numbers('rx'), self.numbers('flat'))

    def test_a_refresh_makes_results_stale_tells_why_and_a_solve_gives_the_new_cascade(self):
        self.pair()
        self.run_desk('solve', 'rx')
        self.assertEqual(self.state()['state'], 'current')
        self.assertIn('every connection holds', self.run_desk('refresh', 'rx').stdout)
        write('amp.cir', AMP.replace('ind=4n', 'ind=6n'))
        self.run_desk('reload', 'amp')
        self.run_desk('solve', 'amp')
        self.assertEqual(self.state()['state'], 'source changed')
        self.assertTrue(all(v['valid'] for v in self.variations('rx').values()))
        document = self.document('refresh', 'rx', 'amp')
        self.assertEqual(document['connections'], [{'name': 'amp', 'changed': True}])
        self.assertEqual((document['valid_points_before'], document['valid_points']), (1, 0))
        solution = self.document('info', 'rx', '--why')['setups'][0]['solutions'][0]
        why, = [v['why'] for v in solution['variations'] if 'why' in v]
        self.assertEqual(why['command'], 'refresh amp')
        self.assertEqual([change['what'] for change in why['changes']], ['connection amp', 'content of amp.s2p'])
        self.run_desk('solve', 'rx', '--stale')
        self.solved('flat', flat('6n'))
        self.assert_same(self.numbers('rx'), self.numbers('flat'))
        self.assertEqual(self.state()['state'], 'current')

    def test_a_connection_is_kept_by_save_and_reopen_and_a_shell_undoes_its_refresh(self):
        self.pair()
        self.run_desk('solve', 'rx')
        guid = self.state()['guid']
        self.assertRegex(guid, r'^\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\}$')
        self.assertIn(guid, read('rx.sproject').decode())
        self.assertEqual(self.state()['type'], 'SParameters')
        before = read('amp.s2p')
        self.run_desk('set', 'amp', 'ind=6n')
        self.run_desk('solve', 'amp')
        write('script', 'refresh\nundo\nconnections\n')
        done = self.run_desk('shell', 'rx', 'script')
        self.assertIn('amp: source changed', done.stdout)
        self.assertEqual(read('amp.s2p'), before)
        self.assertTrue(all(v['valid'] for v in self.variations('rx').values()))

    def test_a_fixed_point_does_not_follow_the_variables_of_the_source(self):
        self.solved('amp', AMP, '--vary', 'ind=4e-9,6e-9')
        write('rx.cir', BEFORE)
        self.run_desk('new', 'rx', '--netlist', 'rx.cir')
        self.run_desk('connect', 'rx', 'amp', '--variation', 'ind=6e-9', '--as', 'fixed')
        self.run_desk('connect', 'rx', 'amp', '--as', 'present')
        self.assertNotEqual(read('fixed.s2p'), read('present.s2p'))
        self.run_desk('set', 'amp', 'ind=6n')
        self.run_desk('save', 'amp')
        changed = {entry['name']: entry['changed'] for entry in self.document('refresh', 'rx')['connections']}
        self.assertEqual(changed, {'fixed': False, 'present': True})
        strip = re.compile(rb'^!.*\n', re.M)
        self.assertEqual(strip.sub(b'', read('fixed.s2p')), strip.sub(b'', read('present.s2p')))

    def test_a_file_that_no_line_reads_is_noted_with_the_line_to_write(self):
        self.solved('amp', AMP)
        write('rx.cir', BEFORE)
        self.run_desk('new', 'rx', '--netlist', 'rx.cir')
        done = self.run_desk('connect', 'rx', 'amp', '--as', 'amp')
        self.assertIn("write one such as 'N1 NODE NODE amp.s2p', and reload", done.stderr)
        self.assertFalse(self.state()['used'])

    def test_a_project_is_made_with_its_connection_in_one_step_or_nothing_is_left(self):
        self.solved('amp', AMP)
        write('rx.cir', CONNECTED)
        before = sorted(os.listdir('.'))
        self.assertIn("amp.s2p: can't be read", self.refuse(4, 'new', 'rx', '--netlist', 'rx.cir'))
        self.assertIn('NAME=SOURCE_PROJECT', self.refuse(2, 'new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp'))
        self.refuse(3, 'new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=nobody')
        self.refuse(4, 'new', 'rx', '--netlist', 'gone.cir', '--connect', 'amp=amp')
        self.assertEqual(sorted(os.listdir('.')), before)
        self.run_desk('new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=amp')
        self.assertEqual((self.state()['state'], self.state()['used']), ('current', True))
        self.assertFalse(self.document('info', 'rx')['unsaved_changes'])
        self.run_desk('solve', 'rx')
        self.solved('flat', flat('4n'))
        self.assert_same(self.numbers('rx'), self.numbers('flat'))

    def test_disconnect_leaves_the_file_and_the_results(self):
        self.pair()
        self.run_desk('solve', 'rx')
        self.run_desk('disconnect', 'rx', 'amp')
        self.assertEqual(self.document('connections', 'rx')['connections'], [])
        self.assertTrue(all(v['valid'] for v in self.variations('rx').values()))
        self.assertTrue(os.path.exists('amp.s2p'))

    def test_what_can_not_be_connected_is_refused_by_name(self):
        self.pair()
        self.assertIn('nobody.sproject: there is no such project',
                      self.refuse(3, 'connect', 'rx', 'nobody', '--as', 'x'))
        self.assertIn("it has no setup 'Other'; name another one: SParameters1",
                      self.refuse(2, 'connect', 'rx', 'amp', '--setup', 'Other', '--as', 'x'))
        self.assertIn("is not solved and valid at 'ind=9'",
                      self.refuse(1, 'connect', 'rx', 'amp', '--variation', 'ind=9', '--as', 'x'))
        self.assertIn('rx -> rx', self.refuse(2, 'connect', 'rx', 'rx', '--as', 'x'))
        self.assertIn('amp -> rx -> amp', self.refuse(2, 'connect', 'amp', 'rx', '--as', 'x'))
        self.assertIn('no connection of that name; it has: amp', self.refuse(2, 'disconnect', 'rx', 'x'))

    def test_a_source_that_another_process_has_is_refused(self):
        self.pair()
        os.mkfifo('script')
        fifo = os.open('script', os.O_RDWR)
        self.addCleanup(os.close, fifo)
        os.write(fifo, b'history\n')
        shell = self.launch(SOLVEDESK, 'shell', 'amp', 'script', '--json')
        shell.stdout.readline()  # It has the project by now.
        self.assertIn('amp.sproject: a process has the project open', self.refuse(6, 'refresh', 'rx'))
        self.assertEqual(self.state()['state'], 'current')
        shell.kill()
        shell.wait()

    def test_a_source_that_went_away_is_told_and_what_was_taken_goes_on(self):
        self.pair()
        shutil.move('amp.sproject', 'amp.away')
        entry = self.state()
        self.assertEqual(entry['state'], 'source missing')
        self.assertIn('there is no such project', entry['why'])
        self.refuse(3, 'refresh', 'rx')
        self.run_desk('solve', 'rx')

    def test_a_sweep_beyond_the_data_fails_with_the_range_told(self):
        self.pair()
        write('rx.cir', CONNECTED.replace('2.1g', '3g'))
        self.run_desk('reload', 'rx')
        done = self.run_desk('solve', 'rx', code=5)
        self.assertIn('N1: it is not known at', done.stderr)
        self.assertIn('amp.s2p goes from 100000000 to 2100000000 Hz', done.stderr)

    def test_other_ports_are_refused_and_nothing_changes(self):
        self.pair()
        before = read('amp.s2p')
        write('amp.cir', AMP.replace('.sp', 'V3 mid 0 dc 0 ac 0 portnum 3 z0 50\n.sp'))
        self.run_desk('reload', 'amp')
        self.run_desk('solve', 'amp')
        self.assertIn("has 3 ports now, which 'amp.s2p' can't hold", self.refuse(1, 'refresh', 'rx'))
        self.assertEqual(read('amp.s2p'), before)

    def test_a_new_project_names_setup_and_point_of_its_source(self):
        self.solved('amp', AMP.replace(SWEEP, SWEEP + '.sp lin 6 100meg 2.1g\n'), '--vary', 'ind=4n,6n')
        write('rx.cir', CONNECTED)
        told = self.refuse(2, 'new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=amp')
        self.assertIn('it has several setups; name one of them', told)
        self.assertIn('NAME=PROJECT:SETUP`: SParameters1, SParameters2', told)
        self.assertIn('no setup', self.refuse(2, 'new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=amp:Nix'))
        self.refuse(3, 'new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=pma:SParameters2')
        self.assertFalse(os.path.exists('amp.s2p') or os.path.exists('rx.sproject'))
        os.mkdir('a:b')
        for file in ('amp.sproject', 'amp.results', 'amp.cir'):
            shutil.move(file, 'a:b')
        self.run_desk('new', 'rx', '--netlist', 'rx.cir', '--connect', 'amp=a:b/amp:SParameters2: ind=6n')
        entry = self.state()
        self.assertEqual((entry['setup'], entry['variation'], entry['state']), ('SParameters2', 'ind=6n', 'current'))

    def test_variables_that_a_connection_does_not_name_stand_as_the_source_has_them(self):
        self.solved('amp', AMP.replace('ind=4n', 'ind=4n cap=1').replace('C2 out 0 1p', 'C2 out 0 {cap*1e-12}'),
                    '--vary', 'ind=4n,6n')
        write('rx.cir', BEFORE)
        self.run_desk('new', 'rx', '--netlist', 'rx.cir')
        self.run_desk('connect', 'rx', 'amp', '--as', 'amp', '--variation', 'ind=6n')
        taken = read('amp.s2p')
        self.run_desk('disconnect', 'rx', 'amp')
        os.remove('amp.s2p')
        self.run_desk('connect', 'rx', 'amp', '--as', 'amp', '--variation', 'cap=1; ind=6e-9')
        self.assertEqual([line for line in read('amp.s2p').splitlines() if not line.startswith(b'!')],
                         [line for line in taken.splitlines() if not line.startswith(b'!')])


if __name__ == '__main__':
    unittest.main()
