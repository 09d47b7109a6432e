#include "products/command/source/Template.h"

#include "basekit/text/Utf8.h"
#include "products/command/source/SourceError.h"

#include <algorithm>

namespace command {
namespace {

bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

} // namespace

bool IsName(std::string_view text) {
  return !text.empty() && IsNameStart(text.front()) &&
         std::all_of(text.begin(), text.end(), [](char c) { return IsNameStart(c) || (c >= '0' && c <= '9'); });
}

std::string const * FindValue(HoleValues const & values, std::string_view name) {
  for (auto const & [other, value] : values)
    if (text::EqualNoCase(other, name))
      return &value;
  return nullptr;
}

Template::Template(std::string_view text, std::string const & file, int firstLine) : m_text(text) {
  int line = firstLine;
  for (std::size_t at = 0; at < text.size(); ++at) {
    line += text[at] == '\n' ? 1 : 0;
    if (text[at] != '{') {
      m_pieces.back() += text[at];
      continue;
    }
    if (text.substr(at + 1).starts_with('{')) {
      m_pieces.back() += text[at++];
      continue;
    }
    std::size_t const end = text.find_first_of("}\n", at);
    std::string_view const name = text.substr(at + 1, end == std::string_view::npos ? 0 : end - at - 1);
    if (!IsName(name) || text[end] != '}')
      throw SourceError(file, line, "'{' begins no hole such as {name}; write '{{' for a brace");
    m_holes.push_back({std::string(name), line});
    m_pieces.emplace_back();
    at = end;
  }
}

std::string Template::Fill(HoleValues const & values) const {
  std::string filled = m_pieces.front();
  for (std::size_t i = 0; i < m_holes.size(); ++i) {
    if (std::string const * const value = FindValue(values, m_holes[i].name))
      filled += *value;
    filled += m_pieces[i + 1];
  }
  return filled;
}

} // namespace command
