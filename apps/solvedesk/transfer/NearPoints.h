#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {
class Design;
}

namespace solvedesk {

/// Why a text is none of the solved points, as far as its words tell: it is no variation, or names an unknown variable,
/// a value that is no number, not all variables.  Empty where it is a point like others that just isn't solved.
AString FaultOfPoint(desktop::Design const & design, AString const & wanted, std::vector<AString> const & solved);

/// The solved points that come nearest, the nearest first: those that have most of the wanted values, and the other
/// ones at the least distance.  At most three.
std::vector<AString> NearPoints(AString const & wanted, std::vector<AString> const & solved);

} // namespace solvedesk
