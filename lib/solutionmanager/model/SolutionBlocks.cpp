// The blocks of a solution: its definition block, its variations' data blocks, its part of the design file.

#include "CoreInterfaces/solution/ISolutionDefinition.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/model/StatesJournal.h"
#include "solutionmanager/model/VariationRuns.h"
#include "solutionmanager/model/VersionItem.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

namespace {

constexpr auto kBadKey = static_cast<io::ReadError>(-2);

} // namespace

AString BaseSolution::GetBlockDefinitionName() const {
  return SolutionVariationKey(m_Setup->GetID(), SolutionVariationKey::kSolutionDefinitionKey, GetID(), GetVersionID())
      .Pack();
}

io::CBlock BaseSolution::StatesBlock() const {
  AString const name(L"States");
  BaseSolutionManager const * const manager = GetSolutionMgr();
  io::CBlock states(name);
  if (ExportVariationContext const * const context = manager->GetExportVariationContext()) {
    auto const at =
        m_VariationMap.find(VariationIDIndex(context->designVariationKey, m_VersionID, context->designVariationID));
    if (at != m_VariationMap.end())
      WriteSolutionVariation(states, *at, manager);
    return states;
  }
  if (!m_StatesJournal)
    m_StatesJournal = std::make_unique<StatesJournal>(*this);
  if (auto const journal = m_StatesJournal->Current(m_VersionID))
    return io::CBlock(name, journal);
  for (auto const & entry : m_VariationMap)
    if (entry.second->GetVersionID() == m_VersionID)
      WriteSolutionVariation(states, entry, manager);
  return states;
}

bool BaseSolution::WriteDefinitionBlock(io::CBlock & block) const {
  AString const name = block.Name();
  KVRO_ASSERT(name.Compare(GetBlockDefinitionName()) == 0);
  block << io::named(L"SolutionName", m_SolutionName) << io::named(L"SolutionID", GetID())
        << io::named(L"V", m_VersionID);
  block << StatesBlock();
  if (ISolutionDefinition * const definition = GetSolutionDefinition(id::invalidID)) {
    io::CBlock definitionBlock(L"Definition");
    definition->DoDataExchange(definitionBlock, false);
    block << definitionBlock;
  }
  return true;
}

void BaseSolution::WriteSolutionVariation(io::CBlock & block, VariationMap::value_type const & entry,
                                          BaseSolutionManager const * manager) {
  block << StatesJournal::Item(manager->GetVariationID(entry.first.GetVariation()), entry.second->GetVersionID());
}

io::ReadError BaseSolution::ReadDefinitionBlock(io::CBlock const & block) {
  AString const name = block.Name();
  KVRO_ASSERT(name.Compare(GetBlockDefinitionName()) == 0);
  long id = m_ID;
  block >> io::named(L"SolutionName", m_SolutionName) >> io::named(L"SolutionID", id);
  // A solution that its setup knows keeps the ID under which it does.
  bool const isOwnID = id == m_ID || m_Setup->GetISolutionByID(m_ID, true) != this;
  KVRO_ASSERT(isOwnID);
  if (isOwnID)
    m_ID = id;
  io::CBlock const * const states = block.FindBlock(L"States");
  io::ReadError const result = states ? LoadSolutionVariations(*states) : io::kNoError;
  // The writer stores the version as "V"; the reader takes "VersionID" and nothing else, on purpose: the version in
  // the block's name is the one that counts.
  ReadVersionItem(block, m_VersionID);
  GetSolutionMgr()->ForEdit().ReserveUniqueID(m_VersionID);
  io::CBlock definitionBlock(L"Definition");
  block >> definitionBlock;
  bool const isTold = block.Found();
  CopyDefinition(m_VersionID, m_VersionID, true);
  // A block that tells no definition leaves the one that is there.
  if (isTold)
    m_SolutionDefinitionMap[m_VersionID]->DoDataExchange(definitionBlock, true);
  return result;
}

io::ReadError BaseSolution::LoadSolutionVariations(io::CBlock const & block) {
  if (block.Empty())
    return io::kNoError;
  BaseSolutionManager const * const manager = GetSolutionMgr();
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    if (!item)
      continue;
    long variationID = id::invalidID;
    AString text;
    *item >> io::named(L"VID", variationID);
    if (variationID != id::invalidID)
      text = manager->GetVariationFromID(variationID);
    else
      *item >> io::named(L"V", text); // the older form
    long version = id::invalidID;
    *item >> io::named(L"Ver", version);
    if (version == id::invalidID)
      *item >> io::named(L"VersionID", version);
    // IDs that the table lost must not come up for anything else.
    manager->ForEdit().ReserveUniqueID(std::max(variationID, version));
    // Looked up by the solution's current version, not by the item's.
    if (m_Runs->Find(IndexOf(text, m_VersionID)))
      continue;
    BaseSolutionVariation * const newvar = CreateSolutionVariation(text, version);
    KVRO_ASSERT(newvar);
  }
  return io::kNoError;
}

io::ReadError BaseSolution::ReadVariationDataBlock(AString const & variation, long version) {
  long const wanted = version == id::invalidID ? m_VersionID : version;
  SolutionVariationKey const key = KeyOf(variation, wanted);
  if (!key.IsValidVariationDataKey())
    return kBadKey;
  io::CBlock block(key.Pack());
  GetSolutionMgr()->LoadSingleBlock(block);
  BaseSolutionVariation * const present = m_Runs->Find(IndexOf(variation, wanted));
  BaseSolutionVariation * const entry = present ? present : CreateSolutionVariation(variation, version);
  return entry ? entry->ReadVariationDataBlock(block) : io::kNoError;
}

bool BaseSolution::WriteVariationDataBlock(AString const & variation, long version) const {
  long const wanted = version == id::invalidID ? m_VersionID : version;
  BaseSolutionVariation const * const entry = m_Runs->Find(IndexOf(variation, wanted));
  if (!entry)
    return true;
  io::CBlock block(KeyOf(variation, wanted).Pack());
  if (!entry->WriteVariationDataBlock(block))
    return false;
  GetSolutionMgr()->SaveSingleBlock(block);
  return true;
}

io::ReadError BaseSolution::DesignFileRead(io::CBlock const & block) {
  io::CBlock extractorBlock(kSimDataExtractorBlockName);
  block >> extractorBlock;
  if (!block.Found() || !m_Extractor)
    return io::kNoError;
  io::ReadError const result = m_Extractor->DesignFileRead(extractorBlock);
  return result == io::kWarning ? io::kNoError : result;
}

bool BaseSolution::DesignFileWrite(io::CBlock & block) {
  if (!m_Extractor)
    return true;
  io::CBlock extractorBlock(kSimDataExtractorBlockName);
  if (!m_Extractor->DesignFileWrite(extractorBlock))
    return false;
  block << extractorBlock;
  return true;
}
