// Polar plots and Smith charts: complex numbers in a plane, as scalable graphics.  The unit of the drawing is the
// outer circle's radius, with the imaginary axis upwards.

const SIZE = 1000;  // what the radius is drawn as, since browsers round small coordinates

class RoundPlot {
  constructor(item, columns) {
    this.title = item.title;
    this.isSmith = item.kind === 'smith';
    this.impedance = item.impedance || 1;
    this.ohm = item.impedance ? ' Ω' : '';
    this.unit = item.unit || '';
    this.parameter = item.parameter || {title: '', unit: ''};
    this.curves = item.series.map(series => {
      const curve = new Curve(series, columns);
      curve.parameter = columns[series.x];
      curve.re = columns[series.re];
      return curve;
    });
    this.outer = this.outerRadius();
    this.chosen = null;
    this.index = -1;
    assignLooks(this.curves);
    this.legend = new Legend(this.curves, () => this.draw(), curve => this.choose(curve));
    this.build();
    this.listen();
    this.showAll();
  }

  outerRadius() {
    let most = 0;
    for (const {re, im} of this.curves)
      for (let i = 0; i < re.length; ++i) {
        const radius = Math.hypot(re[i], im[i]);
        if (radius > most && Number.isFinite(radius))
          most = radius;
      }
    this.most = most;
    if (this.isSmith)
      return 1;
    const {values} = linearSteps(0, most || 1, 5);
    const step = values.length > 1 ? values[1] : 1;
    return Math.ceil((most || 1) / step - 1e-9) * step;
  }

  build() {
    const smith = document.getElementById('smith-grid').content.querySelector('g');
    this.grid = this.isSmith ? smith.cloneNode(true) : this.polarGrid();
    this.paths = make('svg:g', {class: 'curves'});
    this.cursor = make('svg:g', {class: 'cursor'});
    this.picture = make('svg:svg', {class: 'round', 'aria-hidden': 'true'}, this.grid, this.paths, this.cursor);
    const kind = this.isSmith ? 'Smith chart' : 'polar plot';
    this.holder = make('div', {
      class: 'roundholder', tabindex: 0, role: 'application', 'aria-roledescription': kind,
      'aria-label': `${this.title || kind}, ${counted(this.curves.length, 'curve')}. Left and right move along a curve, `
        + 'up and down choose one, plus and minus zoom, Escape shows all.',
    }, this.picture);
    this.status = make('p', {class: 'status', 'aria-live': 'polite'});
    this.reset = make('button', {type: 'button', disabled: true}, 'show all');
    const note = !this.isSmith ? titleWithUnit('', this.radiusUnit)
                 : this.ohm ? `reference ${shortText(this.impedance)} Ω` : 'normalised';
    this.element = make('figure', {class: 'plot'},
                        make('figcaption', {}, make('span', {class: 'title'}, this.title),
                             make('span', {class: 'tools'}, make('span', {class: 'note'}, note), this.reset)),
                        make('div', {class: 'body'}, this.holder, this.legend.element), this.status);
  }

  polarGrid() {
    const grid = make('svg:g', {class: 'roundgrid'});
    const {values} = linearSteps(0, this.outer, 5);
    const {ticks, unit} = linearTicks(0, this.outer, 5, this.unit);
    this.radiusUnit = unit;
    for (let angle = 0; angle < 360; angle += 30) {
      const [c, s] = [Math.cos(angle * Math.PI / 180), Math.sin(angle * Math.PI / 180)];
      grid.append(make('svg:path', {d: `M0 0L${c * SIZE} ${-s * SIZE}`}),
                  make('svg:text', {x: c * SIZE * 1.09, y: -s * SIZE * 1.09, class: 'middle'}, `${angle}°`));
    }
    values.forEach((value, i) => {
      if (i === 0)
        return;
      const isOuter = i === values.length - 1;
      grid.append(make('svg:circle', {cx: 0, cy: 0, r: value / this.outer * SIZE, class: isOuter ? 'outer' : null}));
      if (!isOuter)
        grid.append(make('svg:text', {x: 8, y: -value / this.outer * SIZE - 4, class: 'label'}, ticks[i].text));
    });
    grid.append(make('svg:text', {x: 8, y: -SIZE + 34, class: 'label'}, ticks[ticks.length - 1].text));
    return grid;
  }

  shown() { return this.curves.filter(curve => curve.isShown); }
  at(curve, i) { return [curve.re[i] / this.outer * SIZE, -curve.im[i] / this.outer * SIZE]; }
  /// Pixels of the style sheet in a unit of the drawing.
  scale() { return (this.picture.clientWidth || 480) / (2 * this.half); }

  draw() {
    this.isDrawn = true;
    this.drawn = 0;
    this.paths.replaceChildren();
    const theme = isDark() ? 'dark' : 'light', thick = this.curves.length > 30 ? 1 : 1.8;
    for (const curve of this.shown()) {
      const group = make('svg:g', {});
      group.style.color = colourOf(curve.look, theme);
      const {text, dots, count} = this.pathOf(curve);
      this.drawn += count;
      const dashes = curve.look.dash.join(' ') || null;
      group.append(make('svg:path', {d: text, 'stroke-width': thick, 'stroke-dasharray': dashes}));
      for (const [x, y] of dots)
        group.append(make('svg:circle', {cx: x, cy: y, r: 2.4 / this.scale(), class: 'dot'}));
      if (curve.look.marker)
        for (const i of this.markedSamples(curve))
          group.append(svgMarker(curve.look.marker, ...this.at(curve, i), 4 / this.scale()));
      this.paths.append(group);
    }
    this.legend.colour();
    this.drawCursor();
  }

  /// Samples that fall on each other at this size are one; gaps part the path.
  pathOf(curve) {
    const parts = [], dots = [], finest = 0.3 / this.scale();
    let run = 0, count = 0, lastX = 0, lastY = 0;
    for (let i = 0; i < curve.re.length; ++i) {
      const [x, y] = this.at(curve, i);
      if (!Number.isFinite(x) || !Number.isFinite(y)) {
        if (run === 1)
          dots.push([lastX, lastY]);
        run = 0;
        continue;
      }
      ++count;
      if (run > 1 && Math.abs(x - lastX) < finest && Math.abs(y - lastY) < finest)
        continue;
      parts.push(`${run === 0 ? 'M' : 'L'}${x.toFixed(2)} ${y.toFixed(2)}`);
      ++run;
      [lastX, lastY] = [x, y];
    }
    if (run === 1)
      dots.push([lastX, lastY]);
    return {text: parts.join(''), dots, count};
  }

  markedSamples(curve) {
    const count = curve.re.length, apart = Math.max(1, Math.floor(count / 5)), samples = [];
    for (let i = Math.floor(apart * 0.5); i < count; i += apart)
      if (Number.isFinite(curve.re[i]) && Number.isFinite(curve.im[i]))
        samples.push(i);
    return samples;
  }

  drawCursor() {
    this.cursor.replaceChildren();
    if (this.chosen && this.chosen.isShown) {
      this.cursor.style.color = colourOf(this.chosen.look, isDark() ? 'dark' : 'light');
      if (this.shown().length > 1)
        this.cursor.append(make('svg:path', {d: this.pathOf(this.chosen).text, 'stroke-width': 3.4}));
      const [x, y] = this.at(this.chosen, this.index);
      if (Number.isFinite(x) && Number.isFinite(y))
        this.cursor.append(make('svg:circle', {cx: x, cy: y, r: 5 / this.scale(), class: 'marker'}));
    }
  }

  choose(curve) {
    this.chosen = curve;
    this.legend.mark(curve);
    this.drawCursor();
  }

  setCursor(curve, index) {
    this.index = index;
    this.choose(curve);
    const parameter = curve.parameter[index];
    for (const other of this.curves) {
      const place = other === curve ? index : this.indexAt(other, parameter);
      this.legend.setValue(other, other.isShown && place >= 0 ? this.polarText(other.re[place], other.im[place]) : '');
    }
    const {title, unit} = this.parameter;
    const where = Number.isNaN(parameter) ? '' : ` at ${title || 'x'} = ${withUnit(exactText(parameter), unit)}`;
    this.status.textContent = `${curve.fullName}${where}: ${this.valueText(curve.re[index], curve.im[index])}`;
  }

  indexAt(curve, parameter) {
    const order = orderOf(curve.parameter), place = lowerBound(curve.parameter, parameter);
    return place < order.length && curve.parameter[order[place]] === parameter ? order[place] : -1;
  }

  polarText(re, im) {
    return Number.isNaN(re) || Number.isNaN(im)
      ? NO_VALUE
      : `${shortText(Math.hypot(re, im), 5)} ∠ ${shortText(Math.atan2(im, re) * 180 / Math.PI, 5)}°`;
  }

  /// As it is held, and what follows from it.
  valueText(re, im) {
    if (Number.isNaN(re) || Number.isNaN(im))
      return NO_VALUE;
    const value = `${exactText(re)} ${im < 0 || Object.is(im, -0) ? '−' : '+'} ${exactText(Math.abs(im))}j`;
    const parts = [withUnit(value, this.unit), this.polarText(re, im)];
    if (this.isSmith) {
      const below = (1 - re) ** 2 + im ** 2, radius = Math.hypot(re, im);
      if (below > 0) {
        const z = [(1 - re ** 2 - im ** 2) / below * this.impedance, 2 * im / below * this.impedance];
        parts.push(`Z = ${shortText(z[0], 5)} ${z[1] < 0 ? '−' : '+'} ${shortText(Math.abs(z[1]), 5)}j${this.ohm}`);
      }
      if (radius < 1)
        parts.push(`VSWR ${shortText((1 + radius) / (1 - radius), 5)}`);
    }
    return parts.join(';  ');
  }

  clearCursor() {
    this.choose(null);
    this.index = -1;
    this.status.textContent = '';
    for (const curve of this.curves)
      this.legend.setValue(curve, '');
  }

  view() {
    const {middle: [x, y], half} = this;
    this.picture.setAttribute('viewBox', `${x - half} ${y - half} ${2 * half} ${2 * half}`);
    this.grid.style.fontSize = `${11.5 / this.scale()}px`;
    this.reset.disabled = !this.isZoomed;
    if (this.isDrawn)
      this.draw();
  }

  resized() {
    this.isDrawn = true;
    this.view();
  }

  showAll() {
    this.middle = [0, 0];
    this.half = Math.max(1, this.isSmith ? this.most : 1) * SIZE * 1.18;
    this.isZoomed = false;
    this.view();
  }

  zoomBy(factor, around) {
    const half = this.half * factor;
    if (half > SIZE * 20 || half < SIZE * 1e-4)
      return;
    const [x, y] = around || (this.chosen && this.index >= 0 ? this.at(this.chosen, this.index) : this.middle);
    this.middle = [x + (this.middle[0] - x) * factor, y + (this.middle[1] - y) * factor];
    this.half = half;
    this.isZoomed = true;
    this.view();
  }

  nearestSample([x, y]) {
    let best = null, index = -1, least = Infinity;
    for (const curve of this.shown())
      for (let i = 0; i < curve.re.length; ++i) {
        const dx = curve.re[i] / this.outer * SIZE - x, dy = -curve.im[i] / this.outer * SIZE - y;
        const distance = dx * dx + dy * dy;
        if (distance < least) {
          best = curve;
          index = i;
          least = distance;
        }
      }
    return [best, index];
  }

  listen() {
    const at = event => {
      const box = this.picture.getBoundingClientRect();
      return [this.middle[0] + ((event.clientX - box.left) / box.width * 2 - 1) * this.half,
              this.middle[1] + ((event.clientY - box.top) / box.height * 2 - 1) * this.half];
    };
    let from = null;
    this.holder.addEventListener('pointerdown', event => {
      if (event.button !== 0)
        return;
      from = at(event);
      this.holder.setPointerCapture(event.pointerId);
    });
    this.holder.addEventListener('pointermove', event => {
      const point = at(event);
      if (!from) {
        const [curve, index] = this.nearestSample(point);
        return curve && this.setCursor(curve, index);
      }
      this.drawFrame(from, point);
    });
    this.holder.addEventListener('pointerup', event => {
      if (from)
        this.endFrame(from, at(event));
      from = null;
    });
    this.holder.addEventListener('pointercancel', () => {
      from = null;
      this.drawCursor();
    });
    this.holder.addEventListener('dblclick', () => this.showAll());
    this.holder.addEventListener('wheel', event => {
      if (!event.ctrlKey && document.activeElement !== this.holder)
        return;
      event.preventDefault();
      this.zoomBy(event.deltaY > 0 ? WHEEL_STEP : 1 / WHEEL_STEP, at(event));
    }, {passive: false});
    this.holder.addEventListener('keydown', event => plotKey(this, event));
    this.reset.addEventListener('click', () => this.showAll());
  }

  drawFrame([x0, y0], [x1, y1]) {
    this.drawCursor();
    this.cursor.append(make('svg:rect', {x: Math.min(x0, x1), y: Math.min(y0, y1), width: Math.abs(x1 - x0),
                                         height: Math.abs(y1 - y0), class: 'frame'}));
  }

  /// The view becomes the square around the frame.
  endFrame([x0, y0], [x1, y1]) {
    const half = Math.max(Math.abs(x1 - x0), Math.abs(y1 - y0)) / 2;
    if (half * this.scale() >= 4 && half >= SIZE * 1e-4) {
      this.middle = [(x0 + x1) / 2, (y0 + y1) / 2];
      this.half = half;
      this.isZoomed = true;
      this.view();
    } else {
      this.drawCursor();
    }
  }

  step(steps) {
    const curve = this.chosen || this.shown()[0];
    if (!curve || curve.re.length === 0)
      return;
    const last = curve.re.length - 1;
    const index = this.index < 0 ? (steps > 0 ? 0 : last) : this.index + steps;
    this.setCursor(curve, Math.max(0, Math.min(last, index)));
  }

  /// The first or last sample of a curve.
  toEnd(end) {
    const curve = this.chosen || this.shown()[0];
    if (curve && curve.re.length > 0)
      this.setCursor(curve, end < 0 ? 0 : curve.re.length - 1);
  }

  stepCurve(step) {
    const shown = this.shown();
    if (shown.length === 0)
      return;
    const at = shown.indexOf(this.chosen);
    const curve = shown[at < 0 ? 0 : (at + step + shown.length) % shown.length];
    this.setCursor(curve, Math.max(0, Math.min(curve.re.length - 1, this.index)));
  }

  held() { return this.curves.reduce((sum, curve) => sum + curve.re.length, 0); }
}
