#include "desktop/command/VariationDeletion.h"

#include "basekit/id/Id.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace desktop {

VariationDeletion::VariationDeletion(BaseSolution & solution, AString const & variation, DeltaFailure & failure)
    : KelvroDeltaState(true), m_solution(solution), m_variation(variation), m_failure(failure) {
  for (auto const & [index, entry] : solution.GetVariations())
    if (entry->GetDesignVariationKey() == variation)
      m_versions.push_back(entry->GetVersionID());
  KeepCopies();
  Delete();
}

void VariationDeletion::KeepCopies() {
  BaseSolutionManager const & manager = *m_solution.GetSolutionMgr();
  for (long const version : m_versions) {
    SolutionVariationKey const key(m_solution.GetBaseSimulationSetup().GetID(), m_variation, m_solution.GetID(),
                                   version);
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(key.Pack()));
    if (manager.HasDataBlock(key) && manager.LoadSingleBlock(*block) == CStreamioLibrary::kLibSuccess)
      m_blocks << block;
  }
}

void VariationDeletion::Delete() { m_solution.DeleteSolutionVariation(m_variation, nullptr); }

void VariationDeletion::UndoIt() {
  KelvroDeltaState::UndoIt();
  BaseSolutionManager const & manager = *m_solution.GetSolutionMgr();
  io::CBlock batch(m_blocks);
  if (!batch.Empty() && manager.SaveBlocks(batch) != CStreamioLibrary::kLibSuccess)
    m_failure.Tell(manager.GetSolutionFileManager().GetLibPath() +
                   L": the deleted data can't be stored again; make room or get permission, and undo again");
  for (long const version : m_versions)
    m_solution.EnsureVariation(m_variation, version);
}

void VariationDeletion::RedoIt() {
  KelvroDeltaState::RedoIt();
  Delete();
}

} // namespace desktop
