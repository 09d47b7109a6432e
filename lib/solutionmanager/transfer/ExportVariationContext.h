#pragma once

#include "basekit/id/Id.h"
#include "basekit/text/AString.h"

/// The one variation that is being exported; while a manager has one, its definition blocks are cut down to it.
struct ExportVariationContext {
  AString designVariationKey;
  long designVariationID = id::invalidID;
  /// True when the export rests on the saved state of the project.
  bool isSavedState = true;
};
