#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

class BaseSolution;
namespace desktop {
struct StoredResult;
}

namespace solvedesk {

struct VariationState;

/// What a solution keeps for a variation beside its data; nothing for a product that keeps nothing, or a variation that
/// is not valid.
std::vector<desktop::StoredResult> ResultsOf(BaseSolution const & solution, VariationState const & state);

/// "saved", "unsaved", "both", "missing"; empty for a number.
std::string StateOf(desktop::StoredResult const & result);
/// One line for each.
std::string TextOf(std::vector<desktop::StoredResult> const & results, std::string const & indent);
nlohmann::ordered_json JsonOf(std::vector<desktop::StoredResult> const & results);

/// Whether a saved file has a newer, unsaved one beside it, of any variation of the solution.
bool HasFilesBeside(BaseSolution const & solution);

} // namespace solvedesk
