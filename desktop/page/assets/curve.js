// One curve: its samples, whether its abscissa runs one way, and its value at a place.

const directions = new WeakMap();
const orders = new WeakMap();

/// 1 when the numbers never fall, -1 when they never rise, 0 when they do both or one is no number.
function directionOf(numbers) {
  if (!directions.has(numbers)) {
    let rises = true, falls = true;
    for (let i = 0; i < numbers.length; ++i) {
      if (Number.isNaN(numbers[i]))
        rises = falls = false;
      else if (i > 0) {
        rises = rises && numbers[i] >= numbers[i - 1];
        falls = falls && numbers[i] <= numbers[i - 1];
      }
    }
    directions.set(numbers, rises ? 1 : falls ? -1 : 0);
  }
  return directions.get(numbers);
}

/// Places of the numbers in rising order, those that are no numbers left out.
function orderOf(numbers) {
  if (!orders.has(numbers)) {
    const order = [];
    for (let i = 0; i < numbers.length; ++i)
      if (!Number.isNaN(numbers[i]))
        order.push(i);
    if (directionOf(numbers) < 0)
      order.reverse();
    else if (directionOf(numbers) === 0)
      order.sort((a, b) => numbers[a] - numbers[b] || a - b);
    orders.set(numbers, Uint32Array.from(order));
  }
  return orders.get(numbers);
}

/// The first place in the order whose number is not below the value.
function lowerBound(numbers, value) {
  const order = orderOf(numbers);
  let low = 0, high = order.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (numbers[order[middle]] < value)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

function nearestNumber(numbers, value) {
  const order = orderOf(numbers);
  const at = lowerBound(numbers, value);
  const above = at < order.length ? numbers[order[at]] : NaN;
  const below = at > 0 ? numbers[order[at - 1]] : NaN;
  return Number.isNaN(above) || value - below < above - value ? below : above;
}

/// The next number above (steps > 0) or below the value, some steps away; the last one where there are fewer.
function steppedNumber(numbers, value, steps) {
  const order = orderOf(numbers);
  if (order.length === 0)
    return NaN;
  let at = lowerBound(numbers, value);
  if (steps > 0) {
    while (at < order.length && numbers[order[at]] === value)
      ++at;
    at = Math.min(order.length - 1, at + steps - 1);
  } else {
    at = Math.max(0, at + steps);
  }
  return numbers[order[at]];
}

class Curve {
  constructor(series, columns) {
    this.name = series.name;
    this.variation = series.variation || '';
    this.x = columns[series.x];
    this.y = columns[series.y];
    this.im = series.im === undefined ? null : columns[series.im];
    this.isShown = true;
  }

  get fullName() { return this.variation ? `${this.name}, ${this.variation}` : this.name; }

  /// The sample at x; else, where the abscissa runs one way, what lies on the straight line between its neighbours.
  /// `index` is -1 for the latter, `value` no number in gaps and outside.
  at(x) {
    const order = orderOf(this.x);
    const place = lowerBound(this.x, x);
    if (place < order.length && this.x[order[place]] === x)
      return {index: order[place], value: this.y[order[place]]};
    if (place === 0 || place === order.length || directionOf(this.x) === 0)
      return {index: -1, value: NaN};
    const a = order[place - 1], b = order[place];
    const part = (x - this.x[a]) / (this.x[b] - this.x[a]);
    return {index: -1, value: this.y[a] * (1 - part) + this.y[b] * part};
  }
}

/// Least and most of the values that the axis reaches.
function extentOf(numbers, axis) {
  let least = Infinity, most = -Infinity;
  for (const value of numbers)
    if (Number.isFinite(value) && (!axis.isLog || value > 0)) {
      if (value < least)
        least = value;
      if (value > most)
        most = value;
    }
  return [least, most];
}

function joinExtents(extents) {
  return extents.reduce(([least, most], [a, b]) => [Math.min(least, a), Math.max(most, b)], [Infinity, -Infinity]);
}
