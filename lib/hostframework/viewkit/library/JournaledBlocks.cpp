#include "viewkit/library/JournaledBlocks.h"

#include "basekit/io/BlockJournal.h"
#include "basekit/io/BlockPatch.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/io/RecordIndex.h"
#include "viewkit/library/LogReader.h"

#include <algorithm>

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
// A block that is smaller is not stored whole for its size's sake.
constexpr std::uint64_t kSmall = 64 * 1024;
constexpr std::uint64_t kMostEdits = 4;

io::BlockJournal * JournalOf(io::CBlock_item const & item) {
  return item.IsBlock() ? static_cast<io::CBlock const &>(item).Journal().get() : nullptr;
}

std::vector<JournaledBlocks::Part> PartsOf(io::CBlock const & block) {
  std::vector<JournaledBlocks::Part> parts;
  auto const add = [&](io::CBlock const & of, bool isBlockItself) {
    auto const & journal = of.Journal();
    parts.push_back(
        {journal, isBlockItself ? AString() : of.Name(), isBlockItself, journal->Identity(), journal->Position()});
  };
  if (block.Journal()) {
    add(block, true);
    return parts;
  }
  for (auto const & child : block)
    if (JournalOf(*child))
      add(static_cast<io::CBlock const &>(*child), false);
  return parts;
}

// A child is told by its name.
bool AreNamesUnique(io::CBlock const & block, std::vector<JournaledBlocks::Part> const & parts) {
  return std::all_of(parts.begin(), parts.end(), [&](JournaledBlocks::Part const & part) {
    return part.isBlockItself || std::count_if(block.begin(), block.end(), [&](auto const & child) {
                                   return AString::MatchNoCase(child->Name(), part.child);
                                 }) == 1;
  });
}

// The block with its journaled children left empty.
io::CBlock WithoutJournaled(io::CBlock const & block) {
  io::CBlock content(block.Name());
  for (auto const & child : block) {
    if (JournalOf(*child))
      content << io::CBlock(child->Name());
    else
      content << child;
  }
  return content;
}

} // namespace

bool JournaledBlocks::IsJournaled(io::CBlock const & block) {
  return block.Journal() ||
         std::any_of(block.begin(), block.end(), [](auto const & child) { return JournalOf(*child) != nullptr; });
}

LibIOReturn JournaledBlocks::Prepare(io::CBlock const & block, io::BlockPlace const * place, std::uint64_t salt,
                                     Encoding const & encoding, Record & record, AString & error) const {
  record.name = text::ToUtf8(block.Name());
  record.parts = PartsOf(block);
  auto const known = m_known.find(record.name);
  std::uint64_t const offset = place ? place->offset : 0;
  record.isExact = encoding.precision >= io::kExactDigits;
  bool const isKnown = salt != 0 && known != m_known.end() && offset == known->second.offset &&
                       (offset == 0 || salt == known->second.salt);
  if (isKnown && record.isExact && PreparePatch(block, known->second, encoding, record))
    return kSuccess;
  // The copy is looked at, the block stays journaled, should the record fail.
  return EncodeBlock(io::CBlock(block), encoding, record.payload, error);
}

bool JournaledBlocks::PreparePatch(io::CBlock const & block, Known const & known, Encoding const & encoding,
                                   Record & record) const {
  bool const isSame = std::equal(record.parts.begin(), record.parts.end(), known.parts.begin(), known.parts.end(),
                                 [](Part const & now, Part const & then) {
                                   return now.child == then.child && now.isBlockItself == then.isBlockItself &&
                                          now.journal->Knows(then.identity, then.position);
                                 });
  if (!isSame || !AreNamesUnique(block, record.parts))
    return false;
  io::BlockPatch patch;
  patch.previous = known.offset;
  for (std::size_t i = 0; i < record.parts.size(); ++i) {
    patch.parts.push_back({record.parts[i].child, record.parts[i].isBlockItself, {}});
    record.parts[i].journal->AppendEdits(known.parts[i].position, patch.parts.back().lines);
  }
  bool const isBlockItself = record.parts.front().isBlockItself;
  record.isNeedless = isBlockItself && patch.parts.front().lines.empty();
  if (record.isNeedless)
    return true;
  if (known.offset == 0)
    return false;
  auto const form = encoding.isBinary ? io::Form::Binary : io::Form::Text;
  if (!isBlockItself && !io::EncodeBlock(WithoutJournaled(block), form, encoding.precision, patch.content))
    return false;
  io::FormatPatch(patch, record.payload);
  record.isPatch = known.patchBytes + record.payload.size() <= std::max(kSmall, kMostEdits * known.wholeBytes);
  if (!record.isPatch)
    record.payload.clear();
  return record.isPatch;
}

void JournaledBlocks::Stored(Record const & record, std::uint64_t offset, std::uint64_t salt) {
  m_unsent.erase(record.name);
  if (!record.isExact) {
    m_known.erase(record.name);
    return;
  }
  auto & known = m_known[record.name];
  known.offset = offset;
  known.salt = salt;
  known.parts = record.parts;
  if (record.isPatch) {
    known.patchBytes += record.payload.size();
  } else {
    known.wholeBytes = record.payload.size();
    known.patchBytes = 0;
  }
  for (auto & part : known.parts) {
    part.journal->Stored(part.position);
    part.journal.reset();
  }
}

void JournaledBlocks::Failed(io::CBlock const & block) {
  m_unsent[text::ToUtf8(block.Name())] = io::CBlock_ptr<io::CBlock>(new io::CBlock(block));
}

std::vector<io::CBlock const *> JournaledBlocks::Unsent(NameSet const & names) {
  std::vector<io::CBlock const *> blocks;
  if (m_unsent.empty())
    return blocks;
  std::erase_if(m_unsent, [](auto const & entry) {
    auto const parts = PartsOf(*entry.second);
    return !std::all_of(parts.begin(), parts.end(), [](Part const & part) { return part.journal->IsOpen(); });
  });
  for (auto const & [name, block] : m_unsent)
    if (!names.contains(name))
      blocks.push_back(block.Item());
  return blocks;
}

void JournaledBlocks::Holds(io::CBlock const & block, io::BlockPlace const * place, std::uint64_t salt) {
  Record record;
  record.name = text::ToUtf8(block.Name());
  record.parts = PartsOf(block);
  record.isExact = true;
  Stored(record, place ? place->offset : 0, place ? salt : 0);
  if (place && place->kind == io::kBlockRecord)
    m_known[record.name].wholeBytes = place->payloadLength;
}

// What was stored under the name by other means since is not what the journal goes on from.
void JournaledBlocks::MovedToPublic(io::RecordIndex const & privateIndex) {
  std::erase_if(m_known, [&](auto const & entry) {
    auto const * const place = privateIndex.Find(entry.first);
    return entry.second.offset != (place ? place->offset : 0);
  });
  for (auto & [name, known] : m_known)
    known.offset = known.salt = 0;
}

void JournaledBlocks::Clear() {
  m_known.clear();
  m_unsent.clear();
}

} // namespace library
