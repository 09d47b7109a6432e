#include "tests/support/PageCacheFileSystem.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "tests/support/LibraryPlay.h"

#include <algorithm>

namespace support {

using file::FileInfo;
using file::FileStatus;
using file::IFile;

namespace {

using Content = PageCacheFileSystem::Content;
constexpr std::uint64_t kSector = 512;

void Apply(std::string & bytes, std::uint64_t at, std::string_view piece) {
  if (bytes.size() < at + piece.size())
    bytes.resize(at + piece.size());
  bytes.replace(at, piece.size(), piece);
}

// Some of its sectors.
void ApplyTorn(std::string & bytes, PageCacheFileSystem::Change const & change, std::uint64_t & random) {
  std::uint64_t const end = change.at + change.bytes.size();
  for (std::uint64_t at = change.at; at < end;) {
    std::uint64_t const next = std::min(end, (at / kSector + 1) * kSector);
    if (NextRandom(random) % 2)
      Apply(bytes, at, std::string_view(change.bytes).substr(at - change.at, next - at));
    at = next;
  }
}

std::string AfterLoss(Content const & content, std::uint64_t & random) {
  std::string bytes = content.synced;
  // All, none, or each as chance has it.
  std::uint64_t const mood = NextRandom(random) % 4;
  for (auto const & change : content.cached) {
    std::uint64_t const fate = mood == 0 ? 0 : mood == 1 ? 1 : NextRandom(random) % 3;
    if (fate == 1)
      continue;
    if (change.bytes.empty())
      bytes.resize(change.at);
    else if (fate == 0)
      Apply(bytes, change.at, change.bytes);
    else
      ApplyTorn(bytes, change, random);
  }
  return bytes;
}

std::string BytesOf(IFile & file) {
  FileInfo info;
  if (!file.Describe(info).Ok())
    return {};
  std::string bytes(static_cast<std::size_t>(info.length), '\0');
  std::size_t got = 0;
  return file.Read(0, bytes, got).Ok() ? bytes : std::string();
}

class CachedFile : public IFile {
public:
  CachedFile(std::shared_ptr<PageCacheFileSystem::State> state, file::IFileSystem & fileSystem,
             std::shared_ptr<Content> content, std::unique_ptr<IFile> file)
      : m_state(std::move(state)), m_fileSystem(fileSystem), m_content(std::move(content)), m_file(std::move(file)) {}

  FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
    return m_file->Read(offset, into, got);
  }
  FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
    m_state->BeforeChange(m_fileSystem);
    std::string all;
    for (auto const & piece : pieces)
      all += piece;
    if (!all.empty())
      m_content->cached.push_back({offset, all});
    return m_file->Write(offset, pieces);
  }
  FileStatus Truncate(std::uint64_t length) override {
    m_state->BeforeChange(m_fileSystem);
    m_content->cached.push_back({length, {}});
    return m_file->Truncate(length);
  }
  FileStatus Sync() override {
    m_state->BeforeChange(m_fileSystem);
    m_content->synced = BytesOf(*m_file);
    m_content->cached.clear();
    return {};
  }
  FileStatus Describe(FileInfo & info) override { return m_file->Describe(info); }
  FileStatus TryLock() override { return m_file->TryLock(); }
  FileStatus Unlock() override { return m_file->Unlock(); }
  FileStatus AskLock(bool & isLocked) override { return m_file->AskLock(isLocked); }

private:
  std::shared_ptr<PageCacheFileSystem::State> m_state;
  file::IFileSystem & m_fileSystem;
  std::shared_ptr<Content> m_content;
  std::unique_ptr<IFile> m_file;
};

} // namespace

void PageCacheFileSystem::State::BeforeChange(file::IFileSystem & fileSystem) {
  if (!hook)
    return;
  file::SetFileSystem(nullptr);
  hook();
  file::SetFileSystem(&fileSystem);
}

PageCacheFileSystem::PageCacheFileSystem() : m_system(file::SystemFiles()), m_former(file::SetFileSystem(this)) {}

PageCacheFileSystem::~PageCacheFileSystem() {
  file::SetFileSystem(m_former);
  m_state->hook = nullptr;
}

void PageCacheFileSystem::LosePower(LongFileName const & into, std::uint64_t & random) const {
  LFN_Delete(into);
  LFN_CreateDirectory(into);
  Names const & names = m_state->history[NextRandom(random) % m_state->history.size()];
  for (auto const & [path, content] : names) {
    std::string const bytes = AfterLoss(*content, random);
    std::string_view const piece = bytes;
    std::unique_ptr<IFile> file;
    LongFileName folder = into;
    folder.MakeItDirectory();
    if (m_system.Open(LongFileName(folder, LongFileName(path).NameAndExtension()), file::OpenMode::Create, file).Ok())
      static_cast<void>(file->Write(0, std::span(&piece, 1)));
  }
}

FileStatus PageCacheFileSystem::Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<IFile> & opened) {
  FileInfo before;
  static_cast<void>(m_system.Describe(path, before));
  bool const makes =
      before.kind == file::FileKind::None && (mode == file::OpenMode::Create || mode == file::OpenMode::CreateNew);
  if (makes)
    m_state->BeforeChange(*this);
  std::unique_ptr<IFile> file;
  FileStatus status = m_system.Open(path, mode, file);
  if (!status.Ok())
    return status;
  auto & content = m_state->names[path.FilePath()];
  if (makes || !content) {
    content = std::make_shared<Content>();
    content->synced = BytesOf(*file);
    // What stood there before counts as synced.
    if (makes)
      m_state->NamesChanged();
    else
      for (auto & names : m_state->history)
        names[path.FilePath()] = content;
  }
  opened = std::make_unique<CachedFile>(m_state, *this, content, std::move(file));
  return {};
}

FileStatus PageCacheFileSystem::Describe(LongFileName const & path, FileInfo & info) {
  return m_system.Describe(path, info);
}

FileStatus PageCacheFileSystem::Rename(LongFileName const & from, LongFileName const & to) {
  m_state->BeforeChange(*this);
  FileStatus status = m_system.Rename(from, to);
  if (!status.Ok())
    return status;
  if (auto node = m_state->names.extract(from.FilePath()); !node.empty())
    m_state->names[to.FilePath()] = node.mapped();
  m_state->NamesChanged();
  return status;
}

FileStatus PageCacheFileSystem::RemoveFile(LongFileName const & path) {
  m_state->BeforeChange(*this);
  FileStatus status = m_system.RemoveFile(path);
  if (status.Ok() && m_state->names.erase(path.FilePath()) > 0)
    m_state->NamesChanged();
  return status;
}

FileStatus PageCacheFileSystem::RemoveFolder(LongFileName const & path) { return m_system.RemoveFolder(path); }

FileStatus PageCacheFileSystem::MakeFolder(LongFileName const & path) { return m_system.MakeFolder(path); }

FileStatus PageCacheFileSystem::SyncFolder(LongFileName const &) {
  m_state->BeforeChange(*this);
  m_state->history = {m_state->names};
  return {};
}

FileStatus PageCacheFileSystem::List(LongFileName const & path, std::vector<AString> & names) {
  return m_system.List(path, names);
}

FileStatus PageCacheFileSystem::SetMode(LongFileName const & path, unsigned mode) {
  return m_system.SetMode(path, mode);
}

} // namespace support
