#pragma once

#include "solutionmanager/address/SolutionVariationKey.h"
#include "viewkit/library/LibraryReader.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qsol {

enum class Kind { Data, Definition, Convergence, Profile, Header, Map, Other };
char const * NameOf(Kind kind);

/// A block of a library with its address.
struct Block {
  library::LibraryReader::Entry entry;
  /// Empty for a block that the name map doesn't know.
  AString realName;
  /// Nothing when the real name is no packed key.
  std::optional<SolutionVariationKey> key;
  Kind kind = Kind::Other;

  /// "setup=3 solution=5 version=12", empty without a key.
  std::string Address() const;
  /// Empty for blocks of no variation, such as definitions.
  AString Variation() const;
  /// "SolutionBlock4 (data setup=3 solution=5 version=12 a=1)", on one line.
  std::string Description() const;
  /// Bytes of the whole record.
  std::uint64_t RecordSize() const;
};

/// Which blocks are asked for; what is not set fits all.
struct Selection {
  std::optional<long> setup;
  std::optional<long> solution;
  std::optional<AString> variation;
  std::optional<Kind> kind;

  bool Fits(Block const & block) const;
};

/// The blocks that a library shows, with the real names that its name map tells.
class Catalogue {
public:
  explicit Catalogue(library::LibraryReader & reader);

  /// In the order of the files.
  std::vector<Block> const & Blocks() const { return m_blocks; }
  /// By internal or real name; a packed key may be spelled in another way.  Null when there is none, and
  /// for an empty name.
  Block const * Find(AString const & name) const;
  /// Why the name map can't be read; empty when it was, or when there is none.
  AString const & MapError() const { return m_mapError; }
  bool HasMap() const { return m_hasMap; }

  struct MapEntry {
    AString realName;
    AString internalName;
  };
  /// Entries whose block is not there.
  std::vector<MapEntry> const & Dangling() const { return m_dangling; }
  /// Entries that lead to a block which another real name has.
  std::vector<MapEntry> const & Shared() const { return m_shared; }
  /// Blocks with a generated name that no entry leads to.
  std::vector<Block const *> Unmapped() const;

private:
  void ReadMap(library::LibraryReader & reader);
  void AddEntry(AString const & realName, AString const & internalName);

  std::vector<Block> m_blocks;
  std::map<AString, std::size_t, AString::NoCaseLess> m_places;
  std::vector<MapEntry> m_dangling;
  std::vector<MapEntry> m_shared;
  AString m_mapError;
  bool m_hasMap = false;
};

} // namespace qsol
