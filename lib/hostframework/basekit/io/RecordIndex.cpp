#include "basekit/io/RecordIndex.h"

#include "basekit/io/IndexFormat.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/text/Utf8.h"

#include <algorithm>

namespace io {

namespace {

// A segment is merged into the next one unless it is this many times as long.
constexpr std::size_t kGrowth = 2;

} // namespace

bool BlockPlace::IsBlock() const { return kind == kBlockRecord || kind == kPatchRecord; }

std::uint64_t BlockPlace::RecordSize() const { return kRecordHeaderSize + nameLength + payloadLength + 2; }

std::uint64_t BlockPlace::PayloadOffset() const { return offset + kRecordHeaderSize + nameLength + 1; }

// The slot that holds the name, or the free one where it belongs.
RecordIndex::Slot & RecordIndex::SlotOf(std::string_view name, std::uint32_t hash) const {
  auto const mask = static_cast<std::uint32_t>(m_slots.size() - 1);
  for (std::uint32_t at = hash & mask;; at = (at + 1) & mask) {
    Slot & slot = m_slots[at];
    if (slot.id == kNone || (slot.hash == hash && text::EqualNoCase(NameOf(m_entries[slot.id]), name)))
      return slot;
  }
}

// Keeps a third of the slots free.
void RecordIndex::Rehash(std::size_t entries) const {
  if (entries * 3 <= m_slots.size() * 2 && !m_slots.empty())
    return;
  std::size_t size = 32;
  while (size < entries * 3)
    size *= 2;
  std::vector<Slot> former(size);
  former.swap(m_slots);
  auto const mask = static_cast<std::uint32_t>(size - 1);
  for (Slot const & slot : former) {
    std::uint32_t at = slot.hash & mask;
    if (slot.id == kNone)
      continue;
    while (m_slots[at].id != kNone)
      at = (at + 1) & mask;
    m_slots[at] = slot;
  }
}

void RecordIndex::HashAll() const {
  if (m_hashed == m_entries.size())
    return;
  Rehash(m_entries.size());
  for (; m_hashed < m_entries.size(); ++m_hashed) {
    auto & entry = m_entries[m_hashed];
    std::uint32_t const hash = text::HashNoCase(NameOf(entry));
    Slot & slot = SlotOf(NameOf(entry), hash);
    if (slot.id == kNone) {
      slot = {hash, static_cast<Id>(m_hashed)};
    } else {
      // One record names it twice: the first counts.
      Count(entry.place, -1);
      entry.place.kind = 0;
    }
  }
}

RecordIndex::Id RecordIndex::IdOf(std::string_view name) const {
  HashAll();
  return m_slots.empty() ? kNone : SlotOf(name, text::HashNoCase(name)).id;
}

BlockPlace const * RecordIndex::Find(std::string_view name) const {
  Id const id = IdOf(name);
  return id == kNone || m_entries[id].place.kind == 0 ? nullptr : &m_entries[id].place;
}

bool RecordIndex::Find(std::string_view name, Named & found) const {
  Id const id = IdOf(name);
  if (id == kNone || m_entries[id].place.kind == 0)
    return false;
  found = {NameOf(m_entries[id]), m_entries[id].place};
  return true;
}

std::vector<RecordIndex::Named> RecordIndex::InFileOrder() const {
  if (m_segments.size() > 1)
    HashAll();
  std::vector<Named> blocks;
  blocks.reserve(m_blocks);
  for (auto const & entry : m_entries)
    if (entry.place.IsBlock())
      blocks.push_back({NameOf(entry), entry.place});
  auto const isBefore = [](Named const & a, Named const & b) { return a.place.offset < b.place.offset; };
  if (!std::is_sorted(blocks.begin(), blocks.end(), isBefore))
    std::sort(blocks.begin(), blocks.end(), isBefore);
  return blocks;
}

void RecordIndex::Count(BlockPlace const & place, int sign) const {
  if (place.kind == 0)
    return;
  m_present += static_cast<std::size_t>(sign);
  if (!place.IsBlock())
    return;
  m_blocks += static_cast<std::size_t>(sign);
  m_liveBytes += static_cast<std::uint64_t>(sign) * place.RecordSize();
}

// A name that is not known yet.
RecordIndex::Id RecordIndex::Add(std::string_view name, BlockPlace const & place) {
  Entry entry;
  entry.place = place;
  entry.nameAt = m_names.size();
  m_names += name;
  m_entries.push_back(entry);
  Count(place, 1);
  return static_cast<Id>(m_entries.size() - 1);
}

void RecordIndex::Set(Id id, std::string_view name, BlockPlace const & place) {
  auto & entry = m_entries[id];
  Count(entry.place, -1);
  if (NameOf(entry) != name) { // another spelling
    entry.nameAt = m_names.size();
    m_names += name;
  }
  entry.place = place;
  entry.place.nameLength = static_cast<std::uint32_t>(name.size());
  Count(place, 1);
}

void RecordIndex::Apply(Change const & change) {
  BlockPlace place = change.place;
  if (!place.IsBlock() && !m_keepsDeletions)
    place.kind = 0;
  m_newest = std::max(m_newest, place.offset);
  HashAll();
  Rehash(m_entries.size() + 1);
  std::uint32_t const hash = text::HashNoCase(change.name);
  Slot & slot = SlotOf(change.name, hash);
  if (slot.id != kNone) {
    if (m_entries[slot.id].place.offset < m_indexedTo)
      m_changed.push_back(slot.id);
    Set(slot.id, change.name, place);
    return;
  }
  place.nameLength = static_cast<std::uint32_t>(change.name.size());
  slot = {hash, Add(change.name, place)};
  m_hashed = m_entries.size();
  m_changed.push_back(slot.id);
}

void RecordIndex::Apply(std::vector<Change> const & changes) {
  for (auto const & change : changes)
    Apply(change);
}

void RecordIndex::MarkDamaged(std::string_view name) {
  Id const id = IdOf(name);
  if (id != kNone)
    m_entries[id].place.isDamaged = true;
}

void RecordIndex::Forget(std::string_view name) {
  Id const id = IdOf(name);
  if (id == kNone)
    return;
  Count(m_entries[id].place, -1);
  m_entries[id].place.kind = 0;
}

RecordIndex::Plan RecordIndex::PlanRecord(std::vector<Change> const & changes, bool isBinary, bool isWhole) const {
  HashAll();
  RecordIndex latest(true);
  latest.m_entries.reserve(changes.size());
  latest.Apply(changes);
  ++m_round;
  for (auto const & entry : latest.m_entries)
    if (Id const id = IdOf(latest.NameOf(entry)); id != kNone)
      m_entries[id].mark = m_round;
  Plan plan;
  std::vector<Id> listed;
  auto const take = [&](Id id) {
    if (m_entries[id].mark != m_round) {
      m_entries[id].mark = m_round;
      listed.push_back(id);
    }
  };
  for (Id const id : m_changed)
    take(id);
  std::size_t const alreadyChanged = listed.size();
  plan.keptSegments = m_segments.size();
  while (plan.keptSegments > 0 && (isWhole || m_segments[plan.keptSegments - 1].ids.size() <=
                                                  kGrowth * (latest.m_entries.size() + listed.size())))
    for (Id const id : m_segments[--plan.keptSegments].ids)
      take(id);
  plan.taken.assign(listed.begin() + static_cast<std::ptrdiff_t>(alreadyChanged), listed.end());
  AppendIndexHead(plan.payload, plan.keptSegments > 0 ? m_segments[plan.keptSegments - 1].offset : 0);
  bool const isOldest = plan.keptSegments == 0;
  auto const append = [&](RecordIndex const & from, Entry const & entry) {
    BlockPlace place = entry.place;
    bool const isAbsent = place.kind == 0;
    if ((isAbsent && m_keepsDeletions) || (isOldest && !m_keepsDeletions && !place.IsBlock()))
      return;
    if (isAbsent)
      place.kind = kDeleteRecord;
    AppendIndexEntry(plan.payload, from.NameOf(entry), place, isBinary);
  };
  std::sort(listed.begin(), listed.end(),
            [&](Id a, Id b) { return m_entries[a].place.offset < m_entries[b].place.offset; });
  for (Id const id : listed)
    append(*this, m_entries[id]);
  for (auto const & entry : latest.m_entries)
    append(latest, entry);
  return plan;
}

void RecordIndex::Accept(Plan const & plan, std::uint64_t offset) {
  m_segments.resize(plan.keptSegments);
  Segment segment;
  segment.offset = offset;
  segment.ids = plan.taken;
  segment.ids.insert(segment.ids.end(), m_changed.begin(), m_changed.end());
  m_segments.push_back(std::move(segment));
  m_changed.clear();
  m_changed.shrink_to_fit();
  m_indexedTo = offset;
  if (plan.keptSegments == 0 && m_entries.size() > 2 * m_present + 64)
    DropAbsent();
}

// With one segment left no older one is to be hidden.
void RecordIndex::DropAbsent() {
  std::vector<Entry> entries;
  entries.swap(m_entries);
  std::string names;
  names.swap(m_names);
  m_slots.clear();
  m_hashed = 0;
  m_blocks = m_present = 0;
  m_liveBytes = 0;
  m_entries.reserve(m_present);
  for (auto const & entry : entries)
    if (entry.place.kind != 0)
      Add(std::string_view(names).substr(entry.nameAt, entry.place.nameLength), entry.place);
  auto & ids = m_segments.back().ids;
  ids.resize(m_entries.size());
  for (std::size_t id = 0; id < ids.size(); ++id)
    ids[id] = static_cast<Id>(id);
}

bool RecordIndex::TakeSegment(std::string_view payload, bool isBinary, std::uint64_t offset, std::uint64_t & previous) {
  if (!TakeIndexHead(payload, previous) || previous >= offset)
    return false;
  Segment segment;
  segment.offset = offset;
  bool const isFirst = m_entries.empty();
  // An entry is no shorter than this: memory stays within what the file holds.
  m_entries.reserve(m_entries.size() + payload.size() / (isBinary ? kSmallestBinaryEntry : kSmallestTextEntry));
  if (isFirst)
    m_names.reserve(payload.size() / 3);
  while (!payload.empty()) {
    BlockPlace place;
    std::string_view name;
    if (!TakeIndexEntry(payload, isBinary, name, place) || place.offset >= offset)
      return false;
    Id id = isFirst ? kNone : IdOf(name);
    if (id == kNone)
      id = Add(name, place);
    segment.ids.push_back(id);
    m_newest = std::max(m_newest, place.offset);
  }
  m_segments.push_back(std::move(segment));
  return true;
}

void RecordIndex::EndChain() {
  std::reverse(m_segments.begin(), m_segments.end());
  m_indexedTo = m_segments.empty() ? 0 : m_segments.back().offset;
  m_changed.clear();
  if (!m_keepsDeletions)
    ForgetDeletions(); // They stayed until now, to hide older entries.
}

void RecordIndex::ForgetDeletions() {
  m_keepsDeletions = false;
  for (auto & entry : m_entries)
    if (entry.place.kind != 0 && !entry.place.IsBlock()) {
      Count(entry.place, -1);
      entry.place.kind = 0;
    }
}

} // namespace io
