#pragma once

#include "basekit/text/AString.h"

namespace i18n {

/// Splits the digits at the end of a text off: "SolutionBlock12" gives "SolutionBlock" and 12.  False, with the
/// whole text as stem and 0 as number, when there are none or the number is too great for the type.  With
/// `trimStem` the blanks round the stem are cut off too.
bool ParseName(AString const & text, AString & stem, unsigned long & number, bool trimStem);

} // namespace i18n
