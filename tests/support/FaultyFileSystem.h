#pragma once

#include "basekit/file/IFileSystem.h"

#include <map>
#include <memory>
#include <string>

namespace support {

/// The operating system's files behind a twin that fails on demand.  It counts the operations that change something;
/// operation `failAt` (from 1) fails with ENOSPC, once or from then on, a write after half of its bytes.  It remembers
/// what was synced, so that a loss of power can be played: what was not synced is gone.  In use as long as it lives.
class FaultyFileSystem : public file::IFileSystem {
public:
  FaultyFileSystem();
  ~FaultyFileSystem() override;

  void FailAt(int operation, bool forGood);
  int Operations() const { return m_operations; }
  bool HasFailed() const { return m_hasFailed; }
  std::size_t LargestWrite() const { return m_largestWrite; }
  int Writes() const { return m_writes; }
  /// Every file that was opened for writing goes back to its content at the last sync of it.
  void LosePower();

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened) override;
  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override;
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override;
  file::FileStatus RemoveFile(LongFileName const & path) override;
  file::FileStatus RemoveFolder(LongFileName const & path) override;
  file::FileStatus MakeFolder(LongFileName const & path) override;
  file::FileStatus SyncFolder(LongFileName const & path) override;
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override;
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override;

  // For the files that it opened.
  file::FileStatus Next(wchar_t const * what);
  void NoteWrite(std::size_t size);
  void NoteSync(std::uint64_t node, std::string content);

private:
  file::IFileSystem & m_system;
  file::IFileSystem * m_former;
  int m_operations = 0;
  int m_failAt = 0;
  bool m_forGood = false;
  bool m_hasFailed = false;
  std::size_t m_largestWrite = 0;
  int m_writes = 0;
  std::map<std::uint64_t, std::string> m_synced;
  std::map<AString, bool> m_written;
};

} // namespace support
