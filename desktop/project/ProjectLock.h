#pragma once

#include "basekit/file/LongFileName.h"

#include <memory>

namespace file {
class IFile;
}

namespace desktop {

/// A project taken for writing: the operating system's lock on a file beside it, which goes with this object, at the
/// latest with the process.  The file itself means nothing; it is removed at the end.
class ProjectLock {
public:
  /// An Error of kind kLocked while another process, or this one, has the project; kProject when its folder is not
  /// there; kStorage when the folder can't be written.
  explicit ProjectLock(LongFileName const & file);
  ~ProjectLock();
  ProjectLock(ProjectLock const &) = delete;
  ProjectLock & operator=(ProjectLock const &) = delete;

  /// Whether a process has the project for writing; takes nothing.
  static bool IsTaken(LongFileName const & file);

private:
  LongFileName m_path;
  std::unique_ptr<file::IFile> m_file;
};

} // namespace desktop
