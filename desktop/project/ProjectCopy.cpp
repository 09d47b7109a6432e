#include "desktop/project/ProjectCopy.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"
#include "desktop/project/Project.h"
#include "viewkit/library/LibraryReader.h"

#include <cstdlib>
#include <filesystem>

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

} // namespace

ProjectCopy::ProjectCopy(Project const & project)
    : m_original(project.GetFolder()), m_folder(MakeTemporaryFolder()),
      m_fileName(project.GetFile().NameAndExtension()) {
  try {
    CopyFiles(project);
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
