#pragma once

#include "basekit/id/Id.h"
#include "basekit/text/AString.h"

/// The one variation that a design point export writes, while it runs.
struct ExportVariationContext {
  AString designVariationKey;
  long designVariationID = id::invalidID;
  bool savedState = true; ///< false on the path that exports a design in its unsaved state
};
