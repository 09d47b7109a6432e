#pragma once

#include "products/rfcircuit/engine/netlist/LogicalLine.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace rf {

/** Largest amount of text that one netlist may have, all included files counted as often as they are read. */
constexpr std::uintmax_t LARGEST_NETLIST_IN_BYTES = 64u << 20;

/** Reads a whole file of text, at most `largest` bytes of it.  NetlistError, told of `includedFrom` when that has a
    file: missing, not a file, unreadable, too large, binary. */
std::string ReadSourceText(std::filesystem::path const & path, SourcePosition const & includedFrom,
                           std::uintmax_t largest);

/** Splits text into statements: comments (`*` first, `;` anywhere, `$` after a blank) and empty lines are dropped,
    lines that begin with `+` continue the one before, any line end will do.  `firstLine` of them are skipped. */
std::vector<LogicalLine> SplitIntoStatements(std::string const & text, std::string const & fileName, int skipLines);

/** The first physical line, without its line end. */
std::string FirstLine(std::string const & text);

} // namespace rf
