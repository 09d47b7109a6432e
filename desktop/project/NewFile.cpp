#include "desktop/project/NewFile.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"

namespace desktop {

namespace {

LongFileName BesideOf(LongFileName const & target) { return target.FilePath() + L".new"; }

file::FileStatus WriteAll(LongFileName const & path, std::string_view content) {
  std::unique_ptr<file::IFile> opened;
  auto status = file::FileSystem().Open(path, file::OpenMode::Create, opened);
  if (status.Ok())
    status = opened->Truncate(0); // What an earlier process left half written.
  if (status.Ok())
    status = opened->Write(0, std::span(&content, 1));
  return status.Ok() ? opened->Sync() : status;
}

[[noreturn]] void Fail(LongFileName const & target, file::FileStatus const & status) {
  throw Error(ErrorKind::kStorage, target.FilePath() + L": can't be written (" + status.Text() +
                                       L"); make room or get permission, and try again");
}

} // namespace

bool NewFile::RemoveLeft(LongFileName const & target) {
  LongFileName const beside = BesideOf(target);
  return !LFN_Exists(beside) || LFN_DeleteFile(beside);
}

NewFile::NewFile(LongFileName const & target, std::string_view content) : m_target(target), m_beside(BesideOf(target)) {
  if (auto const status = WriteAll(m_beside, content); !status.Ok()) {
    static_cast<void>(file::FileSystem().RemoveFile(m_beside)); // The failure is told already.
    Fail(m_target, status);
  }
}

NewFile::~NewFile() {
  if (!m_isInstalled)
    static_cast<void>(file::FileSystem().RemoveFile(m_beside)); // Left behind, it would be written over.
}

void NewFile::Install() {
  auto status = file::FileSystem().Rename(m_beside, m_target);
  if (!status.Ok())
    Fail(m_target, status);
  m_isInstalled = true;
  status = file::FileSystem().SyncFolder(m_target.DirPath());
  if (!status.Ok())
    Fail(m_target, status);
}

} // namespace desktop
