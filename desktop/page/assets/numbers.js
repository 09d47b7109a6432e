// Numbers as people read them: exact ones, short ones, and the ticks of an axis.

const PREFIXES = {
  '-18': 'a', '-15': 'f', '-12': 'p', '-9': 'n', '-6': 'µ', '-3': 'm', 0: '', 3: 'k', 6: 'M', 9: 'G', 12: 'T',
};
// Units that take a prefix; one that bears a prefix already, or is no SI unit, is left as it is.
const PREFIXABLE = new Set(['Hz', 's', 'm', 'F', 'H', 'V', 'A', 'W', 'S', 'Ω', 'ohm', 'Ohm', 'J', 'N', 'Pa', 'C', 'T']);
const NO_VALUE = '–';
const MOST_TICKS = 100;

/// Reads back bit for bit.
function exactText(value) { return Number.isNaN(value) ? NO_VALUE : Object.is(value, -0) ? '-0' : String(value); }

function shortText(value, digits = 7) {
  return Number.isFinite(value) ? String(Number(value.toPrecision(digits))) : exactText(value);
}

function withUnit(text, unit) { return unit && text !== NO_VALUE ? text + ' ' + unit : text; }

function titleWithUnit(title, unit) { return unit ? (title ? `${title} [${unit}]` : `[${unit}]`) : title; }

function counted(count, what) { return `${count} ${what}${count === 1 ? '' : 's'}`; }

function superscript(exponent) {
  return String(exponent).replace(/./g, digit => '⁻⁰¹²³⁴⁵⁶⁷⁸⁹'['-0123456789'.indexOf(digit)]);
}

/// The power of ten, a multiple of three, in which numbers up to `most` are told.
function engineeringExponent(most, unit) {
  if (!(most > 0) || !Number.isFinite(most))
    return 0;
  const exponent = 3 * Math.floor(Math.log10(most) / 3 + 1e-9);
  if (PREFIXABLE.has(unit))
    return Math.max(-18, Math.min(12, exponent));
  return most >= 1e5 || most < 1e-3 ? exponent : 0;
}

/// The unit of an axis whose numbers are told in that power of ten.
function scaledUnit(unit, exponent) {
  if (exponent === 0)
    return unit;
  return PREFIXABLE.has(unit) ? PREFIXES[exponent] + unit : '10' + superscript(exponent) + (unit ? ' ' + unit : '');
}

/// Steps of 1, 2 or 5 times a power of ten, at most `room` of them.
function linearSteps(low, high, room) {
  const least = (high - low) / Math.max(1, room);
  let exponent = Math.floor(Math.log10(least));
  let factor = [1, 2, 5, 10].find(candidate => candidate * 10 ** exponent >= least * (1 - 1e-9));
  if (factor === 10) {
    factor = 1;
    ++exponent;
  }
  // Negative powers of ten are not exact, their inverses are.
  const at = place => exponent < 0 ? place * factor / 10 ** -exponent : place * factor * 10 ** exponent;
  const values = [];
  const step = at(1);
  const last = Math.floor(high / step + 1e-9);
  for (let place = Math.ceil(low / step - 1e-9); place <= last && values.length <= MOST_TICKS; ++place)
    values.push(at(place));
  return {values, exponent};
}

function linearTicks(low, high, room, unit) {
  const {values, exponent} = linearSteps(low, high, room);
  const power = engineeringExponent(Math.max(Math.abs(low), Math.abs(high)), unit);
  const decimals = Math.max(0, Math.min(20, power - exponent));
  const scaled = value => power < 0 ? value * 10 ** -power : value / 10 ** power;
  const told = value => scaled(value).toFixed(decimals).replace(/^-(0(\.0*)?)$/, '$1');  // zero has no sign
  return {ticks: values.map(value => ({value, text: told(value)})), unit: scaledUnit(unit, power)};
}

/// Each number bears its own prefix.
function decadeText(value, unit) {
  if (!PREFIXABLE.has(unit))
    return Math.abs(Math.log10(value)) < 4 ? shortText(value, 6) : shortText(value, 6).replace('e+', 'e');
  const power = engineeringExponent(value * (1 + 1e-12), unit);
  return shortText(power < 0 ? value * 10 ** -power : value / 10 ** power, 6) + PREFIXES[power];
}

/// Of an axis whose range is told as logarithms.
function decadeTicks(low, high, room, unit) {
  if (high - low < 0.7)
    return linearTicks(10 ** low, 10 ** high, room, unit);
  const ticks = [];
  const apart = Math.max(1, Math.ceil((high - low) / room));
  const between = apart > 1 ? [] : (high - low) * 3 <= room ? [2, 5] : [];
  for (let decade = Math.floor(low); decade <= high + 1e-9; ++decade)
    for (let digit = 1; digit < 10; ++digit) {
      const place = decade + Math.log10(digit);
      if (place < low - 1e-9 || place > high + 1e-9)
        continue;
      const value = decade < 0 ? digit / 10 ** -decade : digit * 10 ** decade;
      const hasText = digit === 1 ? decade % apart === 0 : between.includes(digit);
      if (hasText || apart === 1)
        ticks.push({value, text: hasText ? decadeText(value, unit) : ''});
    }
  return {ticks, unit};
}
