#pragma once

#include "basekit/text/AString.h"

#include <optional>

class FrequencySolutionDefinition;
class SweepDefinition;
namespace io {
class CBlock;
}
namespace rf {
class FrequencySweep;
}

/// The forms that a frequency sweep takes outside the engine.  Frequencies are in hertz.
namespace rfcircuit {

/// Appends the items of a settings block: Kind = "lin", Points = 201, Start = 1e7, Stop = 2.01e9, or
/// Kind = "list", Frequencies(1e9, 2e9).
void WriteSweep(io::CBlock & settings, rf::FrequencySweep const & sweep);
/// Nothing, with a one-line error, for settings that make no sense.
std::optional<rf::FrequencySweep> ReadSweep(io::CBlock const & settings, AString & error);

/// A new definition on the variable F; null for a list, which definitions can't tell.
SweepDefinition * MakeSweepDefinition(rf::FrequencySweep const & sweep);
/// Nothing for a definition of another variable or kind, or with senseless numbers.
std::optional<rf::FrequencySweep> SweepOf(SweepDefinition const & definition);

/// Makes the definition say what the sweep solves: by the sweep's numbers where they generate the very frequencies,
/// by their list where they don't (the last step of a logarithmic sweep is cut short in another way).
void DescribeSweep(rf::FrequencySweep const & sweep, FrequencySolutionDefinition & definition);

} // namespace rfcircuit
