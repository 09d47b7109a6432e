#include "desktop/project/SourceCopies.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "desktop/Error.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ISelfContainedSource.h"
#include "desktop/product/SourceDescription.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourcePlace.h"

#include <algorithm>

namespace desktop {

namespace {

bool IsAsRead(LongFileName const & place, SourceFile const & file) {
  try {
    SourceFile const now = SourceFile::Read(place, LongFileName());
    return now.size == file.size && now.checksum == file.checksum;
  } catch (Error const &) {
    return false; // One that is gone or can't be read.
  }
}

} // namespace

SourceCopies::SourceCopies(Session & session, LongFileName const & folder)
    : m_session(session), m_folder(LFN_AbsolutePath(folder)) {
  m_folder.MakeItDirectory();
  if (CopyAll() && AreReadAlike())
    return;
  TakeBack();
}

void SourceCopies::TakeBack() {
  for (LongFileName const & file : m_written) {
    LFN_DeleteFile(file);
    // Folders that were made for it; one that holds anything stays.
    for (AString below = file.DirPath(); below.size() > m_folder.FilePath().size();
         below = below.substr(0, below.View().rfind(L'/', below.size() - 2) + 1))
      static_cast<void>(file::FileSystem().RemoveFolder(LongFileName(below)));
  }
  m_copies.clear();
}

bool SourceCopies::GiveUp(AString const & why) {
  m_whyNot = why;
  return false;
}

bool SourceCopies::CopyAll() {
  if (!dynamic_cast<ISelfContainedSource const *>(&m_session.GetProduct()))
    return GiveUp(AString(L"sources of the product ") + m_session.GetProduct().GetName() +
                  L" may need what lies beside them");
  SourceFiles const & files = m_session.GetProject().GetSourceFiles();
  return !files.empty() &&
         std::all_of(files.begin(), files.end(), [this](SourceFile const & file) { return CopyFile(file); });
}

bool SourceCopies::CopyFile(SourceFile const & file) {
  Project const & project = m_session.GetProject();
  LongFileName const first = project.GetSourceFile();
  LongFileName const original = PlaceOf(file, project.GetFolder());
  AString place;
  if (!LFN_RelativeTo(LongFileName(first.DirPath()), original, place))
    return GiveUp(original.FilePath() + L" doesn't lie in the folder of " + first.NameAndExtension() + L" or below");
  LongFileName const copy = m_folder + place;
  if (IsWritten(copy)) { // One that is read twice.
    m_copies.push_back(SourceFile::Read(copy, m_folder));
    return true;
  }
  if (LFN_Exists(copy) || place.StartsWith(project.GetFile().NameAndExtension()))
    return GiveUp(original.FilePath() + L" has the name of a file of the project");
  if (!IsAsRead(original, file))
    return GiveUp(original.FilePath() + L" is not there as the project read it");
  bool const isCopied =
      LFN_CreateDirectoryAndParents(LongFileName(copy.DirPath())) && LFN_Copy(original, copy, kFailIfExists);
  if (!isCopied)
    throw Error(ErrorKind::kStorage, copy.FilePath() + L": the source can't be copied from " + original.FilePath() +
                                         L" (" + LFN_LastError() + L"); make room or get permission, and try again");
  m_written.push_back(copy);
  m_copies.push_back(SourceFile::Read(copy, m_folder));
  return IsAsRead(copy, file) || GiveUp(original.FilePath() + L" was changed while it was copied");
}

bool SourceCopies::IsWritten(LongFileName const & copy) const {
  return std::any_of(m_written.begin(), m_written.end(),
                     [&copy](LongFileName const & file) { return file.FilePath() == copy.FilePath(); });
}

// A line may name a file by its full path.
bool SourceCopies::AreReadAlike() {
  SourceDescription description;
  AString error;
  if (!m_session.GetProduct().ReadSource(m_written.front(), description, error))
    return GiveUp(L"a copy of it can't be read as it was");
  SourceFiles read;
  for (AString const & file : description.files)
    read.push_back(SourceFile::Read(file, m_folder));
  return read.empty() || read == m_copies || GiveUp(L"it names files by their full paths");
}

} // namespace desktop
