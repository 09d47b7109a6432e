// What keys do in a plot that has the focus: the same in all kinds of plots.

function plotKey(plot, event) {
  if (event.altKey || event.metaKey || event.ctrlKey)
    return;
  const far = event.shiftKey ? 10 : 1;
  const actions = {
    ArrowRight: () => plot.step(far), ArrowLeft: () => plot.step(-far),
    ArrowUp: () => plot.stepCurve(-1), ArrowDown: () => plot.stepCurve(1),
    Home: () => plot.toEnd(-1), End: () => plot.toEnd(1),
    '+': () => plot.zoomBy(1 / 1.5), '=': () => plot.zoomBy(1 / 1.5), '-': () => plot.zoomBy(1.5),
    Escape: () => {
      if (plot.isZoomed)
        plot.showAll();
      else
        plot.clearCursor();
    },
  };
  if (actions[event.key]) {
    event.preventDefault();
    actions[event.key]();
  }
}
