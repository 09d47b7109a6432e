#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace text {

/// Takes the fields of one line of separated values apart, without its line end.  A field may stand in double quotes,
/// where "" means a quote; blanks round a field don't count.  False, with what is wrong in words, for quotes that are
/// not closed on the line, or stand inside a field.
bool SplitCsvLine(std::string_view line, char separator, std::vector<std::string> & fields, std::string & problem);

} // namespace text
