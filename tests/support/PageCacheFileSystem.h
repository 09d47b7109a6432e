#pragma once

#include "basekit/file/IFileSystem.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace support {

/// The operating system's files behind a twin that knows what a disk holds: what was written and not synced is in a
/// cache.  A loss of power can be played at any time: of the writes in the cache each is kept, dropped or torn into
/// sectors; of the new, renamed and removed names in the cache the first ones count, as with a file system that keeps a
/// journal of them.  Really synced is nothing, so it is quick.  In use as long as it lives; for files of one folder.
class PageCacheFileSystem : public file::IFileSystem {
public:
  PageCacheFileSystem();
  ~PageCacheFileSystem() override;

  /// Called before each operation that changes something; the operating system's files are in use meanwhile.
  void OnChange(std::function<void()> const & hook) { m_state->hook = hook; }
  /// Makes a folder as the disk would show it after a loss of power now.  `random` goes on.
  void LosePower(LongFileName const & into, std::uint64_t & random) const;

  file::FileStatus Open(LongFileName const & path, file::OpenMode mode, std::unique_ptr<file::IFile> & opened) override;
  file::FileStatus Describe(LongFileName const & path, file::FileInfo & info) override;
  file::FileStatus Rename(LongFileName const & from, LongFileName const & to) override;
  file::FileStatus RemoveFile(LongFileName const & path) override;
  file::FileStatus RemoveFolder(LongFileName const & path) override;
  file::FileStatus MakeFolder(LongFileName const & path) override;
  file::FileStatus SyncFolder(LongFileName const & path) override;
  file::FileStatus List(LongFileName const & path, std::vector<AString> & names) override;
  file::FileStatus SetMode(LongFileName const & path, unsigned mode) override;

  /// A write, or with no bytes a cut to the length `at`.
  struct Change {
    std::uint64_t at = 0;
    std::string bytes;
  };
  struct Content {
    std::string synced;
    std::vector<Change> cached;
  };
  using Names = std::map<AString, std::shared_ptr<Content>>;
  /// What it shares with the files that it opened.
  struct State {
    Names names;
    /// What the folder was after each change of names that no sync of it followed; the first is the synced one.
    std::vector<Names> history = {Names()};
    std::function<void()> hook;

    void BeforeChange(file::IFileSystem & fileSystem);
    void NamesChanged() { history.push_back(names); }
  };

private:
  file::IFileSystem & m_system;
  file::IFileSystem * m_former;
  std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace support
