#include "basekit/text/Utf8.h"

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

std::string ToUtf8(std::wstring_view wide) {
  std::string out;
  out.reserve(wide.size());
  for (wchar_t const character : wide)
    AppendUtf8(out, character);
  return out;
}

AString FromUtf8(std::string_view bytes) {
  std::wstring wide;
  Decode(bytes, wide);
  return AString(std::wstring_view(wide));
}

bool FromUtf8Strict(std::string_view bytes, AString & wide) {
  std::wstring decoded;
  if (!Decode(bytes, decoded))
    return false;
  wide = AString(std::wstring_view(decoded));
  return true;
}

} // namespace text
