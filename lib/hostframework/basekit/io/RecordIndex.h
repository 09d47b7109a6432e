#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace io {

/// Where the newest record of a name stands in its file.
struct BlockPlace {
  std::uint64_t offset = 0;
  std::uint64_t payloadLength = 0;
  std::uint32_t nameLength = 0;
  std::uint32_t payloadChecksum = 0;
  /// A RecordKind; 0 in an index for a name that is known and not there.
  std::uint8_t kind = 0;
  std::uint8_t flags = 0;
  /// Found not to fit its checksum; such a block is never returned.
  bool isDamaged = false;

  bool IsBlock() const;
  std::uint64_t RecordSize() const;
  std::uint64_t PayloadOffset() const;
};

/// The places of one file's blocks by name (UTF-8, case ignored), with the chain of index records that tells them.
/// Each index record holds the names that changed since the one before; records of like size are merged, so that a
/// file with n blocks has about log n of them and an addition is written about log n times in all.
/// About 70 bytes a block and the name: entries in one array, names in one text, found through a hash table that is
/// built on the first look-up.
class RecordIndex {
public:
  using Id = std::uint32_t;
  struct Change {
    std::string name;
    BlockPlace place;
  };
  /// An entry as it stands; the name is valid until the index changes.
  struct Named {
    std::string_view name;
    BlockPlace place;
  };
  /// An index record to be: the text and what becomes of the chain once it stands in the file.
  struct Plan {
    std::string payload;
    std::vector<Id> taken;
    std::size_t keptSegments = 0;
  };

  /// A private file's index keeps deletions, since they hide blocks of the public file.
  explicit RecordIndex(bool keepsDeletions = false) : m_keepsDeletions(keepsDeletions) {}

  /// Null for a name that is unknown; a deletion that is kept is found.
  BlockPlace const * Find(std::string_view name) const;
  /// The same with the name as the record spells it; false for a name that is unknown.
  bool Find(std::string_view name, Named & found) const;
  /// Blocks and kept deletions, in no order that means anything.
  template <class Visit> void ForEach(Visit const & visit) const {
    HashAll();
    for (auto const & entry : m_entries)
      if (entry.place.kind != 0)
        visit(Named{NameOf(entry), entry.place});
  }
  /// Blocks in the order in which they stand in the file.
  std::vector<Named> InFileOrder() const;
  std::uint64_t LiveBytes() const { return m_liveBytes; }
  std::size_t Blocks() const { return m_blocks; }
  /// No block, and no deletion that is kept.
  bool IsEmpty() const { return m_present == 0; }
  /// Where the record stands that was applied last; 0 when there was none.
  std::uint64_t Newest() const { return m_newest; }

  void Apply(Change const & change);
  void Apply(std::vector<Change> const & changes);
  void MarkDamaged(std::string_view name);
  void Forget(std::string_view name);

  /// Plans the next index record; `changes` are those that go to the file with it and are not applied yet.  A whole one
  /// takes over all records before it: a file with one index record in file order is read fastest.
  Plan PlanRecord(std::vector<Change> const & changes, bool isBinary, bool isWhole = false) const;
  /// The plan's record stands at the offset, and its changes are applied.
  void Accept(Plan const & plan, std::uint64_t offset);

  /// Takes an older record of a chain: names that are known already keep their places.  False when it is malformed.
  bool TakeSegment(std::string_view payload, bool isBinary, std::uint64_t offset, std::uint64_t & previous);
  /// Ends the reading of a chain, whose records came newest first.
  void EndChain();
  /// Deletions are kept no longer.
  void ForgetDeletions();

private:
  struct Entry {
    BlockPlace place;
    std::uint64_t nameAt = 0;
    std::uint32_t mark = 0;
  };
  struct Segment {
    std::uint64_t offset = 0;
    std::vector<Id> ids;
  };
  static constexpr Id kNone = 0xFFFFFFFF;

  std::string_view NameOf(Entry const & entry) const {
    return std::string_view(m_names).substr(entry.nameAt, entry.place.nameLength);
  }
  void HashAll() const;
  void Rehash(std::size_t entries) const;
  struct Slot {
    std::uint32_t hash = 0;
    Id id = kNone;
  };
  Slot & SlotOf(std::string_view name, std::uint32_t hash) const;
  Id IdOf(std::string_view name) const;
  Id Add(std::string_view name, BlockPlace const & place);
  void Set(Id id, std::string_view name, BlockPlace const & place);
  void Count(BlockPlace const & place, int sign) const;
  void DropAbsent();

  mutable std::vector<Entry> m_entries;
  std::string m_names;
  /// Ids by hash of the name, open addressing; entries from m_hashed on are not in it yet.
  mutable std::vector<Slot> m_slots;
  mutable std::size_t m_hashed = 0;
  std::vector<Segment> m_segments;
  std::vector<Id> m_changed;
  std::uint64_t m_indexedTo = 0;
  std::uint64_t m_newest = 0;
  mutable std::uint64_t m_liveBytes = 0;
  mutable std::size_t m_blocks = 0;
  mutable std::size_t m_present = 0;
  mutable std::uint32_t m_round = 0;
  bool m_keepsDeletions;
};

} // namespace io
