#pragma once

#include <vector>

class CMirroredDataMap;

namespace desktop {

/// What a solution of a product adds that keeps results in mirrored stores: files per variation, flags, numbers.
/// Reached by a cross-cast from BaseSolution.  The desktop writes the stores into the design's block and reads them
/// from it, commits them with a save and takes them back with a discard.  Reading gives out numbers, and changes no
/// library: their owner's GetNewID is the manager's FetchNextUniqueIDNoWrite.
class IResultStores {
public:
  virtual ~IResultStores() = default;
  /// In the order in which they are written; the solution owns them, and they live as long as it does.
  virtual std::vector<CMirroredDataMap *> GetResultStores() = 0;
};

} // namespace desktop
