#pragma once

#include <vector>

class BaseSolution;

namespace desktop {

/// Definition blocks list the variations of their version, and a save writes that of the present version alone: those
/// of other versions are brought in line here, or the next session would see variations that are gone.
void RewriteStates(BaseSolution const & solution, std::vector<long> const & versions);

} // namespace desktop
