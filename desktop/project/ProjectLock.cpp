#include "desktop/project/ProjectLock.h"

#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"

#include <cerrno>

namespace desktop {

namespace {

constexpr int kAttempts = 10;

[[noreturn]] void Refuse(LongFileName const & path, file::FileStatus const & status) {
  if (status.Error() == EAGAIN)
    throw Error(ErrorKind::kLocked,
                path.FilePath() +
                    L": another process has the project open for writing; wait until it is done (`watch` shows what "
                    L"it does meanwhile, and `info`, `report show`, `eval` and the others that only look, what was "
                    L"saved last)");
  if (status.Error() == ENOENT || status.Error() == ENOTDIR)
    throw Error(ErrorKind::kProject,
                path.DirPath() + L": there is no such folder; check the name, or make the folder first");
  throw Error(ErrorKind::kStorage, path.FilePath() + L": the project can't be opened for writing (" + status.Text() +
                                       L"); get permission to write to the folder, or make room");
}

} // namespace

ProjectLock::ProjectLock(LongFileName const & file) : m_path(file) {
  auto & system = file::FileSystem();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    auto status = system.Open(m_path, file::OpenMode::Create, m_file);
    if (status.Ok())
      status = m_file->TryLock();
    if (!status.Ok())
      Refuse(m_path, status);
    // The former holder may have removed the file between the two steps.
    file::FileInfo locked;
    file::FileInfo named;
    if (m_file->Describe(locked).Ok() && system.Describe(m_path, named).Ok() && locked.IsSameFile(named))
      return;
  }
  Refuse(m_path, file::FileStatus(EAGAIN, AString()));
}

bool ProjectLock::IsTaken(LongFileName const & file) {
  std::unique_ptr<file::IFile> opened;
  bool isLocked = false;
  return file::FileSystem().Open(file, file::OpenMode::Read, opened).Ok() && opened->AskLock(isLocked).Ok() && isLocked;
}

ProjectLock::~ProjectLock() {
  static_cast<void>(file::FileSystem().RemoveFile(m_path)); // Left behind, it locks nobody out.
}

} // namespace desktop
