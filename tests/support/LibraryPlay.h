#pragma once

#include "basekit/io/CBlock.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// What a library holds: for each name the tag that tells all of the block's content.
using LibraryContent = std::map<AString, std::uint64_t>;

/// A random but repeatable sequence of operations on a library, with the model that says what the library holds after
/// each of them.  Steps go from 1; each depends on the seed and its number alone.
class LibraryPlay {
public:
  struct Step {
    enum class Kind { Save, Batch, Delete, Update, Commit, Compact, Rewrite };
    Kind kind = Kind::Save;
    std::vector<AString> names;
    std::vector<std::uint64_t> tags;
  };
  enum class Sizes { Small, Mixed };

  explicit LibraryPlay(std::uint64_t seed, Sizes sizes = Sizes::Small) : m_seed(seed), m_sizes(sizes) {}

  Step At(std::uint64_t number) const;
  CStreamioLibrary::LibIOReturn Do(std::uint64_t number, CStreamioLibWritePrivate & library) const;
  static void Apply(Step const & step, LibraryContent & content);
  /// After so many steps.
  LibraryContent After(std::uint64_t steps) const;
  /// The state that must be there at least when so many steps were acknowledged: deletes wait for the save behind them.
  std::uint64_t SafeAfter(std::uint64_t steps) const;
  /// The number of steps, from `first` to `last`, after which the model holds that content.
  std::optional<std::uint64_t> Find(LibraryContent const & content, std::uint64_t first, std::uint64_t last) const;

  static io::CBlock BlockOf(AString const & name, std::uint64_t tag);
  /// All that a library holds, compared bit for bit with what the tags tell; nothing when a block can't be read or
  /// differs, and `complaint` says which.
  static std::optional<LibraryContent> ContentOf(CStreamioLibWritePrivate & library, std::string & complaint);
  static std::string TextOf(LibraryContent const & content);

private:
  std::uint64_t m_seed;
  Sizes m_sizes;
};

/// A step of a repeatable sequence of random numbers.
std::uint64_t NextRandom(std::uint64_t & state);

} // namespace support
