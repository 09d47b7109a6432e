#include "solutionmanager/model/BaseSolutionVariation.h"

#include "basekit/diag/Assert.h"
#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

AString const & DataIDItem() {
  static AString const name(L"VariationDataID");
  return name;
}

} // namespace

BaseSolutionVariation::BaseSolutionVariation(BaseSolution * solution, AString const & variation, long version)
    : m_Solution(solution), m_VersionID(version == id::invalidID ? solution->GetVersionID() : version),
      m_DesignVariationKey(variation) {}

SolutionVariationKey BaseSolutionVariation::GetSolutionVariationKey() const {
  return SolutionVariationKey(m_Solution->GetBaseSimulationSetup().GetID(), m_DesignVariationKey, m_Solution->GetID(),
                              m_VersionID);
}

bool BaseSolutionVariation::IsVariationValid() const {
  return !m_OverrideIsValid && m_VersionID == m_Solution->GetVersionID();
}

void BaseSolutionVariation::NonUndoableInvalidate() { m_OverrideIsValid = true; }

void BaseSolutionVariation::ResetOverrideIsValid(bool overrideIsValid) {
  m_OverrideIsValid = overrideIsValid;
  m_Solution->ResetOverrideIsValid(overrideIsValid);
}

void BaseSolutionVariation::DeleteMe(KelvroCommand * command) {
  // The text is copied: a product may free its deleted variations at once.
  AString const variation = m_DesignVariationKey;
  m_Solution->DeleteSolutionVariation(variation, command);
}

bool BaseSolutionVariation::HasSolutionData() const {
  KVRO_ASSERT(0);
  return false;
}

bool BaseSolutionVariation::ClearInstanceMemoryData() { return true; }

io::ReadError BaseSolutionVariation::LoadInstanceData() {
  io::CBlock block(GetSolutionVariationKey().Pack());
  if (m_Solution->GetSolutionMgr()->LoadSingleBlock(block) != CStreamioLibrary::kLibSuccess)
    return io::kNotFound;
  return ReadVariationDataBlock(block);
}

io::ReadError BaseSolutionVariation::ReadVariationDataBlock(io::CBlock const & block) {
  SolutionVariationKey the_key;
  the_key.Unpack(block.Name());
  KVRO_ASSERT(the_key == GetSolutionVariationKey());
  block >> io::named(DataIDItem(), m_VariationDataID);
  return io::kNoError;
}

bool BaseSolutionVariation::WriteVariationDataBlock(io::CBlock & block) const {
  block << io::named(DataIDItem(), m_VariationDataID);
  return true;
}
