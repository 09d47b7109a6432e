#include "basekit/io/TextTokens.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace io {

namespace {

constexpr double kAlwaysExact = 9007199254740992.0; // 2^53

bool IsWordStart(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_'; }

bool IsWordPart(wchar_t c) { return IsWordStart(c) || (c >= L'0' && c <= L'9') || c == L'.'; }

bool IsPlainWord(std::wstring_view text) {
  return !text.empty() && IsWordStart(text.front()) && std::all_of(text.begin(), text.end(), IsWordPart) &&
         !IsReservedWord(text);
}

// Control characters, what some viewers take for a line end or drop, and codes that are no characters.
bool NeedsCode(wchar_t c) {
  auto const code = static_cast<unsigned long>(c);
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029 || code == 0xFEFF ||
         (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF;
}

void AppendEscaped(std::string & out, wchar_t c) {
  switch (c) {
  case L'"':
    out += "\\\"";
    return;
  case L'\\':
    out += "\\\\";
    return;
  case L'\n':
    out += "\\n";
    return;
  case L'\t':
    out += "\\t";
    return;
  case L'\r':
    out += "\\r";
    return;
  default:
    break;
  }
  if (!NeedsCode(c))
    return text::AppendUtf8(out, c);
  char digits[16];
  auto const end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint32_t>(c), 16);
  out.append("\\u{").append(digits, end.ptr) += '}';
}

constexpr std::uint64_t kPayloadBits = 0xfffffffffffff;
constexpr std::uint64_t kUsualPayload = 0x8000000000000;

// The usual nan is a plain word; the sign and the 52 bits of any other one stand with it.
void AppendNan(std::string & out, double value) {
  auto const bits = std::bit_cast<std::uint64_t>(value);
  out += std::signbit(value) ? "-nan" : "nan";
  if ((bits & kPayloadBits) == kUsualPayload)
    return;
  char digits[16];
  auto const end = std::to_chars(digits, digits + sizeof digits, bits & kPayloadBits, 16);
  out.append(".").append(digits, end.ptr);
}

// 1e+09 is 1e9, 1e-07 is 1e-7.
void AppendTidied(std::string & out, char const * first, char const * last) {
  char const * exponent = std::find(first, last, 'e');
  out.append(first, exponent);
  if (exponent == last)
    return;
  out += 'e';
  char const * digit = exponent + 1;
  if (*digit == '-')
    out += '-';
  if (*digit == '-' || *digit == '+')
    ++digit;
  while (digit + 1 < last && *digit == '0')
    ++digit;
  out.append(digit, last);
}

} // namespace

bool ReadNan(std::string_view text, double & value) {
  bool const isNegative = text.starts_with('-');
  if (!text.substr(isNegative).starts_with("nan"))
    return false;
  std::string_view const rest = text.substr(isNegative + std::string_view("nan").size());
  std::uint64_t payload = kUsualPayload;
  if (!rest.empty()) {
    char const * const last = rest.data() + rest.size();
    auto const read = std::from_chars(rest.data() + 1, last, payload, 16);
    if (rest.front() != '.' || read.ec != std::errc() || read.ptr != last || payload == 0 || payload > kPayloadBits)
      return false;
  }
  value = std::bit_cast<double>((isNegative ? 0xfff0000000000000 : 0x7ff0000000000000) | payload);
  return true;
}

bool IsReservedWord(std::wstring_view word) {
  using namespace std::string_view_literals;
  return word == L"true"sv || word == L"false"sv || word == L"none"sv || word == L"nan"sv || word == L"inf"sv;
}

void AppendName(std::string & out, AString const & name) {
  auto const view = name.View();
  if (!IsPlainWord(view))
    return AppendQuoted(out, name);
  text::AppendUtf8(out, view);
}

void AppendQuoted(std::string & out, AString const & text) {
  // What is printable ASCII goes through a buffer: names of blocks are long, and full of quotes.
  char buffer[256];
  constexpr std::size_t kFull = sizeof buffer - 2;
  std::size_t used = 0;
  buffer[used++] = '"';
  for (wchar_t const c : text.View()) {
    if (used >= kFull || c < 0x20 || c >= 0x7F) {
      out.append(buffer, used);
      used = 0;
      if (c < 0x20 || c >= 0x7F) {
        AppendEscaped(out, c);
        continue;
      }
    }
    if (c == L'"' || c == L'\\')
      buffer[used++] = '\\';
    buffer[used++] = static_cast<char>(c);
  }
  buffer[used++] = '"';
  out.append(buffer, used);
}

void AppendInteger(std::string & out, long value) {
  char buffer[24];
  out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

void AppendReal(std::string & out, double value, int digits) {
  if (std::isnan(value)) {
    AppendNan(out, value);
  } else if (std::isinf(value)) {
    out += value < 0 ? "-inf" : "inf";
  } else {
    char buffer[40];
    bool const exact = digits <= 0 || digits >= kExactDigits;
    // Beyond 2^53 a floating number is told from a whole one by its exponent, so that runs stay runs.
    char * const last = buffer + sizeof buffer;
    auto const end = !exact ? std::to_chars(buffer, last, value, std::chars_format::general, digits)
                     : std::fabs(value) < kAlwaysExact
                         ? std::to_chars(buffer, last, value)
                         : std::to_chars(buffer, last, value, std::chars_format::scientific);
    AppendTidied(out, buffer, end.ptr);
  }
}

} // namespace io
