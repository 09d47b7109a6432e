// Construction, file names, IDs, invalidation and destruction of the manager.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/desktop/IProductInfo.h"
#include "CoreInterfaces/desktop/IProject.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "plotkit/OutputVariable.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/SolutionInstanceManager.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/VariationIdTable.h"
#include "solutionmanager/recovery/RecoveryReport.h"
#include "solutionmanager/undo/Graveyard.h"
#include "solutionmanager/undo/PreserveState.h"

namespace {

constexpr int kFullPrecision = 16;
constexpr auto kOrdinaryMode = static_cast<CStreamioLibWritePrivate::TMode>(0);

} // namespace

BaseSolutionManager::BaseSolutionManager(IDesign * design)
    : KelvroIDServer(id::initialID, false, nullptr), m_SolutionFileManager(design->GetIProject()), m_Design(design) {
  BuildMembers();
  m_ManagedFilesMgr = new CManagedFilesMgr(LongFileName(GetProjectResultsDir()), design);
}

BaseSolutionManager::BaseSolutionManager(LongFileName const & file)
    : KelvroIDServer(id::initialID, false, nullptr), m_SolutionFileManager(file), m_Design(nullptr) {
  BuildMembers();
  // A file that can't be read gives an empty manager; there is nobody to tell.
  BuildUtilityCollections();
}

void BaseSolutionManager::BuildMembers() {
  m_VariationIdTable = std::make_unique<VariationIdTable>();
  m_DisplacedSetups = undo::GraveyardOf(&m_DeletedSimSetupMap);
  m_DisplacedImportedSetups = undo::GraveyardOf(&m_DeletedImportedSimSetupMap);
  m_RecoveryReport = std::make_unique<RecoveryReport>();
  m_VariationIDJournal = std::make_shared<io::BlockJournal>([this](io::CBlock & block) {
    for (auto const & entry : m_VariationIDMap)
      WriteVariationIDBlockFunc(block, entry);
  });
  m_SolutionInstanceManager = new SolutionInstanceManager(this);
  m_SolutionFileManager.SetPrecision(kFullPrecision);
}

BaseSolutionManager::~BaseSolutionManager() {
  delete m_SolutionInstanceManager;
  m_SolutionInstanceManager = nullptr;
  if (m_DestroyResultsOnDelete)
    DeleteSimValueCacheFile();
  for (auto * map : {&m_SimSetupMap, &m_DeletedSimSetupMap}) {
    for (auto const & [id, setup] : *map)
      delete setup;
    map->clear();
  }
  // A record that outlives the manager finds nothing there.
  for (BaseSimulationSetup * const setup : m_DisplacedSetups->TakeAll())
    delete setup;
  m_DisplacedImportedSetups->TakeAll();
  // Setup types may share a definition; each is freed once.
  std::set<SetupConvDef const *> definitions(m_ReplacedConvDefs.begin(), m_ReplacedConvDefs.end());
  for (auto const & [type, definition] : m_ConvDefMap)
    definitions.insert(definition);
  SetupConvDef::DeleteWithEntries(definitions);
  m_ConvDefMap.clear();
  CollectCannedOutputVariables();
  // clang-format off
  KVRO_ASSERT(mCannedOutputVariables.size()==0);
  // clang-format on
  DeleteOutputVariables();
  delete m_ManagedFilesMgr;
  m_ManagedFilesMgr = nullptr;
  m_SolutionFileManager.SendUnsent();
  m_VariationIDJournal->Close();
}

void BaseSolutionManager::DeleteOutputVariables() {
  // The map owns the variables, and nobody could free them after it.  Canned ones that were not collected have no other
  // owner either; what refers to them finds them gone.
  for (OutputVariableMap * const map : {&mCannedOutputVariables, &m_OutputVariableMap}) {
    for (auto const & [name, variable] : *map)
      delete variable;
    map->clear();
  }
}

void BaseSolutionManager::InitializeFromDesign(bool createDir) {
  if (!m_Design)
    return;
  if (createDir)
    CreateProjectResultsDir();
  ReSyncSolutionFileName(false);
  // A private file that a crash left stays untouched until the design was read.
  if (!CanRecoverSolutions())
    m_SolutionFileManager.SetLibPath(GetQsolPath(), kOrdinaryMode);
  SetupConvDefs();
}

void BaseSolutionManager::ReSyncSolutionFileName(bool forSaving) {
  if (!m_Design)
    return;
  if (IProductInfo const * const product = m_Design->GetProductInfo())
    m_ProductName = product->GetProductName();
  m_CircuitName = m_Design->GetName();
  AString const path = LongFileName(GetQsolPath()).FilePath();
  if (forSaving)
    m_SolutionFileManager.ChangeLibPathForSaving(path);
  else
    m_SolutionFileManager.SetLibPath(path, kOrdinaryMode);
}

AString BaseSolutionManager::GetProjectResultsDir() const {
  if (!m_Design)
    return AString();
  IProject const * const pjt = m_Design->GetIProject();
  KVRO_ASSERT(pjt != 0);
  if (!pjt)
    return AString();
  LongFileName folder;
  pjt->GetResultsFolder(folder, true);
  return folder.FilePath();
}

void BaseSolutionManager::CreateProjectResultsDir() {
  IProject * const project = m_Design ? m_Design->GetIProject() : nullptr;
  if (!project)
    return;
  LongFileName folder;
  project->GetResultsFolder(folder, true);
  if (!folder.Exists())
    project->CreateResultsFolder(folder);
}

AString BaseSolutionManager::GetFileExt() const { return L".qsol"; }

AString BaseSolutionManager::GetQsolPath() const {
  if (!m_Design)
    return AString();
  auto const libraryExists = [](AString const & path) {
    return LFN_Exists(LongFileName(path)) || LFN_Exists(LongFileName(path + L"_priv"));
  };
  AString const folder = GetProjectResultsDir();
  AString const path = folder + m_Design->GetName() + GetFileExt();
  if (libraryExists(path) || !m_Design->GetIProject())
    return path;
  AString const olderPath = folder + m_Design->GetIProject()->GetName() + L"_" + m_Design->GetName() + GetFileExt();
  return libraryExists(olderPath) ? olderPath : path;
}

bool BaseSolutionManager::GetSimValueCacheFullFileName(AString & name) const {
  if (!m_Design || m_Design->GetDesignID() == id::invalidID)
    return false;
  name = GetProjectResultsDir() + AString::Format(L"Design_%d.svcache", m_Design->GetDesignID());
  return true;
}

void BaseSolutionManager::DeleteSimValueCacheFile() {
  AString name;
  if (GetSimValueCacheFullFileName(name) && LFN_Exists(LongFileName(name)))
    LFN_DeleteFile(LongFileName(name));
}

AString BaseSolutionManager::GetDesignResultsFolderName() const {
  KVRO_ASSERT(!ACHAR("Please implement GetDesignResultsFolderName"));
  return AString();
}

bool BaseSolutionManager::AreOldReportStructuresSupported() const {
  IKitDesktop const * const desktop = GetIKitDesktop();
  if (!desktop || !desktop->IsReportRewriteEnabled())
    return true;
  return m_Design && m_Design->GetReportUpdateService();
}

IDesign * BaseSolutionManager::GetIDesign() const { return m_Design; }

AString BaseSolutionManager::GetDesignName() const { return m_Design ? m_Design->GetName() : AString(); }

AString BaseSolutionManager::GetProjectName() const {
  IProject const * const project = m_Design ? m_Design->GetIProject() : nullptr;
  return project ? project->GetName() : AString();
}

ISimValueManager * BaseSolutionManager::GetISimValueManager() const {
  ISimValueManagerHost * const host = m_Design ? m_Design->GetSimValueManagerHost() : nullptr;
  return host ? host->GetISimValueManager() : nullptr;
}

long BaseSolutionManager::GetDesignIDAssociatedWithDesignInstance(long instanceID) const {
  std::vector<IDesignInstance *> instances;
  if (m_Design)
    m_Design->GetDesignInstances(instances);
  for (IDesignInstance const * const instance : instances)
    if (instance->GetID() == instanceID)
      return m_Design->GetDesignID();
  return id::invalidID;
}

long BaseSolutionManager::FetchNextUniqueID() {
  long const fetched = KelvroIDServer::FetchNextUniqueID();
  if (IsQsolLibraryInitialized())
    WriteDefinitionBlock();
  return fetched;
}

long BaseSolutionManager::FetchNextUniqueIDNoWrite() { return KelvroIDServer::FetchNextUniqueID(); }

bool BaseSolutionManager::IsQsolLibraryInitialized() const { return m_SolutionFileManager.IsLibraryInitialized(); }

void BaseSolutionManager::SetState(long const & version, bool) { m_VersionID = version; }

void BaseSolutionManager::GetState(long & version) const { version = m_VersionID; }

bool BaseSolutionManager::ReloadSolutionDataOnUndo() const { return false; }

void BaseSolutionManager::Invalidate(KelvroCommand * command, int flags) {
  if (flags == 0)
    return;
  long const newVersion = FetchNextUniqueID();
  if (flags & kInvalidateManager)
    PreserveState(*this, newVersion, command, m_VersionID);
  for (auto const & [id, setup] : m_SimSetupMap)
    setup->Invalidate(command, newVersion, flags);
  if (!m_SimSetupMap.empty())
    return;
  IDesign * const design = m_Design;
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionsChanged();
}

void BaseSolutionManager::NonUndoableInvalidateAll() {
  for (auto const & [id, setup] : m_SimSetupMap)
    setup->NonUndoableInvalidateAll();
  for (auto const & [id, setup] : m_DeletedSimSetupMap)
    setup->NonUndoableInvalidateAll();
  m_DisplacedSetups->ForEach([](BaseSimulationSetup * setup) { setup->NonUndoableInvalidateAll(); });
}

bool BaseSolutionManager::LoadCurrentDesignSolutionData() {
  bool any = false;
  for (auto const & [id, setup] : m_SimSetupMap)
    any = setup->LoadCurrentDesignSolutionData() || any;
  return any;
}

void BaseSolutionManager::SetupConvDefs() {}

void BaseSolutionManager::AddSetupConvDef(SetupConvDef const * definition) {
  KVRO_ASSERT(definition);
  if (!definition)
    return;
  SetupConvDef const *& entry = m_ConvDefMap[definition->GetName()];
  if (entry) {
    KVRO_ASSERT(!"Duplicate problem conv def");
    if (entry != definition)
      m_ReplacedConvDefs.push_back(entry);
  }
  entry = definition;
}

SetupConvDef const * BaseSolutionManager::GetConvDefsForSetup(AString const & setupType) const {
  auto const at = m_ConvDefMap.find(setupType);
  return at == m_ConvDefMap.end() ? nullptr : at->second;
}

IManagedFileService * BaseSolutionManager::GetIManagedFileService() const { return m_ManagedFilesMgr; }

bool BaseSolutionManager::CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension) {
  return m_ManagedFilesMgr && m_ManagedFilesMgr->CreateManagedFile(fileName, baseDir, extension);
}

bool BaseSolutionManager::DeleteManagedFile(AString const & baseDir, AString const & fileName) {
  return m_ManagedFilesMgr && m_ManagedFilesMgr->DeleteManagedFile(baseDir, fileName);
}

LongFileName BaseSolutionManager::GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) {
  return m_ManagedFilesMgr ? m_ManagedFilesMgr->GetFullPathForManagedFile(baseDir, fileName) : LongFileName();
}

void BaseSolutionManager::CommitManagedData() {
  if (m_ManagedFilesMgr)
    m_ManagedFilesMgr->Commit(LongFileName(GetProjectResultsDir()));
}
