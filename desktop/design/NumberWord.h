#pragma once

#include "basekit/text/AString.h"

namespace desktop {

/// The number of a word such as "1.5", "-2e-3", "2.2p", "10meg" or "1.2 GHz", in SI units.  A bare m, M or F is
/// refused: netlists and physicists read it differently.  Throws Error (kUsage) that names `where`.
double ReadNumberWord(AString const & word, AString const & where);

/// The shortest plain number that reads back bit for bit; zero has no sign.  Variation texts are made of these, so that
/// the same point always has the same text.
AString PlainNumber(double value);

} // namespace desktop
