// Curves on a canvas: straight lines between samples, gaps where a value is missing, and of many samples in one column
// of pixels only what can be seen of them.

const DENSE = 4;  // samples a pixel from which on a curve is thinned

/// The samples that lie in the range of x, and one more at each end; all where x doesn't run one way.
function visibleSpan(curve, low, high) {
  const direction = directionOf(curve.x), count = curve.x.length;
  if (direction === 0)
    return [0, count];
  let first = lowerBound(curve.x, low), last = lowerBound(curve.x, high) + 1;
  if (direction < 0)
    [first, last] = [count - last, count - first];
  return [Math.max(0, first - 1), Math.min(count, last + 1)];
}

/// Collects a path of runs; a run of a single sample becomes a dot.
class PathPen {
  constructor(context) {
    this.context = context;
    this.length = 0;
    this.dots = [];
    context.beginPath();
  }
  to(x, y) {
    if (this.length++ === 0)
      this.context.moveTo(x, y);
    else
      this.context.lineTo(x, y);
    this.x = x;
    this.y = y;
  }
  lift() {
    if (this.length === 1)
      this.dots.push([this.x, this.y]);
    this.length = 0;
  }
  finish() {
    this.lift();
    this.context.stroke();
    this.context.fillStyle = this.context.strokeStyle;
    for (const [x, y] of this.dots) {
      this.context.beginPath();
      this.context.arc(x, y, 2.2, 0, 2 * Math.PI);
      this.context.fill();
    }
  }
}

/// Draws and returns how many samples are represented.
function drawCurve(context, curve, place) {
  const [first, last] = visibleSpan(curve, place.lowX, place.highX);
  const pen = new PathPen(context);
  const isDense = directionOf(curve.x) !== 0 && last - first > DENSE * place.width;
  const drawn = isDense ? drawThinned(pen, curve, first, last, place) : drawAll(pen, curve, first, last, place);
  pen.finish();
  return drawn;
}

function drawAll(pen, curve, first, last, place) {
  let drawn = 0;
  for (let i = first; i < last; ++i) {
    const x = place.x(curve.x[i]), y = place.y(curve.y[i]);
    if (Number.isFinite(x) && Number.isFinite(y)) {
      pen.to(x, y);
      ++drawn;
    } else {
      pen.lift();
    }
  }
  return drawn;
}

/// In each column of pixels the first sample, the least, the most and the last one.
function drawThinned(pen, curve, first, last, place) {
  let drawn = 0, column = NaN, from = 0, least = 0, most = 0, to = 0;
  const flush = () => {
    if (Number.isNaN(column))
      return;
    pen.to(column, from);
    if (least < most) {
      pen.to(column, least);
      pen.to(column, most);
    }
    pen.to(column, to);
    column = NaN;
  };
  for (let i = first; i < last; ++i) {
    const x = place.x(curve.x[i]), y = place.y(curve.y[i]);
    if (!Number.isFinite(x) || !Number.isFinite(y)) {
      flush();
      pen.lift();
      continue;
    }
    ++drawn;
    const pixel = Math.round(x);
    if (pixel !== column) {
      flush();
      column = pixel;
      from = least = most = y;
    }
    least = Math.min(least, y);
    most = Math.max(most, y);
    to = y;
  }
  flush();
  return drawn;
}

/// A few markers along a curve, at samples; curves begin at different places, so that markers don't hide each other.
function drawMarkers(context, curve, place, paper) {
  const [first, last] = visibleSpan(curve, place.lowX, place.highX);
  const apart = place.width / 7;
  let next = place.left + apart * (0.15 + 0.7 * ((curve.look.place * 0.618) % 1)) - (last - first <= 24 ? apart : 0);
  for (let i = first; i < last; ++i) {
    const x = place.x(curve.x[i]), y = place.y(curve.y[i]);
    if (!(x >= place.left && x <= place.left + place.width && y >= place.top && y <= place.top + place.height))
      continue;
    if (directionOf(curve.x) > 0 ? x < next : i % Math.ceil((last - first) / 7) !== 0)
      continue;
    paintMarker(context, curve.look.marker, x, y, 3.4, paper);
    if (last - first > 24)
      next = x + apart;
  }
}
