#include "desktop/study/DecimalRange.h"

#include "basekit/text/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace desktop {
namespace {

constexpr int kMostShifts = 18; // of a number of 17 digits, within 128 bits

struct Decimal {
  __int128 digits = 0;
  int exponent = 0;
};

// From the shortest text of a double: sign, at most 17 digits that count with a point among them, an exponent.
Decimal Decompose(double value) {
  std::string const text = text::ShortestReal(std::abs(value));
  std::size_t const mark = std::min(text.find_first_of("eE"), text.size());
  Decimal decimal;
  if (mark < text.size()) {
    char const * first = text.data() + mark + 1;
    first += *first == '+' ? 1 : 0;
    std::from_chars(first, text.data() + text.size(), decimal.exponent);
  }
  bool behindPoint = false;
  for (char const c : text.substr(0, mark)) {
    if (c == '.') {
      behindPoint = true;
      continue;
    }
    decimal.digits = decimal.digits * 10 + (c - '0');
    decimal.exponent -= behindPoint ? 1 : 0;
  }
  while (decimal.digits != 0 && decimal.digits % 10 == 0) {
    decimal.digits /= 10;
    ++decimal.exponent;
  }
  decimal.digits = value < 0 ? -decimal.digits : decimal.digits;
  return decimal;
}

// The digits at a smaller exponent; false when they would not fit.
bool ShiftTo(int exponent, Decimal & decimal) {
  if (decimal.digits == 0)
    decimal.exponent = exponent;
  if (decimal.exponent - exponent > kMostShifts)
    return false;
  for (; decimal.exponent > exponent; --decimal.exponent)
    decimal.digits *= 10;
  return true;
}

double Compose(__int128 digits, int exponent) {
  bool const negative = digits < 0;
  __int128 rest = negative ? -digits : digits;
  std::string text;
  do
    text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(rest % 10)));
  while ((rest /= 10) != 0);
  text += "e" + std::to_string(exponent);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return negative ? -value : value;
}

} // namespace

DecimalRange::DecimalRange(double start, double stop, double step) : m_start(start), m_step(step) {
  m_isExact = CountExactly(stop);
  if (!m_isExact)
    m_count = std::floor((stop - start) / step + 1e-9) + 1;
}

bool DecimalRange::CountExactly(double stop) {
  Decimal first = Decompose(m_start);
  Decimal last = Decompose(stop);
  Decimal step = Decompose(m_step);
  int exponent = step.exponent;
  for (Decimal const & decimal : {first, last})
    exponent = decimal.digits != 0 ? std::min(exponent, decimal.exponent) : exponent;
  if (!ShiftTo(exponent, first) || !ShiftTo(exponent, last) || !ShiftTo(exponent, step))
    return false;
  m_exponent = exponent;
  m_exactStart = first.digits;
  m_exactStep = step.digits;
  m_count = static_cast<double>((last.digits - first.digits) / step.digits) + 1;
  return true;
}

double DecimalRange::At(long long index) const {
  if (m_isExact)
    return Compose(m_exactStart + m_exactStep * index, m_exponent);
  return m_start + static_cast<double>(index) * m_step;
}

} // namespace desktop
