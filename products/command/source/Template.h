#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace command {

/// Texts by name; names are found without case.
using HoleValues = std::vector<std::pair<std::string, std::string>>;
/// Null for a name that is not there.
std::string const * FindValue(HoleValues const & values, std::string_view name);

/// A letter or '_', then letters, digits and '_'.
bool IsName(std::string_view text);

/// Text with holes: {name} stands for a value, {{ for a brace.  A closing brace outside a hole stands for itself.
class Template {
public:
  struct Hole {
    std::string name;
    int line = 0;
  };

  Template() = default;
  /// Throws SourceError, with file and line, for a brace that opens no hole.
  Template(std::string_view text, std::string const & file, int firstLine = 1);

  std::vector<Hole> const & Holes() const { return m_holes; }
  /// Every hole has a value: the reader of the solver file has seen to that.
  std::string Fill(HoleValues const & values) const;
  /// As it was written.
  std::string const & Text() const { return m_text; }

private:
  std::string m_text;
  std::vector<std::string> m_pieces{std::string()}; ///< between the holes, one more than these
  std::vector<Hole> m_holes;
};

} // namespace command
