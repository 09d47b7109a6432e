#include "basekit/io/BlockCodec.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"

#include <cstdint>
#include <unordered_map>

namespace io {

namespace {

/// The children of a block as a list, found by their packed texts.
class EditedChildren {
public:
  /// False when a child can't be packed.
  bool Take(CBlock const & block);
  /// A line that begins with "insert ", "before " or "remove ".
  bool Carry(std::string_view line);
  void Give(CBlock & block) const;

private:
  struct Node {
    CBlock_ptr<CBlock_item> item;
    std::size_t previous = 0;
    std::size_t next = 0;
  };
  static constexpr std::size_t kEnd = 0; // the ring's own node
  static constexpr std::size_t kNone = SIZE_MAX;

  bool Insert(std::string_view packed);
  bool MoveBefore(std::string_view packed);
  bool Remove(std::string_view packed);
  std::size_t Find(std::string_view packed) const;
  void Link(std::size_t node, std::size_t next);
  void Unlink(std::size_t node);

  std::string m_texts; // of the block's own children; the others lie in the lines
  std::vector<Node> m_nodes = std::vector<Node>(1);
  std::unordered_map<std::string_view, std::size_t> m_places; // none: stands twice
  std::size_t m_inserted = kNone;                             // by the line just before
};

bool EditedChildren::Take(CBlock const & block) {
  std::vector<std::size_t> ends;
  ends.reserve(static_cast<std::size_t>(block.Size()));
  m_nodes.reserve(ends.capacity() + 1);
  for (auto const & child : block) {
    if (!EncodeLine(*child, kExactDigits, m_texts))
      return false;
    ends.push_back(m_texts.size());
    m_nodes.push_back({child});
    Link(m_nodes.size() - 1, kEnd);
  }
  m_places.reserve(ends.size());
  std::size_t start = 0;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    auto const packed = std::string_view(m_texts).substr(start, ends[i] - start);
    if (auto const [place, isNew] = m_places.try_emplace(packed, i + 1); !isNew)
      place->second = kNone;
    start = ends[i];
  }
  return true;
}

bool EditedChildren::Carry(std::string_view line) {
  constexpr std::size_t kVerb = 7;
  auto const verb = line.substr(0, kVerb);
  auto const packed = line.substr(verb.size());
  if (verb == "before ")
    return MoveBefore(packed);
  m_inserted = kNone;
  if (verb == "insert ")
    return Insert(packed);
  return verb == "remove " && Remove(packed);
}

bool EditedChildren::Insert(std::string_view packed) {
  auto const item = DecodeItem(packed, Form::Text);
  if (!item || item->IsValue() || !m_places.try_emplace(packed, m_nodes.size()).second)
    return false;
  m_inserted = m_nodes.size();
  m_nodes.push_back({item});
  Link(m_inserted, kEnd);
  return true;
}

bool EditedChildren::MoveBefore(std::string_view packed) {
  auto const next = Find(packed);
  if (m_inserted == kNone || next == kNone || next == m_inserted)
    return false;
  Unlink(m_inserted);
  Link(m_inserted, next);
  m_inserted = kNone;
  return true;
}

bool EditedChildren::Remove(std::string_view packed) {
  auto const node = Find(packed);
  if (node == kNone)
    return false;
  Unlink(node);
  m_nodes[node].item = {};
  m_places.erase(packed);
  return true;
}

std::size_t EditedChildren::Find(std::string_view packed) const {
  auto const place = m_places.find(packed);
  return place == m_places.end() ? kNone : place->second;
}

void EditedChildren::Link(std::size_t node, std::size_t next) {
  auto const previous = m_nodes[next].previous;
  m_nodes[node].previous = previous;
  m_nodes[node].next = next;
  m_nodes[previous].next = node;
  m_nodes[next].previous = node;
}

void EditedChildren::Unlink(std::size_t node) {
  m_nodes[m_nodes[node].previous].next = m_nodes[node].next;
  m_nodes[m_nodes[node].next].previous = m_nodes[node].previous;
}

void EditedChildren::Give(CBlock & block) const {
  block.Clear();
  for (auto node = m_nodes[kEnd].next; node != kEnd; node = m_nodes[node].next)
    block << m_nodes[node].item;
}

} // namespace

bool ApplyEdits(std::string_view lines, CBlock & block) {
  EditedChildren children;
  if (!children.Take(block))
    return false;
  while (!lines.empty()) {
    auto const end = lines.find('\n');
    if (end == std::string_view::npos || !children.Carry(lines.substr(0, end)))
      return false;
    lines.remove_prefix(end + 1);
  }
  children.Give(block);
  return true;
}

} // namespace io
