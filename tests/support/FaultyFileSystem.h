#pragma once

#include "basekit/file/IFileSystem.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
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
  /// Reading, asking and locking count as operations too; those fail with EIO.
  void CountReads(bool countsReads) { m_ledger->countsReads = countsReads; }
  /// Meanwhile nothing fails and nothing counts.
  void Pause(bool isPaused) { m_ledger->isPaused = isPaused; }
  int Operations() const { return m_ledger->operations; }
  bool HasFailed() const { return m_ledger->hasFailed; }
  std::size_t LargestWrite() const { return m_ledger->largestWrite; }
  int Writes() const { return m_ledger->writes; }
  std::uint64_t BytesRead() const { return m_ledger->bytesRead; }
  /// Every file that was opened for writing goes back to its content at the last sync of it.
  void LosePower();
  /// The same on a disk that wrote out of order: of what was appended since the last sync the last bytes (that many)
  /// are there, and zeros before them.
  void LosePowerOutOfOrder(std::size_t last);

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened) override;
  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override;
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override;
  file::FileStatus RemoveFile(LongFileName const & path) override;
  file::FileStatus RemoveFolder(LongFileName const & path) override;
  file::FileStatus MakeFolder(LongFileName const & path) override;
  file::FileStatus SyncFolder(LongFileName const & path) override;
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override;
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override;

  /// What it shares with the files that it opened, which may outlive it and then work as ever.
  struct Ledger {
    int operations = 0;
    int failAt = 0;
    bool forGood = false;
    bool hasFailed = false;
    bool countsReads = false;
    bool isPaused = false;
    std::size_t largestWrite = 0;
    int writes = 0;
    std::uint64_t bytesRead = 0;
    std::map<std::uint64_t, std::string> synced;

    file::FileStatus Next(wchar_t const * what);
    file::FileStatus NextRead(wchar_t const * what);
  };

private:
  void RestoreAll(std::function<std::string(std::string const & synced, std::string const & now)> const & restore);

  file::IFileSystem & m_system;
  file::IFileSystem * m_former;
  std::shared_ptr<Ledger> m_ledger = std::make_shared<Ledger>();
  std::set<AString> m_written;
};

} // namespace support
