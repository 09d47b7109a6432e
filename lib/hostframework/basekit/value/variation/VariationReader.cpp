#include "basekit/value/variation/VariationReader.h"

#include <algorithm>

namespace variation {

namespace {

std::wstring_view TrimEnd(std::wstring_view text) {
  while (!text.empty() && IsSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

// Null for a character that is no escape.
wchar_t Unescaped(wchar_t character) {
  switch (character) {
  case L'"':
  case L'\\':
    return character;
  case L'n':
    return L'\n';
  case L'r':
    return L'\r';
  case L't':
    return L'\t';
  default:
    return 0;
  }
}

} // namespace

bool IsSpaceBeyondAscii(wchar_t character) {
  return character == 0x85 || character == 0xa0 || character == 0x1680 ||
         (character >= 0x2000 && character <= 0x200a) || character == 0x2028 || character == 0x2029 ||
         character == 0x202f || character == 0x205f || character == 0x3000;
}

bool Reader::Read(std::vector<VariationText::Pair> & pairs) {
  // A pair takes three characters at least: what is reserved stays a small multiple of the text.
  auto const marks = static_cast<std::size_t>(std::count(m_text.begin(), m_text.end(), L'='));
  pairs.reserve(std::min(marks, m_text.size() / 3 + 1));
  for (;;) {
    SkipSpaces();
    if (AtEnd())
      return true;
    if (m_text[m_at] == L';') {
      ++m_at;
      continue;
    }
    VariationText::Pair pair;
    if (!ReadPart(pair.name) || pair.name.empty() || AtEnd() || m_text[m_at++] != L'=')
      return false;
    if (!ReadPart(pair.text) || (!AtEnd() && m_text[m_at] != L';'))
      return false;
    pairs.push_back(pair);
  }
}

void Reader::SkipSpaces() {
  while (!AtEnd() && IsSpace(m_text[m_at]))
    ++m_at;
}

// A name or a value with the spaces round it; the next character is then '=', ';' or the end.
bool Reader::ReadPart(std::wstring_view & part) {
  SkipSpaces();
  if (!AtEnd() && m_text[m_at] == L'"') {
    if (!ReadQuoted(part))
      return false;
    SkipSpaces();
    return AtEnd() || m_text[m_at] == L'=' || m_text[m_at] == L';';
  }
  std::size_t end = m_at;
  while (end < m_text.size() && m_text[end] != L'=' && m_text[end] != L';' && m_text[end] != L'"')
    ++end;
  part = TrimEnd(m_text.substr(m_at, end - m_at));
  m_at = end;
  return AtEnd() || m_text[m_at] != L'"';
}

bool Reader::ReadQuoted(std::wstring_view & part) {
  std::size_t const first = ++m_at;
  bool escaped = false;
  while (!AtEnd() && m_text[m_at] != L'"') {
    bool const escape = m_text[m_at] == L'\\';
    escaped = escaped || escape;
    m_at += escape ? 2 : 1;
  }
  if (AtEnd())
    return false;
  part = m_text.substr(first, m_at++ - first);
  return !escaped || Decode(part, part);
}

bool Reader::Decode(std::wstring_view quoted, std::wstring_view & part) {
  if (!m_decoded) {
    // Decoded texts are never longer than the whole: the views into them stay where they are.
    m_decoded = std::make_shared<std::wstring>();
    m_decoded->reserve(m_text.size());
  }
  std::size_t const first = m_decoded->size();
  for (std::size_t at = 0; at < quoted.size(); ++at) {
    wchar_t const plain = quoted[at] == L'\\' ? Unescaped(quoted[++at]) : quoted[at];
    if (quoted[at] != 0 && plain == 0)
      return false;
    *m_decoded += plain;
  }
  part = std::wstring_view(*m_decoded).substr(first);
  return true;
}

} // namespace variation
