#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

class ConvergenceData;
namespace io {
class CBlock;
}

namespace solvedesk {

/// The indexes of the sets that a block of convergence data holds.
std::vector<int> ConvergenceSets(io::CBlock const & block);

/// "converged, 4 passes, target 0.0001".
std::string ConvergenceSummary(ConvergenceData const & record, int index);
/// "Change 0.0012 of 0.0001": what the last pass came to and the target; empty where the solver has none.
std::string CriterionText(ConvergenceData const & record, int index);
/// The passes as a table, a line each below the names of the columns.
std::string ConvergenceTable(ConvergenceData const & record, int index);
/// All of it; "converged" is null where the solver does not tell, and so are values that a pass lacks.
nlohmann::ordered_json ConvergenceJson(ConvergenceData const & record, int index);

int PassCount(ConvergenceData const & record, int index);
/// One pass, counted from 1: by the names of the columns that are shown.
nlohmann::ordered_json PassJson(ConvergenceData const & record, int index, int pass);
/// "Points 12, Change 0.0012".
std::string PassText(ConvergenceData const & record, int index, int pass);

} // namespace solvedesk
