#include "basekit/text/Utf8.h"

#include "basekit/text/CaseFolding.h"

#include <algorithm>
#include <cstring>

namespace text {

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsScalar(unsigned long code) { return code < 0xD800 || (code >= 0xE000 && code <= 0x10FFFF); }

// Reads one code at the position; false, with one byte taken, when the bytes there are not valid.
bool DecodeOne(std::string_view bytes, std::size_t & at, unsigned long & code) {
  auto const lead = static_cast<unsigned char>(bytes[at++]);
  if (lead < 0x80) {
    code = lead;
    return true;
  }
  int const more = lead >= 0xF0 && lead < 0xF5   ? 3
                   : lead >= 0xE0 && lead < 0xF0 ? 2
                   : lead >= 0xC2 && lead < 0xE0 ? 1
                                                 : 0;
  if (more == 0 || at + static_cast<std::size_t>(more) > bytes.size())
    return false;
  code = lead & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) {
    auto const next = static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    if ((next & 0xC0) != 0x80)
      return false;
    code = code << 6 | (next & 0x3F);
  }
  constexpr unsigned long smallest[] = {0, 0x80, 0x800, 0x10000};
  if (code < smallest[more] || !IsScalar(code))
    return false;
  at += static_cast<std::size_t>(more);
  return true;
}

bool IsAscii(std::string_view bytes) {
  unsigned char all = 0;
  for (char const byte : bytes)
    all |= static_cast<unsigned char>(byte);
  return all < 0x80;
}

char FoldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

// The next character, folded.
unsigned long TakeFolded(std::string_view bytes, std::size_t & at) {
  unsigned long code = 0;
  if (!DecodeOne(bytes, at, code))
    code = kReplacement;
  return static_cast<unsigned long>(FoldCase(static_cast<wchar_t>(code)));
}

bool Decode(std::string_view bytes, std::wstring & wide) {
  bool valid = true;
  wide.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    unsigned long code = 0;
    if (!DecodeOne(bytes, at, code)) {
      valid = false;
      code = kReplacement;
    }
    wide += static_cast<wchar_t>(code);
  }
  return valid;
}

} // namespace

bool IsAscii(std::wstring_view wide) noexcept {
  unsigned long all = 0;
  for (wchar_t const character : wide)
    all |= static_cast<unsigned long>(character);
  return all < 0x80;
}

void AppendUtf8(std::string & out, wchar_t character) {
  auto code = static_cast<unsigned long>(character);
  if (!IsScalar(code))
    code = kReplacement;
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | code >> 6);
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | code >> 12);
    out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | code >> 18);
    out += static_cast<char>(0x80 | (code >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

void AppendUtf8(std::string & out, std::wstring_view wide) {
  if (!IsAscii(wide)) {
    for (wchar_t const character : wide)
      AppendUtf8(out, character);
    return;
  }
  std::size_t const start = out.size();
  out.resize(start + wide.size());
  char * const at = out.data() + start;
  for (std::size_t i = 0; i < wide.size(); ++i)
    at[i] = static_cast<char>(wide[i]);
}

std::string ToUtf8(std::wstring_view wide) {
  std::string out;
  AppendUtf8(out, wide);
  return out;
}

namespace {

// Plain texts are the rule, and short.
bool WidenAscii(std::string_view bytes, AString & wide) {
  wchar_t characters[256];
  if (bytes.size() > std::size(characters) || !IsAscii(bytes))
    return false;
  std::copy(bytes.begin(), bytes.end(), characters);
  wide = AString(characters, bytes.size());
  return true;
}

} // namespace

AString FromUtf8(std::string_view bytes) {
  AString text;
  if (WidenAscii(bytes, text))
    return text;
  std::wstring wide;
  Decode(bytes, wide);
  return AString(std::wstring_view(wide));
}

bool FromUtf8Strict(std::string_view bytes, AString & wide) {
  if (WidenAscii(bytes, wide))
    return true;
  std::wstring decoded;
  if (!Decode(bytes, decoded))
    return false;
  wide = AString(std::wstring_view(decoded));
  return true;
}

bool IsUtf8(std::string_view bytes) {
  if (IsAscii(bytes))
    return true;
  unsigned long code = 0;
  for (std::size_t at = 0; at < bytes.size();)
    if (!DecodeOne(bytes, at, code))
      return false;
  return true;
}

namespace {

constexpr std::uint64_t kEach = 0x0101010101010101;
constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;

// Eight plain characters at once; 0x80 marks a byte in what is compared.
std::uint64_t FoldEight(std::uint64_t eight) {
  std::uint64_t const fromA = eight + (0x80 - 'A') * kEach;
  std::uint64_t const aboveZ = eight + (0x7F - 'Z') * kEach;
  return eight | (fromA & ~aboveZ & 0x80 * kEach) >> 2;
}

std::uint64_t HashPlain(std::string_view bytes) {
  std::uint64_t hash = bytes.size();
  for (std::size_t at = 0; at < bytes.size(); at += 8) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes.data() + at, std::min<std::size_t>(8, bytes.size() - at));
    hash = (hash ^ FoldEight(eight)) * kMultiplier;
    hash ^= hash >> 29;
  }
  return hash * kMultiplier;
}

} // namespace

std::uint32_t HashNoCase(std::string_view utf8) noexcept {
  if (IsAscii(utf8))
    return static_cast<std::uint32_t>(HashPlain(utf8) >> 32);
  std::string folded;
  for (std::size_t at = 0; at < utf8.size();)
    AppendUtf8(folded, static_cast<wchar_t>(TakeFolded(utf8, at)));
  return static_cast<std::uint32_t>(HashPlain(folded) >> 32);
}

bool EqualNoCase(std::string_view a, std::string_view b) noexcept {
  if (a == b)
    return true;
  std::size_t atA = 0;
  std::size_t atB = 0;
  while (atA < a.size() && atB < b.size()) {
    bool const isPlain = static_cast<signed char>(a[atA]) >= 0 && static_cast<signed char>(b[atB]) >= 0;
    if (isPlain ? FoldAscii(a[atA++]) != FoldAscii(b[atB++]) : TakeFolded(a, atA) != TakeFolded(b, atB))
      return false;
  }
  return atA == a.size() && atB == b.size();
}

} // namespace text
