#include "apps/solvedesk/console/TextTable.h"

#include <algorithm>

namespace solvedesk {
namespace {

// Characters, not bytes.
std::size_t WidthOf(std::string const & text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

std::string TextTable::Text(std::string const & indent) const {
  std::vector<std::size_t> widths;
  for (auto const & row : m_rows)
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths.resize(std::max(widths.size(), i + 1));
      widths[i] = std::max(widths[i], WidthOf(row[i]));
    }
  std::string text;
  for (auto const & row : m_rows) {
    text += indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
      std::string const blanks(widths[i] - WidthOf(row[i]), ' ');
      text += (i > 0 ? "  " : "") + (i < m_leftColumns ? row[i] + blanks : blanks + row[i]);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

} // namespace solvedesk
