// Making a project: the source is read first, then everything is written, the project file last.
#include "basekit/file/FileOperations.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/NewFile.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

namespace desktop {

namespace {

constexpr long kDesignID = 1;

IDesktopProduct const & FindProduct(AString const & name) {
  if (IDesktopProduct const * const product = ProductRegistry::Instance().Find(name))
    return *product;
  AString known;
  for (AString const & other : ProductRegistry::Instance().Names())
    known += (known.empty() ? AString() : AString(L", ")) + other;
  throw Error(ErrorKind::kUsage,
              name + L": there is no such product; this program has: " + (known.empty() ? AString(L"none") : known));
}

// The longest names of files that come beside those of a name, also of ones set aside, must fit a folder's entry.
void RefuseLongName(LongFileName const & file, AString const & longestCompanion) {
  constexpr std::size_t kMostBytes = 255;
  std::size_t const size = text::ToUtf8(longestCompanion).size();
  if (size > kMostBytes)
    throw Error(ErrorKind::kUsage,
                file.FilePath() + AString::Format(L": name too long by %d bytes, as the files beside it have longer "
                                                  L"names; choose a shorter one",
                                                  static_cast<int>(size - kMostBytes)));
}

// Files that a project left would be taken for the new one's.
void RefuseWhatIsThere(Project const & project) {
  if (LFN_Exists(project.GetFile()))
    throw Error(ErrorKind::kProject,
                project.GetFile().FilePath() + L": there is a project of this name already; choose another name");
  for (LongFileName const & file : {project.GetResultsFolder(), project.GetAutosaveFile(), project.GetSaveNote()})
    if (LFN_Exists(file))
      throw Error(ErrorKind::kProject, file.FilePath() + L": this is left of an earlier project of the same name; "
                                                         L"remove it or choose another name");
}

} // namespace

std::unique_ptr<Session> Session::Create(AString const & projectPath, AString const & sourceFile,
                                         AString const & productName) {
  std::unique_ptr<Session> session(new Session(Access::kWrite));
  session->m_product = &FindProduct(productName);
  session->m_project = std::make_unique<Project>(projectPath);
  LongFileName const & file = session->m_project->GetFile();
  RefuseLongName(file, file.NameAndExtension() + L".auto.set-aside-1000");
  RefuseLongName(sourceFile, LongFileName(sourceFile).Name() + L".qsol_priv.set-aside-1000");
  RefuseWhatIsThere(*session->m_project);
  SourceDescription description;
  session->ReadSource(sourceFile, description);
  session->m_lock = std::make_unique<ProjectLock>(session->m_project->GetLockFile());
  RefuseWhatIsThere(*session->m_project); // Now nobody else can make it.
  try {
    session->MakeProject(LongFileName(sourceFile).Name(), description);
  } catch (...) {
    session->RemoveWhatWasMade();
    throw;
  }
  return session;
}

void Session::ReadSource(AString const & sourceFile, SourceDescription & description) {
  AString error;
  if (!m_product->ReadSource(LongFileName(sourceFile), description, error))
    throw Error(ErrorKind::kSource, error);
  SourceFiles files;
  if (description.files.empty())
    description.files.push_back(sourceFile);
  for (AString const & file : description.files)
    files.push_back(SourceFile::Read(file, m_project->GetFolder()));
  m_project->SetSourceFiles(files);
  m_notices = description.notes;
}

void Session::MakeProject(AString const & designName, SourceDescription const & description) {
  m_design = std::make_unique<Design>(*m_project, designName, kDesignID, m_product->GetName());
  for (SourceVariable const & variable : description.variables)
    m_design->AddVariable(variable.name, variable.value);
  m_manager = m_product->MakeManager(m_design.get());
  m_project->SetUnsavedChangesQuestion([this] { return HasUnsavedChanges(); });
  if (!m_project->CreateResultsFolder(m_project->GetResultsFolder()))
    RefuseStorage(LFN_LastError());
  m_manager->InitializeFromDesign(true);
  SourceBase base = SourceBase::Of(description, m_project->GetSourceFiles());
  for (SourceBase::Setup & setup : base.setups) {
    BaseSimulationSetup const * const made = m_product->CreateSetup(*m_manager, setup.said, nullptr);
    if (!made)
      throw Error(ErrorKind::kSource, m_project->GetSourceFile().FilePath() + L": the setup '" + setup.said.name +
                                          L"' can't be made from it; check what the source says of this setup");
    setup.id = made->GetID();
  }
  m_project->SetSourceBase(base);
  Save();
}

void Session::RemoveWhatWasMade() {
  m_manager.reset(); // Closes the library's files.
  LFN_Delete(m_project->GetResultsFolder());
  for (LongFileName const & file : {m_project->GetFile(), m_project->GetAutosaveFile()})
    if (LFN_Exists(file))
      LFN_DeleteFile(file);
}

} // namespace desktop
