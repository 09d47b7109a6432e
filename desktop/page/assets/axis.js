// One axis: its range, linear or logarithmic, and where a value lies on it.

class Axis {
  constructor({title = '', unit = '', log = false}) {
    this.title = title;
    this.unit = unit;
    this.isLog = log;
    this.low = 0;  // these two are logarithms where the axis is logarithmic
    this.high = 1;
  }

  /// Where a value lies in the space in which the axis is even; not a number where the axis doesn't reach.
  toEven(value) { return this.isLog ? (value > 0 ? Math.log10(value) : NaN) : value; }
  toValue(even) { return this.isLog ? 10 ** even : even; }

  setRange(low, high) {
    const middle = (low + high) / 2;
    const least = this.isLog ? 1e-9 : Math.max(Math.abs(middle) * 1e-12, 1e-300);
    if (!(high - low > least) || !Number.isFinite(high - low))
      return false;
    this.low = low;
    this.high = high;
    return true;
  }

  /// To the smallest range that holds the values, wider by a part of it at both ends.
  fit([least, most], margin) {
    if (!(most >= least)) {
      least = this.isLog ? 1 : 0;
      most = this.isLog ? 10 : 1;
    }
    let low = this.toEven(least), high = this.toEven(most);
    if (!(high - low > Math.abs(high) * 1e-12)) {
      const half = this.isLog ? 0.5 : Math.abs(high) / 10 || 1;
      low -= half;
      high += half;
    } else {
      const wider = (high - low) * margin;
      low -= wider;
      high += wider;
    }
    if (!this.setRange(low, high))
      this.setRange(-1, 1);
  }

  zoom(factor, around) {
    return this.setRange(around - (around - this.low) * factor, around + (this.high - around) * factor);
  }

  ticks(room) {
    return this.isLog ? decadeTicks(this.low, this.high, room, this.unit)
                      : linearTicks(this.low, this.high, room, this.unit);
  }
}
