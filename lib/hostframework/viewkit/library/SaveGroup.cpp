// What goes to the private file: groups of blocks, and the deletions and edits that go with them.
#include "basekit/io/CBlock.h"
#include "viewkit/library/LibraryState.h"
#include "viewkit/library/LogWriter.h"

#include <algorithm>

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
// At recovery no more than twice this much is scanned.
constexpr std::uint64_t kIndexInterval = 8 * 1024 * 1024;
constexpr std::size_t kKeptScratch = 1024 * 1024;

void IndexNowAndThen(LogReader & log) {
  auto const & records = log.Records();
  if (records.End() - records.IndexedTo() < kIndexInterval)
    return;
  io::CommitInfo info = records.LastCommit();
  ++info.number;
  LogWriter writer(log);
  writer.AddCommit(info, false);
  static_cast<void>(writer.Finish()); // An index saves time alone; the next save tries again.
}

/// One group in the making.
class Group {
public:
  Group(LibraryState & state, Encoding const & encoding) : m_state(state), m_encoding(encoding) {}

  LibIOReturn Save(std::span<io::CBlock const * const> blocks) {
    LibIOReturn result = Collect(blocks);
    if (result != kSuccess)
      return result;
    LogWriter writer(*m_state.privateLog);
    result = Write(writer);
    if (result != kSuccess) {
      writer.Abandon();
      return result;
    }
    file::FileStatus const status = writer.Finish();
    if (!status.Ok())
      return m_state.Fail(status);
    NoteStored();
    return kSuccess;
  }
  /// A block of the group can't become bytes: to try it again is of no use.
  bool CannotBeEncoded() const { return m_cannotBeEncoded; }

private:
  struct Item {
    io::CBlock const * block = nullptr;
    std::unique_ptr<JournaledBlocks::Record> journaled;
    std::uint64_t offset = 0;
  };

  LibIOReturn Collect(std::span<io::CBlock const * const> blocks) {
    bool const namesCount = !m_state.heldDeletes.empty() || m_state.journaled.HasUnsent();
    if (namesCount)
      for (auto const * const block : blocks)
        m_names.insert(text::ToUtf8(block->Name()));
    m_items.reserve(blocks.size());
    LibIOReturn result = kSuccess;
    for (auto const * const block : m_state.journaled.Unsent(m_names))
      result = result == kSuccess ? Add(*block) : result;
    for (auto const * const block : blocks)
      result = result == kSuccess ? Add(*block) : result;
    return result;
  }

  LibIOReturn Add(io::CBlock const & block) {
    Item item;
    item.block = &block;
    if (JournaledBlocks::IsJournaled(block)) {
      item.journaled = std::make_unique<JournaledBlocks::Record>();
      std::string const name = text::ToUtf8(block.Name());
      bool const isSecond = std::any_of(m_items.begin(), m_items.end(), [&](Item const & other) {
        return other.journaled && NameEqual()(other.journaled->name, name);
      });
      auto const & log = *m_state.privateLog;
      auto const * const place = log.Index().Find(name);
      // What is merged is not synced here: edits never go on from it.
      bool const isWhole =
          isSecond || m_state.heldDeletes.contains(name) || (place && place->offset < m_state.mergedLength);
      LibIOReturn const result = m_state.journaled.Prepare(block, place, isWhole ? 0 : log.Records().Header().salt,
                                                           m_encoding, *item.journaled, m_state.error);
      m_cannotBeEncoded = result != kSuccess;
      if (result != kSuccess)
        return result;
      if (item.journaled->isNeedless) {
        m_state.journaled.Superseded(name);
        return kSuccess;
      }
    }
    m_items.push_back(std::move(item));
    return kSuccess;
  }

  LibIOReturn Write(LogWriter & writer) {
    std::size_t left = m_items.size();
    for (auto const & name : m_state.heldDeletes)
      left += !m_names.contains(name);
    auto const next = [&] { return --left == 0 ? LogWriter::Group::Ends : LogWriter::Group::GoesOn; };
    for (auto const & name : m_state.heldDeletes)
      if (!m_names.contains(name))
        writer.AddDelete(name, next());
    LibIOReturn result = kSuccess;
    for (auto item = m_items.begin(); result == kSuccess && item != m_items.end(); ++item)
      result = WriteItem(writer, *item, next());
    if (m_state.scratch.capacity() > kKeptScratch)
      m_state.scratch = std::string();
    return result;
  }

  LibIOReturn WriteItem(LogWriter & writer, Item & item, LogWriter::Group group) {
    if (item.journaled) {
      auto const & record = *item.journaled;
      item.offset = record.isPatch ? writer.AddPatch(record.name, record.payload, m_encoding.isBinary, group)
                                   : writer.AddBlock(record.name, record.payload, m_encoding.isBinary, group);
      return kSuccess;
    }
    m_state.scratch.clear();
    LibIOReturn const result = EncodeBlock(*item.block, m_encoding, m_state.scratch, m_state.error);
    m_cannotBeEncoded = result != kSuccess;
    if (result != kSuccess)
      return result;
    m_name.clear();
    text::AppendUtf8(m_name, item.block->Name().View());
    writer.AddBlock(m_name, m_state.scratch, m_encoding.isBinary, group);
    return kSuccess;
  }

  void NoteStored() {
    if (!m_state.cache.empty())
      for (auto const & item : m_items)
        m_state.cache.erase(item.block->Name());
    m_state.heldDeletes.clear();
    for (auto const & item : m_items) {
      if (item.journaled)
        m_state.journaled.Stored(*item.journaled, item.offset, m_state.privateLog->Records().Header().salt);
      else if (m_state.journaled.HasUnsent())
        m_state.journaled.Superseded(text::ToUtf8(item.block->Name()));
    }
  }

  LibraryState & m_state;
  Encoding m_encoding;
  NameSet m_names;
  std::vector<Item> m_items;
  std::string m_name;
  bool m_cannotBeEncoded = false;
};

// What the blocks were to replace stays, and edits that didn't go out are kept.
void NoteFailed(LibraryState & state, std::span<io::CBlock const * const> blocks, bool keepsEdits) {
  for (auto const * const block : blocks) {
    if (!state.heldDeletes.empty())
      state.heldDeletes.erase(text::ToUtf8(block->Name()));
    if (keepsEdits && JournaledBlocks::IsJournaled(*block))
      state.journaled.Failed(*block);
  }
}

} // namespace

LibIOReturn SaveGroup(LibraryState & state, std::span<io::CBlock const * const> blocks, Encoding const & encoding) {
  LibIOReturn result = AcquireForWriting(state);
  if (result == kSuccess)
    result = EnsurePrivateFile(state);
  Group group(state, encoding);
  if (result == kSuccess)
    result = group.Save(blocks);
  if (result == kSuccess)
    IndexNowAndThen(*state.privateLog);
  else
    NoteFailed(state, blocks, !group.CannotBeEncoded() && state.status == kSuccess && !state.isReadOnly);
  return result;
}

LibIOReturn CopyUnmerged(LibraryState & from, LogReader & log, LogReader & to, AString & error) {
  std::vector<io::RecordIndex::Named> unmerged;
  log.Index().ForEach([&](io::RecordIndex::Named const & named) {
    if (named.place.offset >= from.mergedLength)
      unmerged.push_back(named);
  });
  std::sort(unmerged.begin(), unmerged.end(),
            [](auto const & a, auto const & b) { return a.place.offset < b.place.offset; });
  LogWriter writer(to);
  std::string payload;
  for (std::size_t i = 0; i < unmerged.size(); ++i) {
    auto const & [name, place] = unmerged[i];
    auto const group = i + 1 == unmerged.size() ? LogWriter::Group::Ends : LogWriter::Group::GoesOn;
    if (!place.IsBlock()) {
      writer.AddDelete(name, group);
      continue;
    }
    LibIOReturn const read = log.LoadPayload(name, place, payload, error);
    if (read != kSuccess) {
      writer.Abandon();
      return read;
    }
    writer.AddBlock(name, payload, (place.flags & io::kBinaryPayload) != 0, group);
  }
  file::FileStatus const status = writer.Finish();
  if (!status.Ok())
    error = status.Text();
  return status.Ok() ? kSuccess : CStreamioLibrary::kLibWriteFailed;
}

LibIOReturn HoldDeletes(LibraryState & state, std::vector<AString> const & names) {
  if (state.status != kSuccess)
    return state.status;
  std::vector<std::string> found;
  for (auto const & name : names) {
    std::string utf8 = text::ToUtf8(name);
    state.journaled.Deleted(utf8);
    if (FindBlock(state, utf8).log)
      found.push_back(std::move(utf8));
  }
  if (found.empty())
    return kSuccess;
  LibIOReturn const result = AcquireForWriting(state);
  if (result != kSuccess)
    return result;
  if (!state.cache.empty())
    for (auto const & name : names)
      state.cache.erase(name);
  for (auto & name : found)
    state.heldDeletes.insert(std::move(name));
  return kSuccess;
}

LibIOReturn Flush(LibraryState & state) {
  bool const isNothingHeld = state.heldDeletes.empty() && !state.journaled.HasUnsent();
  return isNothingHeld ? kSuccess : SaveGroup(state, {}, {state.writesBinary, 16});
}

} // namespace library
