#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

namespace desktop {

class ProductSolutionManager;

/// The result files and folders of one variation, as the mirrored stores of all solutions list them at their current
/// versions: paths from the design's results folder on.
struct PointFiles {
  std::map<AString, AString> renamed; ///< of unsaved files: the names that they get once they are saved
  std::vector<AString> files;
  std::vector<AString> dirs;

  static PointFiles Saved(ProductSolutionManager const & manager, AString const & variation);
  static PointFiles Unsaved(ProductSolutionManager const & manager, AString const & variation);
};

} // namespace desktop
