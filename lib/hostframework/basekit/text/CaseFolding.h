#pragma once

#include <cstdint>
#include <string_view>

namespace text {

/// Simple case folding of one character, the same on every machine: Latin, Greek, Cyrillic and Armenian letters
/// fold to their small forms, all else stays.
wchar_t FoldBeyondAscii(wchar_t character) noexcept;
inline wchar_t FoldCase(wchar_t character) noexcept {
  if (character < 0x80)
    return character >= L'A' && character <= L'Z' ? character + 0x20 : character;
  return FoldBeyondAscii(character);
}

/// Negative, zero or positive; by the codes of the folded characters.
int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept;

/// Equal for texts that are equal without case.
std::uint64_t HashNoCase(std::wstring_view text) noexcept;

} // namespace text
