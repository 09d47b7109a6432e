#pragma once

#include "basekit/io/ACharNoCaseLess.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CBlock_vec.h"

#include <map>
#include <memory>
#include <vector>

namespace io {

class BlockJournal;
class CBlockFuncPtr;
class CBlockVecPtr;

/// A named list of items in order of insertion, with a name index that ignores case.  Items given by reference are
/// copied deep, items given by pointer are shared: a later change of theirs shows here.  Copies of a block are deep.
/// A null pointer or a bare value cannot be a child: an assertion.  Look-ups set the found flag and never throw.
class CBlock final : public CBlock_item {
public:
  using iterator = std::vector<CBlock_ptr<CBlock_item>>::const_iterator;
  /// A place in the name index, by names without case; equal names in order of insertion.
  using const_iterator = std::multimap<AString, CBlock_item *, ACharNoCaseLess>::const_iterator;

  CBlock();
  explicit CBlock(AString const & name);
  /// A block whose content is that of the journal, made when somebody looks; by then it is a block like any other.  A
  /// copy of one that nobody looked at shares the journal.
  CBlock(AString const & name, std::shared_ptr<BlockJournal> journal);
  CBlock(CBlock const & other);
  CBlock(CBlock && other) noexcept;
  CBlock & operator=(CBlock const & other);
  CBlock & operator=(CBlock && other) noexcept;
  ~CBlock() override;

  CBlock & operator<<(CBlock const & block);
  CBlock & operator<<(CBlock_func const & func);
  CBlock & operator<<(CBlock_named_value const & named);
  CBlock & operator<<(CBlock_vec const & vec);
  CBlock & operator<<(CBlock_ptr<CBlock> const & block);
  CBlock & operator<<(CBlock_ptr<CBlock_func> const & func);
  CBlock & operator<<(CBlock_ptr<CBlock_named_value> const & named);
  CBlock & operator<<(CBlock_ptr<CBlock_vec> const & vec);
  CBlock & operator<<(CBlock_ptr<CBlock_item> const & item);
  CBlock & operator<<(CBlockFuncPtr const & func);
  CBlock & operator<<(CBlockVecPtr const & vec);

  iterator begin() const { return Items().begin(); }
  iterator end() const { return Items().end(); }

  /// The first child of that kind under the argument's name: its content is copied, the argument keeps its name.
  CBlock const & operator>>(CBlock & block) const;
  CBlock const & operator>>(CBlock_named_value & named) const;
  CBlock const & operator>>(CBlock_func & func) const;
  CBlock const & operator>>(CBlock_vec & vec) const;
  CBlock const & operator>>(CBlockFuncPtr & func) const;
  bool Found() const { return m_found; }
  /// Clearing the flag after a hit says that the value did not convert: Error reports that.
  void ResetFound(bool found) const;
  /// True for the flag, or when a read since the last call met a value that did not convert.
  bool Error(bool const & flag) const;

  const_iterator begin(AString const & name) const;
  const_iterator end(AString const & name) const;
  const_iterator find(AString const & name) const;
  const_iterator map_begin() const;
  const_iterator map_end() const;
  /// Null at the end of the index.
  CBlock_ptr<CBlock_item> Item(const_iterator const & place) const;
  /// The first child of that name and kind where it lies, or null; the found flag is left alone.
  CBlock_item * FindItem(AString const & name, Kind kind) const;
  CBlock const * FindBlock(AString const & name) const;
  /// Null once somebody looked at the content, or changed it.
  std::shared_ptr<BlockJournal> const & Journal() const { return m_journal; }

  AString Name() const override { return m_name; }
  void Name(AString const & name) override;
  bool Empty() const override { return Items().empty(); }
  int Size() const override { return static_cast<int>(Items().size()); }
  void Clear() override;
  bool IsBlock() const override { return true; }
  std::size_t SizeOf(bool deep) const override;

private:
  struct NameIndex;
  using ItemList = std::vector<CBlock_ptr<CBlock_item>>;

  ItemList & Items() const {
    if (m_journal) [[unlikely]]
      FillFromJournal();
    return m_items;
  }
  void FillFromJournal() const;
  NameIndex & Index() const;
  void Append(CBlock_item * item);
  void CopyContent(CBlock const & other);

  AString m_name;
  mutable ItemList m_items;
  mutable std::shared_ptr<BlockJournal> m_journal; // while it stands, the items are none
  mutable std::unique_ptr<NameIndex> m_index;
  mutable bool m_found = false;
  mutable bool m_error = false;
};

} // namespace io
