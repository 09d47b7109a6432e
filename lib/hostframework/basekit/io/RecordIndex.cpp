#include "basekit/io/RecordIndex.h"

#include "basekit/io/RecordFormat.h"
#include "basekit/text/Utf8.h"

#include <algorithm>

namespace io {

namespace {

// A segment is merged into the next one unless it is this many times as long.
constexpr std::size_t kGrowth = 2;

void AppendEntry(std::string & payload, AString const & name, BlockPlace const & place) {
  std::string const bytes = text::ToUtf8(name);
  payload += '\n';
  AppendHex(payload, place.kind, 2);
  payload += ' ';
  AppendHex(payload, place.flags, 2);
  payload += ' ';
  AppendHex(payload, place.offset, 16);
  payload += ' ';
  AppendHex(payload, place.payloadLength, 12);
  payload += ' ';
  AppendHex(payload, bytes.size(), 8);
  payload += ' ';
  payload += bytes;
}

// Takes " xxxx" or "\nxxxx" off the front.
bool TakeHex(std::string_view & left, char before, std::size_t digits, std::uint64_t & value) {
  if (left.size() <= digits || left[0] != before || !ParseHex(left.substr(1, digits), value))
    return false;
  left.remove_prefix(digits + 1);
  return true;
}

bool TakeEntry(std::string_view & left, RecordIndex::Change & change) {
  std::uint64_t kind = 0;
  std::uint64_t flags = 0;
  std::uint64_t nameLength = 0;
  bool const good = TakeHex(left, '\n', 2, kind) && TakeHex(left, ' ', 2, flags) &&
                    TakeHex(left, ' ', 16, change.place.offset) && TakeHex(left, ' ', 12, change.place.payloadLength) &&
                    TakeHex(left, ' ', 8, nameLength);
  bool const isKnown = kind == kBlockRecord || kind == kDeleteRecord;
  if (!good || !isKnown || left.size() <= nameLength || left[0] != ' ')
    return false;
  change.place.kind = static_cast<std::uint8_t>(kind);
  change.place.flags = static_cast<std::uint8_t>(flags);
  change.place.nameLength = static_cast<std::uint32_t>(nameLength);
  bool const isText = text::FromUtf8Strict(left.substr(1, nameLength), change.name);
  left.remove_prefix(nameLength + 1);
  return isText;
}

} // namespace

bool BlockPlace::IsBlock() const { return kind == kBlockRecord; }

std::uint64_t BlockPlace::RecordSize() const { return kRecordHeaderSize + nameLength + payloadLength + 2; }

BlockPlace const * RecordIndex::Find(AString const & name) const {
  auto const at = m_places.find(name);
  return at == m_places.end() ? nullptr : &at->second;
}

RecordIndex::PlaceMap::value_type const * RecordIndex::Entry(AString const & name) const {
  auto const at = m_places.find(name);
  return at == m_places.end() ? nullptr : &*at;
}

std::vector<RecordIndex::Change> RecordIndex::InFileOrder() const {
  std::vector<Change> blocks;
  blocks.reserve(m_blocks);
  for (auto const & [name, place] : m_places)
    if (place.IsBlock())
      blocks.push_back({name, place});
  std::sort(blocks.begin(), blocks.end(),
            [](Change const & a, Change const & b) { return a.place.offset < b.place.offset; });
  return blocks;
}

void RecordIndex::Set(AString const & name, BlockPlace const & place) {
  Forget(name); // The name may come in another spelling.
  if (!place.IsBlock() && !m_keepsDeletions)
    return;
  m_places.emplace(name, place);
  if (place.IsBlock()) {
    m_liveBytes += place.RecordSize();
    ++m_blocks;
  }
}

void RecordIndex::Forget(AString const & name) {
  auto const at = m_places.find(name);
  if (at == m_places.end())
    return;
  if (at->second.IsBlock()) {
    m_liveBytes -= at->second.RecordSize();
    --m_blocks;
  }
  m_places.erase(at);
}

void RecordIndex::Apply(Change const & change) {
  BlockPlace const * const former = Find(change.name);
  bool const isListed = former && former->offset >= m_indexedTo;
  if (!isListed)
    m_changed.push_back(change.name);
  Set(change.name, change.place);
}

void RecordIndex::Apply(std::vector<Change> const & changes) {
  for (auto const & change : changes)
    Apply(change);
}

void RecordIndex::MarkDamaged(AString const & name) {
  auto const at = m_places.find(name);
  if (at != m_places.end())
    at->second.isDamaged = true;
}

RecordIndex::Plan RecordIndex::PlanRecord(std::vector<Change> const & changes) const {
  std::map<AString, BlockPlace const *, AString::NoCaseLess> latest;
  auto const add = [&](AString const & name) {
    BlockPlace const * const place = Find(name);
    latest.emplace(place ? m_places.find(name)->first : name, place);
  };
  for (auto const & change : changes) {
    latest.erase(change.name);
    latest.emplace(change.name, &change.place);
  }
  for (auto const & name : m_changed)
    add(name);
  Plan plan;
  plan.keptSegments = m_segments.size();
  while (plan.keptSegments > 0 && m_segments[plan.keptSegments - 1].names.size() <= kGrowth * latest.size())
    for (auto const & name : m_segments[--plan.keptSegments].names)
      add(name);
  plan.payload = "previous ";
  AppendHex(plan.payload, plan.keptSegments > 0 ? m_segments[plan.keptSegments - 1].offset : 0, 16);
  BlockPlace deleted;
  deleted.kind = kDeleteRecord;
  bool const isOldest = plan.keptSegments == 0;
  for (auto const & [name, place] : latest) {
    bool const isBlock = place && place->IsBlock();
    if (!isBlock && isOldest && !m_keepsDeletions)
      continue;
    AppendEntry(plan.payload, name, place ? *place : deleted);
    plan.names.push_back(name);
  }
  return plan;
}

void RecordIndex::Accept(Plan const & plan, std::uint64_t offset) {
  m_segments.resize(plan.keptSegments);
  m_segments.push_back({offset, plan.names});
  m_changed.clear();
  m_indexedTo = offset;
}

bool RecordIndex::TakeSegment(std::string_view payload, std::uint64_t offset, std::uint64_t & previous) {
  constexpr std::string_view kHead = "previous";
  if (payload.substr(0, kHead.size()) != kHead)
    return false;
  payload.remove_prefix(kHead.size());
  if (!TakeHex(payload, ' ', 16, previous) || previous >= offset)
    return false;
  Segment segment;
  segment.offset = offset;
  while (!payload.empty()) {
    Change change;
    if (!TakeEntry(payload, change) || change.place.offset >= offset)
      return false;
    segment.names.push_back(change.name);
    // Deletions stay until the end of the chain, to hide older entries.
    if (m_places.emplace(change.name, change.place).second && change.place.IsBlock()) {
      m_liveBytes += change.place.RecordSize();
      ++m_blocks;
    }
  }
  m_segments.push_back(std::move(segment));
  return true;
}

void RecordIndex::EndChain() {
  std::reverse(m_segments.begin(), m_segments.end());
  m_indexedTo = m_segments.empty() ? 0 : m_segments.back().offset;
  m_changed.clear();
  if (!m_keepsDeletions)
    std::erase_if(m_places, [](auto const & entry) { return !entry.second.IsBlock(); });
}

} // namespace io
