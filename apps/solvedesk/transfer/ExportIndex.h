#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

namespace solvedesk {

/// The index.csv of an export: which file is which.  That of a part keeps the rows of an earlier one which tell of
/// other files.  An index.csv that is none of ours is refused: desktop::Error (kStorage).
class ExportIndex {
public:
  ExportIndex(std::filesystem::path const & file, bool keepsRows);

  /// A row of the same file gives way.
  void Add(std::string const & file, std::string const & setup, std::string const & variation);
  std::string Text() const;

private:
  void Enter(std::string const & file, std::string const & line);

  std::unordered_map<std::string, std::size_t> m_places; ///< of files among the rows
  std::vector<std::string> m_rows;
};

} // namespace solvedesk
