#pragma once

#include "products/rfcircuit/engine/touchstone/TouchstoneData.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace rf {

/** Reads Touchstone 1, 1.1 and 2 (docs/formats/touchstone.md says how).

    The number of ports is that of `[Number of Ports]`, else the one the caller gives, else that of the name's
    extension: `.s2p`.  Y-, Z-, G- and H-parameters become S-parameters of the file's reference impedances; a point that
    has none is refused.  Noise data is skipped; what else was skipped or assumed stands in the notes.

    The file goes through a buffer of at most 256 KiB; memory is that of the result, whatever the file claims of itself.
    Throws TouchstoneFileError (missing, a folder, unreadable), TouchstoneSyntaxError for anything else. */
TouchstoneData ReadTouchstone(std::filesystem::path const & path, std::optional<std::size_t> ports = std::nullopt);

/** The same of a text in memory; `name` is whom errors are about, its extension may tell the number of ports. */
TouchstoneData ReadTouchstoneText(std::string_view text, std::string const & name,
                                  std::optional<std::size_t> ports = std::nullopt);

/** The number that a name ends with, as in `amp.s2p`, without case; nothing for other names. */
std::optional<std::size_t> PortsOfTouchstoneName(std::string const & name);

/** `2 ports, 201 points from 1e+07 to 2e+09 Hz, 50 ohm`: what was read, on one line. */
std::string Summary(SParameterTable const & network);

} // namespace rf
