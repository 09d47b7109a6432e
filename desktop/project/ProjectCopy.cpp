#include "desktop/project/ProjectCopy.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "viewkit/library/LibraryReader.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>
#include <vector>

namespace desktop {

namespace {

AString MakeTemporaryFolder() {
  std::error_code noFolder;
  std::string folder = (std::filesystem::temp_directory_path(noFolder) / "solvedesk-XXXXXX").string();
  if (noFolder || !::mkdtemp(folder.data()))
    throw Error(ErrorKind::kStorage, L"there is no folder for temporary files that can be written; set TMPDIR to one");
  return text::FromUtf8(folder) + L"/";
}

void RefuseInUse(LongFileName const & file) {
  using library::LibraryReader;
  AString const path = file.FilePath();
  bool const isInUse =
      path.EndsWith(L".qsol") && LibraryReader::StateOfPrivateFile(file) == LibraryReader::PrivateFile::InUse;
  if (isInUse)
    throw Error(ErrorKind::kLocked, path + L": another process writes the project's library; wait until it is done");
}

constexpr int kAttempts = 25;
constexpr std::chrono::milliseconds kPause(20);

bool IsOfLibrary(AString const & name) {
  for (wchar_t const * const end : {L".qsol", L".qsol_priv", L".qsol_saved", L".qsol_kept"})
    if (name.EndsWith(end))
      return true;
  return false;
}

/// What changes with each save: the project file, and how far the library is committed.  Nothing while a save is under
/// way.
using Moment = std::optional<std::pair<std::string, std::vector<std::uint64_t>>>;

Moment MomentOf(Project const & project) {
  if (LFN_Exists(project.GetSaveNote()))
    return {};
  std::vector<std::uint64_t> commits;
  std::vector<AString> names;
  static_cast<void>(file::FileSystem().List(project.GetResultsFolder(), names));
  for (AString const & name : names)
    if (library::LibraryReader::CommitFacts facts;
        name.EndsWith(L".qsol") && library::LibraryReader::FactsOfLastCommit(project.GetResultsFolder() + name,
                                                                             facts) == CStreamioLibrary::kLibSuccess)
      commits.insert(commits.end(), {facts.commits, facts.end, facts.length});
  return std::pair(ReadProjectBytes(project.GetFile()), std::move(commits));
}

} // namespace

ProjectCopy::ProjectCopy(Project const & project, Of what)
    : m_original(project.GetFolder()), m_folder(MakeTemporaryFolder()),
      m_fileName(project.GetFile().NameAndExtension()) {
  try {
    what == Of::kAll ? CopyFiles(project) : CopyBesideWriter(project);
  } catch (...) {
    LFN_Delete(m_folder);
    throw;
  }
}

ProjectCopy::~ProjectCopy() { LFN_Delete(m_folder); }

AString ProjectCopy::Path() const { return (m_folder + m_fileName).FilePath(); }

void ProjectCopy::CopyFiles(Project const & project) {
  for (LongFileName const & file : {project.GetFile(), project.GetAutosaveFile(), project.GetSaveNote()})
    if (LFN_Exists(file))
      Copy(file, m_folder + file.NameAndExtension());
  LongFileName const results = project.GetResultsFolder();
  std::vector<AString> names;
  static_cast<void>(file::FileSystem().List(results, names)); // No folder: no library.
  LongFileName const copied = m_folder + (results.NameAndExtension() + L"/");
  if (!LFN_CreateDirectory(copied))
    throw Error(ErrorKind::kStorage, copied.FilePath() + L": can't be made (" + LFN_LastError() + L"); make room");
  for (AString const & name : names) {
    RefuseInUse(results + name);
    Copy(results + name, copied + name);
  }
}

// What a process writes meanwhile is behind what is copied, but for a save, which changes all files.
void ProjectCopy::CopyBesideWriter(Project const & project) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (attempt > 0)
      std::this_thread::sleep_for(kPause);
    if (CopyStateAndLibrary(project))
      return;
  }
  throw Error(ErrorKind::kLocked, project.GetFile().FilePath() +
                                      L": another process saves the project all the time; wait until it is done");
}

bool ProjectCopy::CopyStateAndLibrary(Project const & project) {
  auto const moment = MomentOf(project);
  if (!moment)
    return false;
  LongFileName const results = project.GetResultsFolder();
  LongFileName const copied = m_folder + (results.NameAndExtension() + L"/");
  LFN_Delete(copied);
  bool isCopied = LFN_CreateDirectory(copied);
  std::vector<std::pair<LongFileName, LongFileName>> files;
  for (LongFileName const & file : {project.GetFile(), project.GetAutosaveFile()})
    files.emplace_back(file, m_folder + file.NameAndExtension());
  std::vector<AString> names;
  static_cast<void>(file::FileSystem().List(results, names));
  for (AString const & name : names)
    if (IsOfLibrary(name))
      files.emplace_back(results + name, copied + name);
  for (auto const & [from, to] : files) {
    LFN_Delete(to);
    isCopied = isCopied && (!LFN_Exists(from) || LFN_Copy(from, to, kFailIfExists));
  }
  AString const problem = isCopied ? AString() : LFN_LastError();
  bool const isOfOneMoment = MomentOf(project) == moment;
  // Else a file went with a save.
  if (!isCopied && isOfOneMoment)
    throw Error(ErrorKind::kStorage, project.GetFile().FilePath() + L": can't be copied to " + m_folder.FilePath() +
                                         L" (" + problem + L"); make room there, or set TMPDIR to another folder");
  return isCopied && isOfOneMoment;
}

void ProjectCopy::Copy(LongFileName const & from, LongFileName const & to) const {
  bool const isCopied = LFN_Copy(from, to, kFailIfExists);
  std::error_code ignored; // What can't be written then tells so.  The copy of a file that nobody may write is our own.
  std::filesystem::permissions(text::ToUtf8(to.FilePath()),
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::add, ignored);
  if (!isCopied)
    throw Error(ErrorKind::kStorage, from.FilePath() + L": can't be copied to " + m_folder.FilePath() + L" (" +
                                         LFN_LastError() + L"); make room there, or set TMPDIR to another folder");
}

AString ProjectCopy::ToldOfProject(AString const & text) const {
  std::wstring told(text.View());
  std::wstring_view const mine = m_folder.FilePath().View();
  std::wstring_view const own = m_original.FilePath().View();
  for (std::size_t at = 0; (at = told.find(mine, at)) != std::wstring::npos; at += own.size())
    told.replace(at, mine.size(), own);
  return AString(told);
}

} // namespace desktop
