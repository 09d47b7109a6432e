#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bench {

/// The baseline: a log of runs of doubles written straight for speed, with the duties of the library.  One file; a save
/// is one gathered write, a batch is there whole or not; header and content have checksums; a commit appends an index
/// of what changed and syncs; recovery scans the headers; a rewrite is a new file, synced and renamed.  The caller's
/// doubles go to the file and come from it without a copy.  A failure throws.
class RawStore {
public:
  struct Block {
    std::string_view name;
    std::span<double const> values;
  };

  RawStore() = default;
  RawStore(RawStore const &) = delete;
  RawStore & operator=(RawStore const &) = delete;
  ~RawStore();

  /// Shows what was committed; with `recovers` all that was saved, too.
  void Open(std::string const & path, bool recovers);
  std::vector<std::string> Names() const;
  void Save(std::span<Block const> blocks);
  void Load(std::string const & name, std::vector<double> & values);
  void Delete(std::span<std::string const> names);
  void Commit();
  void Rewrite();

private:
  struct Place {
    std::uint64_t offset = 0;
    std::uint32_t nameLength = 0;
    std::uint32_t count = 0;
  };
  struct Header;
  using Index = std::unordered_map<std::string, Place>;

  void Append(std::uint64_t offset, std::span<Header const> headers, std::span<Block const> blocks);
  void AppendIndex(bool isWhole);
  bool ReadIndexes();
  bool ReadIndex(std::uint64_t offset, Header & header, std::string & content);
  void Apply(std::string_view content);
  void Scan(std::uint64_t from);

  std::string m_path;
  int m_file = -1;
  Index m_index;
  std::vector<std::string> m_changed;
  std::uint64_t m_end = 0;
  std::uint64_t m_lastIndex = 0;
  std::uint64_t m_indexed = 0;
  std::uint64_t m_indexedSinceWhole = 0;
};

} // namespace bench
