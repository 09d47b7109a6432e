#include "desktop/product/ProductSolutionManager.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ResultStores.h"
#include "desktop/product/StaleResults.h"
#include "desktop/product/StoresAndData.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <set>
#include <utility>

namespace desktop {

namespace {

template <class Object> Object * FindIn(std::map<long, Object *> const & map, long id) {
  auto const at = map.find(id);
  return at == map.end() ? nullptr : at->second;
}

template <class Known> bool IsMissing(std::vector<Known> const & known, long id) {
  return std::none_of(known.begin(), known.end(), [id](Known const & entry) { return entry.id == id; });
}

template <class Object, class Known>
std::vector<long> IdsNotIn(std::map<long, Object *> const & map, std::vector<Known> const & known) {
  std::vector<long> ids;
  for (auto const & [id, object] : map)
    if (IsMissing(known, id))
      ids.push_back(id);
  return ids;
}

bool IsKey(AString const & name) {
  SolutionVariationKey key;
  return UnpackQuickly(name, key);
}

// Names that are no keys are passed over; those that are tell a version, mostly.  Whoever takes a key erases no entry.
template <class Take> void ForEachKey(SolutionFileManager const & files, Take take) {
  files.LoadRealToInternalBlockNameMap();
  for (auto const & [name, entry] : files.GetEntries()) {
    if (entry.key.GetVersionIDKey() != id::invalidID || IsKey(name))
      take(entry.key);
  }
}

template <class Take> void ForEachDataKey(SolutionFileManager const & files, Take take) {
  ForEachKey(files, [&](SolutionVariationKey const & key) {
    if (key.IsValidVariationDataKey())
      take(key);
  });
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

// Nobody is to meet one that is freed: they leave the map before.
ProductSolutionManager::~ProductSolutionManager() {
  while (!GetImportedSetups().empty()) {
    auto const & [id, setup] = *GetImportedSetups().begin();
    m_imported.insert(setup);
    DeleteSimulationSetup(id, nullptr);
  }
  for (BaseSimulationSetup * const setup : std::exchange(m_imported, {}))
    delete setup;
}

BaseSimulationSetup * ProductSolutionManager::CreateImportedSetup(long id, long version) {
  if (!IsMissing(m_setupsBeingRead, id))
    return BaseSolutionManager::CreateSimulationSetup(id, version, BaseSimulationSetup::kBaseSimSetupType);
  return new ImportedSetup(*this, id);
}

void ProductSolutionManager::SetReadOnly(std::optional<std::uint64_t> length) {
  m_isReadOnly = true;
  auto & library = GetSolutionFileManager().GetLibraryForDirectAccess();
  length ? library.SetReadOnlyAt(*length) : library.SetReadOnly(true);
}

io::ReadError ProductSolutionManager::AllFilesRead(io::CBlock const & block, bool) {
  m_setupsBeingRead = SetupsOfDesign(block);
  long const firstForeign = PeekNextUniqueID(); // As the design tells it: the library was not read yet.
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
    LeaveOutWhatWasDeleted(firstForeign);
    GiveForeignObjectsTheirVersions();
    // What was read for these versions already need not be read again.
    if (IsRecovered() || VersionsOf(GetSetups()) != versionsRead)
      ReadAllDefinitionBlocks();
    ApplyNames();
    NameForeignObjects();
    ApplyNewTexts();
    EnterVariationsOfLibrary();
    result = DesignFileRead(block);
    SettleImportsOfLibrary(firstForeign);
    // Behind the variations, whose texts and versions they tell.
    if (!ReadResultStores(block) && result == io::kNoError)
      result = io::kBadContent;
    // Names of output variables were held against quantities before the stores were known.
    for (QuantityExtractor * const extractor : GetQuantityExtractors(true))
      extractor->ForgetMadeCatalogue();
    if (m_newText && !m_isReadOnly)
      RenameInStores(*this, m_newText);
  }
  m_savedDesign = nullptr;
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

io::ReadError ProductSolutionManager::DesignFileRead(io::CBlock const & block) {
  if (AreOldReportStructuresSupported())
    return BaseSolutionManager::DesignFileRead(block);
  io::CBlock rest(block.Name());
  for (auto const & item : block)
    if (item->IsBlock() && AString::MatchNoCase(item->Name(), kOutputVariableBlockName))
      m_outputVariables = std::make_shared<io::CBlock>(static_cast<io::CBlock const &>(*item));
    else
      rest << item;
  return BaseSolutionManager::DesignFileRead(rest);
}

bool ProductSolutionManager::DesignFileWrite(io::CBlock & block) {
  if (m_outputVariables)
    block << *m_outputVariables;
  return BaseSolutionManager::DesignFileWrite(block);
}

bool ProductSolutionManager::AllFilesWrite(io::CBlock & block) {
  m_writesReports = true;
  bool const isWritten = WriteWithResultStores(block);
  m_writesReports = false;
  return isWritten;
}

bool ProductSolutionManager::DefinitionFileWrite(io::CBlock & block) { return WriteWithResultStores(block); }

bool ProductSolutionManager::WriteWithResultStores(io::CBlock & block) {
  bool const isWritten = DesignFileWrite(block);
  return ResultStores(*this).Write(block) && isWritten;
}

bool ProductSolutionManager::ReadResultStores(io::CBlock const & block) {
  ResultStores const stores(*this);
  bool isRead = true;
  if (m_savedDesign) {
    isRead = stores.ReadSaved(*m_savedDesign, block);
    m_savedStores = stores.Fingerprint();
    stores.KeepCommittedViews();
  }
  isRead = stores.Read(block) && isRead;
  if (!m_savedDesign)
    m_savedStores = stores.Fingerprint();
  io::CBlock now;
  isRead = stores.Write(now) && isRead;
  auto const count = [](io::CBlock const & design) {
    return static_cast<int>(ResultStores::LocationsIn(design).size());
  };
  m_lostResultFiles = std::max(0, count(block) - count(now));
  return isRead;
}

void ProductSolutionManager::LeaveOutResultFiles(std::vector<AString> const & paths) {
  ResultStores(*this).LeaveOut(std::set<AString>(paths.begin(), paths.end()));
  ForgetCatalogues();
}

bool ProductSolutionManager::HaveResultFiles() const { return m_savedStores != 0 || ResultStores(*this).HaveData(); }

// Empty stores would ask for numbers all the same.
void ProductSolutionManager::CommitResultStores() {
  if (HaveResultFiles())
    ResultStores(*this).Commit();
}

void ProductSolutionManager::DiscardResultStores() { ResultStores(*this).Discard(); }

bool ProductSolutionManager::HaveUnsavedResultFiles() const {
  return ResultStores(*this).Fingerprint() != m_savedStores;
}

void ProductSolutionManager::NoteResultStoresAsSaved() { m_savedStores = ResultStores(*this).Fingerprint(); }

void ProductSolutionManager::SetRecoveredVersionIDs() {
  BaseSolutionManager::SetRecoveredVersionIDs();
  ApplyNames();
}

std::vector<RecoveryReport::Dropped> ProductSolutionManager::DroppedForGood() const {
  std::vector<RecoveryReport::Dropped> dropped = GetRecoveryReport().dropped;
  std::erase_if(dropped, [this](RecoveryReport::Dropped const & block) {
    bool isThere = false;
    GetSolutionFileManager().GetInternalBlockName(isThere, block.realName);
    return isThere || block.reason == RecoveryReport::Reason::kNameGone;
  });
  return dropped;
}

AString ProductSolutionManager::GetResultFilesFolder(bool create) const {
  AString const folder = GetProjectResultsDir() + GetDesignResultsFolderName() + L"/";
  if (create)
    LFN_CreateDirectoryAndParents(LongFileName(folder)); // Whoever writes there tells what is wrong.
  return folder;
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

std::vector<BaseSimulationSetup *> ProductSolutionManager::ForeignSetups() const {
  std::vector<BaseSimulationSetup *> setups;
  for (long const id : IdsNotIn(GetSetups(), m_setupsBeingRead))
    setups.push_back(FindIn(GetSetups(), id));
  return setups;
}

std::vector<BaseSolution *> ProductSolutionManager::ForeignSolutions() const {
  std::vector<BaseSolution *> solutions;
  for (SetupOfDesign const & known : m_setupsBeingRead)
    if (BaseSimulationSetup * const setup = FindIn(GetSetups(), known.id))
      for (long const id : IdsNotIn(setup->GetSolutions(), known.solutions))
        solutions.push_back(FindIn(setup->GetSolutions(), id));
  return solutions;
}

// Nobody can tell which version of them was current; the newest one is the best guess, and all are there.
void ProductSolutionManager::GiveForeignObjectsTheirVersions() {
  auto const setups = ForeignSetups();
  auto solutions = ForeignSolutions();
  for (BaseSimulationSetup * const setup : setups)
    for (auto const & [id, solution] : setup->GetSolutions())
      solutions.push_back(solution);
  if (setups.empty() && solutions.empty())
    return;
  std::map<std::pair<long, long>, long> newest;
  ForEachKey(GetSolutionFileManager(), [&](SolutionVariationKey const & key) {
    long & version = newest[{key.GetSimSetupKey(), std::max<long>(key.GetSolutionKey(), id::invalidID)}];
    version = std::max(version, key.GetVersionIDKey());
  });
  for (BaseSimulationSetup * const setup : setups)
    setup->SetState(newest[{setup->GetID(), id::invalidID}], false);
  for (BaseSolution * const solution : solutions)
    solution->RecoverVersionConsistency(newest[{solution->GetBaseSimulationSetup().GetID(), solution->GetID()}]);
}

void ProductSolutionManager::NameForeignObjects() {
  std::set<AString, AString::NoCaseLess> taken;
  for (SetupOfDesign const & known : m_setupsBeingRead)
    taken.insert(known.name);
  for (BaseSimulationSetup * const setup : ForeignSetups()) {
    AString const stored =
        setup->GetName().empty() ? AString::Format(L"Setup%d", setup->GetID()) : AString(setup->GetName());
    AString name = stored;
    for (int number = 2; !taken.insert(name).second; ++number)
      name = stored + AString::Format(L"_%d", number);
    setup->SetName(name);
    m_foreignObjects.push_back(AString(L"the setup '") + name + L"'");
  }
  for (BaseSolution * const solution : ForeignSolutions()) {
    if (solution->GetSolutionName().empty())
      solution->SetSolutionName(AString::Format(L"Solution%d", solution->GetID()));
    m_foreignObjects.push_back(AString(L"the solution '") + solution->GetGlobalSolutionName() + L"'");
  }
}

// The setups and solutions that the library holds solved data of.
std::set<long> ProductSolutionManager::OwnersOfData() const {
  std::set<long> owners;
  ForEachDataKey(GetSolutionFileManager(), [&](SolutionVariationKey const & key) {
    owners.insert({key.GetSimSetupKey(), key.GetSolutionKey()});
  });
  return owners;
}

void ProductSolutionManager::LeaveOutWhatWasDeleted(long firstForeign) {
  auto const isAnyUnknown = [this] { return !ForeignSetups().empty() || !ForeignSolutions().empty(); };
  std::set<long> const owners = isAnyUnknown() ? OwnersOfData() : std::set<long>();
  // Who reads shows the saved design and nothing beside it.  What no design knows and nothing was solved of is what a
  // command left that died before it was safe.
  auto const isLeftOut = [&](long id) {
    return m_isReadOnly || (!m_keepsAll && (id < firstForeign || !owners.contains(id)));
  };
  for (long const id : IdsNotIn(GetSetups(), m_setupsBeingRead))
    if (isLeftOut(id)) {
      m_deletions.emplace_back(id, id::invalidID);
      DeleteSimulationSetup(id, nullptr);
    }
  for (SetupOfDesign const & known : m_setupsBeingRead) {
    BaseSimulationSetup * const setup = FindIn(GetSetups(), known.id);
    for (long const id : setup ? IdsNotIn(setup->GetSolutions(), known.solutions) : std::vector<long>())
      if (isLeftOut(id)) {
        m_deletions.emplace_back(known.id, id);
        setup->DeleteSolution(id, nullptr);
      }
  }
}

bool ProductSolutionManager::CarryOutDeletions() {
  auto & files = GetSolutionFileManager();
  while (!m_deletions.empty()) {
    auto const [setupID, solutionID] = m_deletions.back();
    if (files.DeleteBlocks(SolutionVariationKey(setupID, L"NotSet", solutionID, id::invalidID)) !=
        CStreamioLibrary::kLibSuccess)
      return false;
    m_deletions.pop_back();
  }
  if (!m_strayImports.empty() && files.DeleteBlocks(m_strayImports) != CStreamioLibrary::kLibSuccess)
    return false;
  m_strayImports.clear();
  return true;
}

// As with what is solved: what the design lacks was deleted by it, or was never known to this state of it.
void ProductSolutionManager::SettleImportsOfLibrary(long firstForeign) {
  if (m_isReadOnly)
    return;
  GetSolutionFileManager().LoadRealToInternalBlockNameMap();
  std::vector<long> foreign;
  for (auto const & [name, entry] : GetSolutionFileManager().GetEntries()) {
    auto const id = ImportedSolution::SetupOfBlock(name);
    if (!id || FindIn(GetImportedSetups(), *id))
      continue;
    if (m_keepsAll || *id >= firstForeign)
      foreign.push_back(*id);
    else
      m_strayImports.insert(name);
  }
  for (long const id : foreign)
    BringBackImport(id);
}

void ProductSolutionManager::BringBackImport(long setupID) {
  ReserveUniqueID(setupID); // Not to be given again.
  auto * const setup = new ImportedSetup(*this, setupID);
  if (BaseSolution * const made = setup->CreateSolution(ImportedSolution::kName))
    setup->AddSolution(made, nullptr);
  ImportedSolution * const solution = setup->GetImportedSolution();
  if (!solution) {
    delete setup; // A product that imports nothing leaves the block alone.
    return;
  }
  AString const told = solution->ReadOrigin();
  AString const stored = told.empty() ? AString::Format(L"Imported%ld", setupID) : told;
  AString name = stored;
  for (int number = 2; GetISimulationSetup(name, false, true); ++number)
    name = stored + AString::Format(L"_%d", number);
  setup->SetName(name);
  AddImportData(solution, nullptr);
  m_foreignObjects.push_back(AString(L"the imported setup '") + name + L"'");
}

// Data that has its new text already stays with it.
void ProductSolutionManager::ApplyNewTexts() {
  if (!m_newText || m_isReadOnly)
    return;
  std::set<AString> texts;
  ForEachDataKey(GetSolutionFileManager(),
                 [&](SolutionVariationKey const & key) { texts.insert(key.GetDesignVariationKey()); });
  for (AString const & text : texts)
    if (AString const other = m_newText(text); other != text && !texts.contains(other))
      GetSolutionFileManager().VariationKeyChanged(text, other);
  // What lists of variations told before.
  for (auto const & [id, setup] : GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      std::set<AString> former;
      for (auto const & [index, variation] : solution->GetVariations())
        if (AString const text = variation->GetDesignVariationKey();
            m_newText(text) != text && !solution->HasSolutionData(text, variation->GetVersionID()))
          former.insert(text);
      for (AString const & text : former)
        solution->DeleteSolutionVariation(text, nullptr);
    }
}

void ProductSolutionManager::EnterVariationsOfLibrary() {
  ForEachDataKey(GetSolutionFileManager(), [this](SolutionVariationKey const & key) {
    BaseSimulationSetup const * const setup = FindIn(GetSetups(), key.GetSimSetupKey());
    if (BaseSolution * const solution = setup ? FindIn(setup->GetSolutions(), key.GetSolutionKey()) : nullptr)
      solution->EnsureVariation(key.GetDesignVariationKey(), key.GetVersionIDKey());
  });
}

} // namespace desktop
