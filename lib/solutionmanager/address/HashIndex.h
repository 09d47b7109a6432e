#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Values under 64-bit hashes, several under one if need be, in one flat table: a look-up costs about one access to
/// memory, an entry 16 to 43 bytes with values of 8.  The hash alone tells nothing: whoever looks up checks what is
/// found.
///
/// Slots tell which hash has which slot: kScattered, or kRunsOf8, where hashes that differ in their last three bits
/// alone stand side by side.  Numbers that are asked for as they follow each other, such as the IDs of a sweep, then
/// share what the processor fetches.
enum class Slots { kScattered, kRunsOf8 };
template <class Value, Slots kSlots = Slots::kScattered> class HashIndex {
public:
  /// Room for so many values, so that filling the table moves none of them.
  void Reserve(std::size_t count) {
    std::size_t slots = 8;
    while (slots * 3 < count * 4)
      slots *= 2;
    if (slots > m_slots.size())
      GrowTo(slots);
  }

  void Insert(std::uint64_t hash, Value value) {
    if ((m_count + 1) * 4 > m_slots.size() * 3)
      GrowTo(m_slots.empty() ? 8 : 2 * m_slots.size());
    Place(Spread(hash), std::move(value));
    ++m_count;
  }

  /// The first value under the hash that `accept` takes; null when there is none.
  template <class Accept> Value const * Find(std::uint64_t hash, Accept accept) const {
    if (m_slots.empty())
      return nullptr;
    std::uint64_t const spread = Spread(hash);
    for (std::size_t at = Home(spread); m_slots[at].hash != kFree; at = Next(at))
      if (m_slots[at].hash == spread && accept(m_slots[at].value))
        return &m_slots[at].value;
    return nullptr;
  }
  template <class Accept> Value * Find(std::uint64_t hash, Accept accept) {
    return const_cast<Value *>(std::as_const(*this).Find(hash, accept));
  }

  /// A value that Find gave.  What Find gave before is void then.
  void Erase(Value const * value) {
    auto free = static_cast<std::size_t>(reinterpret_cast<Slot const *>(value) - m_slots.data());
    // Those behind move up, so that no search ends before it should.
    for (std::size_t at = Next(free); m_slots[at].hash != kFree; at = Next(at)) {
      if (Distance(Home(m_slots[at].hash), at) < Distance(free, at))
        continue;
      m_slots[free] = m_slots[at];
      free = at;
    }
    m_slots[free] = Slot();
    --m_count;
  }

private:
  static constexpr std::uint64_t kFree = 0;
  struct Slot {
    Value value{}; // stands first, so that its address is the slot's
    std::uint64_t hash = kFree;
  };

  // Numbers in a row are no good hashes.
  static std::uint64_t Scatter(std::uint64_t hash) {
    hash = (hash ^ (hash >> 32)) * 0x9e3779b97f4a7c15u;
    return hash ^ (hash >> 29);
  }
  static std::uint64_t Spread(std::uint64_t hash) {
    std::uint64_t const spread =
        kSlots == Slots::kScattered ? Scatter(hash) : (Scatter(~(hash >> 3)) & ~std::uint64_t(7)) | (hash & 7);
    return spread == kFree ? 1 : spread;
  }
  std::size_t Home(std::uint64_t hash) const { return static_cast<std::size_t>(hash) & (m_slots.size() - 1); }
  std::size_t Next(std::size_t at) const { return (at + 1) & (m_slots.size() - 1); }
  std::size_t Distance(std::size_t from, std::size_t to) const { return (to - from) & (m_slots.size() - 1); }

  void Place(std::uint64_t hash, Value value) {
    std::size_t at = Home(hash);
    while (m_slots[at].hash != kFree)
      at = Next(at);
    m_slots[at].value = std::move(value);
    m_slots[at].hash = hash;
  }
  void GrowTo(std::size_t slots) {
    std::vector<Slot> former(slots);
    former.swap(m_slots);
    for (Slot & slot : former)
      if (slot.hash != kFree)
        Place(slot.hash, std::move(slot.value));
  }

  std::vector<Slot> m_slots; // their number is a power of two
  std::size_t m_count = 0;
};
