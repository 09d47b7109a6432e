#include "basekit/value/units/QuantityText.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/text/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace val {

namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsSign(wchar_t c) { return c == L'+' || c == L'-'; }

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

std::wstring_view SkipBlanks(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  return text;
}

// A number in two parts, its digits and its decimal exponent, so that a prefix can still move the exponent.
struct Decimal {
  std::wstring_view digits; // with sign and point
  long exponent = 0;
};

std::size_t CountDigits(std::wstring_view text, std::size_t from) {
  std::size_t end = from;
  while (end < text.size() && IsDigit(text[end]))
    ++end;
  return end - from;
}

// An exponent too large to count stays far beyond any double.
long ReadExponent(std::wstring_view digits, bool negative) {
  long exponent = 0;
  for (wchar_t const c : digits)
    exponent = std::min(exponent * 10 + (c - L'0'), 1000000L);
  return negative ? -exponent : exponent;
}

// Takes a number off the front of the text.
bool TakeDecimal(std::wstring_view & text, Decimal & decimal) {
  std::size_t end = !text.empty() && IsSign(text.front()) ? 1 : 0;
  std::size_t const whole = CountDigits(text, end);
  std::size_t fraction = 0;
  end += whole;
  if (end < text.size() && text[end] == L'.') {
    fraction = CountDigits(text, end + 1);
    end += 1 + fraction;
  }
  if (whole + fraction == 0)
    return false;
  decimal = {text.substr(0, end), 0};
  if (end < text.size() && (text[end] == L'e' || text[end] == L'E')) {
    std::size_t const sign = end + 1 < text.size() && IsSign(text[end + 1]) ? 1 : 0;
    std::size_t const count = CountDigits(text, end + 1 + sign);
    if (count > 0) {
      decimal.exponent = ReadExponent(text.substr(end + 1 + sign, count), sign == 1 && text[end + 1] == L'-');
      end += 1 + sign + count;
    }
  }
  text.remove_prefix(end);
  return true;
}

bool ToDouble(Decimal const & decimal, int prefixExponent, double & value) {
  std::string narrow;
  narrow.reserve(decimal.digits.size() + 12);
  for (wchar_t const c : decimal.digits)
    if (c != L'+')
      narrow += static_cast<char>(c);
  if (long const exponent = decimal.exponent + prefixExponent; exponent != 0)
    narrow.append("e").append(std::to_string(exponent));
  auto const result = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
  return result.ec == std::errc() && result.ptr == narrow.data() + narrow.size() && std::isfinite(value);
}

bool IsImaginaryUnit(std::wstring_view text) { return text == L"i" || text == L"j"; }

bool ToComplex(Decimal const * real, Decimal const & imaginary, Quantity & quantity) {
  Quantity parsed;
  parsed.isComplex = true;
  if ((real && !ToDouble(*real, 0, parsed.real)) || !ToDouble(imaginary, 0, parsed.imaginary))
    return false;
  quantity = parsed;
  return true;
}

// What follows the real part: a sign, a number, and i or j.
bool ParseImaginaryPart(Decimal const & real, std::wstring_view rest, Quantity & quantity) {
  bool const negative = rest.front() == L'-';
  rest = SkipBlanks(rest.substr(1));
  Decimal imaginary;
  bool const signedTwice = !rest.empty() && IsSign(rest.front());
  if (signedTwice || !TakeDecimal(rest, imaginary) || !IsImaginaryUnit(rest) || !ToComplex(&real, imaginary, quantity))
    return false;
  quantity.imaginary = negative ? -quantity.imaginary : quantity.imaginary;
  return true;
}

bool ToScaled(Decimal const & decimal, Units::Scale const & scale, Quantity & quantity) {
  double value = 0.0;
  if (!ToDouble(decimal, scale.exponent, value))
    return false;
  value = value * scale.factor + scale.offset;
  if (!std::isfinite(value))
    return false;
  quantity = {value, 0.0, false, scale.unit};
  return true;
}

AString Widened(std::string const & ascii) { return AString(std::wstring(ascii.begin(), ascii.end())); }

// The shortest exact digits with the decimal point moved by a power of ten: no rounding takes place.
AString ShiftedText(double value, int shift) {
  char buffer[32];
  auto const end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  std::string digits(buffer, end.ptr);
  std::size_t const mark = digits.find('e');
  int exponent = 0;
  char const * const first = buffer + mark + (buffer[mark + 1] == '+' ? 2 : 1);
  std::from_chars(first, end.ptr, exponent);
  exponent = value == 0.0 ? 0 : exponent + shift;
  digits.resize(mark);
  std::string const sign = digits.front() == '-' ? "-" : "";
  std::erase_if(digits, [](char c) { return c == '-' || c == '.'; });

  int const count = static_cast<int>(digits.size());
  std::string out;
  if (exponent < -4 || exponent > 14) {
    out = digits.substr(0, 1) + (count > 1 ? "." + digits.substr(1) : "") + "e" + std::to_string(exponent);
  } else if (exponent < 0) {
    out = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else {
    digits.resize(static_cast<std::size_t>(std::max(count, exponent + 1)), '0');
    out = digits.substr(0, static_cast<std::size_t>(exponent) + 1);
    if (count > exponent + 1)
      out += "." + digits.substr(static_cast<std::size_t>(exponent) + 1);
  }
  return Widened(sign + out);
}

bool IsPlain(Units::FullUnitType unit) {
  Units::Scale scale;
  return Units::GetScale(unit, scale) && scale.exponent == 0 && scale.factor == 1.0 && scale.offset == 0.0;
}

// Empty when the digits of the value in the unit don't read back.
AString ExactText(double value, int digits, double si, Units::FullUnitType unit) {
  AString const text = Widened(text::RealWithDigits(value, digits)) + Units::GetSymbol(unit);
  Quantity readBack;
  return ParseQuantity(text.View(), readBack) && readBack.real == si ? text : AString();
}

// The way to SI and the way back each round: what was read in this unit lies a few steps of the last place off at most.
AString TextOfNeighbour(double value, double si, Units::FullUnitType unit) {
  double below = value;
  double above = value;
  AString text = ExactText(value, 17, si, unit);
  for (int step = 0; step < 3 && text.empty(); ++step) {
    below = std::nextafter(below, -HUGE_VAL);
    above = std::nextafter(above, HUGE_VAL);
    text = ExactText(below, 17, si, unit);
    if (text.empty())
      text = ExactText(above, 17, si, unit);
  }
  return text;
}

// Units that scale by other than powers of ten: the roundest digits that read back, else the number in the plain unit
// that measures the same.  Where there is none, the nearest digits must do: without a unit the text would be read in
// whatever is assumed.
AString ScaledText(double si, Units::FullUnitType unit) {
  double const value = Units::FromSI(si, unit);
  for (int const digits : {12, 15, 16})
    if (AString const text = ExactText(value, digits, si, unit); !text.empty())
      return text;
  if (AString const text = TextOfNeighbour(value, si, unit); !text.empty())
    return text;
  Units::FullUnitType const plain = Units::GetDefaultUnits(Units::GetUnitType(unit));
  if (IsPlain(plain))
    return ShiftedText(si, 0) + Units::GetSymbol(plain);
  return Widened(text::RealWithDigits(value, 17)) + Units::GetSymbol(unit);
}

} // namespace

bool ParseQuantity(std::wstring_view text, Quantity & quantity, Units::FullUnitType assumed) {
  text = SkipBlanks(text);
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  Decimal first;
  if (!TakeDecimal(text, first))
    return false;
  if (IsImaginaryUnit(text))
    return ToComplex(nullptr, first, quantity);
  std::wstring_view const rest = SkipBlanks(text);
  if (!rest.empty() && IsSign(rest.front()))
    return ParseImaginaryPart(first, rest, quantity);
  Units::Scale scale;
  if (rest.empty())
    Units::GetScale(assumed, scale);
  else if (!Units::FindScale(rest, scale))
    return false;
  return ToScaled(first, scale, quantity);
}

bool IsMetreOrThousandth(std::wstring_view text) {
  Quantity quantity;
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  return ParseQuantity(text, quantity) && quantity.unit == Units::kMetre && text.back() == L'm';
}

AString QuantityText(Quantity const & quantity) {
  if (!std::isfinite(quantity.real) || !std::isfinite(quantity.imaginary))
    return AString(text::RealText(std::isfinite(quantity.real) ? quantity.imaginary : quantity.real, 'g', -1));
  if (quantity.isComplex) {
    AString const imaginary = ShiftedText(quantity.imaginary, 0);
    return ShiftedText(quantity.real, 0) + (imaginary[0] == L'-' ? L"" : L"+") + imaginary + L"i";
  }
  Units::Scale scale;
  Units::GetScale(quantity.unit, scale);
  if (scale.factor != 1.0 || scale.offset != 0.0)
    return ScaledText(quantity.real, quantity.unit);
  return ShiftedText(quantity.real, -scale.exponent) + Units::GetSymbol(quantity.unit);
}

namespace {

bool ReadsSameInLowerCase(AString const & text, Quantity const & meant) {
  Quantity exact;
  Quantity lower;
  return ParseQuantity(text.View(), exact) && ParseQuantity(text.ToLower().View(), lower) && exact.real == meant.real &&
         lower.real == meant.real;
}

} // namespace

AString CaseProofText(AString const & text) {
  Quantity meant;
  if (!ParseQuantity(text.View(), meant) || meant.isComplex || ReadsSameInLowerCase(text, meant))
    return text;
  if (std::size_t const mega = text.rfind(L'M'); mega != AString::npos) {
    AString const spelled = text.substr(0, mega) + L"Meg" + text.substr(mega + 1);
    if (ReadsSameInLowerCase(spelled, meant))
      return spelled;
  }
  return ShiftedText(meant.real, 0);
}

} // namespace val
