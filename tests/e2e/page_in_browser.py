"""Pages in a real browser: what they draw, what the cursor reads, keys, mouse, themes, and that nothing leaves them."""
import base64
import math
import os
import re
import subprocess
import sys
import unittest

import _browser
from _page import drawable, numbers_of

BIN = os.environ['SOLUTIONMANAGER_BIN']
PICTURES = os.path.join(os.environ['SOLUTIONMANAGER_SOURCE'], 'build', 'pages')
PLOT = '.canvas'
RIGHT, LEFT, DOWN, ESCAPE, HOME, TAB = '\ue014', '\ue012', '\ue015', '\ue00c', '\ue011', '\ue004'


class PagesInABrowser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        os.makedirs(PICTURES, exist_ok=True)
        subprocess.run([os.path.join(BIN, 'page_samples'), '.'], check=True)
        cls.browser = _browser.Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()

    def open(self, name):
        self.browser.open(name + '.html')
        self.assertEqual(self.browser.run('return typeof solvedeskPage'), 'object', self.browser.console())
        self.browser.run('return solvedeskPage.drawAll()')
        return numbers_of(name + '.html')

    def plot(self, code, place=1):
        """Evaluates code over `plot`, one of the views of the page."""
        return self.browser.run(f'const plot = solvedeskPage.views[{place}]; return {code}')

    def range(self):
        return self.plot('[plot.xAxis.low, plot.xAxis.high, plot.yAxis.low, plot.yAxis.high]')

    def tearDown(self):
        """Whatever a test did: no complaint of the page, no request for anything but the page itself."""
        self.assertEqual(self.browser.console(), [])
        self.assertEqual(self.browser.strangers(), [])

    def test_a_page_that_asked_for_another_file_would_be_seen(self):
        with open('curious.html', 'w', encoding='utf-8') as file:
            file.write('<!doctype html><title>curious</title><img src="smith.svg">')
        self.browser.open('curious.html')
        self.assertEqual(self.browser.strangers(), ['file://' + os.path.abspath('smith.svg')])

    def test_every_plot_draws_all_samples_that_are_numbers(self):
        for name in ('showcase', 'large', 'empty', 'hostile'):
            data, columns = self.open(name)
            expected = [drawable(item, columns) for section in data['sections'] for item in section['items']
                        if 'series' in item]
            drawn = self.browser.run('return solvedeskPage.views.filter(v => v.draw).map(v => v.drawn)')
            self.assertEqual(drawn, expected, name)
        self.assertEqual(expected, [4, 2])  # of the hostile page: two curves with a gap; two samples

    def test_the_canvas_shows_the_colours_of_its_curves(self):
        self.open('showcase')
        shown = self.plot('''(() => {
          const {data} = plot.base.getContext('2d').getImageData(0, 0, plot.base.width, plot.base.height);
          const seen = new Set();
          for (let i = 0; i < data.length; i += 4) seen.add(`${data[i]},${data[i + 1]},${data[i + 2]}`);
          return ['0,103,177', '201,74,0', '0,128,91', '176,65,138'].filter(colour => seen.has(colour)).length;
        })()''')
        self.assertEqual(shown, 4)

    def test_the_cursor_reads_the_values_as_they_are_held(self):
        data, columns = self.open('showcase')
        item = data['sections'][1]['items'][0]
        for sample in (0, 77, 200):
            x = columns[item['series'][0]['x']][sample]
            self.plot(f'plot.setCursor({x!r})')
            self.assertEqual(self.plot('plot.cursorX'), x)
            told = self.plot('plot.curves.map(curve => plot.legend.rows.get(curve).value.textContent)')
            self.assertEqual([float(text) for text in told],
                             [columns[series['y']][sample] for series in item['series']])

    def test_the_cursor_tells_a_gap_as_such(self):
        self.open('showcase')
        self.plot('plot.setCursor(35e-9)', 2)
        self.assertEqual(self.plot('plot.legend.rows.get(plot.curves[0]).value.textContent', 2), '–')

    def test_between_samples_a_value_is_marked_as_interpolated(self):
        self.open('showcase')
        told = self.plot('''(() => {
          const [a, b] = plot.curves;
          b.x = Float64Array.from(a.x, x => x * 1.01);
          plot.setCursor(a.x[50]);
          return [plot.valueText(a), plot.valueText(b)];
        })()''')
        self.assertFalse(told[0].startswith('≈'))
        self.assertTrue(told[1].startswith('≈'))

    def test_keys_move_the_cursor_choose_a_curve_and_zoom(self):
        _, columns = self.open('showcase')
        frequencies = columns[0]
        self.plot('plot.holder.focus()')
        self.browser.keys(HOME)
        self.assertEqual(self.plot('plot.cursorX'), frequencies[0])
        self.browser.keys(RIGHT, RIGHT, RIGHT, LEFT)
        self.assertEqual(self.plot('plot.cursorX'), frequencies[2])
        self.browser.keys(DOWN, DOWN)
        self.assertEqual(self.plot('plot.curves.indexOf(plot.chosen)'), 1)
        self.assertIn('dB(S21), C1=2pF; L1=4nH = ', self.plot('plot.status.textContent'))
        low, high, *_ = self.range()
        self.browser.keys('+')
        nearer = self.range()
        self.assertAlmostEqual((nearer[1] - nearer[0]) / (high - low), 1 / 1.5)
        self.browser.keys(ESCAPE)
        self.assertEqual(self.range()[:2], [low, high])
        self.browser.keys(ESCAPE)
        self.assertIsNone(self.plot('plot.cursorX'))

    def test_the_view_follows_a_cursor_that_leaves_it(self):
        _, columns = self.open('showcase')
        self.plot('(plot.setCursor(1e7), plot.zoomBy(0.01))')
        self.plot('plot.holder.focus()')
        for _ in range(5):
            self.browser.keys(RIGHT)
        low, high, *_ = self.range()
        self.assertEqual(self.plot('plot.cursorX'), columns[0][5])
        self.assertLessEqual(low - 1e-9, math.log10(columns[0][5]))
        self.assertGreaterEqual(high + 1e-9, math.log10(columns[0][5]))

    def test_a_drag_zooms_and_a_double_click_shows_all(self):
        self.open('showcase')
        whole = self.range()
        self.browser.pointer(PLOT, (-100, -60), 'down', (0, 0), (100, 60), 'up')
        zoomed = self.range()
        self.assertTrue(whole[0] < zoomed[0] < zoomed[1] < whole[1], (whole, zoomed))
        self.assertTrue(whole[2] < zoomed[2] < zoomed[3] < whole[3], (whole, zoomed))
        self.browser.pointer(PLOT, (0, 0), 'down', 'up', 'down', 'up')
        self.assertEqual(self.range(), whole)

    def test_the_cursor_follows_the_mouse_and_takes_the_nearest_curve(self):
        _, columns = self.open('showcase')
        self.browser.pointer(PLOT, (-150, 100))
        self.assertIn(self.plot('plot.cursorX'), columns[0])
        chosen, at = self.plot('[plot.chosen.fullName, plot.cursorX]')
        below = 100 + self.plot('plot.holder.clientHeight') / 2
        distances = self.plot(f'plot.curves.map(c => Math.abs(plot.place.y(c.at({at!r}).value) - {below}))')
        self.assertEqual(chosen, self.plot('plot.curves.map(curve => curve.fullName)')[distances.index(min(distances))])

    def test_the_mouse_reads_and_zooms_round_plots(self):
        self.open('showcase')
        self.browser.pointer('.roundholder', (10, -40))
        self.assertGreaterEqual(self.plot('plot.index', 3), 0)
        self.assertIn('VSWR', self.plot('plot.status.textContent', 3))
        half = self.plot('plot.half', 3)
        self.browser.pointer('.roundholder', (-50, -50), 'down', (0, 0), (50, 50), 'up')
        self.assertLess(self.plot('plot.half', 3), half / 2)
        self.assertEqual(self.plot('plot.drawn', 3), 3 * 151)
        self.browser.pointer('.roundholder', (0, 0), 'down', 'up', 'down', 'up')
        self.assertEqual(self.plot('plot.half', 3), half)

    def test_a_flat_drag_zooms_one_axis(self):
        self.open('showcase')
        whole = self.range()
        self.browser.pointer(PLOT, (-100, 0), 'down', (100, 3), 'up')
        zoomed = self.range()
        self.assertTrue(whole[0] < zoomed[0] < zoomed[1] < whole[1])
        for now, before in zip(zoomed[2:], whole[2:]):
            self.assertAlmostEqual(now, before)

    def test_a_wheel_scrolls_past_a_plot_until_it_is_chosen(self):
        self.open('showcase')
        whole = self.range()
        self.browser.wheel(PLOT, -120)
        self.assertEqual(self.range(), whole)
        self.plot('plot.holder.focus()')
        self.browser.wheel(PLOT, -120)
        zoomed = self.range()
        self.assertLess(zoomed[1] - zoomed[0], whole[1] - whole[0])

    def test_the_legend_hides_a_curve_and_a_family(self):
        self.open('showcase')
        self.assertEqual(self.plot('plot.drawn'), 8 * 201)
        self.browser.click('.legend .row input')
        self.assertEqual(self.plot('plot.drawn'), 7 * 201)
        self.assertTrue(self.browser.run("return document.querySelector('.legend .family input').indeterminate"))
        self.browser.click('.legend .family input')  # shows the rest or hides all: the box was checked
        self.assertEqual(self.plot('plot.curves.filter(curve => curve.name === "dB(S21)" && curve.isShown).length'), 0)
        self.assertEqual(self.plot('plot.drawn'), 4 * 201)
        self.browser.click('.legend .family input')
        self.assertEqual(self.plot('plot.drawn'), 8 * 201)

    def test_axes_can_be_logarithmic_or_not(self):
        self.open('showcase')
        self.browser.click('figure.plot .tools button')
        self.assertFalse(self.plot('plot.xAxis.isLog'))
        self.assertEqual(self.plot('plot.drawn'), 8 * 201)
        self.browser.run("document.querySelectorAll('figure.plot')[0].querySelectorAll('.tools button')[1].click()")
        self.assertEqual(self.plot('plot.drawn'), 0)  # decibels below 0 have no logarithm

    def test_tables_sort_by_numbers_with_what_is_missing_last(self):
        self.open('showcase')
        cells = lambda: self.browser.run(
            "return [...document.querySelectorAll('figure.table')[0].querySelectorAll('tbody tr')]"
            ".map(row => row.cells[0].textContent)")
        head = lambda column: self.browser.run(
            "document.querySelectorAll('figure.table')[0].querySelectorAll('th button')[arguments[0]].click()", column)
        head(1)
        self.assertEqual(cells(), ['C1=10pF', 'C1=2pF', 'C1=1pF', 'C1=4pF'])
        head(1)
        self.assertEqual(cells(), ['C1=1pF', 'C1=2pF', 'C1=10pF', 'C1=4pF'])
        head(0)
        self.assertEqual(cells(), ['C1=1pF', 'C1=2pF', 'C1=4pF', 'C1=10pF'])
        self.assertEqual(self.browser.run("return document.querySelector('th').getAttribute('aria-sort')"), 'ascending')

    def test_tables_copy_as_shown_with_every_digit(self):
        self.open('showcase')
        table = self.browser.run("return solvedeskPage.views.filter(view => view.kind === 'table')[0].tsv()")
        self.assertEqual(table.splitlines(), [
            'variation\tcut-off [Hz]\tloss at 1 GHz [dB]', 'C1=10pF\t950000000\t-10.25',
            f'C1=2pF\t{1 / 3 * 1e10!r}\t-0.9', 'C1=1pF\t12000000000\t-0.30000000000000004', 'C1=4pF\t\t9'])
        self.browser.click('figure.table .tools button')
        for _ in range(50):
            text = self.browser.run("return document.querySelector('figure.table .tools button').textContent")
            if text != 'copy':
                break
        self.assertEqual(text, 'copied')

    def test_a_smith_chart_tells_the_sample_and_its_impedance(self):
        data, columns = self.open('showcase')
        series = data['sections'][2]['items'][0]['series'][1]
        self.plot('plot.setCursor(plot.curves[1], 40)', 3)
        told = self.plot('plot.status.textContent', 3)
        re_part, im_part = columns[series['re']][40], columns[series['im']][40]
        self.assertIn(f'at F = {columns[series["x"]][40]!r} Hz', told)
        numbers = re.search(r': (-?[\d.e-]+) ([+−]) ([\d.e-]+)j; ', told)
        self.assertEqual(float(numbers[1]), re_part)
        self.assertEqual(float(numbers[3]) * (1 if numbers[2] == '+' else -1), im_part)
        z = 50 * (1 + complex(re_part, im_part)) / (1 - complex(re_part, im_part))
        self.assertAlmostEqual(float(re.search(r'Z = (-?[\d.e-]+)', told)[1]) / z.real, 1, places=3)

    def test_keys_move_along_a_curve_of_a_round_plot(self):
        self.open('showcase')
        self.plot('plot.holder.focus()', 3)
        self.browser.keys(RIGHT, RIGHT, RIGHT, DOWN)
        self.assertEqual(self.plot('[plot.index, plot.curves.indexOf(plot.chosen)]', 3), [2, 1])
        half = self.plot('plot.half', 3)
        self.browser.keys('+')
        self.assertAlmostEqual(self.plot('plot.half', 3), half / 1.5)
        self.browser.keys(ESCAPE, ESCAPE)
        self.assertEqual(self.plot('[plot.half, plot.chosen]', 3), [half, None])

    def test_all_controls_are_reached_by_the_tabulator_and_have_names(self):
        self.open('showcase')
        self.browser.run('document.body.focus()')
        seen = []
        for _ in range(80):
            self.browser.keys(TAB)
            seen.append(self.browser.run('''const e = document.activeElement;
              return [e.className || e.tagName.toLowerCase(), e.getAttribute('aria-label') || e.textContent
                || (e.labels && e.labels[0] && e.labels[0].textContent) || ''];'''))
        self.assertEqual([name for name in seen if name[0] != 'body' and not name[1].strip()], [])
        kinds = [kind for kind, _ in seen]
        for kind in ('select', 'a', 'summary', 'button', 'canvas', 'input', 'roundholder', 'scroller'):
            self.assertIn(kind, kinds)

    def test_the_tree_tells_states_and_reasons_in_words(self):
        self.open('showcase')
        text = self.browser.run("return document.querySelector('.tree').textContent")
        for words in ('valid', 'stale', 'failed', 'the netlist was read again: C2 was added', 'the matrix is singular'):
            self.assertIn(words, text)
        self.browser.run("document.querySelectorAll('.treeview .tools button')[1].click()")
        self.assertEqual(self.browser.run("return document.querySelectorAll('details[open]').length"), 0)

    def test_long_lists_and_tables_are_made_when_they_are_asked_for(self):
        self.open('large')
        count = lambda selector: self.browser.run('return document.querySelectorAll(arguments[0]).length', selector)
        self.assertEqual(count('.tree li'), 1)
        self.browser.click('.treeview .tools button')
        self.assertEqual(count('.tree li'), 2001)
        self.assertEqual(count('tbody tr'), 500)
        self.assertEqual(self.browser.run("return solvedeskPage.views[2].tsv().trim().split('\\n').length"), 2001)
        self.browser.click('.more')
        self.assertEqual(count('tbody tr'), 2000)
        self.assertTrue(self.browser.run("return document.querySelector('.more').hidden"))

    def test_hostile_names_stay_text(self):
        data, _ = self.open('hostile')
        self.assertIsNone(self.browser.run('return window.wasHere'))
        self.assertEqual(self.browser.run("return document.querySelectorAll('main img, main script').length"), 0)
        self.assertEqual(self.browser.run("return document.querySelector('main h2').textContent"),
                         data['sections'][0]['title'])
        self.assertIn('</script><script>', self.browser.run('return document.title'))
        self.browser.picture(os.path.join(PICTURES, 'hostile.png'))

    def test_even_injected_markup_could_run_no_script(self):
        self.open('hostile')
        self.browser.run('''const box = document.createElement('div');
          box.innerHTML = '<img src="data:," onerror="window.wasHere = 1">';
          document.body.append(box);''')
        self.browser.run('return new Promise(done => setTimeout(done, 200))')
        self.assertIsNone(self.browser.run('return window.wasHere'))
        complaints = self.browser.console()  # here they are meant
        self.assertTrue(complaints and all('Content Security Policy' in text for text in complaints), complaints)

    def test_light_and_dark_follow_the_system_or_the_switch(self):
        ground = lambda: self.browser.run('return getComputedStyle(document.body).backgroundColor')
        for theme in ('light', 'dark'):
            self.browser.prefer(theme)
            self.open('showcase')
            self.plot('plot.setCursor(3e9, 150)')
            self.browser.picture(os.path.join(PICTURES, f'showcase-{theme}.png'))
            system = ground()
            other = {'light': 'dark', 'dark': 'light'}[theme]
            self.browser.run('''const theme = document.getElementById('theme'); theme.value = arguments[0];
              theme.dispatchEvent(new Event('change', {bubbles: true}))''', other)
            self.assertNotEqual(ground(), system)
        self.browser.prefer('light')
        self.browser.picture(os.path.join(PICTURES, 'showcase-narrow.png'), width=420)

    STATE = '''(() => {
      const closed = [...document.querySelectorAll('details')].filter(details => !details.open).length;
      return {rows: [...document.querySelectorAll('tbody')].map(body => body.rows.length), closed,
              items: document.querySelectorAll('.tree li').length, theme: document.documentElement.dataset.theme || null,
              paper: getComputedStyle(document.documentElement).getPropertyValue('--paper'), scroll: scrollY,
              densities: solvedeskPage.views.filter(view => view.base)
                           .map(view => Math.round(view.base.width / view.holder.clientWidth))};
    })()'''

    def printed(self, name):
        """Prints the open page: what stood on it then, after what its own script did, and the file."""
        self.browser.run(f'addEventListener("beforeprint", () => {{ window.printed = {self.STATE}; }}, {{once: true}})')
        path = os.path.join(PICTURES, name + '.pdf')
        self.browser.pdf(path)
        with open(path, 'rb') as file:
            pdf = file.read()
        self.assertEqual(pdf[:5], b'%PDF-')
        return self.browser.run('return window.printed'), len(re.findall(rb'/Type\s*/Page\b', pdf))

    def test_print_is_light_and_fine(self):
        self.browser.prefer('dark')
        self.open('showcase')
        before = self.browser.run('return ' + self.STATE)
        self.assertEqual((before['theme'], set(before['densities'])), (None, {1}))
        printed, _ = self.printed('showcase')
        self.assertEqual((printed['theme'], printed['paper'], set(printed['densities'])), ('light', '#ffffff', {3}))
        self.assertEqual(printed['rows'], before['rows'])
        self.assertEqual(self.browser.run('return ' + self.STATE), before)
        self.browser.prefer('light')

    def test_print_has_all_rows_and_branches_and_the_screen_what_it_had(self):
        self.open('large')
        self.browser.run('scrollTo(0, 300); solvedeskPage.views[2].scroller.scrollTop = 200')
        before = self.browser.run('return ' + self.STATE)
        self.assertEqual((before['rows'], before['items'], before['closed'], before['scroll']), ([500], 1, 1, 300))
        printed, sheets = self.printed('large')
        self.assertEqual((printed['rows'], printed['items'], printed['closed']), ([2000], 2001, 0))
        self.assertGreater(sheets, 4000 / 100)  # rows and branches, of which no sheet holds a hundred
        after = self.browser.run('return ' + self.STATE)
        self.assertEqual(after, {**before, 'items': 2001})
        self.assertEqual(self.plot('plot.scroller.scrollTop', 2), 200)

    def test_print_tells_of_rows_that_paper_does_not_hold(self):
        self.open('large')
        told = 'const left = document.querySelector(".left"); return [left.hidden, left.textContent]'
        self.plot('[plot.count = 2100, plot.order = plot.order.concat(plot.order.slice(0, 100)), plot.fill()]', 2)
        self.browser.run('dispatchEvent(new Event("beforeprint"))')
        self.assertEqual(self.browser.run(told), [False, '100 rows more in the file that this was printed from'])
        self.browser.run('dispatchEvent(new Event("afterprint"))')
        self.browser.run('solvedeskPage.views[2].more.click()')
        self.browser.run('solvedeskPage.views[2].more.click()')
        self.browser.run('dispatchEvent(new Event("beforeprint"))')  # whoever shows more of them prints more
        self.assertEqual(self.browser.run('return ' + self.STATE)['rows'], [2100])
        self.assertTrue(self.browser.run(told)[0])
        self.browser.run('dispatchEvent(new Event("afterprint"))')

    def test_paper_has_no_controls_and_no_ground(self):
        self.open('large')
        self.plot('plot.legend.show([plot.curves[3]], false)', 0)
        self.browser.run('document.querySelector(".fold")?.click()')
        style = lambda selector, name: self.browser.run(
            'return getComputedStyle(document.querySelector(arguments[0]))[arguments[1]]', selector, name)
        self.assertNotEqual(style('.more', 'display'), 'none')
        self.assertEqual(style('.left', 'display'), 'none')
        self.browser.cdp('Emulation.setEmulatedMedia', media='print')
        self.addCleanup(self.browser.cdp, 'Emulation.setEmulatedMedia', media='')
        for selector in ('.more', '#theme', '.tools button', '.fold', '.row input', '.row.off'):
            self.assertEqual(style(selector, 'display'), 'none', selector)
        for selector in ('.left', '.members', '.row:not(.off)'):
            self.assertNotEqual(style(selector, 'display'), 'none', selector)
        self.assertEqual(style('body', 'backgroundColor'), 'rgba(0, 0, 0, 0)')
        self.assertEqual(style('.scroller', 'maxHeight'), 'none')

    def test_a_hundred_curves_of_a_thousand_samples(self):
        self.assertLess(os.path.getsize('large.html'), 10_000_000)
        data, columns = self.open('large')
        opened, drawn = self.browser.run('return [solvedeskPage.openedIn, solvedeskPage.drawAll()]')
        print(f'100,000 samples: {os.path.getsize("large.html")} bytes, opened in {opened:.0f} ms, drawn in {drawn:.0f} ms',
              file=sys.stderr)
        self.plot('plot.setCursor(1.3e9, 200)', 0)
        item = data['sections'][0]['items'][0]
        self.assertEqual([float(text) for text in
                          self.plot('plot.curves.map(curve => plot.legend.rows.get(curve).value.textContent)', 0)],
                         [columns[series['y']][300] for series in item['series']])
        self.browser.picture(os.path.join(PICTURES, 'large.png'))

    def test_thinning_many_samples_keeps_peaks(self):
        self.open('large')
        peak = self.plot('''(() => {
          const count = 50000, x = new Float64Array(count), y = new Float64Array(count);
          for (let i = 0; i < count; ++i) x[i] = 1e9 + i * 2e4;
          y[31234] = 3;
          plot.curves.forEach((curve, place) => { curve.isShown = place === 0; });
          Object.assign(plot.curves[0], {x, y});
          plot.fit();
          plot.draw();
          const high = Math.round(plot.place.y(2)), at = Math.round(plot.place.x(x[31234]));
          const {data} = plot.base.getContext('2d').getImageData(at - 2, high - 2, 5, 5);
          return [plot.drawn, data.some((value, i) => i % 4 === 2 && value < 240 && data[i - 2] < 120)];
        })()''', 0)
        self.assertEqual(peak, [50000, True])

    def test_pictures_are_valid_and_shown(self):
        for name in ('rectangular', 'gaps', 'smith', 'polar', 'hostile'):
            self.browser.open(name + '.svg')
            self.assertEqual(self.browser.run('return document.documentElement.nodeName'), 'svg', name)
            self.assertEqual(self.browser.run("return document.querySelectorAll('parsererror, script, img').length"), 0)
            shot = self.browser.cdp('Page.captureScreenshot', format='png')
            with open(os.path.join(PICTURES, name + '-svg.png'), 'wb') as file:
                file.write(base64.b64decode(shot['data']))


if __name__ == '__main__':
    if not _browser.is_there():
        print('no chromium with chromedriver: install them with scripts/setup --browser', file=sys.stderr)
        sys.exit(77)
    unittest.main()
