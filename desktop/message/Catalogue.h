#pragma once

#include "basekit/text/AString.h"

#include <vector>

class KelvroMessage;

namespace desktop {

/// The text of a message number, in which %1, %2 ... stand for the message's arguments; empty for an unknown number.
AString CatalogueText(long number);
/// All numbers of the catalogue, rising.
std::vector<long> CatalogueNumbers();

/// A message as one line for the user: its text with the arguments put in.  An unknown number is shown with its
/// arguments, so that nothing is lost.
AString ComposeMessage(KelvroMessage const & message);

} // namespace desktop
