"""Pages and pictures of a project's reports as files: what stands in them, live ones, what is refused."""
import csv
import io
import json
import os
import signal
import stat
import time
import unittest

from _page import drawable, numbers_of
from _solvedesk import SETUP, SMALL, SOLVEDESK, DeskTest, bound_by_permissions, read, write

# A low-pass of three elements between two ports of different impedances, each element a variable.
LADDER = """ladder
.param c1=1 l2=1 c3=1
V1 in 0 dc 0 ac 1 portnum 1 z0 50
C1 in 0 {c1*3.2e-12}
L2 in out {l2*1e-8}
C3 out 0 {c3*3.2e-12}
V2 out 0 dc 0 ac 0 portnum 2 z0 75
.sp dec 20 10meg 10g
.end
"""
# A point is little to read and takes a while, so that a study of many goes on for as long as a test wants it to.
SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 501 1meg 1g')
MARKUP = '</script><img src=x onerror="window.wasHere=1">'


class ReportPages(DeskTest):
    def solved(self):
        self.small_project('ladder', LADDER)
        self.run_desk('solve', 'ladder', '--vary', 'c1=0.9,1,1.1', '--vary', 'l2=0.9,1', '--quiet')

    def add(self, name, *words):
        self.run_desk('report', 'ladder', 'add', name, *words, '--quiet')

    def page(self, *words, file='page.html'):
        """The sections by their titles, and the columns."""
        self.run_desk('report', 'ladder', *words, '--html', file, '--quiet')
        data, columns = numbers_of(file)
        return {section.get('title'): section for section in data['sections']}, columns

    def rows(self, name, *words):
        text = self.run_desk('report', 'ladder', 'show', name, '--csv', '-', *words).stdout
        return list(csv.reader(io.StringIO(text)))

    def kinds(self, section):
        return [item['kind'] for item in section['items']]

    def test_curves_hold_the_numbers_of_the_table_bit_for_bit(self):
        self.solved()
        self.add('gain', '--y', 'dB(S(2,1))', '--y', 'dB(S(1,1))', '--over', 'c1,l2')
        sections, columns = self.page('show', 'gain')
        self.assertEqual(list(sections), ['gain'])
        plot, table = sections['gain']['items']
        header, *rows = self.rows('gain')
        self.assertEqual(header, ['c1', 'l2', 'Freq (Hz)', 'dB(S(2,1)) (dB)', 'dB(S(1,1)) (dB)'])
        self.assertEqual(len(rows), 6 * 61)
        self.assertEqual((plot['x'], plot['y']), ({'title': 'Freq', 'unit': 'Hz', 'log': True}, {'unit': 'dB'}))
        self.assertEqual(drawable(plot, columns), 2 * 6 * 61)
        told = {}
        for c1, l2, x, *ys in rows:
            for name, y in zip(('dB(S(2,1))', 'dB(S(1,1))'), ys):
                told.setdefault((name, f'c1={c1}; l2={l2}'), []).append((float(x), float(y)))
        held = {(series['name'], series['variation']): list(zip(columns[series['x']], columns[series['y']]))
                for series in plot['series']}
        self.assertEqual(held, told)
        self.assertEqual([column['title'] for column in table['columns']],
                         ['c1', 'l2', 'Freq', 'dB(S(2,1))', 'dB(S(1,1))'])
        for place, column in enumerate(table['columns']):
            self.assertEqual(list(columns[column['numbers']]), [float(row[place]) for row in rows])

    def test_each_unit_has_a_plot_of_its_own(self):
        self.solved()
        self.add('both', '--y', 'dB(S(2,1))', '--y', 'mag(S(1,1))', '--y', 'dB(S(1,1))')
        plots = [item for item in self.page('show', 'both')[0]['both']['items'] if item['kind'] == 'rectangular']
        self.assertEqual([(plot['y'].get('unit'), [series['name'] for series in plot['series']]) for plot in plots],
                         [('dB', ['dB(S(2,1))', 'dB(S(1,1))']), (None, ['mag(S(1,1))'])])
        self.assertEqual([plot['title'] for plot in plots],
                         ['both: dB(S(2,1)), dB(S(1,1))', 'both: mag(S(1,1))'])

    def test_complex_numbers_are_drawn_in_the_plane_with_the_reference_of_their_ports(self):
        self.solved()
        self.add('plane', '--y', 'S(1,1)', '--y', 'S(2,2)', '--y', 'S(2,1)')
        items = self.page('show', 'plane')[0]['plane']['items']
        self.assertEqual([(item['kind'], item.get('impedance')) for item in items],
                         [('smith', 50), ('smith', 75), ('polar', None), ('table', None)])
        self.run_desk('port', 'ladder', 'V1=25', 'V2=25', '--quiet')
        items = self.page('show', 'plane', '--as', 'smith')[0]['plane']['items']
        self.assertEqual([(item['kind'], item.get('impedance')) for item in items], [('smith', 25), ('table', None)])

    def test_a_display_is_the_reports_own_unless_it_is_told(self):
        self.solved()
        self.add('s', '--y', 'S(1,1)', '--display', 'polar')
        self.assertEqual(self.kinds(self.page('show', 's')[0]['s']), ['polar', 'table'])
        for display, kinds in (('smith', ['smith', 'table']), ('rectangular', ['rectangular', 'table']),
                               ('table', ['table'])):
            self.assertEqual(self.kinds(self.page('show', 's', '--as', display)[0]['s']), kinds)
        item = self.page('show', 's', '--as', 'rectangular', '--complex', 'mag-deg')[0]['s']['items']
        self.assertEqual([plot['y'] for plot in item[:2]],
                         [{'title': 'mag(S(1,1))'}, {'title': 'phase(S(1,1))', 'unit': 'deg'}])

    def test_a_variable_is_an_abscissa_and_the_others_tell_curves_apart(self):
        self.solved()
        self.add('worst', '--x', 'c1', '--y', 'max(dB(S(1,1)))', '--over', 'l2')
        sections, columns = self.page('show', 'worst')
        plot = sections['worst']['items'][0]
        self.assertEqual([series['variation'] for series in plot['series']], ['l2=0.9', 'l2=1'])
        self.assertEqual([list(columns[series['x']]) for series in plot['series']], [[0.9, 1, 1.1]] * 2)
        told = {(float(row[0]), float(row[1])): float(row[2]) for row in self.rows('worst')[1:]}
        self.assertEqual({(float(series['variation'][3:]), x): y for series in plot['series']
                          for x, y in zip(columns[series['x']], columns[series['y']])}, told)

    def test_single_numbers_beside_curves_are_told_as_such(self):
        self.solved()
        self.add('mixed', '--y', 'dB(S(2,1))', '--y', 'max(dB(S(1,1)))', '--over', 'c1')
        sections, columns = self.page('show', 'mixed')
        plot, numbers, _ = sections['mixed']['items']
        self.assertEqual({series['name'] for series in plot['series']}, {'dB(S(2,1))'})
        self.assertEqual([column['title'] for column in numbers['columns']],
                         ['expression', 'variation', 'value', 'unit'])
        self.assertEqual(list(columns[numbers['columns'][2]['numbers']]),
                         [float(row[3]) for row in self.rows('mixed')[1::61]])

    def test_a_project_is_all_reports_the_tree_convergence_and_costs(self):
        self.solved()
        self.run_desk('setup', 'ladder', 'add', 'Fast', 'lin', '2001', '1meg', '1g', 'adaptive')
        self.run_desk('solve', 'ladder', '--setup', 'Fast', '--quiet')
        self.add('gain', '--y', 'dB(S(2,1))', '--over', 'c1')
        self.add('none', '--y', 'dB(S(2,1))', '--variation', 'c1=7')
        sections, columns = self.page()
        self.assertEqual(list(sections), ['gain', 'none', 'Design', 'Convergence', 'Costs'])
        self.assertIn('nothing is solved', sections['none']['text'])
        self.assertEqual(sections['none']['items'], [])
        design = sections['Design']['items'][0]['nodes'][0]
        self.assertEqual([node['label'] for node in design['children']], ['variables', f'setup {SETUP}', 'setup Fast'])
        variations = design['children'][1]['children'][0]['children']
        self.assertEqual([(node['label'], node['state']) for node in variations[:2]],
                         [('c1=0.9; c3=1; l2=0.9', 'valid'), ('c1=0.9; c3=1; l2=1', 'valid')])
        plot, ends = sections['Convergence']['items']
        records = self.document('convergence', 'ladder')['records']
        passes = records[0]['sets'][0]['passes']
        self.assertEqual([len(columns[plot['series'][0]['y']]), plot['title']], [len(passes), 'Fast'])
        self.assertEqual(ends['columns'][1]['texts'], ['converged'])
        wall = sections['Costs']['items'][1]['columns'][1]
        self.assertEqual((len(columns[wall['numbers']]), wall['unit'], wall['bars']), (6, 's', True))

    def test_stale_points_tell_their_reason_and_remedy(self):
        self.solved()
        self.add('gain', '--y', 'dB(S(2,1))')
        write('ladder.cir', LADDER.replace('3.2e-12', '3.3e-12'))
        self.run_desk('reload', 'ladder', '--quiet')
        self.run_desk('report', 'ladder', '--html', 'page.html', '--quiet')
        data, _ = numbers_of('page.html')
        node = data['sections'][1]['items'][0]['nodes'][0]['children'][1]['children'][0]['children'][0]
        self.assertEqual(node['state'], 'stale')
        self.assertIn('reload', node['reason'])
        self.assertIn('solve', node['remedy'])
        self.assertIn('stale', data['sections'][0]['text'])

    def test_gaps_are_told_and_draw_nothing(self):
        self.small_project('ladder', LADDER)
        self.run_desk('solve', 'ladder', '--vary', 'c1=0.9,1,l2=1,0.9', '--quiet')
        self.add('gain', '--y', 'dB(S(2,1))', '--over', 'c1,l2')
        done = self.run_desk('report', 'ladder', 'show', 'gain', '--html', 'page.html')
        self.assertIn('2 variations have no solved data', done.stderr)
        self.assertIn('page.html: 1 plot of 122 points', done.stdout)
        data, columns = numbers_of('page.html')
        self.assertEqual(drawable(data['sections'][0]['items'][0], columns), 122)
        self.assertIn('have no solved data', data['sections'][0]['text'])

    def test_names_that_try_to_be_markup_stay_text(self):
        name = 'a<b>&"\'x'
        self.small_project(name, LADDER)
        self.run_desk('setup', name, 'rename', SETUP, MARKUP)
        self.run_desk('solve', name, '--quiet')
        self.run_desk('report', name, 'add', MARKUP, '--y', 'dB(S(2,1))', '--setup', MARKUP, '--quiet')
        self.run_desk('report', name, '--html', 'p<i>.html', '--quiet')
        html = read('p<i>.html').decode()
        self.assertNotIn('<img', html)
        self.assertEqual(html.count('</script>'), 3)
        self.assertNotIn('<b>', html)
        data, _ = numbers_of('p<i>.html')
        self.assertEqual(data['sections'][0]['title'], MARKUP)
        self.run_desk('report', name, 'show', MARKUP, '--svg', 'p.svg', '--quiet')
        self.assertNotIn('<img', read('p.svg').decode())

    def test_a_picture_holds_one_plot(self):
        self.solved()
        self.add('gain', '--y', 'dB(S(2,1))', '--y', 'mag(S(1,1))', '--over', 'c1')
        told = self.refuse(2, 'report', 'ladder', 'show', 'gain', '--svg', 'gain.svg')
        self.assertIn('2 plots', told)
        self.assertIn('1 (gain: dB(S(2,1))), 2 (gain: mag(S(1,1)))', told)
        self.assertFalse(os.path.exists('gain.svg'))
        self.run_desk('report', 'ladder', 'show', 'gain', '--svg', 'gain.svg', '--plot', '2')
        svg = read('gain.svg').decode()
        self.assertTrue(svg.startswith('<svg') or svg.startswith('<?xml'), svg[:60])
        self.assertIn('mag(S(1,1))', svg)
        self.assertIn('no such plot', self.refuse(2, 'report', 'ladder', 'show', 'gain', '--svg', 'x', '--plot', '3'))
        document = self.document('report', 'ladder', 'show', 'gain', '--svg', 'gain.svg', '--plot', '1')
        self.assertEqual((document['svg'], document['bytes']), ('gain.svg', os.path.getsize('gain.svg')))

    def test_files_are_replaced_in_one_step_with_usual_permissions(self):
        self.solved()
        self.add('gain', '--y', 'dB(S(2,1))')
        write('page.html', 'old')
        kept = open('page.html', encoding='utf-8')
        self.addCleanup(kept.close)
        document = self.document('report', 'ladder', 'show', 'gain', '--html', 'page.html')
        self.assertEqual(kept.read(), 'old')
        self.assertEqual(document['bytes'], os.path.getsize('page.html'))
        self.assertEqual((document['plots'], document['points'], document['notices']), (1, 61, []))
        mask = os.umask(0)
        os.umask(mask)
        self.assertEqual(stat.S_IMODE(os.stat('page.html').st_mode), 0o666 & ~mask)
        self.assertEqual([name for name in os.listdir('.') if name.startswith('.solvedesk')], [])

    def test_what_makes_no_sense_is_refused_and_writes_nothing(self):
        self.solved()
        self.add('gain', '--y', 'dB(S(2,1))')
        before = sorted(os.listdir('.'))
        for code, words in ((7, ['--html', 'none/page.html']), (2, ['--html', 'x/']), (2, ['--html', '']),
                            (7, ['--html', '.']), (2, ['--live']), (2, ['show', 'gain', '--live', '--svg', 'a']),
                            (2, ['show', 'none', '--html', 'a']), (2, ['show', '--html', 'a']), (2, []),
                            (2, ['show', 'gain', '--as', 'smith']), (2, ['show', 'gain', '--html', 'a', '--svg', 'b']),
                            (2, ['show', 'gain', '--html', 'a', '--csv', 'b']), (2, ['list', '--html', 'a']),
                            (2, ['show', 'gain', '--html', 'a', '--as', 'carpet']), (2, ['show', 'gain', 'gain']),
                            (2, ['--html', 'a', '--plot', '1']), (2, ['--html', 'a', '--wait']),
                            (2, ['--html', 'a', '--y', 'b'])):
            self.refuse(code, 'report', 'ladder', *words)
        self.assertEqual(sorted(os.listdir('.')), before)
        self.add('never', '--y', 'dB(S(2,1))', '--variation', 'c1=7')
        self.assertIn('nothing is solved', self.refuse(1, 'report', 'ladder', 'show', 'never', '--html', 'a'))
        self.assertFalse(os.path.exists('a'))

    def test_a_folder_that_nobody_may_write_to_is_told(self):
        self.solved()
        os.mkdir('shut')
        os.chmod('shut', 0o500)
        self.addCleanup(os.chmod, os.path.abspath('shut'), 0o700)
        words = ('report', 'ladder', '--html', 'shut/page.html')
        self.assertIn('check the folder', self.refuse(7, *words, preexec_fn=bound_by_permissions))
        self.assertEqual(os.listdir('shut'), [])

    def test_a_project_without_reports_has_a_page_all_the_same(self):
        self.solved()
        sections, _ = self.page()
        self.assertEqual(list(sections), ['Reports', 'Design', 'Costs'])
        self.assertIn('report add', sections['Reports']['text'])

    def test_a_shell_draws_what_is_unsaved_and_follows_nobody(self):
        self.solved()
        write('script.txt', 'report add gain --y "dB(S(2,1))"\nreport show gain --html a.html\nreport --html b.html --live\n')
        done = self.run_desk('shell', 'ladder', 'script.txt', '--json', '--keep-going', code=2)
        lines = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(lines[1]['result']['points'], 61)
        self.assertIn('another terminal', lines[2]['error'])


class LivePages(DeskTest):
    REPORT = ('--x', 'res', '--y', 'max(dB(S(1,1)))', '--quiet')

    def study(self):
        """One that takes longer than any test, which ends it."""
        self.small_project('slow', SLOW)
        self.run_desk('report', 'slow', 'add', 'worst', *self.REPORT)
        self.run_desk('save', 'slow')
        solve = self.launch(SOLVEDESK, 'solve', 'slow', '--vary', 'res=1:20000:1', '--jobs', '1', '--quiet')
        return solve

    def points(self, file='live.html'):
        """How many points the page has, and whether it is live."""
        data, columns = numbers_of(file)
        items = data['sections'][0]['items']
        return len(columns[items[0]['series'][0]['x']]) if items else 0, b'id="live"' in read(file)

    def wait_for(self, is_there):
        until = time.monotonic() + 120
        while not is_there():
            self.assertLess(time.monotonic(), until)
            time.sleep(0.05)

    def stop(self, solve):
        solve.send_signal(signal.SIGINT)
        self.finish(solve)
        self.assertEqual(solve.returncode, 8)

    def test_a_page_grows_with_its_study_and_ends_like_any_other(self):
        solve = self.study()
        live = self.launch(SOLVEDESK, 'report', 'slow', '--html', 'live.html', '--live', '--wait', '--json')
        self.wait_for(lambda: os.path.exists('live.html'))
        self.wait_for(lambda: self.points()[0] > 0)
        first = self.points()
        self.wait_for(lambda: self.points()[0] > first[0])
        self.assertEqual((first[1], self.points()[1]), (True, True))
        self.stop(solve)
        out, err = self.finish(live)
        self.assertEqual((live.returncode, err), (0, ''))
        self.assertEqual(self.points(), (len(self.variations('slow')), False))
        document = json.loads(out)
        self.assertGreaterEqual(document['written'], 3)
        self.assertEqual(document['bytes'], os.path.getsize('live.html'))
        self.assertEqual([name for name in os.listdir('.') if name.startswith('.solvedesk')], [])

    def test_ctrl_c_ends_the_page_and_not_the_study(self):
        solve = self.study()
        live = self.launch(SOLVEDESK, 'report', 'slow', 'show', 'worst', '--html', 'live.html', '--live', '--wait')
        self.wait_for(lambda: os.path.exists('live.html') and self.points()[0] > 0)
        live.send_signal(signal.SIGINT)
        out, err = self.finish(live)
        self.assertEqual((live.returncode, err), (0, ''))
        self.assertIn('written', out)
        self.assertFalse(self.points()[1])
        self.assertIsNone(solve.poll())
        self.stop(solve)
        self.assertGreaterEqual(len(self.variations('slow')), self.points()[0])

    def test_without_a_study_it_is_a_page_like_any_other_at_once(self):
        self.small_project('slow', SLOW)
        self.run_desk('solve', 'slow', '--quiet')
        self.run_desk('report', 'slow', 'add', 'gain', '--y', 'dB(S(1,1))', '--quiet')
        self.run_desk('report', 'slow', '--html', 'live.html', '--live')
        self.assertFalse(self.points()[1])

    def test_a_page_can_wait_for_its_study(self):
        self.small_project('slow', SMALL)
        self.run_desk('report', 'slow', 'add', 'worst', *self.REPORT)
        live = self.launch(SOLVEDESK, 'report', 'slow', '--html', 'live.html', '--live', '--wait')
        self.wait_for(lambda: os.path.exists('live.html'))
        self.assertEqual(self.points(), (0, True))
        self.run_desk('solve', 'slow', '--vary', 'res=1:5:1', '--quiet')
        _, err = self.finish(live)
        self.assertEqual((live.returncode, err), (0, ''))
        self.assertEqual(self.points(), (5, False))


if __name__ == '__main__':
    unittest.main()
