#include "basekit/text/CaseFolding.h"

#include <algorithm>

namespace text {

namespace {

constexpr bool InRange(wchar_t c, unsigned first, unsigned last) {
  return static_cast<unsigned>(c) >= first && static_cast<unsigned>(c) <= last;
}

// In these ranges capital and small letters alternate; the argument tells on which parity the capitals lie.
wchar_t FoldAlternating(wchar_t c, bool capitalsAreEven) { return ((c & 1) == 0) == capitalsAreEven ? c + 1 : c; }

wchar_t FoldBeyondAscii(wchar_t c) {
  if (InRange(c, 0xC0, 0xDE))
    return c == 0xD7 ? c : c + 0x20;
  if (InRange(c, 0x100, 0x12F) || InRange(c, 0x132, 0x137) || InRange(c, 0x14A, 0x177))
    return FoldAlternating(c, true);
  if (InRange(c, 0x139, 0x148) || InRange(c, 0x179, 0x17E))
    return FoldAlternating(c, false);
  if (c == 0x178)
    return 0xFF;
  if (InRange(c, 0x391, 0x3AB))
    return c == 0x3A2 ? c : c + 0x20;
  if (InRange(c, 0x400, 0x40F))
    return c + 0x50;
  if (InRange(c, 0x410, 0x42F))
    return c + 0x20;
  if (InRange(c, 0x460, 0x481) || InRange(c, 0x48A, 0x4BF) || InRange(c, 0x4D0, 0x52F))
    return FoldAlternating(c, true);
  if (InRange(c, 0x531, 0x556))
    return c + 0x30;
  if (InRange(c, 0x1E00, 0x1E95) || InRange(c, 0x1EA0, 0x1EFF))
    return FoldAlternating(c, true);
  return c;
}

} // namespace

wchar_t FoldCase(wchar_t character) noexcept {
  if (character < 0x80)
    return character >= L'A' && character <= L'Z' ? character + 0x20 : character;
  return FoldBeyondAscii(character);
}

int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept {
  auto const shared = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < shared; ++i) {
    if (a[i] == b[i])
      continue;
    wchar_t const x = FoldCase(a[i]), y = FoldCase(b[i]);
    if (x != y)
      return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::uint64_t HashNoCase(std::wstring_view text) noexcept {
  // Two runs side by side, as a multiplication waits for the one before.
  std::uint64_t hashes[2] = {0xcbf29ce484222325u, 0x9e3779b97f4a7c15u};
  for (std::size_t i = 0; i < text.size(); ++i)
    hashes[i & 1] = (hashes[i & 1] ^ static_cast<std::uint64_t>(FoldCase(text[i]))) * 0x100000001b3u;
  std::uint64_t const both = hashes[0] ^ (hashes[1] << 31 | hashes[1] >> 33);
  return both ^ both >> 32;
}

} // namespace text
