#pragma once

#include "products/rfcircuit/engine/sweep/FrequencySweep.h"
#include "products/rfcircuit/engine/sweep/SweepFiles.h"
#include "products/rfcircuit/engine/sweep/SweepMethod.h"

#include "basekit/text/AString.h"

#include <optional>

namespace io {
class CBlock;
}

namespace rfcircuit {

/// What a setup asks for: the frequencies, the way to them, and files beside the S-parameters.
struct SweepPlan {
  rf::FrequencySweep sweep;
  rf::SweepMethod method;
  rf::SweepFiles files{};
};

/// All parts of a settings block, as docs/formats/rfcircuit-data.md tells.
void WritePlan(io::CBlock & settings, SweepPlan const & plan);
/// Nothing, with a one-line error, for settings that make no sense.
std::optional<SweepPlan> ReadPlan(io::CBlock const & settings, AString & error);

/// The words of a .sp line, such as "lin 201 10meg 2g" or "lin 10001 1g 2g adaptive target=1e-5 touchstone
/// voltages=1.5g", with numbers as netlists write them.  Nothing, with a one-line error, for words that make no sense.
std::optional<SweepPlan> PlanOfWords(AString const & words, AString & error);
/// Words that give the very same plan.
AString WordsOfPlan(SweepPlan const & plan);

} // namespace rfcircuit
