#pragma once

#include "basekit/text/AString.h"

class LongFileName;
namespace desktop {
struct SourceDescription;
struct SourceSetup;
} // namespace desktop

namespace command {

/// Reads a solver file with its templates and tells what it asks for; false with a one-line error for one that makes no
/// sense.
bool DescribeSolverFile(LongFileName const & file, desktop::SourceDescription & description, AString & error);
/// Settings that a user gave, in the solver file's order and spelling; false with a one-line error for one that the
/// file does not know.  A file that can't be read now leaves them as they are.
bool FitSettingsToFile(LongFileName const & file, desktop::SourceSetup & setup, AString & error);

} // namespace command
