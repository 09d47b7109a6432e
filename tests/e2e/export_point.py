"""One solved point as a project of its own: the same numbers, its files, nothing else, and the project as it was."""
import json
import os
import resource
import shutil
import subprocess
import unittest

from _solvedesk import SETUP, SOLVEDESK, DeskTest, bound_by_permissions, files_below, read, write
from _qsol import QSOL

# A divider: 1 V behind 50 ohm, `res` to the middle, 100 ohm to ground there.
DIVIDER = """divider
.param res=50
V1 in 0 dc 0 ac 1 portnum 1 z0 50
R1 in mid {res}
R2 mid 0 100
.sp lin 3 1meg 1g touchstone voltages=1meg,2g
.end
"""

PRODUCT = """variable a = 2
variable b = 3
command awk "BEGIN {{ print {a} * {b} }"
output table stdout no-header
scalar y = 1
"""


class ExportPoint(DeskTest):
    def solved(self, values='10,20,30'):
        write('divider.cir', DIVIDER)
        self.run_desk('new', 'divider', '--netlist', 'divider.cir')
        self.run_desk('solve', 'divider', '--vary', f'res={values}')

    def export(self, value, *words, to='point', project='divider'):
        return self.document('export', project, '--point', f'res={value}', '--to', to, *words)

    def verify(self, project):
        library = os.path.join(f'{project}.results', os.path.basename(project) + '.qsol')
        done = subprocess.run([QSOL, 'verify', library], capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return library

    def points(self, project):
        return {(point['setup'], point['variation']): point['quantities']
                for point in self.document('values', project)['points']}

    def results(self, project, value):
        solution, = self.document('info', project, '--files')['setups'][0]['solutions']
        point, = (p for p in solution['variations'] if p['variation'] == f'res={value}' and not p['former'])
        return {(r['store'], r.get('number')): r for r in point['results']}

    def state_of(self, folder):
        return {name: read(os.path.join(folder, name)) for name in files_below(folder)
                if not name.endswith('.lock')}

    def test_the_folder_opens_as_a_project_of_that_point_with_the_same_numbers(self):
        self.solved()
        self.run_desk('report', 'divider', 'add', 's', '--y', 'dB(S(1,1))')
        self.run_desk('var', 'divider', 'add', 'twice=2*mag(S(1,1))')
        self.run_desk('save', 'divider')
        document = self.export(20)
        self.assertEqual(document['point'], 'res=20')
        self.assertEqual(document['state'], 'saved')
        self.assertEqual(document['solutions'], [{'setup': SETUP, 'solution': document['solutions'][0]['solution'],
                                                  'valid': True}])
        self.assertEqual(document['project'], 'point/divider.sproject')
        self.assertEqual(list(self.variations('point/divider')), ['res=20'])
        self.assertTrue(self.variations('point/divider')['res=20']['valid'])
        self.assertEqual(self.points('point/divider'), {(SETUP, 'res=20'): self.points('divider')[SETUP, 'res=20']})
        rows = [row for row in self.document('eval', 'divider', 'twice', '--variation', 'res=20')['rows']]
        self.assertEqual(self.document('eval', 'point/divider', 'twice')['rows'], rows)
        self.run_desk('set', 'divider', 'res=20')
        self.assertEqual(self.document('report', 'point/divider', 'show', 's')['rows'],
                         self.document('report', 'divider', 'show', 's')['rows'])
        self.verify('point/divider')

    def test_takes_the_files_of_the_point_and_no_others(self):
        self.solved()
        document = self.export(20)
        self.assertEqual(document['files'], 3)
        source, exported = self.results('divider', 20), self.results('point/divider', 20)
        self.assertEqual(sorted(map(str, exported)), sorted(map(str, source)))
        for which, result in exported.items():
            self.assertEqual(result['state'], 'saved')
            self.assertTrue(os.path.realpath(result['path']).startswith(os.path.realpath('point')))
            self.assertEqual(read(result['path']), read(source[which]['path']))
        kept = [name for name in files_below('point') if '/Touchstone/' in name or '/NodeVoltages/' in name]
        self.assertEqual(len(kept), 3)

    def test_holds_no_word_of_other_points(self):
        self.solved('10,20,31.25')
        self.export(20)
        library = read(self.verify('point/divider'))
        project = read('point/divider.sproject')
        self.assertIn(b'res=20', library)
        for other in (b'res=10', b'31.25'):
            self.assertNotIn(other, library)
            self.assertNotIn(other, project)

    def test_leaves_the_project_as_it_is(self):
        self.solved()
        before = self.state_of('divider.results'), read('divider.sproject')
        self.export(20)
        self.assertEqual((self.state_of('divider.results'), read('divider.sproject')), before)

    def test_texts_that_equal_name_the_same_point(self):
        self.solved()
        self.assertEqual(self.export('0.02k')['point'], 'res=20')
        self.assertEqual(self.document('export', 'divider', '--point', ' RES=20 ', '--to', 'again')['point'], 'res=20')

    def test_the_exported_project_goes_on_by_itself(self):
        self.solved()
        self.export(20)
        self.run_desk('solve', 'point/divider', '--vary', 'res=20,40')
        self.assertEqual(sorted(self.variations('point/divider')), ['res=20', 'res=40'])
        self.assertEqual(sorted(self.variations('divider')), ['res=10', 'res=20', 'res=30'])
        self.export(40, to='next', project='point/divider')
        self.assertEqual(list(self.variations('next/divider')), ['res=40'])

    def test_without_unsaved_takes_the_saved_state_and_with_it_the_present_one(self):
        self.solved('10')
        self.run_desk('solve', 'divider', '--vary', 'res=20', '--no-save')
        error = self.refuse(2, 'export', 'divider', '--point', 'res=20', '--to', 'point')
        self.assertIn('--unsaved', error)
        document = self.export(20, '--unsaved')
        self.assertEqual((document['state'], document['files']), ('unsaved', 3))
        self.assertEqual(list(self.variations('point/divider')), ['res=20'])
        self.assertEqual(self.points('point/divider')[SETUP, 'res=20'], self.points('divider')[SETUP, 'res=20'])
        source, exported = self.results('divider', 20), self.results('point/divider', 20)
        for which, result in exported.items():
            self.assertEqual(result['state'], 'saved')
            self.assertEqual(read(result['path']), read(source[which]['path']))
        self.verify('point/divider')
        self.assertTrue(self.variations('divider')['res=20']['unsaved'])
        self.run_desk('save', 'divider')
        self.export(20, to='saved')
        self.assertEqual(self.points('saved/divider'), self.points('point/divider'))

    def test_a_point_that_was_solved_again_is_taken_as_saved_or_as_it_is_now(self):
        self.solved('10')
        write('divider.cir', DIVIDER.replace('R2 mid 0 100', 'R2 mid 0 300'))
        self.run_desk('reload', 'divider')
        self.run_desk('solve', 'divider', '--vary', 'res=10', '--no-save')
        now = self.points('divider')[SETUP, 'res=10']
        self.export(10, to='before')
        self.export(10, '--unsaved', to='now')
        self.assertNotEqual(self.points('before/divider')[SETUP, 'res=10'], now)
        self.assertEqual(self.points('now/divider')[SETUP, 'res=10'], now)
        states = {r['state'] for r in self.results('now/divider', 10).values()}
        self.assertEqual(states, {'saved'})

    def test_a_stale_point_is_stale_there_too(self):
        self.solved('10')
        write('divider.cir', DIVIDER.replace('R2 mid 0 100', 'R2 mid 0 300'))
        self.run_desk('reload', 'divider')
        self.run_desk('save', 'divider')
        done = self.run_desk('export', 'divider', '--point', 'res=10', '--to', 'point')
        self.assertIn('stale', done.stdout)
        self.assertIn('files of stale data are left behind', done.stdout)
        self.assertFalse(self.variations('point/divider')['res=10']['valid'])
        self.assertEqual([name for name in files_below('point') if '/point' in name], [])
        self.assertEqual(self.export(10, to='again')['files'], 0)
        self.verify('point/divider')

    def test_the_saved_state_is_exported_beside_a_process_that_has_the_project(self):
        self.solved('10,20')
        shell = subprocess.Popen([SOLVEDESK, 'shell', 'divider'], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True)
        self.addCleanup(shell.communicate, 'exit\n', 60)
        shell.stdin.write('set res=7\n')
        shell.stdin.flush()
        self.assertTrue(shell.stdout.readline())
        self.export(20)
        self.assertEqual(list(self.variations('point/divider')), ['res=20'])
        self.refuse(6, 'export', 'divider', '--point', 'res=20', '--to', 'now', '--unsaved')
        self.assertFalse(os.path.exists('now'))

    def test_any_program_is_exported_likewise(self):
        write('small.solver', PRODUCT)
        self.run_desk('new', 'small', '--source', 'small.solver', '--product', 'command')
        self.run_desk('solve', 'small', '--vary', 'a=1,2,4')
        self.run_desk('export', 'small', '--point', 'a=4; b=3', '--to', 'out')
        self.assertEqual(self.run_desk('values', 'out/small', '--csv').stdout.splitlines()[1:], ['Run,4,3,12'])
        self.verify('out/small')

    def test_the_shell_exports_beside_its_unsaved_work(self):
        self.solved('10,20')
        script = 'set res=5\nexport --point res=10 --to point\n'
        write('script', script)
        self.run_desk('shell', 'divider', 'script')
        self.assertEqual(list(self.variations('point/divider')), ['res=10'])

    def test_an_unknown_point_is_refused_with_the_nearest_names(self):
        self.solved('10,20')
        self.assertIn("'res=20'", self.refuse(2, 'export', 'divider', '--point', 'res=21', '--to', 'point'))
        self.assertIn("'res=10'", self.refuse(2, 'export', 'divider', '--point', 'nothing at all', '--to', 'point'))
        self.assertIn('--point', self.refuse(2, 'export', 'divider', '--point', ' ', '--to', 'point'))
        self.assertFalse(os.path.exists('point'))

    def test_a_project_without_a_solved_point_says_so(self):
        self.small_project()
        self.assertIn('no solved variation', self.refuse(1, 'export', 'small', '--point', 'cap=1', '--to', 'point'))
        self.assertIn('none.sproject', self.refuse(3, 'export', 'none', '--point', 'cap=1', '--to', 'point'))
        self.assertFalse(os.path.exists('point'))

    def test_a_folder_that_is_not_empty_is_refused_and_left_alone(self):
        self.solved('10')
        os.mkdir('point')
        write('point/note', 'mine')
        self.assertIn('not empty', self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', 'point'))
        self.assertEqual(files_below('point'), ['note'])
        self.assertIn('no folder', self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', 'point/note'))
        self.assertIn('--to', self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', ''))

    def test_what_an_export_that_was_killed_left_is_named(self):
        self.solved('10')
        os.makedirs('point/.solvedesk-abcdef/new')
        error = self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', 'point')
        self.assertIn('.solvedesk-abcdef', error)
        self.assertIn('remove it', error)

    def test_a_write_protected_library_is_cut_down_like_any_other(self):
        self.solved('10,20,30')
        os.chmod('divider.results/divider.qsol', 0o444)
        self.run_desk('export', 'divider', '--point', 'res=20', '--to', 'point', preexec_fn=bound_by_permissions)
        self.assertEqual(list(self.variations('point/divider')), ['res=20'])
        self.assertNotIn(b'res=10', read(self.verify('point/divider')))
        self.run_desk('solve', 'point/divider', '--vary', 'res=40')

    def test_a_result_file_that_is_a_link_counts_as_missing_and_is_told(self):
        self.solved('10,20')
        path = next(r['path'] for r in self.results('divider', 20).values())
        os.rename(path, 'elsewhere')
        os.symlink(os.path.abspath('elsewhere'), path)
        done = self.run_desk('export', 'divider', '--point', 'res=20', '--to', 'point')
        self.assertIn('2 result files', done.stdout)
        self.assertIn('1 result file is missing and left out', done.stderr)
        self.assertEqual(len([name for name in files_below('point') if '/point' in name]), 2)

    def test_an_empty_folder_is_filled_and_an_export_is_not_done_twice(self):
        self.solved('10')
        os.mkdir('point')
        self.export(10)
        before = self.state_of('point')
        self.assertIn('not empty', self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', 'point'))
        self.assertEqual(self.state_of('point'), before)

    def test_the_projects_own_folders_are_refused(self):
        self.solved('10')
        os.symlink('divider.results', 'link')
        before = self.state_of('divider.results')
        for folder in ('divider.results', 'divider.results/', 'divider.results/point', './divider.results/a/b',
                       'link/point', os.path.abspath('divider.results/point'), '.'):
            with self.subTest(folder):
                self.assertIn('own folder', self.refuse(2, 'export', 'divider', '--point', 'res=10', '--to', folder))
        self.assertEqual(self.state_of('divider.results'), before)

    def test_a_folder_that_cannot_be_made_is_told(self):
        self.solved('10')
        write('note', 'a file')
        self.assertIn('note', self.refuse(7, 'export', 'divider', '--point', 'res=10', '--to', 'note/point'))
        self.refuse(7, 'export', 'divider', '--point', 'res=10', '--to', 'made/' + 300 * 'n')
        self.assertFalse(os.path.exists('made'), 'what was made on the way is gone again')

    def test_a_folder_without_permission_is_told(self):
        self.solved('10')
        os.mkdir('shut')
        os.chmod('shut', 0o500)
        self.addCleanup(os.chmod, os.path.abspath('shut'), 0o700)
        words = ('export', 'divider', '--point', 'res=10', '--to', 'shut/point')
        self.assertIn('shut', self.refuse(7, *words, preexec_fn=bound_by_permissions))
        self.assertEqual(os.listdir('shut'), [])
        os.chmod('shut', 0o700)
        self.run_desk(*words, preexec_fn=bound_by_permissions)

    def test_a_full_disk_leaves_nothing_behind_and_loses_nothing(self):
        self.solved('10,20,30')
        before = self.state_of('divider.results')
        length = os.path.getsize('divider.results/divider.qsol')
        whole = 0
        # At the length of the library it can be copied, and nothing be appended to the copy.
        for limit in sorted({100, 1000, 2000, 4000, length // 3, length // 2, length - 1, length, length + 200,
                             length + 1000, length + 4000, 4 * length}):
            shutil.rmtree('a', ignore_errors=True)
            done = subprocess.run([SOLVEDESK, 'export', 'divider', '--point', 'res=20', '--to', 'a/point'],
                                  stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False,
                                  preexec_fn=lambda limit=limit: resource.setrlimit(resource.RLIMIT_FSIZE,
                                                                                     (limit, limit)))
            self.assertEqual(self.state_of('divider.results'), before)
            if done.returncode == 0:
                whole += 1
                self.assertEqual(list(self.variations('a/point/divider')), ['res=20'])
                library = read(self.verify('a/point/divider'))
                self.assertNotIn(b'res=10', library, limit)
                self.assertNotIn(b'res=30', library, limit)
                continue
            self.assertEqual(done.returncode, 7, done.stderr)
            self.assertNotIn('.solvedesk-', done.stderr)
            self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
            self.assertFalse(os.path.exists('a'), limit)
        self.assertGreaterEqual(whole, 1)
        self.assertEqual(self.points('a/point/divider')[SETUP, 'res=20'], self.points('divider')[SETUP, 'res=20'])

    def test_a_point_whose_data_is_damaged_is_refused(self):
        self.solved('10,20')
        listed = json.loads(subprocess.run([QSOL, 'list', 'divider.results/divider.qsol', '--json'],
                                           capture_output=True, text=True, timeout=60, check=True).stdout)
        block, = (b for b in listed['blocks'] if b['kind'] == 'data' and b['variation'] == 'res=20')
        with open('divider.results/divider.qsol', 'r+b') as file:
            file.seek(block['offset'] + block['bytes'] - 20)
            file.write(b'\xff\x00\xff')
        self.assertIn("can't be read", self.refuse(3, 'export', 'divider', '--point', 'res=20', '--to', 'point'))
        self.assertFalse(os.path.exists('point'))
        self.export(10)
        self.assertEqual(list(self.variations('point/divider')), ['res=10'])

    def measured(self):
        """The solved divider with imported data, saved."""
        self.solved('10,20')
        self.run_desk('touchstone', 'divider', '--to', 'files')
        self.run_desk('import', 'divider', f'files/{SETUP}_res=10.s1p', '--name', 'Measured')
        self.run_desk('save', 'divider')

    def look(self, project):
        for words in (('info', project), ('values', project), ('eval', project, 'max(dB(S(1,1)))'),
                      ('eval', project, 'dB(S(1,1))', '--solution', 'Measured'), ('report', project, 'list')):
            self.run_desk(*words)

    def test_an_export_with_imported_data_is_saved_and_looking_writes_nothing(self):
        self.measured()
        self.export(20, to='saved')
        self.run_desk('set', 'divider', 'res=30')
        self.run_desk('solve', 'divider', '--no-save')
        self.export(30, '--unsaved', to='unsaved')
        self.export(20, to='again', project='saved/divider')
        for folder in ('saved', 'unsaved', 'again'):
            with self.subTest(folder):
                before = self.state_of(folder)
                self.assertFalse(self.document('info', f'{folder}/divider')['unsaved_changes'])
                self.look(f'{folder}/divider')
                self.assertEqual(self.state_of(folder), before)
                self.verify(f'{folder}/divider')
        rows = self.document('eval', 'divider', 'S(1,1)', '--solution', 'Measured')['rows']
        self.assertEqual(self.document('eval', 'again/divider', 'S(1,1)', '--solution', 'Measured')['rows'], rows)

    def test_the_nearest_points_and_what_is_wrong_with_the_words_are_told(self):
        write('divider.cir', DIVIDER.replace('res=50', 'res=50 low=100').replace('R2 mid 0 100', 'R2 mid 0 {low}'))
        self.run_desk('new', 'divider', '--netlist', 'divider.cir')
        self.run_desk('solve', 'divider', '--vary', 'res=10,20,30,40', '--vary', 'low=100,200', '--quiet')

        def told(point):
            return self.refuse(2, 'export', 'divider', '--point', point, '--to', 'point')
        near = told('res=31; low=200')
        self.assertIn("the nearest that is solved: 'low=200; res=30', 'low=200; res=40', 'low=200; res=20';", near)
        self.assertIn('no solved variation equals it', near)
        part = told('res=40')
        self.assertIn("does not tell low; a point is told by all its variables", part)
        self.assertIn("'low=100; res=40', 'low=200; res=40'", part)
        self.assertIn("no solved point has a variable 'rse'; there are low, res", told('rse=40; low=100'))
        self.assertIn('two ways', told('res=45m; low=100'))
        self.assertIn('is no variation', told('garbage'))
        self.assertFalse(os.path.exists('point'))

    def test_the_netlist_goes_along_so_that_the_point_is_solved_elsewhere(self):
        os.mkdir('nets')
        self.solved('10,20')
        self.run_desk('touchstone', 'divider', '--to', 'nets')
        os.rename(f'nets/{SETUP}_res=10.s1p', 'nets/dut.s1p')
        write('nets/more.cir', DIVIDER.replace('R1 in mid {res}', 'R1 in mid 25\nN1 mid dut.s1p\n.include part.inc')
              .replace('voltages=1meg,2g', 'voltages=1meg'))
        write('nets/part.inc', 'R3 mid 0 {res}\n')
        self.run_desk('new', 'more', '--netlist', 'nets/more.cir')
        self.run_desk('solve', 'more', '--vary', 'res=10,20')
        self.assertTrue(self.export(20, project='more')['has_source'])
        os.rename('point', 'elsewhere')
        shutil.rmtree('nets')
        os.remove('more.sproject')
        self.assertEqual(self.document('info', 'elsewhere/more')['source'],
                         {'path': os.path.realpath('elsewhere/more.cir'),
                          'known_as': os.path.realpath('elsewhere/more.cir'), 'changed': False})
        self.run_desk('solve', 'elsewhere/more', '--vary', 'res=20,70')
        points = self.variations('elsewhere/more')
        self.assertTrue(all(points[f'res={value}']['valid'] for value in (20, 70)), points)
        self.assertIn('the source is what it was', self.run_desk('reload', 'elsewhere/more').stdout)

    def test_a_source_that_cannot_go_along_is_named_where_it_is(self):
        self.solved('10')
        write('divider.cir', DIVIDER + '* a remark\n')
        document = self.export(10)
        self.assertFalse(document['has_source'])
        self.assertIn('divider.cir is not there as the project read it', document['notices'][0])
        self.assertFalse(os.path.exists('point/divider.cir'))
        write('divider.cir', DIVIDER)
        self.assertFalse(self.document('info', 'point/divider')['source']['changed'])
        os.mkdir('apart')
        write('apart/part.inc', 'R3 mid 0 1000\n')
        write('far.cir', DIVIDER.replace('R2 mid 0 100', '.include apart/part.inc'))
        self.run_desk('new', 'near', '--netlist', 'far.cir')
        self.run_desk('solve', 'near')
        self.assertTrue(self.document('export', 'near', '--point', 'res=50', '--to', 'kept')['has_source'])
        self.assertEqual(read('kept/apart/part.inc'), read('apart/part.inc'))
        os.mkdir('deep')
        write('deep/far.cir', DIVIDER.replace('R2 mid 0 100', '.include ../apart/part.inc'))
        self.run_desk('new', 'far', '--netlist', 'deep/far.cir')
        self.run_desk('solve', 'far')
        done = self.run_desk('export', 'far', '--point', 'res=50', '--to', 'named')
        self.assertIn("doesn't lie in the folder of far.cir", done.stdout)
        self.run_desk('solve', 'named/far', '--vary', 'res=60')

    def test_a_project_whose_netlist_is_gone_takes_the_one_of_its_name_beside_it(self):
        os.mkdir('nets')
        write('nets/divider.cir', DIVIDER)
        self.run_desk('new', 'divider', '--netlist', os.path.abspath('nets/divider.cir'))
        self.run_desk('solve', 'divider', '--vary', 'res=10')
        os.rename('nets/divider.cir', 'divider.cir')
        told = self.run_desk('info', 'divider').stdout
        self.assertIn(f'source {os.path.realpath("divider.cir")} (in place of {os.path.realpath("nets")}/divider.cir', told)
        self.run_desk('solve', 'divider', '--vary', 'res=10,30')
        self.assertTrue(all(v['valid'] for v in self.variations('divider').values()))
        self.run_desk('reload', 'divider')
        self.run_desk('save', 'divider')
        self.assertTrue(all(v['valid'] for v in self.variations('divider').values()))
        write('divider.cir', DIVIDER.replace('R2 mid 0 100', 'R2 mid 0 300'))
        self.assertIn('divider.cir: the source has changed', self.refuse(4, 'solve', 'divider', '--vary', 'res=40'))


if __name__ == '__main__':
    unittest.main()
