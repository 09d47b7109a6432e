#include "desktop/product/ProductSolutionManager.h"

#include "basekit/io/CBlock.h"
#include "desktop/product/StaleResults.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>

namespace desktop {

namespace {

template <class Object> Object * FindIn(std::map<long, Object *> const & map, long id) {
  auto const at = map.find(id);
  return at == map.end() ? nullptr : at->second;
}

template <class Object, class Known>
std::vector<long> IdsNotIn(std::map<long, Object *> const & map, std::vector<Known> const & known) {
  std::vector<long> ids;
  for (auto const & [id, object] : map)
    if (std::none_of(known.begin(), known.end(), [key = id](Known const & entry) { return entry.id == key; }))
      ids.push_back(id);
  return ids;
}

/// Which definition blocks belong to the setups and their solutions.
std::map<std::pair<long, long>, long> VersionsOf(BaseSolutionManager::SetupMap const & setups) {
  std::map<std::pair<long, long>, long> versions;
  for (auto const & [id, setup] : setups) {
    versions[{id, id::invalidID}] = setup->GetVersionID();
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      versions[{id, solutionID}] = solution->GetVersionID();
  }
  return versions;
}

} // namespace

void ProductSolutionManager::SetReadOnly() {
  m_isReadOnly = true;
  GetSolutionFileManager().GetLibraryForDirectAccess().SetReadOnly(true);
}

io::ReadError ProductSolutionManager::AllFilesRead(io::CBlock const & block, bool) {
  m_setupsBeingRead = SetupsOfDesign(block);
  io::ReadError result = BuildUtilityCollections(block, m_recoverOnRead);
  if (m_recoverOnRead && !WasTakenOver())
    result = io::kBadContent;
  m_recoverOnRead = false;
  if (result == io::kNoError) {
    if (!m_isReadOnly)
      StaleResults(GetQsolPath()).PutBack(GetSolutionFileManager());
    auto const versionsRead = VersionsOf(GetSetups());
    CreateMissingSetups();
    ApplyVersionIDs(block);
    // What was read for these versions already need not be read again.
    if (IsRecovered() || VersionsOf(GetSetups()) != versionsRead)
      ReadAllDefinitionBlocks();
    ApplyNames();
    DropWhatTheDesignLacks();
    EnterVariationsOfLibrary();
    result = DesignFileRead(block);
  }
  m_setupsBeingRead.clear();
  return result;
}

io::ReadError ProductSolutionManager::DefinitionFileRead(io::CBlock const & block, bool) {
  m_setupsBeingRead = SetupsOfDesign(block);
  CreateMissingSetups();
  ApplyVersionIDs(block);
  io::ReadError const result = DesignFileRead(block);
  m_setupsBeingRead.clear();
  return result;
}

bool ProductSolutionManager::AllFilesWrite(io::CBlock & block) { return DesignFileWrite(block); }

bool ProductSolutionManager::DefinitionFileWrite(io::CBlock & block) { return DesignFileWrite(block); }

void ProductSolutionManager::SetRecoveredVersionIDs() {
  BaseSolutionManager::SetRecoveredVersionIDs();
  ApplyNames();
}

std::vector<RecoveryReport::Dropped> ProductSolutionManager::DroppedForGood() const {
  std::vector<RecoveryReport::Dropped> dropped = GetRecoveryReport().dropped;
  std::erase_if(dropped, [this](RecoveryReport::Dropped const & block) {
    bool isThere = false;
    GetSolutionFileManager().GetInternalBlockName(isThere, block.realName);
    return isThere;
  });
  return dropped;
}

AString ProductSolutionManager::TypeOfSetupBeingRead(long id) const {
  for (SetupOfDesign const & setup : m_setupsBeingRead)
    if (setup.id == id)
      return setup.typeName;
  return AString();
}

// A recovery that fails leaves no objects, though there are blocks that belong to some.
bool ProductSolutionManager::WasTakenOver() const {
  if (!IsRecovered())
    return false;
  std::list<AString> names;
  GetSolutionFileManager().IndexKeyList(names, false);
  return !GetSetups().empty() || std::none_of(names.begin(), names.end(), [](AString const & name) {
    SolutionVariationKey key;
    return key.Unpack(name) && key.GetSimSetupKey() != id::invalidID;
  });
}

void ProductSolutionManager::CreateMissingSetups() {
  for (SetupOfDesign const & known : m_setupsBeingRead) {
    BaseSimulationSetup * setup = FindIn(GetSetups(), known.id);
    if (!setup) {
      setup = CreateSimulationSetup(known.id, 0, known.typeName);
      setup->SetName(known.name);
      AddSimulation(setup, nullptr);
    }
    for (SolutionOfDesign const & entry : known.solutions) {
      if (FindIn(setup->GetSolutions(), entry.id))
        continue;
      BaseSolution * const solution = setup->CreateSolution(entry.id, 0);
      solution->SetSolutionName(entry.name);
      setup->AddSolution(solution, nullptr);
    }
  }
}

void ProductSolutionManager::ApplyNames() {
  for (SetupOfDesign const & known : m_setupsBeingRead) {
    BaseSimulationSetup * const setup = FindIn(GetSetups(), known.id);
    if (!setup)
      continue;
    setup->SetName(known.name);
    for (SolutionOfDesign const & entry : known.solutions)
      if (BaseSolution * const solution = FindIn(setup->GetSolutions(), entry.id))
        solution->SetSolutionName(entry.name);
  }
}

void ProductSolutionManager::DropWhatTheDesignLacks() {
  std::vector<long> setups = IdsNotIn(GetSetups(), m_setupsBeingRead);
  std::vector<std::pair<BaseSimulationSetup *, long>> solutions;
  std::vector<long> keptSetups;
  std::vector<long> keptSolutions;
  for (SetupOfDesign const & known : m_setupsBeingRead) {
    keptSetups.push_back(known.id);
    BaseSimulationSetup * const setup = FindIn(GetSetups(), known.id);
    for (SolutionOfDesign const & entry : known.solutions)
      keptSolutions.push_back(entry.id);
    for (long const id : setup ? IdsNotIn(setup->GetSolutions(), known.solutions) : std::vector<long>())
      solutions.emplace_back(setup, id);
  }
  if (setups.empty() && solutions.empty())
    return;
  if (!m_isReadOnly && !m_areDeletionsUnsaved) {
    RecoverUIDeletions(keptSetups, keptSolutions);
    return;
  }
  // The same without a write: what is deleted for undo is not shown, and is there again when the deletion is discarded.
  for (long const id : setups)
    DeleteSimulationSetup(id, nullptr);
  for (auto const & [setup, id] : solutions)
    setup->DeleteSolution(id, nullptr);
}

void ProductSolutionManager::EnterVariationsOfLibrary() {
  std::list<AString> names;
  GetSolutionFileManager().IndexKeyList(names, false);
  for (AString const & name : names) {
    SolutionVariationKey key;
    if (!UnpackQuickly(name, key) || !key.IsValidVariationDataKey())
      continue;
    BaseSimulationSetup const * const setup = FindIn(GetSetups(), key.GetSimSetupKey());
    if (BaseSolution * const solution = setup ? FindIn(setup->GetSolutions(), key.GetSolutionKey()) : nullptr)
      solution->EnsureVariation(key.GetDesignVariationKey(), key.GetVersionIDKey());
  }
}

} // namespace desktop
