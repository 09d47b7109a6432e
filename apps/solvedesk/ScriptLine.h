#pragma once

#include <string>
#include <vector>

namespace solvedesk {

/// The words of a line: blanks part them, quotes of both kinds hold them together, a # in front of a word begins a
/// remark.  Throws desktop::Error (kUsage) for a quote that is not closed.
std::vector<std::string> WordsOfLine(std::string const & line);

} // namespace solvedesk
