#pragma once

#include "basekit/text/AString.h"

#include <vector>

class SolutionVariationKey;

namespace desktop {

class ProductSolutionManager;

/// The numbers that reports showed, which a save keeps beside the project so that the next session shows them without
/// reading solved data.

/// Of the point sets, only what is of their own version stays.  Whether there are any numbers to keep.
bool KeepPresentNumbers(ProductSolutionManager & manager);
/// These points were solved anew.
void ForgetShownNumbers(ProductSolutionManager & manager, std::vector<SolutionVariationKey> const & points);
/// All that came with the project file about reports goes: they are made anew, from solved data.
void ForgetReadReports(ProductSolutionManager & manager);

/// What tells the file from every other one: length and checksum of its content.  Empty when it can't be read.
AString StampOfNumbers(ProductSolutionManager const & manager);

} // namespace desktop
