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
  FaultyFile(FaultyFileSystem & system, std::unique_ptr<IFile> file) : m_system(system), m_file(std::move(file)) {}

  FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
    return m_file->Read(offset, into, got);
  }
  FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
    std::string all;
    for (auto const & piece : pieces)
      all += piece;
    m_system.NoteWrite(all.size());
    FileStatus const status = m_system.Next(L"write");
    if (!status.Ok())
      all.resize(all.size() / 2);
    std::string_view const piece = all;
    FileStatus const written = m_file->Write(offset, std::span(&piece, 1));
    return status.Ok() ? written : status;
  }
  FileStatus Truncate(std::uint64_t length) override {
    FileStatus const status = m_system.Next(L"shorten");
    return status.Ok() ? m_file->Truncate(length) : status;
  }
  FileStatus Sync() override {
    FileStatus const status = m_system.Next(L"sync");
    FileInfo info;
    if (status.Ok() && m_file->Describe(info).Ok())
      m_system.NoteSync(info.node, Content(*m_file));
    return status;
  }
  FileStatus Describe(FileInfo & info) override { return m_file->Describe(info); }
  FileStatus TryLock() override { return m_file->TryLock(); }
  FileStatus Unlock() override { return m_file->Unlock(); }

private:
  FaultyFileSystem & m_system;
  std::unique_ptr<IFile> m_file;
};

} // namespace

FaultyFileSystem::FaultyFileSystem() : m_system(file::SystemFiles()), m_former(file::SetFileSystem(this)) {}
FaultyFileSystem::~FaultyFileSystem() { file::SetFileSystem(m_former); }

void FaultyFileSystem::FailAt(int operation, bool forGood) {
  m_operations = 0;
  m_failAt = operation;
  m_forGood = forGood;
  m_hasFailed = false;
}

FileStatus FaultyFileSystem::Next(wchar_t const * what) {
  ++m_operations;
  bool const fails = m_failAt > 0 && (m_forGood ? m_operations >= m_failAt : m_operations == m_failAt);
  m_hasFailed = m_hasFailed || fails;
  return fails ? FileStatus(ENOSPC, AString(L"cannot ") + what + L": no room") : FileStatus();
}

void FaultyFileSystem::NoteWrite(std::size_t size) {
  m_largestWrite = std::max(m_largestWrite, size);
  ++m_writes;
}

void FaultyFileSystem::NoteSync(std::uint64_t node, std::string content) { m_synced[node] = std::move(content); }

void FaultyFileSystem::LosePower() {
  for (auto const & entry : m_written) {
    FileInfo info;
    std::unique_ptr<IFile> file;
    if (!m_system.Describe(entry.first, info).Ok() || info.kind != file::FileKind::File ||
        !m_system.Open(entry.first, file::OpenMode::ReadWrite, file).Ok())
      continue;
    std::string const & content = m_synced[info.node];
    std::string_view const piece = content;
    if (!file->Truncate(0).Ok() || !file->Write(0, std::span(&piece, 1)).Ok())
      m_hasFailed = true;
  }
}

FileStatus FaultyFileSystem::Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<IFile> & opened) {
  FileInfo info;
  bool const makes = mode != file::OpenMode::Read && mode != file::OpenMode::ReadWrite;
  if (makes)
    if (FileStatus status = Next(L"open"); !status.Ok())
      return status;
  std::unique_ptr<IFile> file;
  FileStatus status = m_system.Open(path, mode, file);
  if (!status.Ok())
    return status;
  if (mode != file::OpenMode::Read && file->Describe(info).Ok()) {
    // What stands in a file before it is touched first counts as synced.
    if (!m_synced.contains(info.node) || info.length == 0)
      m_synced[info.node] = Content(*file);
    m_written[path.FilePath()] = true;
  }
  opened = std::make_unique<FaultyFile>(*this, std::move(file));
  return {};
}

FileStatus FaultyFileSystem::Describe(LongFileName const & path, FileInfo & info) {
  return m_system.Describe(path, info);
}

FileStatus FaultyFileSystem::Rename(LongFileName const & from, LongFileName const & to) {
  FileStatus status = Next(L"rename");
  if (!status.Ok())
    return status;
  status = m_system.Rename(from, to);
  if (status.Ok() && m_written.erase(from.FilePath()) > 0)
    m_written[to.FilePath()] = true;
  return status;
}

FileStatus FaultyFileSystem::RemoveFile(LongFileName const & path) {
  FileStatus const status = Next(L"delete");
  return status.Ok() ? m_system.RemoveFile(path) : status;
}

FileStatus FaultyFileSystem::RemoveFolder(LongFileName const & path) {
  FileStatus const status = Next(L"delete");
  return status.Ok() ? m_system.RemoveFolder(path) : status;
}

FileStatus FaultyFileSystem::MakeFolder(LongFileName const & path) {
  FileStatus const status = Next(L"create");
  return status.Ok() ? m_system.MakeFolder(path) : status;
}

FileStatus FaultyFileSystem::SyncFolder(LongFileName const & path) {
  FileStatus const status = Next(L"sync");
  return status.Ok() ? m_system.SyncFolder(path) : status;
}

FileStatus FaultyFileSystem::List(LongFileName const & path, std::vector<AString> & names) {
  return m_system.List(path, names);
}

FileStatus FaultyFileSystem::SetMode(LongFileName const & path, unsigned mode) {
  FileStatus const status = Next(L"change the mode of");
  return status.Ok() ? m_system.SetMode(path, mode) : status;
}

} // namespace support
