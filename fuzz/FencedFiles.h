#pragma once

#include "fuzz/MemoryFiles.h"

/// Files in memory with a fence: what hostile input makes anybody write, rename or remove outside of one folder is a
/// fault.  Reports of damage are no news here and silenced.
class FencedFiles : public MemoryFiles {
public:
  /// The folder's path is relative and ends with a slash.
  explicit FencedFiles(AString const & fence);
  ~FencedFiles() override;

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened) override;
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override;
  file::FileStatus RemoveFile(LongFileName const & path) override;
  file::FileStatus RemoveFolder(LongFileName const & path) override;
  bool Stands(AString const & path);

private:
  void Check(LongFileName const & path) const;

  AString m_fence;
  bool m_formerlyIgnored;
};
