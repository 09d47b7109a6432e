#include "basekit/text/CaseFolding.h"

#include <algorithm>
#include <cstring>

namespace text {

namespace {

constexpr bool InRange(wchar_t c, unsigned first, unsigned last) {
  return static_cast<unsigned>(c) >= first && static_cast<unsigned>(c) <= last;
}

// In these ranges capital and small letters alternate; the argument tells on which parity the capitals lie.
wchar_t FoldAlternating(wchar_t c, bool capitalsAreEven) { return ((c & 1) == 0) == capitalsAreEven ? c + 1 : c; }

using Pair = std::uint64_t;
constexpr Pair kEach = 0x0000000100000001;

// Two characters at once.
Pair PairAt(wchar_t const * characters) {
  static_assert(2 * sizeof(wchar_t) == sizeof(Pair));
  Pair pair = 0;
  std::memcpy(&pair, characters, sizeof pair);
  return pair;
}

Pair Fold(Pair pair) {
  if ((pair & ~(kEach * 0x7f)) != 0) [[unlikely]] {
    wchar_t both[2];
    std::memcpy(both, &pair, sizeof pair);
    both[0] = FoldCase(both[0]);
    both[1] = FoldCase(both[1]);
    return PairAt(both);
  }
  // 0x80 marks a capital in what is compared.
  Pair const fromA = pair + (0x80 - 'A') * kEach;
  Pair const aboveZ = pair + (0x7f - 'Z') * kEach;
  return pair | (fromA & ~aboveZ & 0x80 * kEach) >> 2;
}

} // namespace

wchar_t FoldBeyondAscii(wchar_t c) noexcept {
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

int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept {
  auto const shared = std::min(a.size(), b.size());
  std::size_t i = 0;
  while (i + 2 <= shared && PairAt(a.data() + i) == PairAt(b.data() + i))
    i += 2;
  for (; i < shared; ++i) {
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
  constexpr std::uint64_t kMultiplier = 0x9e3779b97f4a7c15;
  std::uint64_t first = text.size();
  std::uint64_t second = kMultiplier;
  auto const take = [](std::uint64_t & hash, Pair pair) {
    hash = (hash ^ pair) * kMultiplier;
    hash ^= hash >> 32;
  };
  std::size_t at = 0;
  for (; at + 4 <= text.size(); at += 4) {
    take(first, Fold(PairAt(text.data() + at)));
    take(second, Fold(PairAt(text.data() + at + 2)));
  }
  for (; at < text.size(); ++at)
    take(first, static_cast<Pair>(FoldCase(text[at])));
  std::uint64_t const both = (first ^ (second << 31 | second >> 33)) * kMultiplier;
  return both ^ both >> 32;
}

} // namespace text
