#pragma once

#include "solutionmanager/address/HashIndex.h"
#include "solutionmanager/store/SRealToInternalData.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

/// Finds the entries of a name map whose keys match a pattern without a walk over the map.  Indexes on setup, solution,
/// version and variation propose, SolutionVariationKey::Match decides: the answers are those of the walk, in map order.
/// Each is built when it is asked first: most programs only ask whether one block is there, by the very text that it
/// was stored under.  Refers to the map, whose owner tells each entry that comes or goes.
class BlockKeyIndex {
public:
  using Map = RealToInternalMap;
  using Place = Map::const_iterator;

  explicit BlockKeyIndex(Map const & map) : m_map(map) {}
  BlockKeyIndex(BlockKeyIndex const &) = delete;
  BlockKeyIndex & operator=(BlockKeyIndex const &) = delete;

  void Insert(Place entry);
  /// While the entry is still in the map.
  void Erase(Place entry);

  std::vector<Place> Matches(SolutionVariationKey const & pattern) const;
  bool HasMatch(SolutionVariationKey const & pattern) const;
  /// The entries whose design variation key is the very text, in map order.
  std::vector<Place> OfVariation(AString const & variation) const;

private:
  // Setup, solution, version.
  using Numbers = std::array<long, 3>;
  struct Position {
    std::uint64_t variation;
    Numbers numbers;
  };
  // Each entry stands here twice: under its variation, and under any.
  struct Record {
    Position position;
    Place entry;
  };
  struct Less {
    using is_transparent = void;
    bool operator()(Record const & a, Record const & b) const;
    bool operator()(Record const & a, Position const & b) const;
    bool operator()(Position const & a, Record const & b) const;
  };

  static Numbers NumbersOf(SolutionVariationKey const & key);
  static std::vector<std::uint64_t> VariationsToProbe(SolutionVariationKey const & pattern);
  static std::array<Record, 2> RecordsOf(Place entry);
  template <class Take> bool Scan(std::uint64_t variation, Numbers const & wanted, Take take) const;
  template <class Take> bool ScanAll(SolutionVariationKey const & pattern, Take take) const;
  std::vector<Place> Walk(SolutionVariationKey const & pattern) const;
  bool HasExactly(SolutionVariationKey const & pattern) const;
  HashIndex<Place> const & ByText() const;
  std::set<Record, Less> const & Ordered() const;

  Map const & m_map;
  /// By all parts of the key, the variation as the text that it is.  Empty until it is asked.
  mutable HashIndex<Place> m_byText;
  mutable bool m_hasByText = false;
  /// By variation, to its value, and numbers; likewise.
  mutable std::set<Record, Less> m_records;
  mutable bool m_hasRecords = false;
};
