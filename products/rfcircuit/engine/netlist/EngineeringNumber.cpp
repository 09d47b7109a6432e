#include "products/rfcircuit/engine/netlist/EngineeringNumber.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace rf {
namespace {

constexpr long EXPONENT_BOUND = 100000;
constexpr double MIL_IN_METRES = 25.4e-6;

struct Suffix {
  std::string_view text;
  int exponent;
};
// Longer ones first: meg before m.
constexpr Suffix SUFFIXES[] = {{"meg", 6}, {"t", 12}, {"g", 9},   {"k", 3},  {"m", -3},
                               {"u", -6},  {"n", -9}, {"p", -12}, {"f", -15}};

std::size_t CountDigits(std::string_view text, std::size_t from) {
  std::size_t end = from;
  while (end < text.size() && IsDigit(text[end]))
    ++end;
  return end - from;
}

bool StartsWith(std::string_view text, std::string_view folded) {
  return text.size() >= folded.size() && Folded(text.substr(0, folded.size())) == folded;
}

// Reads e[+-]digits at the position; an `e` without digits stays unread.
long ReadExponent(std::string_view text, std::size_t & position) {
  if (position >= text.size() || Folded(text[position]) != 'e')
    return 0;
  std::size_t digits = position + 1;
  bool const negative = digits < text.size() && text[digits] == '-';
  if (digits < text.size() && (text[digits] == '-' || text[digits] == '+'))
    ++digits;
  std::size_t const count = CountDigits(text, digits);
  if (count == 0)
    return 0;
  long exponent = 0;
  for (char c : text.substr(digits, count))
    exponent = std::min(EXPONENT_BOUND, exponent * 10 + (c - '0'));
  position = digits + count;
  return negative ? -exponent : exponent;
}

} // namespace

EngineeringNumber EngineeringNumber::Read(std::string_view text, bool withSign) {
  EngineeringNumber number;
  std::size_t position = 0;
  bool const negative = withSign && !text.empty() && text[0] == '-';
  if (withSign && !text.empty() && (text[0] == '-' || text[0] == '+'))
    ++position;
  std::size_t const mantissa = position;
  std::size_t digits = CountDigits(text, position);
  position += digits;
  if (position < text.size() && text[position] == '.') {
    std::size_t const fraction = CountDigits(text, position + 1);
    digits += fraction;
    position += 1 + fraction;
  }
  if (digits == 0)
    return number;
  std::string decimal(text.substr(mantissa, position - mantissa));
  long exponent = ReadExponent(text, position);
  double factor = 1;
  std::string_view const rest = text.substr(position);
  if (StartsWith(rest, "mil")) {
    factor = MIL_IN_METRES;
  } else {
    for (Suffix const & suffix : SUFFIXES) {
      if (StartsWith(rest, suffix.text)) {
        exponent += suffix.exponent;
        break;
      }
    }
  }
  bool const exponentWithoutDigits = !rest.empty() && Folded(rest[0]) == 'e' && (rest.size() < 2 || !IsLetter(rest[1]));
  while (position < text.size() && IsLetter(text[position]))
    ++position;
  number.length = position;
  // A digit, point or underscore that hangs on to the unit makes a word, not a number.
  if (exponentWithoutDigits ||
      (position < text.size() && (IsDigit(text[position]) || text[position] == '.' || text[position] == '_')))
    return number;
  decimal += 'e';
  decimal += std::to_string(exponent);
  auto const converted = std::from_chars(decimal.data(), decimal.data() + decimal.size(), number.value);
  bool const whole = converted.ec == std::errc() && converted.ptr == decimal.data() + decimal.size();
  number.value *= negative ? -factor : factor;
  number.outcome = whole && std::isfinite(number.value)             ? Outcome::Number
                   : converted.ec == std::errc::result_out_of_range ? Outcome::OutOfRange
                                                                    : Outcome::Malformed;
  return number;
}

} // namespace rf
