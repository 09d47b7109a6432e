#include "basekit/io/BlockJournal.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <algorithm>
#include <atomic>

namespace io {

namespace {

std::uint64_t NewIdentity() {
  static std::atomic<std::uint64_t> s_last = 0;
  return ++s_last;
}

} // namespace

BlockJournal::BlockJournal(Fill fill) : m_fill(std::move(fill)), m_identity(NewIdentity()) {}

void BlockJournal::Insert(CBlock_item const & item, CBlock_item const * before) {
  if (!Begin("insert ", item))
    return;
  if (before) {
    m_line += "before ";
    if (!EncodeLine(*before, kExactDigits, m_line))
      return Restart();
    m_line += '\n';
  }
  Keep();
}

void BlockJournal::Remove(CBlock_item const & item) {
  if (Begin("remove ", item))
    Keep();
}

// Nobody can go on from an edit that is not kept, but it counts: what was stored before it is known no longer.
bool BlockJournal::Begin(char const * verb, CBlock_item const & item) {
  if (!m_isStored) {
    ++m_first;
    return false;
  }
  m_line = verb;
  if (!EncodeLine(item, kExactDigits, m_line)) {
    Restart();
    return false;
  }
  m_line += '\n';
  return true;
}

void BlockJournal::Keep() {
  if (m_editBytes + m_line.size() > kMostEditBytes)
    return Restart();
  m_editBytes += m_line.size();
  m_edits.push_back(m_line);
}

void BlockJournal::Restart() {
  m_identity = NewIdentity();
  m_first = 0;
  m_edits.clear();
  m_editBytes = 0;
  m_isStored = false;
}

bool BlockJournal::Knows(std::uint64_t identity, std::uint64_t from) const {
  return m_isStored && identity == m_identity && from >= m_first && from <= Position();
}

void BlockJournal::AppendEdits(std::uint64_t from, std::string & lines) const {
  for (auto edit = std::max(from, m_first); edit < Position(); ++edit)
    lines += m_edits[edit - m_first];
}

void BlockJournal::Stored(std::uint64_t upTo) {
  m_isStored = true;
  if (upTo <= m_first)
    return;
  auto const last = m_edits.begin() + static_cast<std::ptrdiff_t>(std::min(upTo, Position()) - m_first);
  for (auto edit = m_edits.begin(); edit != last; ++edit)
    m_editBytes -= edit->size();
  m_first += static_cast<std::uint64_t>(last - m_edits.begin());
  m_edits.erase(m_edits.begin(), last);
}

void BlockJournal::FillInto(CBlock & block) const {
  if (m_fill)
    m_fill(block);
}

} // namespace io
