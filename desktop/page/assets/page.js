// Puts the page together: sections and items, the switch of themes, printing, and the face for tests.

const PRINT_DENSITY = 3;
const VIEWS = {rectangular: RectangularPlot, polar: RoundPlot, smith: RoundPlot, table: TableView, tree: TreeView};

class Page {
  constructor(description) {
    this.views = [];
    const main = document.getElementById('main');
    const contents = make('ul');
    description.sections.forEach((section, place) => {
      const id = `section-${place + 1}`;
      if (section.title)
        contents.append(make('li', {}, make('a', {href: '#' + id}, section.title)));
      const items = section.items.map(item => this.view(item, description.columns));
      main.append(make('section', {id}, section.title && make('h2', {}, section.title),
                       section.text && make('p', {class: 'text'}, section.text), ...items.map(view => view.element)));
    });
    if (contents.childElementCount > 1)
      main.before(make('nav', {'aria-label': 'Sections'}, contents));
    this.plots = this.views.filter(view => view.draw);
    this.watch();
    this.themes();
    this.print();
  }

  view(item, columns) {
    const view = new VIEWS[item.kind](item, columns);
    view.kind = item.kind;
    if (item.note)
      view.element.append(make('p', {class: 'text'}, item.note));
    this.views.push(view);
    return view;
  }

  /// A plot is drawn when it comes near the window, and again when its size changes.
  watch() {
    const plotOf = new Map(this.plots.map(plot => [plot.holder, plot]));
    const isNear = new Set();
    const sizes = new ResizeObserver(entries => entries.forEach(({target}) => {
      if (isNear.has(target))
        plotOf.get(target).resized();
    }));
    const places = new IntersectionObserver(entries => entries.forEach(({target, isIntersecting}) => {
      if (isIntersecting && !isNear.has(target)) {
        isNear.add(target);
        sizes.observe(target);
      }
    }), {rootMargin: '300px'});
    for (const holder of plotOf.keys())
      places.observe(holder);
  }

  drawAgain(density) {
    for (const plot of this.plots)
      if (plot.isDrawn || density)
        plot.draw(density);
  }

  themes() {
    const chosen = document.getElementById('theme');
    chosen.hidden = false;
    chosen.addEventListener('change', event => {
      if (event.target.value === 'auto')
        delete document.documentElement.dataset.theme;
      else
        document.documentElement.dataset.theme = event.target.value;
      this.drawAgain();
    });
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.drawAgain());
  }

  /// Paper is white, finer than a screen, and nobody can unfold what stands on it.
  print() {
    let before = null;
    addEventListener('beforeprint', () => {
      if (before)
        return;
      before = {theme: document.documentElement.dataset.theme, scroll: [scrollX, scrollY]};
      document.documentElement.dataset.theme = 'light';
      for (const view of this.views)
        view.unfoldForPrint?.();
      this.drawAgain(PRINT_DENSITY);
    });
    addEventListener('afterprint', () => {
      if (!before)
        return;
      const {theme, scroll} = before;
      before = null;
      if (theme === undefined)
        delete document.documentElement.dataset.theme;
      else
        document.documentElement.dataset.theme = theme;
      for (const view of this.views)
        view.foldAfterPrint?.();
      this.drawAgain();
      scrollTo(...scroll);
    });
  }
}

const started = performance.now();
const page = new Page(readDocument());
const live = new LivePage(page.views);
// What tests look at, and whoever wants to read values by a script.
window.solvedeskPage = {
  views: page.views,
  drawAll() {
    const from = performance.now();
    page.plots.forEach(plot => plot.draw());
    return performance.now() - from;
  },
  keep: () => live.keep(),
  openedIn: performance.now() - started,
};
