// The header block, the library's index turned into objects, and the wrappers of the solution library.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/VariationIdTable.h"
#include "solutionmanager/model/VersionItem.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

#include <utility>

AString const BaseSolutionManager::kHeaderBlockName(L"FileHeader");
AString const BaseSolutionManager::kContainerBlock(L"Container");
AString const BaseSolutionManager::kSimSetupBlockName(L"SimSetup");
AString const BaseSolutionManager::kImportedSimSetupBlockName(L"ImportedSimSetup");
AString const BaseSolutionManager::kSimSetupTypeName(L"TypeName");
AString const BaseSolutionManager::kSimSetupID(L"ID");
AString const BaseSolutionManager::kSimSetupName(L"Name");
AString const BaseSolutionManager::kOutputVariableBlockName(L"OutputVariables");

bool BaseSolutionManager::WriteDefinitionBlock() const {
  io::CBlock block(kHeaderBlockName);
  if (!WriteDefinitionBlock(block))
    return false;
  m_HeaderAtHand.reset();
  // Whether the save worked does not count: a library that is not there yet is no error.
  m_SolutionFileManager.SaveDefinition(block);
  return true;
}

bool BaseSolutionManager::WriteDefinitionBlock(io::CBlock & block) const {
  if (m_Design)
    m_CircuitName = m_Design->GetName();
  block << io::named(L"ProductName", m_ProductName) << io::named(L"CircuitName", m_CircuitName)
        << io::named(L"VersionID", m_VersionID) << io::named(L"PostProcess", m_PostProcessingIsOn)
        << io::named(L"LossLess", m_DeembeddingLossLess);
  if (!m_PortSettings.empty()) {
    io::CBlock ports(L"PortSettings");
    for (PortSettings const & port : m_PortSettings) {
      io::CBlock portBlock(port.GetItemName());
      port.Write(portBlock);
      ports << portBlock;
    }
    block << ports;
  }
  bool const wroteNextID = WriteNextUniqueID(block);
  if (m_VariationIDMap.empty())
    return wroteNextID;
  AString const name(L"VariationIDs");
  if (!m_ExportVariationContext) {
    block << io::CBlock(name, m_VariationIDJournal);
    return wroteNextID;
  }
  io::CBlock variations(name);
  for (auto const & entry : m_VariationIDMap) {
    if (entry.second != m_ExportVariationContext->designVariationID)
      continue;
    WriteVariationIDBlockFunc(variations, entry);
    break;
  }
  block << variations;
  return wroteNextID;
}

void BaseSolutionManager::ReadDefinitionBlock() {
  auto header = m_HeaderAtHand;
  if (!header) {
    header = std::make_shared<io::CBlock>(kHeaderBlockName);
    if (m_SolutionFileManager.LoadDefinition(*header) != CStreamioLibrary::kLibSuccess)
      return;
    m_HeaderAtHand = m_IsOpening ? header : nullptr;
    m_HasVariationsOfHeader = false;
  }
  ReadDefinitionBlock(*header);
}

void BaseSolutionManager::ReadDefinitionBlock(io::CBlock const & block) {
  block >> io::named(L"ProductName", m_ProductName) >> io::named(L"CircuitName", m_CircuitName);
  ReadVersionItem(block, m_VersionID);
  block >> io::named(L"PostProcess", m_PostProcessingIsOn) >> io::named(L"LossLess", m_DeembeddingLossLess);
  io::CBlock ports(L"PortSettings");
  block >> ports;
  if (block.Found()) {
    m_PortSettings.clear();
    for (auto const & child : ports) {
      io::CBlock_ptr<io::CBlock> const portBlock(child);
      if (!portBlock)
        continue;
      m_PortSettings.emplace_back(portBlock->Name());
      m_PortSettings.back().Read(*portBlock);
    }
  }
  ResetNextUniqueID(block);
  ReserveUniqueID(m_VersionID);
  // Entries of the table never go.
  bool const isAtHand = &block == m_HeaderAtHand.get();
  if (isAtHand && m_HasVariationsOfHeader)
    return;
  if (io::CBlock const * const variations = block.FindBlock(L"VariationIDs"))
    ReadVariationIDs(*variations);
  m_HasVariationsOfHeader = isAtHand;
}

void BaseSolutionManager::ReadVariationIDs(io::CBlock const & variations) {
  for (auto const & child : variations) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    if (!item)
      continue;
    AString variation;
    long id = id::invalidID;
    *item >> io::named(L"V", variation) >> io::named(L"ID", id);
    // An entry without an ID would take all its indexes off the order of variation maps.
    KVRO_ASSERT(id != id::invalidID);
    if (id == id::invalidID)
      continue;
    // Nor may two variations share one: each would be taken for the other.
    AString const * const owner = m_VariationIdTable->FindText(id);
    bool const isIDFree = !owner || AString::MatchNoCase(*owner, variation);
    KVRO_ASSERT(isIDFree);
    if (!isIDFree)
      continue;
    if (!owner)
      AddVariationID(variation, id);
    ReserveUniqueID(id);
  }
}

io::ReadError BaseSolutionManager::ReadAllDefinitionBlocks() {
  ReadDefinitionBlock();
  if (!m_IsOpening)
    m_HeaderAtHand.reset();
  io::ReadError greatest = io::kNoError;
  for (auto const & [id, setup] : m_SimSetupMap)
    greatest = std::max(greatest, setup->ReadAllDefinitionBlocks());
  return greatest;
}

namespace {

// A copy: products make the objects of them, and may save or delete blocks.
std::vector<SolutionVariationKey> KeysOf(SolutionFileManager::NameMap const & entries) {
  std::vector<SolutionVariationKey> keys;
  keys.reserve(entries.size());
  for (auto const & [name, entry] : entries)
    keys.push_back(entry.key);
  return keys;
}

} // namespace

io::ReadError BaseSolutionManager::BuildUtilityCollections() {
  if (m_SolutionFileManager.LoadRealToInternalBlockNameMap() != CStreamioLibrary::kLibSuccess)
    return io::kNotFound;
  bool const wasOpening = std::exchange(m_IsOpening, true);
  ReadDefinitionBlock();
  m_IsOpening = wasOpening;
  for (SolutionVariationKey const & key : KeysOf(m_SolutionFileManager.GetEntries()))
    if (key.GetSimSetupKey() != id::invalidID)
      MakeObjectsOf(key);
  return ReadAllDefinitionBlocks();
}

void BaseSolutionManager::MakeObjectsOf(SolutionVariationKey const & key) {
  long const version = key.GetVersionIDKey();
  // Convergence records that were written for the current version bear none: they make a setup, but tell it no version.
  bool const isOfAnyVersion = version == id::invalidID && key.GetSolutionKey() == SolutionVariationKey::kConvDataKey;
  // Negative numbers are wildcards and marks of the setup's own blocks, never a version or a solution: such a block
  // stays in the library, but no object is made of it.
  bool const namesAnObject =
      (isOfAnyVersion || version >= 0) && (key.GetSolutionKey() >= 0 || !key.IsValidSolutionKey());
  KVRO_ASSERT(namesAnObject);
  if (!namesAnObject)
    return;
  for (long const taken : {key.GetSimSetupKey(), key.GetSolutionKey(), version})
    ReserveUniqueID(taken);
  auto at = m_SimSetupMap.find(key.GetSimSetupKey());
  if (at == m_SimSetupMap.end()) {
    BaseSimulationSetup * const made = CreateSimulationSetup(key.GetSimSetupKey(), version, AString());
    KVRO_ASSERT(made);
    if (!made)
      return;
    at = m_SimSetupMap.emplace(key.GetSimSetupKey(), made).first;
  }
  BaseSimulationSetup * const setup = at->second;
  if (!key.IsValidSolutionKey()) {
    // The last of the setup's own keys wins.
    if (!isOfAnyVersion)
      setup->m_VersionID = version;
    return;
  }
  // The first key seen for a solution fixes its version.
  if (setup->GetISolutionByID(key.GetSolutionKey(), false))
    return;
  BaseSolution * const the_sol = setup->CreateSolution(key.GetSolutionKey(), version);
  KVRO_ASSERT(the_sol);
  if (the_sol)
    setup->AddSolution(the_sol, nullptr);
}

io::ReadError BaseSolutionManager::BuildUtilityCollections(io::CBlock const & designBlock, bool recover) {
  AString const path = GetQsolPath();
  bool const publicExists = LFN_Exists(LongFileName(path));
  bool const privateExists = LFN_Exists(LongFileName(path + L"_priv"));
  if (recover && privateExists)
    RecoverQsolFile(designBlock, path);
  else
    m_SolutionFileManager.SetLibPath(path, CStreamioLibrary::kOrdinaryMode);
  // Recovery builds the objects itself.
  return publicExists && !IsRecovered() ? BuildUtilityCollections() : io::kNoError;
}

void BaseSolutionManager::WriteVersionIDsToQdsn(io::CBlock & design) const {
  io::CBlock block(L"Version ID Map");
  WriteVersionIDsToBlock(block);
  design << block;
}

void BaseSolutionManager::ReadVersionIDsFromQdsn(io::CBlock const & design) {
  io::CBlock block(L"Version ID Map");
  design >> block;
  // A design that remembers no version leaves the manager's as it is.
  m_RecoveredVersionID = id::invalidID;
  if (design.Found())
    ReadVersionIDsFromBlock(block);
}

void BaseSolutionManager::WriteVersionIDsToBlock(io::CBlock & block) const {
  block << io::named(L"V", m_VersionID);
  for (auto const & [id, setup] : m_SimSetupMap) {
    io::CBlock setupBlock(L"Setup");
    setupBlock << io::named(L"N", setup->GetName()) << io::named(L"V", setup->GetVersionID());
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      io::CBlock_func item(L"Soln");
      item << io::named(L"N", solution->GetSolutionName()) << io::named(L"V", solution->GetVersionID());
      setupBlock << item;
    }
    block << setupBlock;
  }
}

void BaseSolutionManager::ReadVersionIDsFromBlock(io::CBlock const & block) {
  // A number that no ID server gives out, or none at all, leaves the version that the object has.
  auto const readVersion = [this](auto const & source, long & version) {
    long found = id::invalidID;
    source >> io::named(L"V", found);
    bool const isVersion = found >= 0 || !source.Found();
    KVRO_ASSERT(isVersion);
    if (found < 0)
      return false;
    version = found;
    ReserveUniqueID(found);
    return true;
  };
  readVersion(block, m_RecoveredVersionID);
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const setupBlock(child);
    if (!setupBlock)
      continue;
    AString setupName;
    *setupBlock >> io::named(L"N", setupName);
    long setupVersion = id::invalidID;
    if (readVersion(*setupBlock, setupVersion))
      m_RecoveredSetupVersions.emplace(setupName, setupVersion);
    for (auto const & item : *setupBlock) {
      io::CBlock_ptr<io::CBlock_func> const solution(item);
      if (!solution)
        continue;
      AString solutionName;
      *solution >> io::named(L"N", solutionName);
      long version = id::invalidID;
      if (readVersion(*solution, version))
        m_RecoveredSolutionVersions.emplace(std::make_pair(setupName, solutionName), version);
    }
  }
}

void BaseSolutionManager::SetBinaryMode(bool binary) { m_SolutionFileManager.SetBinaryMode(binary); }

bool BaseSolutionManager::IsBinaryModeFile() const { return m_SolutionFileManager.IsBinaryModeFile(); }

void BaseSolutionManager::SetPrecision(int digits) { m_SolutionFileManager.SetPrecision(digits); }

CStreamioLibrary::LibIOReturn BaseSolutionManager::RewriteSolutionFile(bool flag) {
  return m_SolutionFileManager.RewriteLibrary(flag);
}

bool BaseSolutionManager::HasDataBlock(SolutionVariationKey const & pattern) const {
  return m_SolutionFileManager.HasDataBlock(pattern);
}

CStreamioLibrary::LibIOReturn BaseSolutionManager::LoadBlocks(SolutionVariationKey const & pattern,
                                                              io::CBlock & block) const {
  return m_SolutionFileManager.LoadBlocks(pattern, block);
}

CStreamioLibrary::LibIOReturn BaseSolutionManager::LoadSingleBlock(io::CBlock & block) const {
  return m_SolutionFileManager.LoadDefinition(block);
}

CStreamioLibrary::LibIOReturn BaseSolutionManager::SaveBlocks(io::CBlock & block) const {
  return m_SolutionFileManager.SaveBlocks(block);
}

CStreamioLibrary::LibIOReturn BaseSolutionManager::SaveSingleBlock(io::CBlock & block) const {
  return m_SolutionFileManager.SaveDefinition(block);
}

bool BaseSolutionManager::IsRecovered() const { return m_SolutionFileManager.IsRecovered(); }

CStreamioLibraryStats BaseSolutionManager::GetFileStats() const {
  CStreamioLibraryStats stats = m_SolutionFileManager.GetFileStats();
  stats.variations = 0;
  for (auto const & [id, setup] : m_SimSetupMap)
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      stats.variations += static_cast<std::uint64_t>(solution->size());
  return stats;
}

bool BaseSolutionManager::DeleteOldBlocks(std::set<AString> const & packedKeys) const {
  for (AString const & packed : packedKeys) {
    SolutionVariationKey key;
    // A text that is no key must not become a pattern that fits everything.
    bool const unpacked = key.Unpack(packed) && key.Pack() == packed;
    KVRO_ASSERT(unpacked);
    if (unpacked)
      ForEdit().m_SolutionFileManager.DeleteBlocks(key);
  }
  return true;
}

bool BaseSolutionManager::DeleteOldBlocksFullKeys(std::set<AString> const & names) const {
  if (!names.empty())
    ForEdit().m_SolutionFileManager.DeleteBlocks(names);
  return true;
}
