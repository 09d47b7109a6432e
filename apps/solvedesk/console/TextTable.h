#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace solvedesk {

/// Rows of texts as people read them: columns flush right, the first ones left on request, two blanks between them.
class TextTable {
public:
  explicit TextTable(std::size_t leftColumns = 0) : m_leftColumns(leftColumns) {}
  void Add(std::vector<std::string> const & row) { m_rows.push_back(row); }
  /// A line for each row behind the indent.
  std::string Text(std::string const & indent) const;

private:
  std::size_t m_leftColumns;
  std::vector<std::vector<std::string>> m_rows;
};

} // namespace solvedesk
