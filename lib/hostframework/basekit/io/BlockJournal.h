#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace io {

class CBlock;
class CBlock_item;

/// What changed in a block that grows item by item, so that a library can store the change instead of the whole.
/// Its owner keeps the content in a form of its own and tells each edit; the whole block is made only when somebody
/// looks (CBlock(name, journal)).  Edits are kept from the first time on that somebody stored the block; a journal that
/// grew beyond use forgets them, and the next store is whole.  Items are told by their packed text, which must be
/// unique within the block.
class BlockJournal {
public:
  /// Appends the present content, in order.
  using Fill = std::function<void(CBlock &)>;

  explicit BlockJournal(Fill fill);
  BlockJournal(BlockJournal const &) = delete;
  BlockJournal & operator=(BlockJournal const &) = delete;

  /// The owner's: call it after each change of the content.  `before` is the item that the new one stands before, null
  /// for the end.
  void Insert(CBlock_item const & item, CBlock_item const * before);
  void Remove(CBlock_item const & item);
  /// The content changed in a way that edits don't tell.
  void Restart();
  /// False while nobody stored the block: an edit is as good as a restart then.
  bool KeepsEdits() const { return m_isStored; }
  /// The owner goes: blocks that were made of the journal and not looked at yet stay empty.
  void Close() { m_fill = nullptr; }
  bool IsOpen() const { return m_fill != nullptr; }

  /// The store's: edits are numbered from the journal's begin on.  Identity changes with each restart.
  std::uint64_t Identity() const { return m_identity; }
  std::uint64_t Position() const { return m_first + m_edits.size(); }
  /// False when edits from there on are not all here: store the whole.
  bool Knows(std::uint64_t identity, std::uint64_t from) const;
  /// The edits from a position on, as lines "insert ...", "before ..." and "remove ...", appended to the text.
  void AppendEdits(std::uint64_t from, std::string & lines) const;
  /// All up to the position is stored: it is kept no longer.
  void Stored(std::uint64_t upTo);
  void FillInto(CBlock & block) const;

private:
  bool Begin(char const * verb, CBlock_item const & item);
  void Keep();

  Fill m_fill;
  std::uint64_t m_identity;
  std::uint64_t m_first = 0;
  std::vector<std::string> m_edits;
  std::size_t m_editBytes = 0;
  std::string m_line; // the edit that is being written: saves an allocation each
  bool m_isStored = false;
};

/// Edits take this much memory at most.
inline constexpr std::size_t kMostEditBytes = std::size_t{16} << 20;

/// Carries out the lines of a journal on a block, in time of its items and the lines; false, and the block as it was,
/// when they don't fit: what is inserted stands already, what is removed or stood before doesn't, or stands twice.
[[nodiscard]] bool ApplyEdits(std::string_view lines, CBlock & block);

} // namespace io
