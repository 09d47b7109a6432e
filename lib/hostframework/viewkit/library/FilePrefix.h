#pragma once

#include "basekit/file/IFileSystem.h"

namespace library {

/// A file as it was when it had a certain length, for files that only grow: what stands behind is not shown.  Reading
/// alone; every change is refused.
class FilePrefix : public file::IFile {
public:
  FilePrefix(std::unique_ptr<file::IFile> whole, std::uint64_t length) : m_whole(std::move(whole)), m_length(length) {}

  file::FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override;
  file::FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override;
  file::FileStatus Truncate(std::uint64_t length) override;
  file::FileStatus Sync() override;
  file::FileStatus Describe(file::FileInfo & info) override;
  file::FileStatus TryLock() override;
  file::FileStatus Unlock() override;
  file::FileStatus AskLock(bool & isLocked) override { return m_whole->AskLock(isLocked); }

private:
  std::unique_ptr<file::IFile> m_whole;
  std::uint64_t m_length;
};

} // namespace library
