#pragma once

#include "basekit/text/AString.h"

class LongFileName;

namespace rfcircuit {

class RfVariation;

/// Writes the S-parameters of a variation that has them as Touchstone 1, or 2 where the ports differ in their reference
/// impedance, with the variation's text as a comment and no date: the same data gives the same file.  False with a
/// one-line error, and no file, when it can't be written.
bool ExportTouchstone(RfVariation const & variation, LongFileName const & fileWithoutExtension, int digits,
                      LongFileName & written, AString & error);

} // namespace rfcircuit
