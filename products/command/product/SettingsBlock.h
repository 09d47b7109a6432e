#pragma once

#include "basekit/text/AString.h"
#include "products/command/source/Template.h"

namespace io {
class CBlock;
}

namespace command {

/// The settings of a setup, as they differ from what the solver file has, in the forms that they take.
void WriteSettings(io::CBlock & block, HoleValues const & settings);
/// None for a block that holds none.
HoleValues ReadSettings(io::CBlock const & block);

/// The words that a user writes: "steps=1000 method=rk4", or "default" for no setting.  False, with a one-line error,
/// for words that make no sense.
bool SettingsOfWords(AString const & words, HoleValues & settings, AString & error);
AString WordsOfSettings(HoleValues const & settings);

} // namespace command
