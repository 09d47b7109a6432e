"""Files that a setup asks for beside its S-parameters, through solve, save, discard, edits and crashes."""
import json
import os
import signal
import subprocess
import unittest

from _solvedesk import SETUP, SOLVEDESK, DeskTest, files_below, read, write

# A divider: 1 V behind 50 ohm, `res` to the middle, 100 ohm to ground there.
DIVIDER = """divider
.param res=50
V1 in 0 dc 0 ac 1 portnum 1 z0 50
R1 in mid {res}
R2 mid 0 100
.sp lin 3 1meg 1g touchstone voltages=1meg,2g
.end
"""
SLOW = DIVIDER.replace('lin 3', 'lin 20001')


def table(path):
    rows = [line.split(',') for line in read(path).decode().splitlines() if not line.startswith('#')]
    return {row[0]: complex(float(row[1]), float(row[2])) for row in rows[1:]}


def reflections(path):
    lines = [line for line in read(path).decode().splitlines() if line[0] not in '!#']
    return [complex(*map(float, line.split()[1:])) for line in lines]


class ResultFiles(DeskTest):
    def project(self, netlist=DIVIDER):
        write('divider.cir', netlist)
        self.run_desk('new', 'divider', '--netlist', 'divider.cir')

    def solve(self, values, *words, code=0):
        return self.run_desk('solve', 'divider', '--vary', f'res={values}', *words, code=code)

    def point(self, value):
        document = self.document('info', 'divider', '--files')
        points = document['setups'][0]['solutions'][0]['variations']
        return next(point for point in points if point['variation'] == f'res={value}' and not point['former'])

    def results(self, value):
        return {(result['store'], result.get('number')): result for result in self.point(value)['results']}

    def kept(self):
        return [name for name in files_below('divider.results') if '/Touchstone/' in name or '/NodeVoltages/' in name]

    def assert_divider(self, value, results):
        total = 50 + value + 100
        for number in (1e6, 2e9):
            voltages = table(results['NodeVoltages', number]['path'])
            self.assertAlmostEqual(voltages['mid'], 100 / total, places=12)
            self.assertAlmostEqual(voltages['in'], (100 + value) / total, places=12)
        for s in reflections(results['Touchstone', None]['path']):
            self.assertAlmostEqual(s, (value + 50) / (value + 150), places=12)

    def test_hold_the_numbers_of_their_point(self):
        self.project()
        self.solve('10,20,30')
        for value in (10, 20, 30):
            results = self.results(value)
            self.assertEqual(sorted(results, key=str), sorted([('NodeVoltages', 1e6), ('NodeVoltages', 2e9),
                                                               ('Touchstone', None)], key=str))
            self.assertEqual({result['state'] for result in results.values()}, {'saved'})
            self.assert_divider(value, results)
            path = results['Touchstone', None]['path']
            self.assertTrue(path.endswith('.s1p'))
            self.assertIn(f'! Variation: res={value}', read(path).decode())
        self.assertEqual(len(self.kept()), 9)

    def test_are_what_the_touchstone_verb_writes(self):
        self.project()
        self.solve('10')
        self.run_desk('touchstone', 'divider', '--to', 'out')
        self.assertEqual(read(os.path.join('out', f'{SETUP}_res=10.s1p')),
                         read(self.results(10)['Touchstone', None]['path']))

    def test_without_being_asked_for_there_are_none(self):
        self.project(DIVIDER.replace('touchstone voltages=1meg,2g', ''))
        self.solve('10')
        self.assertEqual(self.kept(), [])
        self.assertEqual(self.point(10)['results'], [])

    def test_a_solve_after_a_save_writes_beside_the_saved_files_and_a_discard_goes_back(self):
        self.project()
        self.solve('10')
        saved = {name: read(os.path.join('divider.results', name)) for name in self.kept()}
        self.solve('10', '--again', '--no-save')
        self.assertEqual(len(self.kept()), 6)
        point = self.point(10)
        self.assertEqual((point['saved'], point['unsaved']), (True, True))
        self.assertIn('both', self.run_desk('info', 'divider').stdout)
        for result in self.results(10).values():
            self.assertEqual(result['state'], 'both')
            self.assertNotEqual(result['path'], result['saved_path'])
            self.assertTrue(os.path.exists(result['path']) and os.path.exists(result['saved_path']))
        self.run_desk('discard', 'divider')
        self.assertEqual({name: read(os.path.join('divider.results', name)) for name in self.kept()}, saved)
        self.assertEqual(self.point(10)['unsaved'], False)

    def test_a_save_moves_new_files_over_the_saved_ones(self):
        self.project()
        self.solve('10')
        names = self.kept()
        self.solve('10', '--again', '--no-save')
        self.run_desk('save', 'divider')
        self.assertEqual(self.kept(), names)
        self.assertEqual({result['state'] for result in self.results(10).values()}, {'saved'})
        self.assert_divider(10, self.results(10))

    def test_an_edit_and_a_solve_leave_the_saved_files_until_the_save(self):
        self.project()
        self.solve('10')
        saved = self.kept()
        self.run_desk('setup', 'divider', 'edit', SETUP, 'lin', '5', '1meg', '1g', 'touchstone')
        self.solve('10', '--no-save')
        self.assertEqual(len(self.kept()), 4)
        self.assertTrue(set(saved) < set(self.kept()))
        self.assertEqual(self.results(10)['Touchstone', None]['state'], 'unsaved')
        self.run_desk('discard', 'divider')
        self.assertEqual(self.kept(), saved)
        self.assert_divider(10, self.results(10))

    def test_a_file_that_is_deleted_by_hand_is_told(self):
        self.project()
        self.solve('10,20')
        os.remove(self.results(10)['NodeVoltages', 2e9]['path'])
        done = self.run_desk('info', 'divider', '--files')
        self.assertIn('missing', done.stderr)
        self.assertEqual(self.results(10)['NodeVoltages', 2e9]['state'], 'missing')
        self.assertEqual(self.results(10)['NodeVoltages', 1e6]['state'], 'saved')
        self.solve('10', '--again')
        self.assert_divider(10, self.results(10))

    def test_a_place_outside_the_results_is_refused(self):
        self.project()
        self.solve('10')
        write('mine.s1p', 'mine')
        text = read('divider.sproject').decode()
        path = 'Touchstone/' + os.path.basename(self.results(10)['Touchstone', None]['path'])
        body = text[:text.index('Checksum(')].replace(f'"{path}"', '"../../../mine.s1p"')
        self.assertIn('mine.s1p', body)
        write('divider.sproject', body + f'Checksum("{crc32c(body.encode()):08x}")\n')
        results = self.results(10)
        self.assertNotIn('mine.s1p', json.dumps([result.get('path', '') for result in results.values()]))
        self.solve('10', '--again')
        self.run_desk('delete', 'divider', '--variation', 'res=10')
        self.run_desk('save', 'divider')
        self.assertEqual(read('mine.s1p'), b'mine')

    def test_a_renamed_variable_takes_the_files_along(self):
        self.project()
        self.solve('10')
        self.run_desk('set', 'divider', '--rename', 'res=ohm')
        document = self.document('info', 'divider', '--files')
        results = document['setups'][0]['solutions'][0]['variations'][0]['results']
        self.assertEqual([result['store'] for result in results], ['NodeVoltages', 'NodeVoltages', 'Touchstone'])
        self.run_desk('discard', 'divider')
        self.assert_divider(10, self.results(10))
        self.assertEqual(len(self.kept()), 3)

    def test_a_deleted_point_takes_its_files_along_with_the_save(self):
        self.project()
        self.solve('10,20')
        self.run_desk('delete', 'divider', '--variation', 'res=10')
        self.assertEqual(len(self.kept()), 6)
        self.run_desk('save', 'divider')
        self.assertEqual(len(self.kept()), 3)
        self.assert_divider(20, self.results(20))

    def test_acknowledged_points_have_their_files_after_a_crash(self):
        self.project(SLOW)
        self.solve('1000')
        process = subprocess.Popen([SOLVEDESK, 'solve', 'divider', '--vary', 'res=1:400:1', '--events', '--no-save'],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        lines = [process.stdout.readline() for _ in range(3)]
        process.send_signal(signal.SIGKILL)
        lines += process.stdout.readlines()
        process.wait()
        process.stdout.close()
        events = [json.loads(line) for line in lines if line.endswith('\n')]
        stored = [event['variation'] for event in events if event['event'] == 'stored']
        self.assertGreater(len(stored), 2)
        self.run_desk('recover', 'divider')
        document = self.document('info', 'divider', '--files')
        points = {point['variation']: point for point in document['setups'][0]['solutions'][0]['variations']}
        for variation in stored:
            results = {(result['store'], result.get('number')): result for result in points[variation]['results']}
            self.assertEqual(len(results), 3, variation)
            self.assert_divider(int(variation.split('=')[1]), results)
        self.run_desk('save', 'divider')
        self.assertEqual(self.results(stored[0].split('=')[1])['Touchstone', None]['state'], 'saved')
        self.assert_divider(1000, self.results(1000))

    def test_files_that_cant_be_written_end_the_run_and_no_point_is_stored_without_them(self):
        self.project()
        folder = os.path.join('divider.results', 'divider.rf')
        write(folder, 'in the way')
        self.assertIn("a result file can't be written", self.solve('20', code=7).stderr)
        document = self.document('info', 'divider')
        self.assertEqual([point for point in document['setups'][0]['solutions'][0]['variations'] if point['has_data']], [])
        os.remove(folder)
        self.solve('20')
        self.assert_divider(20, self.results(20))

    def test_ports_of_different_impedance_are_told_by_the_file_or_renormalized(self):
        netlist = DIVIDER.replace('.sp', 'V2 mid 0 dc 0 ac 1 portnum 2 z0 75\n.sp')
        self.project(netlist)
        self.solve('10')
        self.assertIn('[Reference] 50 75', read(self.results(10)['Touchstone', None]['path']).decode())
        self.run_desk('setup', 'divider', 'edit', SETUP, 'lin', '3', '1meg', '1g', 'touchstone', 'z0=50')
        self.solve('10')
        results = self.results(10)
        self.assertTrue(results['Touchstone', None]['path'].endswith('.s2p'))
        self.assertEqual(results['Renormalized', None]['value'], 1)
        self.assertIn('# Hz S RI R 50', read(results['Touchstone', None]['path']).decode())

    def test_a_link_in_place_of_a_file_is_named_by_the_save_and_never_followed(self):
        self.project()
        self.solve('10')
        path = self.results(10)['Touchstone', None]['path']
        write('outside.txt', 'not ours')
        os.remove(path)
        os.symlink(os.path.abspath('outside.txt'), path)
        self.solve('10', '--again', '--no-save')
        message = self.run_desk('save', 'divider', code=7).stderr
        self.assertIn(os.path.basename(path), message)
        self.assertIn('link', message)
        self.assertEqual(read('outside.txt'), b'not ours')
        os.remove(path)
        self.run_desk('save', 'divider')
        self.assert_divider(10, self.results(10))

    def test_a_discard_tells_of_points_that_were_solved_anew(self):
        self.project()
        self.solve('10,20')
        self.solve('10', '--again', '--no-save')
        self.assertIn('1 unsaved point', self.run_desk('discard', 'divider').stdout)

    def test_an_adaptive_sweep_tells_its_passes(self):
        self.project(DIVIDER.replace('lin 3 1meg 1g touchstone voltages=1meg,2g', 'lin 301 1meg 1g adaptive'))
        self.solve('10')
        passes = self.results(10)['Passes', None]['value']
        record = self.document('convergence', 'divider')['records'][0]
        self.assertEqual(passes, len(record['sets'][0]['passes']))

    def test_senseless_words_are_refused(self):
        self.project()
        for words in (['z0=50'], ['touchstone', 'z0=0'], ['voltages=-1'], ['touchstone', 'touchstone'],
                      ['voltages=1g', 'voltages=2g'], ['voltages=1e31'], ['voltages=1g,900MHz']):
            self.refuse(2, 'setup', 'divider', 'edit', SETUP, 'lin', '3', '1meg', '1g', *words)


def crc32c(data):
    table_ = []
    for byte in range(256):
        for _ in range(8):
            byte = (byte >> 1) ^ (0x82F63B78 if byte & 1 else 0)
        table_.append(byte)
    crc = 0xFFFFFFFF
    for byte in data:
        crc = table_[(crc ^ byte) & 0xFF] ^ (crc >> 8)
    return crc ^ 0xFFFFFFFF


if __name__ == '__main__':
    unittest.main()
