#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <string_view>

namespace qsol {

inline constexpr int kSchemaVersion = 1;

std::string Utf8(AString const & text);
/// The same with control characters as escapes: names in files can't reach the terminal's controls, nor break a line.
std::string OneLine(AString const & text);
/// A word of the command line; throws Failure when it is no UTF-8 text.
AString Word(std::string const & word);
/// "1 block", "2 blocks".
std::string Count(std::uint64_t number, std::string_view word);
/// 16 hexadecimal digits, as the files spell such numbers.
std::string Hex(std::uint64_t number);

} // namespace qsol
