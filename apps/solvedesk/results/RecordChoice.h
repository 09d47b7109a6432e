#pragma once

#include "basekit/text/AString.h"
#include "desktop/project/Session.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class BaseSimulationSetup;
namespace CLI {
class App;
}
namespace io {
class CBlock;
}

namespace solvedesk {

/// Which records of solves are asked for.
struct RecordWords {
  std::string project;
  std::vector<std::string> setups;
  std::optional<std::string> variation;
};

/// Adds PROJECT, --setup and --variation.
void AddRecordWords(CLI::App & verb, RecordWords & words);

/// The record of one solve, as it lies in the library.
struct RecordOfSolve {
  BaseSimulationSetup & setup;
  AString variation;
  io::CBlock const & block;
};

/// Goes through the records of that kind (SolutionVariationKey::kConvDataKey, kProfileDataKey) that the chosen setups
/// have at their present versions, setup by setup.  One that can't be read, or of which the visitor says so by false,
/// is told on standard error, and the others go on.  Gives the exit code: 0 when all could be read.  Throws
/// desktop::Error (kUsage) when there is none of the setups and variation that were named.
[[nodiscard]] int ForEachRecord(desktop::Session & session, RecordWords const & words, long kind,
                                std::function<bool(RecordOfSolve const &)> const & visit);

} // namespace solvedesk
