#include "desktop/command/VariationDeletion.h"

#include "basekit/id/Id.h"
#include "desktop/command/StatesOfVersions.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace desktop {

VariationDeletion::VariationDeletion(BaseSolution & solution, AString const & variation, DeltaFailure & failure)
    : KelvroDeltaState(true), m_solution(solution), m_variation(variation), m_failure(failure) {
  Delete();
}

SolutionVariationKey VariationDeletion::KeyOf(long version) const {
  return SolutionVariationKey(m_solution.GetBaseSimulationSetup().GetID(), m_variation, m_solution.GetID(), version);
}

void VariationDeletion::KeepCopies() {
  m_versions.clear();
  m_blocks.Clear();
  for (auto const & [index, entry] : m_solution.GetVariations())
    if (entry->GetDesignVariationKey() == m_variation)
      m_versions.push_back(entry->GetVersionID());
  BaseSolutionManager const & manager = *m_solution.GetSolutionMgr();
  for (long const version : m_versions) {
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(KeyOf(version).Pack()));
    if (manager.HasDataBlock(KeyOf(version)) && manager.LoadSingleBlock(*block) == CStreamioLibrary::kLibSuccess)
      m_blocks << block;
  }
}

void VariationDeletion::Delete() {
  KeepCopies();
  m_solution.DeleteSolutionVariation(m_variation, nullptr);
  RewriteStates(m_solution, m_versions);
}

void VariationDeletion::UndoIt() {
  KelvroDeltaState::UndoIt();
  BaseSolutionManager const & manager = *m_solution.GetSolutionMgr();
  io::CBlock batch(L"Batch");
  for (auto const & item : m_blocks) {
    SolutionVariationKey key;
    if (key.Unpack(item->Name()) && !manager.HasDataBlock(key))
      batch << item;
  }
  if (!batch.Empty() && manager.SaveBlocks(batch) != CStreamioLibrary::kLibSuccess)
    m_failure.Tell(manager.GetSolutionFileManager().GetLibPath() +
                   L": the deleted data can't be stored again; make room or get permission, and undo again");
  for (long const version : m_versions)
    m_solution.EnsureVariation(m_variation, version);
  RewriteStates(m_solution, m_versions);
}

void VariationDeletion::RedoIt() {
  KelvroDeltaState::RedoIt();
  Delete();
}

} // namespace desktop
