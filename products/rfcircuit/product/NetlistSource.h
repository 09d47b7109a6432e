#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <optional>

class LongFileName;
namespace desktop {
struct SourceDescription;
}

namespace rfcircuit {

/// Reads a netlist with all that it includes and tells what it asks for.  False with a one-line error for a netlist
/// that can't be read, can't be solved as it stands, or asks for no sweep.
bool DescribeNetlist(LongFileName const & file, desktop::SourceDescription & description, AString & error);

/// How many ports the circuit of a netlist has; nothing for one that can't be read now.
std::optional<std::size_t> CountPortsOfNetlist(LongFileName const & file);

} // namespace rfcircuit
