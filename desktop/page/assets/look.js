// How curves look: colour, dashes and markers, so that they can be told apart without colour, too.

const DASHES = [[], [8, 4], [2, 3], [10, 3, 2, 3], [14, 4], [6, 3, 2, 3, 2, 3]];
const MARKERS = ['circle', 'square', 'triangle', 'diamond', 'cross', 'plus', 'down'];
const MARKED_CURVES = 12;  // more of them would hide the curves: the cursor names these
const NAMED_COLOURS = 8;
const RAMPS = {
  light: ['#4b1d7a', '#35558f', '#1d7f8c', '#2f9150', '#a58600'],
  dark: ['#b08cf0', '#7ba2f5', '#3fc1b8', '#84d45a', '#fde047'],
};

function isDark() {
  const chosen = document.documentElement.dataset.theme;
  return chosen ? chosen === 'dark' : matchMedia('(prefers-color-scheme: dark)').matches;
}

function cssColour(name) { return getComputedStyle(document.documentElement).getPropertyValue(name).trim(); }

/// A colour of a ramp; `part` runs from 0 to 1.
function rampColour(part, theme) {
  const stops = RAMPS[theme];
  const place = Math.min(stops.length - 1.000001, part * (stops.length - 1));
  const [from, to] = [stops[Math.floor(place)], stops[Math.floor(place) + 1]];
  const channel = at => {
    const a = parseInt(from.slice(at, at + 2), 16), b = parseInt(to.slice(at, at + 2), 16);
    return Math.round(a + (b - a) * (place % 1));
  };
  return `rgb(${channel(1)},${channel(3)},${channel(5)})`;
}

/// Gives each curve a look.  A variation has the same colour and marker in every family, a family its dashes; where
/// there are no variations, each curve differs in all three.
function assignLooks(curves) {
  const families = [...new Set(curves.map(curve => curve.name))];
  const variations = [...new Set(curves.map(curve => curve.variation))];
  const byFamily = variations.length === 1;
  for (const curve of curves) {
    const family = families.indexOf(curve.name);
    const place = byFamily ? family : variations.indexOf(curve.variation);
    const count = byFamily ? families.length : variations.length;
    curve.look = {
      place, count,
      dash: DASHES[family % DASHES.length],
      marker: curves.length === 1 || curves.length > MARKED_CURVES ? '' : MARKERS[place % MARKERS.length],
    };
  }
}

function colourOf(look, theme) {
  if (look.count > NAMED_COLOURS)
    return rampColour(look.place / (look.count - 1), theme);
  return theme === 'light' ? LIGHT_COLOURS[look.place] : DARK_COLOURS[look.place];
}

const LIGHT_COLOURS = ['#0067b1', '#c94a00', '#00805b', '#b0418a', '#6d5bd0', '#8a6d00', '#00829b', '#4a4a4a'];
const DARK_COLOURS = ['#5bb0ff', '#ff9457', '#3fd0a0', '#f08cc8', '#b3a5ff', '#e0c04a', '#4fd0e8', '#c8c8c8'];

/// The outline of a marker as points around its middle; none for a circle.
function markerPoints(marker, r) {
  switch (marker) {
    case 'square': return [[-r, -r], [r, -r], [r, r], [-r, r]];
    case 'triangle': return [[0, -r * 1.2], [r * 1.1, r * 0.8], [-r * 1.1, r * 0.8]];
    case 'down': return [[0, r * 1.2], [r * 1.1, -r * 0.8], [-r * 1.1, -r * 0.8]];
    case 'diamond': return [[0, -r * 1.3], [r * 1.3, 0], [0, r * 1.3], [-r * 1.3, 0]];
    case 'cross': return [[-r, -r], [r, r], [0, 0], [-r, r], [r, -r], [0, 0]];
    case 'plus': return [[-r * 1.2, 0], [r * 1.2, 0], [0, 0], [0, -r * 1.2], [0, r * 1.2], [0, 0]];
    default: return null;
  }
}

function paintMarker(context, marker, x, y, r, paper) {
  context.beginPath();
  const points = markerPoints(marker, r);
  if (points) {
    points.forEach(([dx, dy], i) => i ? context.lineTo(x + dx, y + dy) : context.moveTo(x + dx, y + dy));
    context.closePath();
  } else {
    context.arc(x, y, r, 0, 2 * Math.PI);
  }
  if (marker !== 'cross' && marker !== 'plus') {
    context.fillStyle = paper;
    context.fill();
  }
  context.stroke();
}

function svgMarker(marker, x, y, r) {
  const points = markerPoints(marker, r);
  if (!points)
    return make('svg:circle', {cx: x, cy: y, r, class: 'marker'});
  const outline = points.map(([dx, dy]) => `${x + dx} ${y + dy}`).join('L');
  return make('svg:path', {d: `M${outline}Z`, class: 'marker'});
}

/// The key of a curve in a legend; coloured by the page's style sheet's currentColor.
function swatch(look) {
  const size = {viewBox: '0 0 34 12', width: 34, height: 12};
  const picture = make('svg:svg', {...size, class: 'swatch', 'aria-hidden': 'true'});
  picture.append(make('svg:path', {d: 'M1 6H33', 'stroke-dasharray': look.dash.join(' ') || null}));
  if (look.marker)
    picture.append(svgMarker(look.marker, 17, 6, 3.2));
  return picture;
}
