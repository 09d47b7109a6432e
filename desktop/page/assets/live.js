// A page of a study that goes on reads itself anew now and then.  What its reader looks at stays as it was, also in
// the last page, which does so no more.

const RETRY_MILLISECONDS = 250;

/// What a reader did to a view, and how to do it once more to the same view of another page.
const KEPT = {
  rectangular: {
    of: plot => ({
      hidden: hiddenCurves(plot), logs: [plot.xAxis.isLog, plot.yAxis.isLog], cursor: plot.cursorX,
      chosen: plot.chosen && plot.chosen.fullName, legend: plot.legend.element.scrollTop,
      range: plot.isZoomed ? [plot.xAxis.low, plot.xAxis.high, plot.yAxis.low, plot.yAxis.high] : null,
    }),
    give(plot, kept) {
      [plot.xAxis.isLog, plot.yAxis.isLog] = kept.logs;
      plot.xLog.setAttribute('aria-pressed', String(kept.logs[0]));
      plot.yLog.setAttribute('aria-pressed', String(kept.logs[1]));
      hideCurves(plot, kept.hidden);
      plot.fit();
      if (kept.range) {
        plot.xAxis.setRange(kept.range[0], kept.range[1]);
        plot.yAxis.setRange(kept.range[2], kept.range[3]);
        plot.isZoomed = true;
        plot.reset.disabled = false;
      }
      plot.choose(plot.curves.find(curve => curve.fullName === kept.chosen) || null);
      if (kept.cursor !== null)
        plot.setCursor(kept.cursor);
      plot.legend.element.scrollTop = kept.legend;
    },
  },
  round: {
    of: plot => ({
      hidden: hiddenCurves(plot), index: plot.index, chosen: plot.chosen && plot.chosen.fullName,
      legend: plot.legend.element.scrollTop, view: plot.isZoomed ? [plot.middle, plot.half] : null,
    }),
    give(plot, kept) {
      hideCurves(plot, kept.hidden);
      if (kept.view) {
        [plot.middle, plot.half] = kept.view;
        plot.isZoomed = true;
      }
      const chosen = plot.curves.find(curve => curve.fullName === kept.chosen);
      if (chosen && kept.index >= 0 && kept.index < chosen.re.length)
        plot.setCursor(chosen, kept.index);
      plot.view();
      plot.legend.element.scrollTop = kept.legend;
    },
  },
  table: {
    of: table => ({sorted: table.sorted, limit: table.limit, scroll: table.scroller.scrollTop}),
    give(table, kept) {
      table.limit = kept.limit;
      if (kept.sorted.column >= 0 && kept.sorted.column < table.columns.length) {
        table.sorted = {column: kept.sorted.column, isRising: !kept.sorted.isRising};
        table.sort(kept.sorted.column);
      } else {
        table.fill();
      }
      table.scroller.scrollTop = kept.scroll;
    },
  },
  tree: {
    of: tree => tree.folds(),
    give: (tree, kept) => tree.foldAs(kept),
  },
};
KEPT.polar = KEPT.smith = KEPT.round;

function hiddenCurves(plot) { return plot.curves.filter(curve => !curve.isShown).map(curve => curve.fullName); }

function hideCurves(plot, names) {
  const hidden = new Set(names), curves = plot.curves.filter(curve => hidden.has(curve.fullName));
  if (curves.length > 0)
    plot.legend.show(curves, false);
}

/// Views by what they are called: the next page may have more of them.
function viewsByName(views) {
  const named = new Map();
  for (const view of views) {
    let name = `${view.kind} ${view.title}`;
    while (named.has(name))
      name += "'";
    named.set(name, view);
  }
  return named;
}

class LivePage {
  constructor(views) {
    this.views = viewsByName(views);
    this.place = 'solvedesk ' + location.pathname;
    this.restore();
    const note = document.getElementById('live');
    if (note)
      this.begin(Number(note.dataset.seconds));
  }

  begin(seconds) {
    let isPressed = false;
    addEventListener('pointerdown', () => { isPressed = true; }, true);
    for (const end of ['pointerup', 'pointercancel'])
      addEventListener(end, () => { isPressed = false; }, true);
    const reload = () => {
      // Whoever drags a frame or copies a text is left alone.
      if (isPressed || String(getSelection()) || document.visibilityState === 'hidden')
        return setTimeout(reload, RETRY_MILLISECONDS);
      this.keep();
      location.reload();
    };
    setTimeout(reload, seconds * 1000);
  }

  keep() {
    // The browser's own way back comes later than ours, and counts from what may be gone.
    history.scrollRestoration = 'manual';
    const kept = {scroll: [scrollX, -this.top()], theme: document.documentElement.dataset.theme || 'auto', views: {}};
    for (const [name, view] of this.views) {
      kept.views[name] = KEPT[view.kind].of(view);
      if (view.holder && view.holder === document.activeElement)
        kept.focus = name;
    }
    try {
      sessionStorage.setItem(this.place, JSON.stringify(kept));
    } catch {
      // A browser that keeps nothing shows the page from its beginning.
    }
  }

  restore() {
    let kept = null;
    try {
      kept = JSON.parse(sessionStorage.getItem(this.place));
      sessionStorage.removeItem(this.place);
    } catch {
      return;
    }
    if (!kept)
      return;
    const theme = document.getElementById('theme');
    theme.value = kept.theme;
    theme.dispatchEvent(new Event('change'));
    for (const [name, view] of this.views)
      if (kept.views[name])
        KEPT[view.kind].give(view, kept.views[name]);
    if (this.views.has(kept.focus))
      this.views.get(kept.focus).holder.focus({preventScroll: true});
    scrollTo(kept.scroll[0], scrollY + this.top() + kept.scroll[1]);
    addEventListener('load', () => setTimeout(() => { history.scrollRestoration = 'auto'; }));
  }

  /// Of what is shown, against the window: the note above it goes with the last page.
  top() {
    return document.getElementById('main').getBoundingClientRect().top;
  }
}
