#pragma once

#include "basekit/file/FileStatus.h"
#include "basekit/file/IFileSystem.h"

#include <vector>

namespace library {

/// The locks that one writer holds on its files: the operating system's, which end with the open file, at the latest
/// with the process.  The files are owned by others and forgotten before they close.
class LibraryLock {
public:
  LibraryLock();
  ~LibraryLock();
  LibraryLock(LibraryLock const &) = delete;
  LibraryLock & operator=(LibraryLock const &) = delete;

  [[nodiscard]] file::FileStatus Add(file::IFile & file);
  /// The file is about to close.
  void Forget(file::IFile & file);
  void Release();
  bool IsHeld() const { return !m_files.empty(); }

  /// An abandoned writer of this process gives up its locks on the file, so that recovery can have them.  False when
  /// the holder is another process.
  static bool TakeFromThisProcess(file::IFile & file);

private:
  std::vector<file::IFile *> m_files;
};

} // namespace library
