#include "desktop/page/Ticks.h"

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

namespace desktop::page {
namespace {

constexpr double kRounding = 1e-9;
constexpr std::size_t kMostTicks = 100;
constexpr std::string_view kPrefixes[] = {"a", "f", "p", "n", "µ", "m", "", "k", "M", "G", "T"};
constexpr int kLeastPower = -18;
constexpr int kMostPower = 12;

// One that bears a prefix already, or is no SI unit, is left as it is.
bool TakesPrefix(std::string_view unit) {
  static std::string_view const kUnits[] = {"Hz", "s",   "m",   "F", "H", "V",  "A", "W", "S",
                                            "Ω",  "ohm", "Ohm", "J", "N", "Pa", "C", "T"};
  return std::ranges::find(kUnits, unit) != std::end(kUnits);
}

// A multiple of three.
int PowerOf(double most, std::string_view unit) {
  if (!(most > 0.0) || !std::isfinite(most))
    return 0;
  int const power = 3 * static_cast<int>(std::floor(std::log10(most) / 3.0 + kRounding));
  if (TakesPrefix(unit))
    return std::clamp(power, kLeastPower, kMostPower);
  return most >= 1e5 || most < 1e-3 ? power : 0;
}

std::string Superscript(int number) {
  static std::string_view const kDigits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string text;
  for (char const letter : std::to_string(number))
    text += letter == '-' ? std::string_view("⁻") : kDigits[letter - '0'];
  return text;
}

std::string_view PrefixOf(int power) { return kPrefixes[(power - kLeastPower) / 3]; }

std::string ScaledUnit(std::string const & unit, int power) {
  if (power == 0)
    return unit;
  if (TakesPrefix(unit))
    return std::string(PrefixOf(power)) + unit;
  return "10" + Superscript(power) + (unit.empty() ? "" : " " + unit);
}

// Negative powers of ten are not exact, their inverses are.
double TimesPower(double number, int power) {
  return power < 0 ? number / std::pow(10.0, -power) : number * std::pow(10.0, power);
}

std::string Told(double value, int power, int decimals) {
  std::string text = fmt::format("{:.{}f}", TimesPower(value, -power), decimals);
  bool const isZero = text.find_first_not_of("-0.") == std::string::npos;
  return isZero && text.front() == '-' ? text.substr(1) : text;
}

// Each number bears its own prefix.
std::string DecadeText(double value, std::string_view unit) {
  if (!TakesPrefix(unit))
    return text::RealWithDigits(value, 6);
  int const power = PowerOf(value * (1.0 + 1e-12), unit);
  return text::RealWithDigits(TimesPower(value, -power), 6) + std::string(PrefixOf(power));
}

} // namespace

Ticks LinearTicks(double low, double high, int room, AString const & unit) {
  std::string const name = text::ToUtf8(unit);
  Ticks ticks{{}, name};
  double const least = (high - low) / std::max(1, room);
  if (!(least > 0.0) || !std::isfinite(least))
    return ticks;
  int exponent = static_cast<int>(std::floor(std::log10(least)));
  double factor = 10.0;
  for (double const candidate : {5.0, 2.0, 1.0})
    if (TimesPower(candidate, exponent) >= least * (1.0 - kRounding))
      factor = candidate;
  if (factor == 10.0) {
    factor = 1.0;
    ++exponent;
  }
  int const power = PowerOf(std::max(std::abs(low), std::abs(high)), name);
  int const decimals = std::clamp(power - exponent, 0, 20);
  double const step = TimesPower(factor, exponent);
  double const last = std::floor(high / step + kRounding);
  for (double at = std::ceil(low / step - kRounding); at <= last && ticks.ticks.size() < kMostTicks; ++at) {
    double const value = TimesPower(at * factor, exponent);
    ticks.ticks.push_back({value, Told(value, power, decimals)});
  }
  ticks.unit = ScaledUnit(name, power);
  return ticks;
}

Ticks DecadeTicks(double low, double high, int room, AString const & unit) {
  double const first = std::log10(std::max(low, std::numeric_limits<double>::denorm_min()));
  double const last = std::log10(std::min(high, std::numeric_limits<double>::max()));
  if (!(last - first >= 0.7))
    return LinearTicks(low, high, room, unit);
  std::string const name = text::ToUtf8(unit);
  Ticks ticks{{}, name};
  int const apart = std::max(1, static_cast<int>(std::ceil((last - first) / std::max(1, room))));
  bool const hasBetween = apart == 1 && (last - first) * 3.0 <= room;
  for (int decade = static_cast<int>(std::floor(first)); decade <= last + kRounding; ++decade)
    for (int digit = 1; digit < 10; ++digit) {
      double const place = decade + std::log10(digit);
      if (place < first - kRounding || place > last + kRounding)
        continue;
      double const value = TimesPower(digit, decade);
      bool const hasText = digit == 1 ? decade % apart == 0 : hasBetween && (digit == 2 || digit == 5);
      if (hasText || apart == 1)
        ticks.ticks.push_back({value, hasText ? DecadeText(value, name) : std::string()});
    }
  return ticks;
}

} // namespace desktop::page
