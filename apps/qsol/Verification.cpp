#include "apps/qsol/Verification.h"

#include "apps/qsol/Text.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"

#include <fmt/format.h>

#include <set>

namespace qsol {

using library::LibraryReader;

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;

bool Covers(LibraryReader::Damage const & damage, LibraryReader::Entry const & entry) {
  return damage.isPrivate == entry.isPrivate && damage.offset <= entry.offset &&
         entry.offset - damage.offset < damage.length;
}

class Verifier {
public:
  Verifier(OpenedLibrary & opened, Catalogue const & catalogue, bool committedOnly)
      : m_opened(opened), m_catalogue(catalogue), m_committedOnly(committedOnly) {}

  Verification Run() {
    CheckRecords();
    CheckBlocks();
    CheckMap();
    CheckTails();
    CheckOtherPrivateFile();
    return std::move(m_found);
  }

private:
  void CheckRecords() {
    std::vector<LibraryReader::Damage> damages;
    m_found.wholeRecords = m_opened.reader.Verify(damages);
    for (auto const & damage : damages) {
      Verification::Problem problem{
          m_opened.PathOf(damage.isPrivate), damage.offset, damage.length, OneLine(damage.what), damage.name, {}, {}};
      for (Block const & block : m_catalogue.Blocks())
        if (Covers(damage, block.entry))
          Judge(block, problem);
      if (problem.lost.empty() && problem.good.empty() && IsReplaced(damage))
        m_found.remarks.push_back(
            fmt::format("{}: {} bytes at {} are damaged, and a later record of block {} replaced them",
                        OneLine(problem.file), damage.length, damage.offset, OneLine(damage.name)));
      else
        m_found.problems.push_back(std::move(problem));
    }
  }

  // What the index tells of a block is enough to read it, so the content may be whole behind a damaged header.
  void Judge(Block const & block, Verification::Problem & problem) {
    std::string bytes;
    bool isBinary = false;
    if (m_opened.reader.LoadBytes(block.entry.name, bytes, isBinary) == kGood)
      problem.good.push_back(&block);
    else if (m_lost.insert(&block).second)
      problem.lost.push_back(&block);
  }

  // A damaged record that counts no more, since its block was written again in the same file or behind it.
  bool IsReplaced(LibraryReader::Damage const & damage) const {
    for (Block const & block : m_catalogue.Blocks())
      if (!damage.name.empty() && block.entry.name == damage.name)
        return (block.entry.isPrivate && !damage.isPrivate) ||
               (block.entry.isPrivate == damage.isPrivate && block.entry.offset >= damage.offset + damage.length);
    return false;
  }

  // What no checksum tells: bytes that are whole but are no block, places that the index tells wrongly.
  void CheckBlocks() {
    for (Block const & block : m_catalogue.Blocks()) {
      io::CBlock content(block.entry.name);
      bool const isGood = m_opened.reader.Load(content) == kGood;
      m_found.goodBlocks += isGood ? 1 : 0;
      if (!isGood && m_lost.insert(&block).second)
        m_found.problems.push_back({m_opened.PathOf(block.entry.isPrivate),
                                    block.entry.offset,
                                    block.RecordSize(),
                                    OneLine(m_opened.reader.LastError()),
                                    block.entry.name,
                                    {&block},
                                    {}});
    }
    m_found.lostBlocks = m_catalogue.Blocks().size() - m_found.goodBlocks;
  }

  void CheckMap() {
    if (!m_catalogue.MapError().empty()) {
      m_found.remarks.push_back("the name map is lost: which setup and variation a block belongs to can't be told");
      return;
    }
    for (auto const & entry : m_catalogue.Shared())
      m_found.problems.push_back(
          {m_opened.publicPath,
           0,
           0,
           fmt::format("the name map leads a second real name to one block: {}", OneLine(entry.realName)),
           entry.internalName,
           {},
           {}});
    for (auto const & entry : m_catalogue.Dangling())
      m_found.remarks.push_back(fmt::format("the name map has an entry for {}, which is not there: {}",
                                            OneLine(entry.internalName), OneLine(entry.realName)));
    m_found.unmapped = m_catalogue.Unmapped();
    for (Block const * const block : m_found.unmapped)
      m_found.remarks.push_back(fmt::format("block {} is in no entry of the name map", OneLine(block->entry.name)));
  }

  void CheckTails() {
    for (bool const isPrivate : {false, true}) {
      auto const facts = isPrivate ? m_opened.reader.PrivateFacts() : m_opened.reader.PublicFacts();
      if (!facts.exists || facts.length <= facts.end)
        continue;
      (isPrivate ? m_found.privateTail : m_found.publicTail) = facts.length - facts.end;
      m_found.remarks.push_back(fmt::format(
          "{}: the {} bytes from {} on don't count: a {} that did not come to its end, or the file was cut",
          OneLine(m_opened.PathOf(isPrivate)), facts.length - facts.end, facts.end, isPrivate ? "save" : "commit"));
    }
  }

  // A private file that isn't shown is checked by itself: someone may want it back.
  void CheckOtherPrivateFile() {
    using State = LibraryReader::PrivateFile;
    if (m_opened.ShowsPrivate() || m_committedOnly ||
        (m_opened.privateState != State::OtherGeneration && m_opened.privateState != State::Unreadable))
      return;
    if (std::string const why = WhyUnreadable(m_opened.privatePath); !why.empty()) {
      m_found.problems.push_back({m_opened.privatePath, 0, 0, why, AString(), {}, {}});
      return;
    }
    LibraryReader alone;
    std::vector<LibraryReader::Damage> damages;
    if (alone.OpenAlone(LongFileName(m_opened.privatePath)) == kGood)
      m_found.wholeRecords += alone.Verify(damages);
    for (auto const & damage : damages)
      m_found.problems.push_back(
          {m_opened.privatePath, damage.offset, damage.length, OneLine(damage.what), damage.name, {}, {}});
  }

  OpenedLibrary & m_opened;
  Catalogue const & m_catalogue;
  bool m_committedOnly;
  Verification m_found;
  std::set<Block const *> m_lost;
};

} // namespace

Verification Verify(OpenedLibrary & opened, Catalogue const & catalogue, bool committedOnly) {
  return Verifier(opened, catalogue, committedOnly).Run();
}

} // namespace qsol
