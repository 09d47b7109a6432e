#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

#include <set>
#include <vector>

class CMirroredDataMap;

namespace io {
class CBlock;
}

namespace desktop {

class ProductSolutionManager;

/// Result files and folders that no state of a project names: what a crash left behind, or what is given up.  Only what
/// lies in the results folder counts, and only under names that the layout of a solution's stores reads as its own: as
/// the location of a key that has the very same location.
class StrayResultFiles {
public:
  /// What the manager's stores name by now is none.
  StrayResultFiles(ProductSolutionManager const & manager, LongFileName const & results);
  /// Nor is what a design names; it is that of a project file or of an autosave.
  void Spare(io::CBlock const & design);

  /// Files, and folders as a whole.
  std::vector<LongFileName> Find() const;

private:
  void FindIn(AString const & root, AString const & folder, std::vector<LongFileName> & found) const;
  bool IsOfStores(AString const & root, AString const & location) const;

  LongFileName m_results;
  std::vector<CMirroredDataMap *> m_stores;
  std::set<AString> m_named;
};

} // namespace desktop
