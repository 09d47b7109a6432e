#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace command {

/// The words of a line, parted by blanks.  Double quotes hold a word together, with \" and \\ for themselves.  With
/// `partsAtEquals` an '=' outside quotes is a word of its own.  False, with what is wrong, for quotes that stay open.
bool SplitWords(std::string_view line, bool partsAtEquals, std::vector<std::string> & words, std::string & problem);

/// The word as SplitWords reads it back.
std::string QuotedWhereNeeded(std::string const & word);

} // namespace command
