#pragma once

#include <vector>

class BaseSolution;

namespace desktop {

/// Definition blocks list the variations of their version: those of the versions are brought in line with what is
/// there, or the next session would see variations that are gone.
void RewriteStates(BaseSolution const & solution, std::vector<long> const & versions);

} // namespace desktop
