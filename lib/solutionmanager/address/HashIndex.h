#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Values under 64-bit hashes, several under one if need be.  They lie in a row, as they came; a flat table of small
/// numbers, which stays in the processor's caches, tells where: a look-up costs about one access to memory, and next to
/// none when values are asked for in the order in which they came.  An entry takes 19 to 43 bytes with values of 8. The
/// hash alone tells nothing: whoever looks up checks what is found.
///
/// Slots tell which hash has which slot: kScattered, or kRunsOf8, where hashes that differ in their last three bits
/// alone stand side by side.  Numbers that are asked for as they follow each other, such as the IDs of a sweep, then
/// share what the processor fetches.
enum class Slots { kScattered, kRunsOf8 };
template <class Value, Slots kSlots = Slots::kScattered> class HashIndex {
public:
  /// Room for so many values, so that filling the table moves none of them.
  void Reserve(std::size_t count) {
    m_entries.reserve(count);
    std::size_t slots = 8;
    while (slots * 3 < count * 4)
      slots *= 2;
    if (slots > m_slots.size())
      GrowTo(slots);
  }

  void Insert(std::uint64_t hash, Value value) {
    if ((m_entries.size() + 1) * 4 > m_slots.size() * 3)
      GrowTo(m_slots.empty() ? 8 : 2 * m_slots.size());
    m_entries.push_back({std::move(value), Spread(hash)});
    TakeSlot(m_entries.size() - 1);
  }

  /// The first value under the hash that `accept` takes; null when there is none.
  template <class Accept> Value const * Find(std::uint64_t hash, Accept accept) const {
    if (m_slots.empty())
      return nullptr;
    std::uint64_t const spread = Spread(hash);
    for (std::size_t at = Home(spread); m_slots[at] != kFree; at = Next(at)) {
      Entry const & entry = m_entries[m_slots[at] - 1];
      if (entry.hash == spread && accept(entry.value))
        return &entry.value;
    }
    return nullptr;
  }
  template <class Accept> Value * Find(std::uint64_t hash, Accept accept) {
    return const_cast<Value *>(std::as_const(*this).Find(hash, accept));
  }

  /// A value that Find gave.  What Find gave before is void then.
  void Erase(Value const * value) {
    auto const erased = static_cast<std::size_t>(reinterpret_cast<Entry const *>(value) - m_entries.data());
    std::size_t free = SlotOf(erased);
    // Those behind move up, so that no search ends before it should.
    for (std::size_t at = Next(free); m_slots[at] != kFree; at = Next(at)) {
      if (Distance(Home(m_entries[m_slots[at] - 1].hash), at) < Distance(free, at))
        continue;
      m_slots[free] = m_slots[at];
      free = at;
    }
    m_slots[free] = kFree;
    if (std::size_t const last = m_entries.size() - 1; erased != last) {
      m_slots[SlotOf(last)] = static_cast<std::uint32_t>(erased + 1);
      m_entries[erased] = std::move(m_entries[last]);
    }
    m_entries.pop_back();
  }

private:
  static constexpr std::uint32_t kFree = 0;
  struct Entry {
    Value value; // stands first, so that its address is the entry's
    std::uint64_t hash;
  };

  // Numbers in a row are no good hashes.
  static std::uint64_t Scatter(std::uint64_t hash) {
    hash = (hash ^ (hash >> 32)) * 0x9e3779b97f4a7c15u;
    return hash ^ (hash >> 29);
  }
  static std::uint64_t Spread(std::uint64_t hash) {
    return kSlots == Slots::kScattered ? Scatter(hash) : (Scatter(~(hash >> 3)) & ~std::uint64_t(7)) | (hash & 7);
  }
  std::size_t Home(std::uint64_t hash) const { return static_cast<std::size_t>(hash) & (m_slots.size() - 1); }
  std::size_t Next(std::size_t at) const { return (at + 1) & (m_slots.size() - 1); }
  std::size_t Distance(std::size_t from, std::size_t to) const { return (to - from) & (m_slots.size() - 1); }

  std::size_t SlotOf(std::size_t entry) const {
    std::size_t at = Home(m_entries[entry].hash);
    while (m_slots[at] != entry + 1)
      at = Next(at);
    return at;
  }
  void TakeSlot(std::size_t entry) {
    std::size_t at = Home(m_entries[entry].hash);
    while (m_slots[at] != kFree)
      at = Next(at);
    m_slots[at] = static_cast<std::uint32_t>(entry + 1);
  }
  void GrowTo(std::size_t slots) {
    m_slots.assign(slots, kFree);
    for (std::size_t entry = 0; entry < m_entries.size(); ++entry)
      TakeSlot(entry);
  }

  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_slots; // one more than the number of the entry; their number is a power of two
};
