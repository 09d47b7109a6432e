#pragma once

#include "basekit/text/AString.h"

class BaseSolutionManager;

namespace desktop {

/// What is wrong with an expression over solved data of several kinds, which run over axes of their own and are loaded
/// one by one, so that it has no value; one line that names the kinds.  Empty for all other expressions.
AString MixedKinds(BaseSolutionManager const & manager, AString const & expression);

} // namespace desktop
