#include "tests/support/FaultyFileSystem.h"

#include "basekit/file/LongFileName.h"

#include <algorithm>
#include <cerrno>

namespace support {

using file::FileInfo;
using file::FileStatus;
using file::IFile;

namespace {

std::string Content(IFile & file) {
  FileInfo info;
  if (!file.Describe(info).Ok())
    return {};
  std::string content(static_cast<std::size_t>(info.length), '\0');
  std::size_t got = 0;
  if (!file.Read(0, content, got).Ok())
    return {};
  return content;
}

class FaultyFile : public IFile {
public:
  FaultyFile(std::shared_ptr<FaultyFileSystem::Ledger> ledger, std::unique_ptr<IFile> file)
      : m_ledger(std::move(ledger)), m_file(std::move(file)) {}

  FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
    got = 0;
    FileStatus const status = m_ledger->NextRead(L"read");
    FileStatus const read = status.Ok() ? m_file->Read(offset, into, got) : status;
    m_ledger->bytesRead += m_ledger->isPaused ? 0 : got;
    return read;
  }
  FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
    std::string all;
    for (auto const & piece : pieces)
      all += piece;
    m_ledger->largestWrite = std::max(m_ledger->largestWrite, all.size());
    ++m_ledger->writes;
    FileStatus const status = m_ledger->Next(L"write");
    if (!status.Ok())
      all.resize(all.size() / 2);
    std::string_view const piece = all;
    FileStatus const written = m_file->Write(offset, std::span(&piece, 1));
    return status.Ok() ? written : status;
  }
  FileStatus Truncate(std::uint64_t length) override {
    FileStatus const status = m_ledger->Next(L"shorten");
    return status.Ok() ? m_file->Truncate(length) : status;
  }
  FileStatus Sync() override {
    FileStatus const status = m_ledger->Next(L"sync");
    FileInfo info;
    if (status.Ok() && m_file->Describe(info).Ok())
      m_ledger->synced[info.node] = Content(*m_file);
    return status;
  }
  FileStatus Describe(FileInfo & info) override {
    FileStatus const status = m_ledger->NextRead(L"look at");
    return status.Ok() ? m_file->Describe(info) : status;
  }
  FileStatus TryLock() override {
    FileStatus const status = m_ledger->NextRead(L"lock");
    return status.Ok() ? m_file->TryLock() : status;
  }
  FileStatus Unlock() override { return m_file->Unlock(); }
  FileStatus AskLock(bool & isLocked) override { return m_file->AskLock(isLocked); }

private:
  std::shared_ptr<FaultyFileSystem::Ledger> m_ledger;
  std::unique_ptr<IFile> m_file;
};

} // namespace

FaultyFileSystem::FaultyFileSystem() : m_system(file::SystemFiles()), m_former(file::SetFileSystem(this)) {}
FaultyFileSystem::~FaultyFileSystem() {
  file::SetFileSystem(m_former);
  m_ledger->failAt = 0;
}

void FaultyFileSystem::FailAt(int operation, bool forGood) {
  m_ledger->operations = 0;
  m_ledger->failAt = operation;
  m_ledger->forGood = forGood;
  m_ledger->hasFailed = false;
}

FileStatus FaultyFileSystem::Ledger::NextRead(wchar_t const * what) {
  if (!countsReads)
    return {};
  FileStatus const status = Next(what);
  return status.Ok() ? status : FileStatus(EIO, AString(L"cannot ") + what + L": the disk fails");
}

FileStatus FaultyFileSystem::Ledger::Next(wchar_t const * what) {
  if (isPaused)
    return {};
  ++operations;
  bool const fails = failAt > 0 && (forGood ? operations >= failAt : operations == failAt);
  hasFailed = hasFailed || fails;
  return fails ? FileStatus(ENOSPC, AString(L"cannot ") + what + L": no room") : FileStatus();
}

void FaultyFileSystem::LosePower() {
  RestoreAll([](std::string const & synced, std::string const &) { return synced; });
}

void FaultyFileSystem::LosePowerOutOfOrder(std::size_t last) {
  RestoreAll([last](std::string const & synced, std::string const & now) {
    std::string mixed = now;
    for (std::size_t at = synced.size(); at + last < now.size(); ++at)
      mixed[at] = '\0';
    return mixed;
  });
}

void FaultyFileSystem::RestoreAll(
    std::function<std::string(std::string const & synced, std::string const & now)> const & restore) {
  for (auto const & path : m_written) {
    FileInfo info;
    std::unique_ptr<IFile> file;
    if (!m_system.Describe(path, info).Ok() || info.kind != file::FileKind::File ||
        !m_system.Open(path, file::OpenMode::ReadWrite, file).Ok())
      continue;
    std::string const content = restore(m_ledger->synced[info.node], Content(*file));
    std::string_view const piece = content;
    if (!file->Truncate(0).Ok() || !file->Write(0, std::span(&piece, 1)).Ok())
      m_ledger->hasFailed = true;
  }
}

FileStatus FaultyFileSystem::Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<IFile> & opened) {
  FileInfo info;
  bool const makes = mode != file::OpenMode::Read && mode != file::OpenMode::ReadWrite;
  if (FileStatus failed = makes ? m_ledger->Next(L"open") : m_ledger->NextRead(L"open"); !failed.Ok())
    return failed;
  std::unique_ptr<IFile> file;
  FileStatus status = m_system.Open(path, mode, file);
  if (!status.Ok())
    return status;
  if (mode != file::OpenMode::Read && file->Describe(info).Ok()) {
    // What stands in a file before it is touched first counts as synced.
    if (!m_ledger->synced.contains(info.node) || info.length == 0)
      m_ledger->synced[info.node] = Content(*file);
    m_written.insert(path.FilePath());
  }
  opened = std::make_unique<FaultyFile>(m_ledger, std::move(file));
  return {};
}

FileStatus FaultyFileSystem::Describe(LongFileName const & path, FileInfo & info) {
  FileStatus const status = m_ledger->NextRead(L"look at");
  return status.Ok() ? m_system.Describe(path, info) : status;
}

FileStatus FaultyFileSystem::Rename(LongFileName const & from, LongFileName const & to) {
  FileStatus status = m_ledger->Next(L"rename");
  if (!status.Ok())
    return status;
  status = m_system.Rename(from, to);
  if (status.Ok() && m_written.erase(from.FilePath()) > 0)
    m_written.insert(to.FilePath());
  return status;
}

FileStatus FaultyFileSystem::RemoveFile(LongFileName const & path) {
  FileStatus const status = m_ledger->Next(L"delete");
  return status.Ok() ? m_system.RemoveFile(path) : status;
}

FileStatus FaultyFileSystem::RemoveFolder(LongFileName const & path) {
  FileStatus const status = m_ledger->Next(L"delete");
  return status.Ok() ? m_system.RemoveFolder(path) : status;
}

FileStatus FaultyFileSystem::MakeFolder(LongFileName const & path) {
  FileStatus const status = m_ledger->Next(L"create");
  return status.Ok() ? m_system.MakeFolder(path) : status;
}

FileStatus FaultyFileSystem::SyncFolder(LongFileName const & path) {
  FileStatus const status = m_ledger->Next(L"sync");
  return status.Ok() ? m_system.SyncFolder(path) : status;
}

FileStatus FaultyFileSystem::List(LongFileName const & path, std::vector<AString> & names) {
  FileStatus const status = m_ledger->NextRead(L"list");
  return status.Ok() ? m_system.List(path, names) : status;
}

FileStatus FaultyFileSystem::SetMode(LongFileName const & path, unsigned mode) {
  FileStatus const status = m_ledger->Next(L"change the mode of");
  return status.Ok() ? m_system.SetMode(path, mode) : status;
}

} // namespace support
