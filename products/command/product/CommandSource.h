#pragma once

#include "basekit/text/AString.h"

class LongFileName;
namespace desktop {
struct SourceDescription;
}

namespace command {

/// Reads a solver file with its templates and tells what it asks for; false with a one-line error for one that makes no
/// sense.
bool DescribeSolverFile(LongFileName const & file, desktop::SourceDescription & description, AString & error);

} // namespace command
