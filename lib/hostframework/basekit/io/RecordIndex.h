#pragma once

#include "basekit/text/AString.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace io {

/// Where the newest record of a name stands in its file.
struct BlockPlace {
  std::uint64_t offset = 0;
  std::uint64_t payloadLength = 0;
  std::uint32_t nameLength = 0;
  std::uint8_t kind = 0;
  std::uint8_t flags = 0;
  /// Found not to fit its checksum; such a block is never returned.
  bool isDamaged = false;

  bool IsBlock() const;
  std::uint64_t RecordSize() const;
};

/// The places of one file's blocks by name, case ignored, with the chain of index records that tells them.
/// Each index record holds the names that changed since the one before; records of like size are merged, so that a
/// file with n blocks has about log n of them and an addition is written about log n times in all.
class RecordIndex {
public:
  using PlaceMap = std::map<AString, BlockPlace, AString::NoCaseLess>;
  struct Change {
    AString name;
    BlockPlace place;
  };
  /// An index record to be: the text and what becomes of the chain once it stands in the file.
  struct Plan {
    std::string payload;
    std::vector<AString> names;
    std::size_t keptSegments = 0;
  };

  /// A private file's index keeps deletions, since they hide blocks of the public file.
  explicit RecordIndex(bool keepsDeletions = false) : m_keepsDeletions(keepsDeletions) {}

  PlaceMap const & Places() const { return m_places; }
  /// Null for a name that is unknown; a deletion that is kept is found.
  BlockPlace const * Find(AString const & name) const;
  /// The same with the name as the record spells it.
  PlaceMap::value_type const * Entry(AString const & name) const;
  /// Blocks in the order in which they stand in the file.
  std::vector<Change> InFileOrder() const;
  std::uint64_t LiveBytes() const { return m_liveBytes; }
  std::size_t Blocks() const { return m_blocks; }
  bool IsEmpty() const { return m_places.empty(); }

  void Apply(Change const & change);
  void Apply(std::vector<Change> const & changes);
  void MarkDamaged(AString const & name);
  void Forget(AString const & name);

  /// Plans the next index record; `changes` are those that go to the file with it and are not applied yet.
  Plan PlanRecord(std::vector<Change> const & changes) const;
  void Accept(Plan const & plan, std::uint64_t offset);

  /// Takes an older record of a chain: names that are known already keep their places.  False when it is malformed.
  bool TakeSegment(std::string_view payload, std::uint64_t offset, std::uint64_t & previous);
  /// Ends the reading of a chain, whose records came newest first.
  void EndChain();

private:
  struct Segment {
    std::uint64_t offset = 0;
    std::vector<AString> names;
  };
  void Set(AString const & name, BlockPlace const & place);

  PlaceMap m_places;
  std::vector<Segment> m_segments;
  std::vector<AString> m_changed;
  std::uint64_t m_indexedTo = 0;
  std::uint64_t m_liveBytes = 0;
  std::size_t m_blocks = 0;
  bool m_keepsDeletions;
};

} // namespace io
