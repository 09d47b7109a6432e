#include "fuzz/MemoryFiles.h"

#include "basekit/file/LongFileName.h"

#include <algorithm>
#include <cerrno>

namespace {

/// More than any input can make a library write.
constexpr std::uint64_t kMostBytes = 64u << 20;

file::FileStatus Failed(int error, AString const & path) { return {error, AString(L"refused: ") + path}; }

class MemoryFile : public file::IFile {
public:
  MemoryFile(std::shared_ptr<MemoryFiles::Node> node, AString const & path) : m_node(std::move(node)), m_path(path) {}
  ~MemoryFile() override { static_cast<void>(Unlock()); }

  file::FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
    auto const & bytes = m_node->bytes;
    got = offset < bytes.size() ? std::min<std::size_t>(into.size(), bytes.size() - offset) : 0;
    std::copy_n(bytes.data() + (got > 0 ? offset : 0), got, into.data());
    return {};
  }
  file::FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
    for (auto const & piece : pieces) {
      if (offset + piece.size() > kMostBytes)
        return Failed(ENOSPC, m_path);
      if (m_node->bytes.size() < offset + piece.size())
        m_node->bytes.resize(offset + piece.size());
      std::copy(piece.begin(), piece.end(), m_node->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
      offset += piece.size();
    }
    return {};
  }
  file::FileStatus Truncate(std::uint64_t length) override {
    m_node->bytes.resize(std::min(length, kMostBytes));
    return {};
  }
  file::FileStatus Sync() override { return {}; }
  file::FileStatus Describe(file::FileInfo & info) override {
    info = file::FileInfo();
    info.kind = file::FileKind::File;
    info.length = m_node->bytes.size();
    info.device = 1;
    info.node = m_node->number;
    info.mode = 0644;
    return {};
  }
  file::FileStatus TryLock() override {
    if (m_node->lockedBy && m_node->lockedBy != this)
      return Failed(EAGAIN, m_path);
    m_node->lockedBy = this;
    return {};
  }
  file::FileStatus Unlock() override {
    if (m_node->lockedBy == this)
      m_node->lockedBy = nullptr;
    return {};
  }
  file::FileStatus AskLock(bool & isLocked) override {
    isLocked = m_node->lockedBy && m_node->lockedBy != this;
    return {};
  }

private:
  std::shared_ptr<MemoryFiles::Node> m_node;
  AString m_path;
};

} // namespace

MemoryFiles::MemoryFiles() : m_former(file::SetFileSystem(this)) {}
MemoryFiles::~MemoryFiles() { file::SetFileSystem(m_former); }

void MemoryFiles::Put(AString const & path, std::string bytes) {
  m_nodes[path] = std::make_shared<Node>(Node{++m_last, std::move(bytes), nullptr});
}

file::FileStatus MemoryFiles::Open(LongFileName const & path, file::OpenMode mode,
                                   std::unique_ptr<file::IFile> & opened) {
  AString const & name = path.FilePath();
  auto const found = m_nodes.find(name);
  bool const isThere = found != m_nodes.end();
  if (isThere && mode == file::OpenMode::CreateNew)
    return Failed(EEXIST, name);
  if (!isThere && (mode == file::OpenMode::Read || mode == file::OpenMode::ReadWrite))
    return Failed(ENOENT, name);
  if (!isThere)
    Put(name, {});
  opened = std::make_unique<MemoryFile>(m_nodes[name], name);
  return {};
}

file::FileStatus MemoryFiles::Describe(LongFileName const & path, file::FileInfo & info) {
  info = file::FileInfo();
  auto const found = m_nodes.find(path.FilePath());
  return found == m_nodes.end() ? file::FileStatus() : MemoryFile(found->second, path.FilePath()).Describe(info);
}

file::FileStatus MemoryFiles::Rename(LongFileName const & from, LongFileName const & to) {
  auto const found = m_nodes.find(from.FilePath());
  if (found == m_nodes.end())
    return Failed(ENOENT, from.FilePath());
  auto const node = found->second;
  m_nodes.erase(found);
  m_nodes[to.FilePath()] = node;
  return {};
}

file::FileStatus MemoryFiles::RemoveFile(LongFileName const & path) {
  return m_nodes.erase(path.FilePath()) > 0 ? file::FileStatus() : Failed(ENOENT, path.FilePath());
}

file::FileStatus MemoryFiles::RemoveFolder(LongFileName const & path) { return Failed(ENOENT, path.FilePath()); }
file::FileStatus MemoryFiles::MakeFolder(LongFileName const &) { return {}; }
file::FileStatus MemoryFiles::SyncFolder(LongFileName const &) { return {}; }
file::FileStatus MemoryFiles::SetMode(LongFileName const &, unsigned) { return {}; }

file::FileStatus MemoryFiles::List(LongFileName const &, std::vector<AString> & names) {
  names.clear();
  for (auto const & [name, node] : m_nodes)
    names.push_back(name);
  return {};
}
