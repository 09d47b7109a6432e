#include "basekit/io/CBlock.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CBlockVecPtr.h"

#include <algorithm>

namespace io {

namespace {

// Up to here a walk over the children is quicker than an index.
constexpr std::size_t kSmall = 8;

} // namespace

struct CBlock::NameIndex {
  std::multimap<AString, CBlock_item *, ACharNoCaseLess> byName;
  unsigned long renames = 0; // CBlock_item::RenameCount when it was last known to hold

  void Add(CBlock_item * item) { byName.emplace(item->Name(), item); }
  bool Holds() const {
    return std::all_of(byName.begin(), byName.end(),
                       [](auto const & entry) { return AString::MatchNoCase(entry.second->Name(), entry.first); });
  }
};

CBlock::CBlock() : CBlock_item(Kind::Block) {}

CBlock::CBlock(AString const & name) : CBlock_item(Kind::Block), m_name(name) {}

CBlock::CBlock(AString const & name, std::shared_ptr<BlockJournal> journal)
    : CBlock_item(Kind::Block), m_name(name), m_journal(std::move(journal)) {}

CBlock::CBlock(CBlock const & other) : CBlock_item(other), m_name(other.m_name) { CopyContent(other); }

CBlock::CBlock(CBlock && other) noexcept
    : CBlock_item(other), m_name(std::move(other.m_name)), m_items(std::move(other.m_items)),
      m_journal(std::move(other.m_journal)), m_index(std::move(other.m_index)) {
  other.Clear();
}

CBlock & CBlock::operator=(CBlock const & other) {
  if (this != &other) {
    auto const name = other.m_name; // the other may be a child, which goes
    CopyContent(other);
    Name(name);
  }
  return *this;
}

CBlock & CBlock::operator=(CBlock && other) noexcept {
  if (this != &other) {
    auto const name = other.m_name;
    auto items = std::move(other.m_items);
    auto journal = std::move(other.m_journal);
    other.Clear();
    m_index.reset();
    m_journal.swap(journal);
    m_items.swap(items); // the former children go when the new ones are in place
    Name(name);
  }
  return *this;
}

CBlock::~CBlock() = default;

void CBlock::CopyContent(CBlock const & other) {
  ItemList items;
  items.reserve(other.m_items.size());
  for (auto const & item : other.m_items) {
    items.emplace_back(item->Clone());
    items.back()->m_isChild = true;
  }
  auto journal = other.m_journal;
  m_index.reset();
  m_journal.swap(journal);
  m_items.swap(items); // the other may be a child, which goes with these
}

void CBlock::FillFromJournal() const {
  auto const journal = std::move(m_journal);
  CBlock content;
  journal->FillInto(content);
  m_items.swap(content.m_items);
}

void CBlock::Append(CBlock_item * item) {
  KVRO_ASSERT(item && !item->IsValue());
  if (!item || item->IsValue())
    return;
  Items().emplace_back(item);
  item->m_isChild = true;
  if (m_index)
    m_index->Add(item);
}

CBlock & CBlock::operator<<(CBlock const & block) {
  Append(block.Clone());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_func const & func) {
  Append(func.Clone());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_named_value const & named) {
  Append(named.Clone());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_vec const & vec) {
  Append(vec.Clone());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_ptr<CBlock> const & block) {
  Append(block.BaseItem());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_ptr<CBlock_func> const & func) {
  Append(func.BaseItem());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_ptr<CBlock_named_value> const & named) {
  Append(named.BaseItem());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_ptr<CBlock_vec> const & vec) {
  Append(vec.BaseItem());
  return *this;
}

CBlock & CBlock::operator<<(CBlock_ptr<CBlock_item> const & item) {
  Append(item.BaseItem());
  return *this;
}

CBlock & CBlock::operator<<(CBlockFuncPtr const & func) { return *this << func.GetTBlockFuncPtr(); }

CBlock & CBlock::operator<<(CBlockVecPtr const & vec) { return *this << vec.GetTBlockVecPtr(); }

CBlock const & CBlock::operator>>(CBlock & block) const {
  auto const * found = FindItem(block.Name(), Kind::Block);
  m_found = found != nullptr;
  if (found)
    block.CopyContent(static_cast<CBlock const &>(*found));
  return *this;
}

CBlock const & CBlock::operator>>(CBlock_named_value & named) const {
  auto const * found = FindItem(named.Name(), Kind::NamedValue);
  m_found = found != nullptr;
  if (found)
    named.Value() = static_cast<CBlock_named_value const &>(*found).Value();
  return *this;
}

CBlock const & CBlock::operator>>(CBlock_func & func) const {
  auto const * found = FindItem(func.Name(), Kind::Func);
  m_found = found != nullptr;
  if (found)
    static_cast<CBlock_func_arg &>(func) = static_cast<CBlock_func const &>(*found);
  return *this;
}

CBlock const & CBlock::operator>>(CBlock_vec & vec) const {
  auto const * found = FindItem(vec.Name(), Kind::Vec);
  m_found = found != nullptr;
  if (found)
    vec.Values() = static_cast<CBlock_vec const &>(*found).Values();
  return *this;
}

CBlock const & CBlock::operator>>(CBlockFuncPtr & func) const { return *this >> *func; }

void CBlock::ResetFound(bool found) const {
  if (m_found && !found)
    m_error = true;
  m_found = found;
}

bool CBlock::Error(bool const & flag) const {
  bool const met = m_error;
  m_error = false;
  return flag || met;
}

CBlock::NameIndex & CBlock::Index() const {
  if (m_index && m_index->renames != RenameCount() && !m_index->Holds())
    m_index.reset();
  if (!m_index) {
    m_index = std::make_unique<NameIndex>();
    for (auto const & item : Items())
      m_index->Add(item.Item());
  }
  m_index->renames = RenameCount();
  return *m_index;
}

CBlock::const_iterator CBlock::begin(AString const & name) const { return Index().byName.lower_bound(name); }

CBlock::const_iterator CBlock::end(AString const & name) const { return Index().byName.upper_bound(name); }

CBlock::const_iterator CBlock::find(AString const & name) const {
  auto const & index = Index().byName;
  auto const [first, last] = index.equal_range(name);
  return first == last ? index.end() : first;
}

CBlock::const_iterator CBlock::map_begin() const { return Index().byName.begin(); }

CBlock::const_iterator CBlock::map_end() const { return Index().byName.end(); }

CBlock_ptr<CBlock_item> CBlock::Item(const_iterator const & place) const {
  return m_index && place != m_index->byName.end() ? CBlock_ptr<CBlock_item>(place->second) : CBlock_ptr<CBlock_item>();
}

CBlock_item * CBlock::FindItem(AString const & name, Kind kind) const {
  if (Items().size() <= kSmall) {
    for (auto const & item : m_items)
      if (item->ItemKind() == kind && AString::MatchNoCase(item->Name(), name))
        return item.Item();
    return nullptr;
  }
  auto const [first, last] = Index().byName.equal_range(name);
  auto const at = std::find_if(first, last, [&](auto const & entry) { return entry.second->ItemKind() == kind; });
  return at == last ? nullptr : at->second;
}

CBlock const * CBlock::FindBlock(AString const & name) const {
  return static_cast<CBlock const *>(FindItem(name, Kind::Block));
}

void CBlock::Name(AString const & name) {
  NoteRename();
  m_name = name;
}

void CBlock::Clear() {
  m_index.reset();
  m_journal.reset();
  m_items.clear();
}

std::size_t CBlock::SizeOf(bool deep) const {
  std::size_t bytes = sizeof *this;
  if (!deep)
    return bytes;
  auto const & items = Items();
  bytes += m_name.size() * sizeof(wchar_t) + items.capacity() * sizeof(CBlock_ptr<CBlock_item>);
  for (auto const & item : items)
    bytes += item->SizeOf(true);
  return bytes;
}

} // namespace io
