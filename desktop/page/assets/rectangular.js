// A rectangular plot on two canvases: curves below, cursor and zoom frame above.

const FONT = '12px system-ui, sans-serif';
const WHEEL_STEP = 1.2;

/// The text, shortened where it is wider than that.
function elided(context, text, width) {
  if (context.measureText(text).width <= width)
    return text;
  const letters = Array.from(text);
  while (letters.length > 1 && context.measureText(letters.join('') + '…').width > width)
    letters.length = Math.floor(letters.length * 0.9);
  return letters.join('') + '…';
}

class RectangularPlot {
  constructor(item, columns) {
    this.title = item.title;
    this.curves = item.series.map(series => new Curve(series, columns));
    this.lines = item.lines || [];
    this.xAxis = new Axis(item.x);
    this.yAxis = new Axis(item.y);
    this.cursorX = null;
    this.chosen = null;   // the curve nearest to the cursor, or pointed at in the legend
    this.frame = null;    // while a zoom frame is drawn: where it began and where it is
    this.isZoomed = false;
    this.drawn = 0;
    assignLooks(this.curves);
    this.legend = new Legend(this.curves, () => this.curvesChanged(), curve => this.choose(curve));
    this.build();
    this.listen();
    this.fit();
  }

  build() {
    this.base = make('canvas');
    this.over = make('canvas');
    const families = new Set(this.curves.map(curve => curve.name));
    const xTitle = this.xAxis.title || 'x';
    this.holder = make('div', {
      class: 'canvas', tabindex: 0, role: 'application', 'aria-roledescription': 'plot',
      'aria-label': `${this.title || [...families].join(', ')} over ${xTitle}, ${counted(this.curves.length, 'curve')}. `
        + 'Arrow keys move the cursor, plus and minus zoom, Escape shows all.',
    }, this.base, this.over);
    this.status = make('p', {class: 'status', 'aria-live': 'polite'});
    this.xLog = this.logButton('log x', this.xAxis);
    this.yLog = this.logButton('log y', this.yAxis);
    this.reset = make('button', {type: 'button', disabled: true}, 'show all');
    this.element = make('figure', {class: 'plot'},
                        make('figcaption', {}, make('span', {class: 'title'}, this.title),
                             make('span', {class: 'tools'}, this.xLog, this.yLog, this.reset)),
                        make('div', {class: 'body'}, this.holder, this.legend.element), this.status);
  }

  logButton(text, axis) {
    const button = make('button', {type: 'button', 'aria-pressed': String(axis.isLog)}, text);
    button.addEventListener('click', () => {
      axis.isLog = !axis.isLog;
      button.setAttribute('aria-pressed', String(axis.isLog));
      this.fit();
      this.draw();
    });
    return button;
  }

  shown() { return this.curves.filter(curve => curve.isShown); }

  /// Ranges that hold all shown curves.
  fit() {
    const shown = this.shown();
    const xs = [...new Set(shown.map(curve => curve.x))];
    this.xAxis.fit(joinExtents(xs.map(x => extentOf(x, this.xAxis))), 0);
    const lines = this.lines.map(line => line.y).filter(y => !this.yAxis.isLog || y > 0);
    const ys = shown.map(curve => extentOf(curve.y, this.yAxis));
    this.yAxis.fit(joinExtents([...ys, ...lines.map(y => [y, y])]), 0.05);
    this.isZoomed = false;
    this.reset.disabled = true;
  }

  curvesChanged() {
    if (!this.isZoomed)
      this.fit();
    this.draw();
  }

  choose(curve) {
    this.chosen = curve;
    this.legend.mark(curve);
    this.drawOver();
  }

  /// Where things lie, in pixels of the style sheet.
  layOut(context, width, height) {
    const yTicks = this.yAxis.ticks(Math.max(2, Math.floor(height / 45)));
    const wide = Math.max(...yTicks.ticks.map(tick => context.measureText(tick.text).width), 10);
    const left = Math.ceil(wide) + 34, top = 10;
    const place = {left, top, width: Math.max(20, width - left - 16), height: Math.max(20, height - top - 44), yTicks};
    const {xAxis, yAxis} = this;
    place.xTicks = xAxis.ticks(Math.max(2, Math.floor(place.width / 80)));
    const xScale = place.width / (xAxis.high - xAxis.low), yScale = place.height / (yAxis.high - yAxis.low);
    place.x = value => left + (xAxis.toEven(value) - xAxis.low) * xScale;
    place.y = value => top + (yAxis.high - yAxis.toEven(value)) * yScale;
    place.evenX = pixel => xAxis.low + (pixel - left) / xScale;
    place.evenY = pixel => yAxis.high - (pixel - top) / yScale;
    place.lowX = xAxis.toValue(xAxis.low);
    place.highX = xAxis.toValue(xAxis.high);
    return place;
  }

  /// A context whose unit is a pixel of the style sheet, on an empty canvas.
  prepare(canvas, density) {
    const width = this.holder.clientWidth || 640, height = this.holder.clientHeight || 360;
    canvas.width = Math.round(width * density);
    canvas.height = Math.round(height * density);
    const context = canvas.getContext('2d');
    context.scale(density, density);
    context.font = FONT;
    return {context, width, height};
  }

  draw(density = window.devicePixelRatio || 1) {
    const {context, width, height} = this.prepare(this.base, density);
    this.place = this.layOut(context, width, height);
    this.isDrawn = true;
    const paper = cssColour('--paper'), theme = isDark() ? 'dark' : 'light';
    this.drawGrid(context, height);
    context.save();
    context.beginPath();
    context.rect(this.place.left, this.place.top, this.place.width, this.place.height);
    context.clip();
    context.lineJoin = 'round';
    this.drawn = 0;
    for (const curve of this.shown()) {
      context.strokeStyle = colourOf(curve.look, theme);
      context.lineWidth = this.curves.length > 30 ? 1 : 1.6;
      context.setLineDash(curve.look.dash);
      this.drawn += drawCurve(context, curve, this.place);
      context.setLineDash([]);
    }
    context.restore();
    for (const curve of this.shown().filter(shown => shown.look.marker)) {
      context.strokeStyle = colourOf(curve.look, theme);
      context.lineWidth = 1.4;
      drawMarkers(context, curve, this.place, paper);
    }
    this.drawLines(context);
    this.legend.colour();
    this.drawOver(density);
  }

  resized() { this.draw(); }

  drawGrid(context, height) {
    const {left, top, width, height: tall, xTicks, yTicks} = this.place;
    const ink = cssColour('--ink'), grid = cssColour('--grid'), right = left + width, bottom = top + tall;
    context.lineWidth = 1;
    context.strokeStyle = grid;
    context.fillStyle = ink;
    context.beginPath();
    context.textAlign = 'center';
    context.textBaseline = 'top';
    let lastEnd = -Infinity;
    for (const {value, text} of xTicks.ticks) {
      const x = Math.round(this.place.x(value)) + 0.5;
      context.moveTo(x, top);
      context.lineTo(x, bottom);
      const half = context.measureText(text).width / 2;
      if (text && x - half > lastEnd + 6) {
        context.fillText(text, x, bottom + 6);
        lastEnd = x + half;
      }
    }
    context.textAlign = 'right';
    context.textBaseline = 'middle';
    for (const {value, text} of yTicks.ticks) {
      const y = Math.round(this.place.y(value)) + 0.5;
      context.moveTo(left, y);
      context.lineTo(right, y);
      context.fillText(text, left - 6, y);
    }
    context.stroke();
    context.strokeStyle = cssColour('--frame');
    context.strokeRect(left + 0.5, top + 0.5, width, tall);
    context.textAlign = 'center';
    context.textBaseline = 'alphabetic';
    context.fillText(elided(context, titleWithUnit(this.xAxis.title, xTicks.unit), width), left + width / 2, height - 8);
    context.save();
    context.translate(14, top + tall / 2);
    context.rotate(-Math.PI / 2);
    context.fillText(elided(context, titleWithUnit(this.yAxis.title, yTicks.unit), tall), 0, 0);
    context.restore();
  }

  /// Levels that mean something: targets, limits.
  drawLines(context) {
    const {left, top, width, height} = this.place;
    for (const {y, label} of this.lines) {
      const at = this.place.y(y);
      if (!(at >= top && at <= top + height))
        continue;
      context.strokeStyle = context.fillStyle = cssColour('--limit');
      context.lineWidth = 1.4;
      context.setLineDash([6, 4]);
      context.beginPath();
      context.moveTo(left, at);
      context.lineTo(left + width, at);
      context.stroke();
      context.setLineDash([]);
      context.textAlign = 'right';
      context.textBaseline = at - top > 18 ? 'bottom' : 'top';
      const told = elided(context, label, width - 12), below = at + (at - top > 18 ? -3 : 3);
      context.lineWidth = 4;
      context.strokeStyle = cssColour('--paper');
      context.strokeText(told, left + width - 6, below);
      context.fillText(told, left + width - 6, below);
    }
  }

  drawOver(density = window.devicePixelRatio || 1) {
    if (!this.place)
      return;
    const {context} = this.prepare(this.over, density);
    const {left, top, width, height} = this.place;
    const theme = isDark() ? 'dark' : 'light', paper = cssColour('--paper');
    context.save();
    context.beginPath();
    context.rect(left, top, width, height);
    context.clip();
    if (this.chosen && this.chosen.isShown && this.shown().length > 1) {
      context.strokeStyle = colourOf(this.chosen.look, theme);
      context.lineWidth = 2.6;
      context.lineJoin = 'round';
      drawCurve(context, this.chosen, this.place);
    }
    if (this.cursorX !== null) {
      const x = this.place.x(this.cursorX);
      context.strokeStyle = cssColour('--ink');
      context.lineWidth = 1;
      context.beginPath();
      context.moveTo(x, top);
      context.lineTo(x, top + height);
      context.stroke();
      const dotted = this.shown().length > MARKED_CURVES ? [this.chosen].filter(Boolean) : this.shown();
      for (const curve of dotted.filter(shown => shown.isShown)) {
        const y = this.place.y(curve.at(this.cursorX).value);
        context.strokeStyle = colourOf(curve.look, theme);
        context.lineWidth = 2;
        if (Number.isFinite(y))
          paintMarker(context, 'circle', x, y, 4, paper);
      }
    }
    if (this.frame)
      this.drawFrame(context);
    context.restore();
  }

  drawFrame(context) {
    const [x, y, wide, tall] = this.framed();
    context.globalAlpha = 0.18;
    context.fillStyle = cssColour('--accent');
    context.fillRect(x, y, wide, tall);
    context.globalAlpha = 1;
    context.strokeStyle = cssColour('--accent');
    context.strokeRect(x, y, wide, tall);
  }

  /// The zoom frame; one that is nearly flat or upright means one axis alone.
  framed() {
    const {left, top, width, height} = this.place, {x0, y0, x1, y1} = this.frame;
    const wide = Math.abs(x1 - x0), tall = Math.abs(y1 - y0);
    const isX = wide >= 8 || tall < 8, isY = tall >= 20 || (tall >= 8 && wide < 8);
    return [isX ? Math.min(x0, x1) : left, isY ? Math.min(y0, y1) : top, isX ? wide : width, isY ? tall : height];
  }

  /// Puts the cursor at the sample nearest to x, and tells the value of every curve there.
  setCursor(x, y = null) {
    const xs = [...new Set(this.shown().map(curve => curve.x))];
    const candidates = xs.map(numbers => nearestNumber(numbers, x)).filter(candidate => !Number.isNaN(candidate));
    if (candidates.length === 0)
      return this.clearCursor();
    this.cursorX = candidates.reduce((a, b) => Math.abs(b - x) < Math.abs(a - x) ? b : a);
    if (y !== null && this.place)
      this.choose(this.nearestCurve(y));
    this.tell();
    this.drawOver();
  }

  nearestCurve(pixel) {
    let best = null, least = Infinity;
    for (const curve of this.shown()) {
      const distance = Math.abs(this.place.y(curve.at(this.cursorX).value) - pixel);
      if (distance < least)
        [best, least] = [curve, distance];
    }
    return best;
  }

  /// Samples are told as they are held; what lies between two of them is marked as such.
  valueText(curve) {
    const {index, value} = curve.at(this.cursorX);
    if (Number.isNaN(value))
      return NO_VALUE;
    return index < 0 ? '≈ ' + shortText(value, 6) : exactText(value);
  }

  tell() {
    for (const curve of this.curves)
      this.legend.setValue(curve, curve.isShown ? this.valueText(curve) : '');
    const at = `${this.xAxis.title || 'x'} = ${withUnit(exactText(this.cursorX), this.xAxis.unit)}`;
    const curve = this.chosen || this.shown()[0];
    const value = curve && withUnit(this.valueText(curve), this.yAxis.unit);
    this.status.textContent = curve ? `${at}: ${curve.fullName} = ${value}` : at;
  }

  clearCursor() {
    this.cursorX = null;
    this.chosen = null;
    this.legend.mark(null);
    for (const curve of this.curves)
      this.legend.setValue(curve, '');
    this.status.textContent = '';
    this.drawOver();
  }

  zoomed() {
    this.isZoomed = true;
    this.reset.disabled = false;
    this.draw();
  }

  showAll() {
    this.fit();
    this.draw();
  }

  /// Around the cursor, or the middle.
  zoomBy(factor) {
    const cursor = this.cursorX === null ? NaN : this.xAxis.toEven(this.cursorX);
    const isInside = cursor >= this.xAxis.low && cursor <= this.xAxis.high;
    if (this.xAxis.zoom(factor, isInside ? cursor : (this.xAxis.low + this.xAxis.high) / 2))
      this.zoomed();
  }

  endFrame() {
    const frame = this.frame;
    this.frame = null;
    if (Math.hypot(frame.x1 - frame.x0, frame.y1 - frame.y0) < 8)
      return this.drawOver();
    this.frame = frame;
    const [x, y, wide, tall] = this.framed();
    this.frame = null;
    const {evenX, evenY} = this.place;
    const isChanged = [this.xAxis.setRange(evenX(x), evenX(x + wide)), this.yAxis.setRange(evenY(y + tall), evenY(y))];
    if (isChanged.some(Boolean))
      this.zoomed();
    else
      this.drawOver();
  }

  listen() {
    const at = event => {
      const box = this.holder.getBoundingClientRect();
      return [event.clientX - box.left, event.clientY - box.top];
    };
    this.holder.addEventListener('pointerdown', event => {
      if (event.button !== 0 || !this.place)
        return;
      const [x0, y0] = at(event);
      this.frame = {x0, y0, x1: x0, y1: y0};
      this.holder.setPointerCapture(event.pointerId);
    });
    this.holder.addEventListener('pointermove', event => {
      if (!this.place)
        return;
      const [x, y] = at(event);
      if (this.frame) {
        this.frame.x1 = x;
        this.frame.y1 = y;
        this.drawOver();
      } else {
        this.setCursor(this.xAxis.toValue(this.place.evenX(x)), y);
      }
    });
    this.holder.addEventListener('pointerup', () => this.frame && this.endFrame());
    this.holder.addEventListener('pointercancel', () => {
      this.frame = null;
      this.drawOver();
    });
    this.holder.addEventListener('dblclick', () => this.showAll());
    this.holder.addEventListener('wheel', event => this.wheel(event, at(event)), {passive: false});
    this.holder.addEventListener('keydown', event => plotKey(this, event));
    this.reset.addEventListener('click', () => this.showAll());
  }

  /// A page has to be scrolled past its plots, so a wheel zooms one that was chosen, or with Ctrl.
  wheel(event, [x, y]) {
    if (!this.place || (!event.ctrlKey && document.activeElement !== this.holder))
      return;
    event.preventDefault();
    const factor = (event.deltaY || event.deltaX) > 0 ? WHEEL_STEP : 1 / WHEEL_STEP;
    const isChanged = event.shiftKey ? this.yAxis.zoom(factor, this.place.evenY(y))
                                     : this.xAxis.zoom(factor, this.place.evenX(x));
    if (isChanged)
      this.zoomed();
  }

  step(steps) {
    const xs = [...new Set(this.shown().map(curve => curve.x))];
    if (this.cursorX === null)
      return this.toEnd(steps > 0 ? -Infinity : Infinity);
    const next = xs.map(numbers => steppedNumber(numbers, this.cursorX, steps))
                   .filter(value => steps > 0 ? value > this.cursorX : value < this.cursorX);
    if (next.length > 0)
      this.moveTo(next.reduce((a, b) => (steps > 0 ? b < a : b > a) ? b : a));
  }

  /// The first or last sample in view.
  toEnd(end) {
    const place = end < 0 ? this.xAxis.low : this.xAxis.high;
    this.moveTo(this.xAxis.toValue(place));
  }

  /// The view follows the cursor.
  moveTo(x) {
    this.setCursor(x);
    const even = this.cursorX === null ? NaN : this.xAxis.toEven(this.cursorX);
    const {low, high} = this.xAxis;
    if (even < low || even > high) {
      const shift = even < low ? even - low : even - high;
      this.xAxis.setRange(low + shift, high + shift);
      this.zoomed();
    }
  }

  stepCurve(step) {
    const shown = this.shown();
    if (shown.length === 0)
      return;
    const at = shown.indexOf(this.chosen);
    this.choose(shown[at < 0 ? 0 : (at + step + shown.length) % shown.length]);
    if (this.cursorX !== null)
      this.tell();
    else
      this.status.textContent = this.chosen.fullName;
  }

  held() { return this.curves.reduce((sum, curve) => sum + curve.x.length, 0); }
}
