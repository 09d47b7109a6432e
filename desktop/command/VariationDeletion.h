#pragma once

#include "basekit/io/CBlock.h"
#include "desktop/command/Deltas.h"

#include <vector>

class BaseSolution;
class SolutionVariationKey;

namespace desktop {

/// All data of one variation in one solution, deleted.  Keeps a copy of the blocks: undo stores them again under their
/// names, save where the point was solved anew meanwhile.  What is damaged in the library can't be kept.
class VariationDeletion : public KelvroDeltaState {
public:
  /// Deletes.
  VariationDeletion(BaseSolution & solution, AString const & variation, DeltaFailure & failure);
  void UndoIt() override;
  void RedoIt() override;
  int CountBlocks() const { return m_blocks.Size(); }

private:
  SolutionVariationKey KeyOf(long version) const;
  void Delete();
  void KeepCopies();

  BaseSolution & m_solution;
  AString m_variation;
  DeltaFailure & m_failure;
  std::vector<long> m_versions;
  io::CBlock m_blocks{L"Batch"};
};

} // namespace desktop
