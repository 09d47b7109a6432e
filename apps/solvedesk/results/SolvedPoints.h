#pragma once

#include "solutionmanager/address/VariationIDIndex.h"

#include <optional>
#include <string>
#include <vector>

class BaseSolution;
namespace desktop {
class Session;
}

namespace solvedesk {

/// A variation that is solved, valid and has data.
struct SolvedPoint {
  BaseSolution * solution = nullptr;
  VariationIDIndex index;
  std::string setup;
  AString variation;
};

/// The solved points of some setups, of all without a name, in the order of setups and variations; those that equal one
/// variation when there is one.  Throws desktop::Error for unknown names, and when there is no such point.
std::vector<SolvedPoint> FindSolvedPoints(desktop::Session & session, std::string const & project,
                                          std::vector<std::string> const & setups,
                                          std::optional<std::string> const & variation);

} // namespace solvedesk
