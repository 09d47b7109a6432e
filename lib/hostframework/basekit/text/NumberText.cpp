#include "basekit/text/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace text {

namespace {

std::wstring Widen(char const * first, char const * last) { return std::wstring(first, last); }

// A text with a character outside ASCII is no number; the narrow copy then holds a character that none has.
std::string Narrowed(std::wstring_view wide) {
  std::string narrow;
  narrow.reserve(wide.size());
  for (wchar_t const c : wide)
    narrow += c > 0 && c < 0x80 ? static_cast<char>(c) : '?';
  return narrow;
}

bool SpecialReal(double value, std::string & out) {
  if (std::isnan(value))
    out = "nan";
  else if (std::isinf(value))
    out = value < 0 ? "-inf" : "inf";
  else
    return false;
  return true;
}

template <class Number> bool ParseWhole(std::string_view text, Number & value) {
  if (!text.empty() && text.front() == '+')
    text.remove_prefix(1);
  Number parsed{};
  auto const result = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || text.empty())
    return false;
  value = parsed;
  return true;
}

} // namespace

std::wstring IntegerText(long long value, bool isUnsigned, int base) {
  char buffer[72];
  auto const end = isUnsigned
                       ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<unsigned long long>(value), base)
                       : std::to_chars(buffer, buffer + sizeof buffer, value, base);
  return Widen(buffer, end.ptr);
}

std::wstring RealText(double value, char kind, int precision) {
  std::string special;
  if (SpecialReal(value, special))
    return Widen(special.data(), special.data() + special.size());
  char buffer[1400];
  auto const format = kind == 'e'   ? std::chars_format::scientific
                      : kind == 'f' ? std::chars_format::fixed
                                    : std::chars_format::general;
  auto const end = precision < 0 ? std::to_chars(buffer, buffer + sizeof buffer, value)
                                 : std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
  return end.ec == std::errc() ? Widen(buffer, end.ptr) : std::wstring();
}

std::string ShortestReal(double value) {
  std::string special;
  if (SpecialReal(value, special))
    return special;
  char buffer[32];
  auto const end = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end.ptr);
}

std::string RealWithDigits(double value, int digits) {
  if (digits >= 16 || digits <= 0 || !std::isfinite(value))
    return ShortestReal(value);
  char buffer[32];
  auto const end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  return std::string(buffer, end.ptr);
}

bool ParseReal(std::string_view text, double & value) {
  if (text == "nan") {
    value = std::numeric_limits<double>::quiet_NaN();
    return true;
  }
  return ParseWhole(text, value);
}

bool ParseReal(std::wstring_view text, double & value) { return ParseReal(Narrowed(text), value); }

bool ParseInteger(std::string_view text, long long & value) { return ParseWhole(text, value); }

bool ParseInteger(std::wstring_view text, long long & value) { return ParseWhole(Narrowed(text), value); }

bool ParseUnsigned(std::wstring_view text, unsigned long long & value) { return ParseWhole(Narrowed(text), value); }

} // namespace text
