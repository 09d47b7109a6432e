#include "apps/qsol/FollowEvents.h"

#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/Text.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include <ostream>

namespace qsol {

namespace {
constexpr auto kGood = CStreamioLibrary::kLibSuccess;
}

bool FollowEvents::Known::IsAt(Block const & now, std::uint64_t nowSalt) const {
  return salt == nowSalt && block.entry.offset == now.entry.offset && block.entry.length == now.entry.length;
}

void FollowEvents::PrintLine(Json const & event) { m_out << event.dump() << '\n'; }

void FollowEvents::Begin(bool isWritten) {
  if (!m_style.json)
    return;
  Json event{{"event", "begin"}};
  event.update(DocumentHead(m_opened));
  event["is_written"] = isWritten;
  PrintLine(event);
}

void FollowEvents::Look() {
  Catalogue const catalogue(m_opened.reader);
  KnownBlocks now;
  // A commit is told behind what it committed, and before what is not committed yet.
  for (Block const & block : catalogue.Blocks())
    if (!block.entry.isPrivate)
      LookAt(block, now);
  TellCommit();
  for (Block const & block : catalogue.Blocks())
    if (block.entry.isPrivate)
      LookAt(block, now);
  for (auto const & [name, known] : m_known)
    if (!now.contains(name))
      TellDeleted(known.block);
  m_known = std::move(now);
  m_isFirst = false;
}

void FollowEvents::LookAt(Block const & block, KnownBlocks & now) {
  auto const & reader = m_opened.reader;
  std::uint64_t const salt = (block.entry.isPrivate ? reader.PrivateFacts() : reader.PublicFacts()).salt;
  Known & mine = now.emplace(block.entry.name, Known{block, salt, 0}).first->second;
  if (block.kind == Kind::Map)
    return;
  auto const before = m_known.find(block.entry.name);
  bool const isKnown = before != m_known.end();
  if (isKnown && before->second.IsAt(block, salt)) {
    mine.hash = before->second.hash;
    return;
  }
  if (m_isFirst && !block.entry.isPrivate)
    return;
  // A commit, or a compaction, moves blocks as they are; of one that was never read the length must do.
  bool const mayHaveMoved = isKnown && before->second.salt != salt;
  bool const isSameSize = isKnown && before->second.block.entry.length == block.entry.length;
  if (mayHaveMoved && !block.entry.isPrivate && before->second.hash == 0 && isSameSize)
    return;
  mine.hash = HashOf(block);
  if (!mayHaveMoved || before->second.hash != mine.hash)
    TellBlock(block, isKnown);
}

std::size_t FollowEvents::HashOf(Block const & block) {
  std::string bytes;
  bool isBinary = false;
  if (m_opened.reader.LoadBytes(block.entry.name, bytes, isBinary) != kGood)
    return 0;
  return std::hash<std::string>()(bytes) | 1;
}

void FollowEvents::TellBlock(Block const & block, bool replaces) {
  if (!m_selection.Fits(block))
    return;
  if (!m_style.json) {
    fmt::print(m_out, "{}: {}, {} bytes\n", block.Description(), replaces ? "replaced" : "stored", block.entry.length);
    if (m_style.items)
      TellItems(block);
    return;
  }
  Json event{{"event", "block"}, {"replaces", replaces}};
  event.update(ToJson(block, m_opened));
  io::CBlock content(block.entry.name);
  if (m_style.items && m_opened.reader.Load(content) == kGood)
    event["items"] = ItemsOf(content);
  else if (m_style.items)
    event["error"] = Utf8(m_opened.reader.LastError());
  PrintLine(event);
}

void FollowEvents::TellItems(Block const & block) {
  io::CBlock content(block.entry.name);
  std::string text;
  if (m_opened.reader.Load(content) == kGood && io::EncodeBlock(content, io::Form::Text, io::kExactDigits, text))
    m_out << text << '\n';
  else
    fmt::print(m_out, "can't be read: {}\n", OneLine(m_opened.reader.LastError()));
}

void FollowEvents::TellDeleted(Block const & block) {
  if (block.kind == Kind::Map || !m_selection.Fits(block))
    return;
  if (m_style.json)
    PrintLine({{"event", "deleted"},
               {"name", Utf8(block.entry.name)},
               {"real_name", block.realName.empty() ? Json() : Json(Utf8(block.realName))}});
  else
    fmt::print(m_out, "{}: deleted\n", block.Description());
}

void FollowEvents::TellCommit() {
  auto const facts = m_opened.reader.PublicFacts();
  bool const isNew = facts.commits != m_commits && !m_isFirst;
  m_commits = facts.commits;
  if (!isNew)
    return;
  if (m_style.json)
    PrintLine({{"event", "committed"}, {"commits", facts.commits}, {"blocks", facts.blocks}});
  else
    fmt::print(m_out, "committed: {}\n", Count(facts.blocks, "block"));
}

void FollowEvents::End(char const * why) {
  if (m_style.json)
    PrintLine({{"event", "end"}, {"why", why}});
  else
    fmt::print(m_out, "end: {}\n", why);
}

} // namespace qsol
