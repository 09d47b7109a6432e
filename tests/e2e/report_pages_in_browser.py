"""Pages that solvedesk writes of real projects, in a real browser: what they draw and read is what the reports hold."""
import csv
import io
import os
import signal
import sys
import time
import unittest

import _browser
from _page import drawable, numbers_of
from _solvedesk import LOWPASS, SETUP, SMALL, SOLVEDESK, SOURCE, DeskTest

PICTURES = os.path.join(SOURCE, 'build', 'pages')
# A point is little to read and takes a while, so that a study of many goes on for as long as a test wants it to.
SLOW = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 501 1meg 1g')
MARKUP = '</script><img src=x onerror="window.wasHere=1">'
# A thousand frequencies, for a hundred variations.
LARGE = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 1000 1meg 1g')


class ReportPagesInABrowser(DeskTest):
    @classmethod
    def setUpClass(cls):
        os.makedirs(PICTURES, exist_ok=True)
        cls.browser = _browser.Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()

    def tearDown(self):
        """Whatever a test did: no complaint of the page, no request for anything but the page itself."""
        self.assertEqual(self.browser.console(), [])
        self.assertEqual(self.browser.strangers(), [])

    def open(self, path):
        self.browser.open(path)
        self.assertEqual(self.browser.run('return typeof solvedeskPage'), 'object', self.browser.console())
        self.browser.run('return solvedeskPage.drawAll()')
        return numbers_of(path)

    def picture(self, name, **options):
        self.browser.picture(os.path.join(PICTURES, name + '.png'), **options)

    def lowpass(self):
        self.run_desk('new', 'lowpass', '--netlist', LOWPASS)
        self.run_desk('setup', 'lowpass', 'add', 'Fast', 'lin', '2001', '10meg', '2.01g', 'adaptive')
        self.run_desk('solve', 'lowpass', '--vary', 'cscale=0.9:1.1:0.05', '--vary', 'lscale=0.9,1,1.1', '--quiet')
        for name, *words in (('transmission', '--y', 'dB(S(2,1))', '--over', 'cscale'),
                             ('match', '--y', 'S(1,1)', '--over', 'lscale', '--display', 'smith'),
                             ('mixed', '--y', 'S(2,1)', '--y', 'dB(S(1,1))', '--y', 'max(dB(S(1,1)))',
                              '--over', 'cscale,lscale'),
                             ('edge', '--x', 'cscale', '--y', 'dB(S(2,1))', '--y', 'dB(S(1,1))', '--over', 'lscale',
                              '--variation', 'Freq=1GHz')):
            self.run_desk('report', 'lowpass', 'add', name, *words, '--setup', SETUP, '--quiet')

    def rows(self, project, name, *words):
        text = self.run_desk('report', project, 'show', name, '--csv', '-', *words).stdout
        header, *rows = csv.reader(io.StringIO(text))
        return header, rows

    def views(self, kind):
        """The places of the views of a kind."""
        return self.browser.run('return solvedeskPage.views.map((v, i) => [v.kind, i])'
                                '.filter(([kind]) => kind === arguments[0]).map(([, place]) => place)', kind)

    def view(self, place, code):
        return self.browser.run(f'const view = solvedeskPage.views[{place}]; return {code}')

    def test_every_plot_of_a_project_draws_all_its_samples(self):
        self.lowpass()
        self.run_desk('report', 'lowpass', '--html', 'lowpass.html', '--quiet')
        data, columns = self.open('lowpass.html')
        expected = [drawable(item, columns) for section in data['sections'] for item in section['items']
                    if 'series' in item]
        self.assertEqual(expected[:4], [5 * 201, 3 * 201, 15 * 201, 15 * 201])
        self.assertEqual(self.browser.run('return solvedeskPage.views.filter(v => v.draw).map(v => v.drawn)'), expected)
        self.picture('project')
        self.browser.prefer('dark')
        self.open('lowpass.html')
        self.picture('project-dark')
        self.browser.prefer('light')

    def test_the_cursor_reads_what_the_report_holds(self):
        self.lowpass()
        self.run_desk('report', 'lowpass', 'show', 'transmission', 'edge', 'match', '--html', 'page.html', '--quiet')
        self.open('page.html')
        first, second = self.views('rectangular')
        _, rows = self.rows('lowpass', 'transmission')
        for sample in (0, 57, 200):
            self.view(first, f'view.setCursor({float(rows[sample][1])!r})')
            told = self.view(first, 'view.curves.map(c => [c.variation, view.legend.rows.get(c).value.textContent])')
            self.assertEqual({name: float(text) for name, text in told},
                             {'cscale=' + row[0]: float(row[2]) for row in rows[sample::201]})
        _, rows = self.rows('lowpass', 'edge')
        self.view(second, 'view.setCursor(1.05)')
        told = self.view(second, 'view.curves.map(c => [c.name, c.variation, view.legend.rows.get(c).value.textContent])')
        held = {(name, 'lscale=' + row[0]): float(row[place]) for row in rows if row[1] == '1.05'
                for name, place in (('dB(S(2,1))', 2), ('dB(S(1,1))', 3))}
        self.assertEqual(len(held), 6)
        self.assertEqual({(name, variation): float(text) for name, variation, text in told}, held)
        (smith,) = self.views('smith')
        _, rows = self.rows('lowpass', 'match')
        self.view(smith, 'view.setCursor(view.curves[1], 100)')
        told = self.view(smith, 'view.status.textContent')
        row = rows[201 + 100]
        self.assertIn(f'lscale={row[0]} at Freq = {float(row[1]):.0f} Hz', told)
        self.assertIn(f'{float(row[2])!r} {"−" if float(row[3]) < 0 else "+"} {abs(float(row[3]))!r}j', told)

    def test_tables_of_reports_sort(self):
        self.lowpass()
        self.run_desk('report', 'lowpass', 'show', 'edge', '--html', 'page.html', '--quiet')
        self.open('page.html')
        header, rows = self.rows('lowpass', 'edge')
        (table,) = self.views('table')
        for place in range(len(header)):
            self.view(table, f'view.heads[{place}].querySelector("button").click()')
            shown = self.view(table, f'[...view.body.rows].map(row => row.cells[{place}].title '
                                     f'|| row.cells[{place}].textContent)')
            self.assertEqual([float(text) for text in shown], sorted(float(row[place]) for row in rows))

    def test_names_that_try_to_be_markup_stay_text(self):
        self.small_project('a<b>', SMALL)
        self.run_desk('setup', 'a<b>', 'rename', SETUP, MARKUP)
        self.run_desk('solve', 'a<b>', '--quiet')
        self.run_desk('report', 'a<b>', 'add', MARKUP, '--y', 'dB(S(1,1))', '--y', 'S(1,1)', '--quiet')
        self.run_desk('report', 'a<b>', '--html', 'x<i>.html', '--quiet')
        self.open('x<i>.html')
        self.assertIsNone(self.browser.run('return window.wasHere'))
        self.assertEqual(self.browser.run("return document.querySelectorAll('main img, main script, b').length"), 0)
        self.assertEqual(self.browser.run("return document.querySelector('main h2').textContent"), MARKUP)
        self.picture('project-hostile')

    def test_a_hundred_thousand_points_open_and_are_drawn_at_once(self):
        self.small_project('large', LARGE)
        self.run_desk('solve', 'large', '--vary', 'res=1:100:1', '--quiet')
        self.run_desk('report', 'large', 'add', 'match', '--y', 'dB(S(1,1))', '--over', 'res', '--quiet')
        for what, words in (('one report', ('show', 'match')), ('the whole project', ())):
            before = os.times()
            self.run_desk('report', 'large', *words, '--html', 'large.html', '--quiet')
            after = os.times()
            written = after.children_user + after.children_system - before.children_user - before.children_system
            size = os.path.getsize('large.html')
            shown, opened, drawn = [], [], []
            for _ in range(3):
                start = time.monotonic()
                self.browser.open('large.html')
                drawn.append(self.browser.run('return solvedeskPage.drawAll()'))
                self.browser.run('return new Promise(done => requestAnimationFrame(() => setTimeout(done)))')
                shown.append(time.monotonic() - start)
                opened.append(self.browser.run('return solvedeskPage.openedIn'))
            print(f'100,000 points, {what}: written by the verb in {written:.2f} s of processor, {size} bytes; best of three: '
                  f'script {min(opened):.0f} ms, drawn in {min(drawn):.0f} ms, {min(shown):.2f} s from address to plot',
                  file=sys.stderr)
            self.assertLess(size, 10_000_000)
            data, columns = numbers_of('large.html')
            self.assertEqual(drawable(data['sections'][0]['items'][0], columns), 100_000)
            self.assertEqual(self.view(0, 'view.drawn'), 100_000)
            self.picture('project-large' if words else 'project-large-whole')
        (table,) = [place for place in self.views('table') if self.view(place, 'view.count') == 100_000]
        self.browser.run('dispatchEvent(new Event("beforeprint"))')
        self.assertEqual(self.view(table, 'view.body.rows.length'), 2000)
        self.assertIn('98000 rows more', self.view(table, 'view.left.textContent'))
        self.browser.run('dispatchEvent(new Event("afterprint"))')
        self.assertEqual(self.view(table, 'view.body.rows.length'), 500)

    def test_a_live_page_reads_itself_anew_and_keeps_what_its_reader_looks_at(self):
        self.small_project('slow', SLOW)
        for name in ('worst', 'other'):
            self.run_desk('report', 'slow', 'add', name, '--x', 'res', '--y', 'max(dB(S(1,1)))', '--y',
                          'min(dB(S(1,1)))', '--quiet')
        self.run_desk('save', 'slow')
        solve = self.launch(SOLVEDESK, 'solve', 'slow', '--vary', 'res=1:20000:1', '--jobs', '1', '--quiet')
        live = self.launch(SOLVEDESK, 'report', 'slow', '--html', 'live.html', '--live', '--wait')
        until = time.monotonic() + 60
        while not os.path.exists('live.html') or not numbers_of('live.html')[0]['sections'][0]['items']:
            self.assertLess(time.monotonic(), until, 'no point was ever shown')
            time.sleep(0.05)
        # What the reader does, at once so that no reading anew comes between.
        self.browser.open('live.html')
        place = '''const placeOfMain = () => Math.round(document.getElementById('main').getBoundingClientRect().top);'''
        kept = self.browser.run(place + '''solvedeskPage.drawAll();
          const [plot, table] = solvedeskPage.views;
          plot.legend.show([plot.curves[0]], false);
          plot.xAxis.setRange(2, 4); plot.zoomed(); plot.setCursor(1);
          table.sort(2); table.sort(2);
          scrollTo(0, 250);
          solvedeskPage.reader = true;
          return [document.getElementById('live') !== null, plot.curves[0].x.length, placeOfMain(), plot.cursorX,
                  plot.yAxis.low]''')
        self.assertTrue(kept[0])

        def wait_until(code, why):
            until = time.monotonic() + 90
            while not self.browser.run(f'return document.readyState === "complete" && {code}'):
                self.assertLess(time.monotonic(), until, why)
                time.sleep(0.1)

        wait_until('!solvedeskPage.reader', 'it was never read anew')
        state = place + '''const [plot, table] = solvedeskPage.views;
          return [placeOfMain(), plot.cursorX, plot.yAxis.low, plot.xAxis.low, plot.xAxis.high, plot.curves[0].isShown,
                  plot.curves[1].isShown, table.sorted]'''
        same = kept[2:] + [2, 4, False, True, {'column': 2, 'isRising': False}]
        self.assertEqual(self.browser.run(state), same)
        wait_until(f'solvedeskPage.views[0].curves[0].x.length > {kept[1]}', 'it never showed more points')
        solve.send_signal(signal.SIGINT)
        self.finish(solve)
        self.finish(live)
        wait_until("document.getElementById('live') === null", 'the last page was never read')
        self.assertEqual(self.browser.run(state), same)
        self.assertEqual(self.view(0, 'view.curves[0].x.length'), len(self.variations('slow')))


if __name__ == '__main__':
    if not _browser.is_there():
        print('no chromium with chromedriver: install them with scripts/setup --browser', file=sys.stderr)
        sys.exit(77)
    unittest.main()
