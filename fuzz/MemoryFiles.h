#pragma once

#include "basekit/file/IFileSystem.h"

#include <map>
#include <string>

/// A file system of files in memory, as fast as a fuzzer needs it.  In use as long as it lives; folders are not kept.
class MemoryFiles : public file::IFileSystem {
public:
  MemoryFiles();
  ~MemoryFiles() override;

  void Put(AString const & path, std::string bytes);

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened) override;
  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override;
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override;
  file::FileStatus RemoveFile(LongFileName const & path) override;
  file::FileStatus RemoveFolder(LongFileName const & path) override;
  file::FileStatus MakeFolder(LongFileName const & path) override;
  file::FileStatus SyncFolder(LongFileName const & path) override;
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override;
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override;

  struct Node {
    std::uint64_t number = 0;
    std::string bytes;
    void const * lockedBy = nullptr;
  };

private:
  std::map<AString, std::shared_ptr<Node>> m_nodes;
  std::uint64_t m_last = 0;
  file::IFileSystem * m_former;
};
