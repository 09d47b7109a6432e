#pragma once

#include "basekit/value/variation/VariationText.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace variation {

/// Space characters of any script.
bool IsSpaceBeyondAscii(wchar_t character);
inline bool IsSpace(wchar_t character) {
  return character < 0x80 ? character == L' ' || (character >= 0x09 && character <= 0x0d)
                          : IsSpaceBeyondAscii(character);
}

/// Splits a text into its pairs, in the order of the text; their views point into the text, or, for quoted texts with
/// escapes, into the decoded ones, which must live as long.
class Reader {
public:
  explicit Reader(std::wstring_view text) : m_text(text) {}

  /// False for a text that is no variation text.
  bool Read(std::vector<VariationText::Pair> & pairs);
  std::shared_ptr<std::wstring const> Decoded() const { return m_decoded; }

private:
  void SkipSpaces();
  bool AtEnd() const { return m_at >= m_text.size(); }
  bool ReadPart(std::wstring_view & part);
  bool ReadQuoted(std::wstring_view & part);
  bool Decode(std::wstring_view quoted, std::wstring_view & part);

  std::wstring_view m_text;
  std::size_t m_at = 0;
  std::shared_ptr<std::wstring> m_decoded;
};

} // namespace variation
