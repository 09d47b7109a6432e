#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <set>

namespace desktop {

class ProductSolutionManager;

/// Where mirrored stores follow what happens to the points that they belong to.

/// After a takeover: has the solutions take up, for these points (packed keys), the files and values that the records
/// in their blocks tell of, as the session that stored them may have died before its design did.  The number of files
/// that are gone; `hasTaken` becomes true when a solution was asked.
int TakeUpResultFiles(ProductSolutionManager const & manager, std::set<AString> const & points, bool & hasTaken);

/// For a save: what was delivered with points that were deleted since leaves the working views, so that the save drops
/// their files.  Until then undo of the deletion finds all in its place.
void DropResultsWithoutData(ProductSolutionManager const & manager);

/// What the library has renamed already, as it stands in a design that was written before.
void RenameInStores(ProductSolutionManager const & manager,
                    std::function<AString(AString const & text)> const & newText);

} // namespace desktop
