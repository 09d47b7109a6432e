// The convergence records of a setup: one per variation and version, in memory or in its block of the library.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/RecordMap.h"

#include <algorithm>

AString BaseSimulationSetup::GetConvBlockName(AString const & variation, long version) const {
  // A version of id::invalidID stays in the key; callers that mean the current version resolve it first.
  return SolutionVariationKey(GetID(), variation, SolutionVariationKey::kConvDataKey, version).Pack();
}

void BaseSimulationSetup::CreateConvData(AString const & variation, long version, SetupConvDef const * definition,
                                         int index) {
  VariationIDIndex const at = RecordIndex(variation, version);
  if (!FindRecord(m_ConvergenceData, at))
    FindOrMakeRecord(m_ConvergenceData, at, GetConvBlockName(variation, at.GetVersionID()))
        .SetSetupDef(definition, index);
}

void BaseSimulationSetup::InitConvData(AString const & variation, long version, AString const & requestedPasses,
                                       AString const & target, AString const & criterionLabel,
                                       AString const & iterationLabel, AString const & minPasses,
                                       AString const & passesTitle, int index) {
  if (ConvergenceData * const record = FindRecord(m_ConvergenceData, RecordIndex(variation, version)))
    record->Initialize(requestedPasses, target, criterionLabel, iterationLabel, minPasses, true, passesTitle, index);
}

ConvergenceData * BaseSimulationSetup::GetConvData(AString const & variation, long version, int index) {
  VariationIDIndex const at = RecordIndex(variation, version);
  ConvergenceData * const record = FindRecord(m_ConvergenceData, at);
  if (!record || record->NeedInit(index))
    return SetupConvData(variation, at.GetVersionID(), index);
  bool const isSolved = std::any_of(m_BaseSolutionMap.begin(), m_BaseSolutionMap.end(), [](auto const & entry) {
    return entry.second && entry.second->IsValid() && entry.second->size() > 0;
  });
  if (!isSolved)
    UpdateConvData(variation, record, index);
  return record;
}

ConvergenceData * BaseSimulationSetup::SetupConvData(AString const & variation, long version, int) {
  VariationIDIndex const at = RecordIndex(variation, version);
  if (ConvergenceData * const record = FindRecord(m_ConvergenceData, at))
    return record;
  // A block that is missing or bad is no error here: what counts is whether there is a record now.
  ReadConvergenceDataBlock(variation, at.GetVersionID());
  return FindRecord(m_ConvergenceData, at);
}

void BaseSimulationSetup::UpdateConvData(AString const &, ConvergenceData *, int) const {}

void BaseSimulationSetup::AddConvValues(AString const & variation, long version, ConvValues * values, int index) {
  VariationIDIndex const at = RecordIndex(variation, version);
  ConvergenceData * record = FindRecord(m_ConvergenceData, at);
  if (!record)
    record = SetupConvData(variation, at.GetVersionID(), index);
  // Without a record there is no place for the pass; its values stay with the caller.
  KVRO_ASSERT(record);
  if (record)
    record->AddData(values, index);
}

void BaseSimulationSetup::ClearConvValues(AString const & variation, long version, int index) {
  if (ConvergenceData * const record = FindRecord(m_ConvergenceData, RecordIndex(variation, version)))
    record->ClearData(0, index);
}

bool BaseSimulationSetup::AnyConvData(AString const & variation) const {
  return std::any_of(m_ConvergenceData.begin(), m_ConvergenceData.end(), [&variation](auto const & entry) {
    return VariableValues::AreVariationKeysEqual(entry.first.GetVariation(), variation);
  });
}

io::ReadError BaseSimulationSetup::ReadConvergenceDataBlock(AString const & variation, long version) {
  VariationIDIndex const at = RecordIndex(variation, version);
  io::CBlock block(GetConvBlockName(variation, at.GetVersionID()));
  if (m_SolutionMgr->LoadSingleBlock(block) != CStreamioLibrary::kLibSuccess)
    return io::kNotFound;
  return FindOrMakeRecord(m_ConvergenceData, at, block.Name()).Read(block, m_SolutionMgr);
}

bool BaseSimulationSetup::WriteConvergenceDataBlock(AString const & variation, long version) const {
  ConvergenceData const * const record = FindRecord(m_ConvergenceData, RecordIndex(variation, version));
  if (!record)
    return true;
  // The name takes the version as it was given: a write for id::invalidID goes to a block that no read asks for.
  io::CBlock block(GetConvBlockName(variation, version));
  if (!record->Write(block))
    return false;
  m_SolutionMgr->SaveSingleBlock(block);
  return true;
}
