#include "basekit/io/BlockJournal.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/BlockPatch.h"
#include "basekit/io/CBlock.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <random>

using namespace io;

namespace {

CBlock_func Entry(int id) {
  CBlock_func entry(L"V");
  entry << AString::Format(L"C1=%dpF; name=\"\x00E9\n\x4E2D\"", id) << CBlock_named_value(L"ID", id);
  return entry;
}

std::string Bytes(CBlock const & block, Form form) {
  std::string bytes;
  EXPECT_TRUE(EncodeBlock(block, form, kExactDigits, bytes));
  return bytes;
}

std::string Edits(BlockJournal const & journal, std::uint64_t from) {
  std::string lines;
  journal.AppendEdits(from, lines);
  return lines;
}

/// The owner of a journal: a list of numbers, each an entry of the block.
class Owner {
public:
  void Insert(std::size_t at, int id) {
    bool const isLast = at == m_ids.size();
    auto const entry = Entry(id);
    auto const next = isLast ? CBlock_func() : Entry(m_ids[at]);
    m_ids.insert(m_ids.begin() + static_cast<std::ptrdiff_t>(at), id);
    m_journal->Insert(entry, isLast ? nullptr : &next);
  }
  void Append(int id) { Insert(m_ids.size(), id); }
  void RemoveAt(std::size_t at) {
    auto const entry = Entry(m_ids[at]);
    m_ids.erase(m_ids.begin() + static_cast<std::ptrdiff_t>(at));
    m_journal->Remove(entry);
  }
  std::size_t Size() const { return m_ids.size(); }
  BlockJournal & Journal() { return *m_journal; }
  CBlock Lazy() const { return CBlock(L"IDs", m_journal); }
  CBlock Whole() const {
    CBlock whole(L"IDs");
    for (int const id : m_ids)
      whole << Entry(id);
    return whole;
  }
  int Fills() const { return m_fills; }

private:
  std::vector<int> m_ids;
  int m_fills = 0;
  std::shared_ptr<BlockJournal> m_journal = std::make_shared<BlockJournal>([this](CBlock & block) {
    ++m_fills;
    for (int const id : m_ids)
      block << Entry(id);
  });
};

CBlock Two() {
  CBlock block(L"IDs");
  block << Entry(1) << Entry(2);
  return block;
}

std::string Line(char const * verb, CBlock_item const & item) {
  std::string line(verb);
  EXPECT_TRUE(EncodeLine(item, kExactDigits, line));
  return line += '\n';
}

void ExpectRefused(std::string const & lines) {
  auto block = Two();
  auto const before = Bytes(block, Form::Text);
  EXPECT_FALSE(ApplyEdits(lines, block)) << lines;
  EXPECT_EQ(Bytes(block, Form::Text), before) << lines;
}

} // namespace

TEST(JournaledBlock, IsFilledWhenSomebodyLooksAndIsABlockLikeAnyOtherThen) {
  std::vector<std::function<void(CBlock &)>> const looks{
      [](CBlock & b) { EXPECT_EQ(b.Size(), 2); },
      [](CBlock & b) { EXPECT_FALSE(b.Empty()); },
      [](CBlock & b) { EXPECT_EQ(std::distance(b.begin(), b.end()), 2); },
      [](CBlock & b) { EXPECT_NE(b.begin(), b.end()); },
      [](CBlock & b) { EXPECT_TRUE(b.Item(b.find(L"v"))); },
      [](CBlock & b) { EXPECT_EQ(std::distance(b.map_begin(), b.map_end()), 2); },
      [](CBlock & b) { EXPECT_TRUE(b.FindItem(L"V", CBlock_item::Kind::Func)); },
      [](CBlock & b) {
        CBlock_func entry(L"V");
        EXPECT_TRUE((b >> entry).Found());
        EXPECT_EQ(entry.Size(), 2);
      },
      [](CBlock & b) { EXPECT_GT(b.SizeOf(true), Two().SizeOf(true) - 64); },
      [](CBlock & b) { EXPECT_EQ(Bytes(b, Form::Text), Bytes(Two(), Form::Text)); },
      [](CBlock & b) { EXPECT_EQ(Bytes(b, Form::Binary), Bytes(Two(), Form::Binary)); },
      [](CBlock & b) { EXPECT_EQ(b.Pack(), Two().Pack()); },
  };
  Owner owner;
  owner.Append(1);
  owner.Append(2);
  for (auto const & look : looks) {
    auto block = owner.Lazy();
    auto const fills = owner.Fills();
    EXPECT_TRUE(block.Journal());
    look(block);
    EXPECT_FALSE(block.Journal());
    EXPECT_EQ(block.Size(), 2);
    EXPECT_EQ(owner.Fills(), fills + 1);
  }
}

TEST(JournaledBlock, ShowsTheContentOfTheMomentOfTheLook) {
  Owner owner;
  owner.Append(1);
  auto const seen = owner.Lazy();
  auto const unseen = owner.Lazy();
  EXPECT_EQ(seen.Size(), 1);
  owner.Append(2);
  EXPECT_EQ(seen.Size(), 1);
  EXPECT_EQ(unseen.Size(), 2);
}

TEST(JournaledBlock, IsFilledBeforeAChildIsAppended) {
  Owner owner;
  owner.Append(1);
  auto block = owner.Lazy();
  block << Entry(7);
  EXPECT_FALSE(block.Journal());
  CBlock expected(L"IDs");
  expected << Entry(1) << Entry(7);
  EXPECT_EQ(Bytes(block, Form::Text), Bytes(expected, Form::Text));
}

TEST(JournaledBlock, IsEmptyOnceCleared) {
  Owner owner;
  owner.Append(1);
  auto block = owner.Lazy();
  block.Clear();
  EXPECT_FALSE(block.Journal());
  EXPECT_TRUE(block.Empty());
  EXPECT_EQ(owner.Fills(), 0);
}

TEST(JournaledBlock, KeepsItsJournalWhenRenamedCopiedOrMoved) {
  Owner owner;
  owner.Append(1);
  auto block = owner.Lazy();
  block.Name(L"Other");
  EXPECT_EQ(block.Name(), L"Other");
  CBlock copy(block);
  CBlock assigned;
  assigned << Entry(5);
  assigned = block;
  CBlock parent;
  parent << block;
  EXPECT_EQ(copy.Journal().get(), &owner.Journal());
  EXPECT_EQ(assigned.Journal().get(), &owner.Journal());
  EXPECT_EQ(parent.FindBlock(L"Other")->Journal().get(), &owner.Journal());
  CBlock moved(std::move(copy));
  EXPECT_EQ(moved.Journal().get(), &owner.Journal());
  CBlock moveAssigned;
  moveAssigned << Entry(5);
  moveAssigned = std::move(moved);
  EXPECT_EQ(moveAssigned.Journal().get(), &owner.Journal());
  EXPECT_EQ(owner.Fills(), 0);
  EXPECT_EQ(moveAssigned.Size(), 1);
  EXPECT_TRUE(copy.Empty());  // NOLINT(bugprone-use-after-move): what a move leaves is empty
  EXPECT_TRUE(moved.Empty()); // NOLINT(bugprone-use-after-move)
}

TEST(JournaledBlock, ReadFromItsParentLeavesTheParentsChildJournaled) {
  Owner owner;
  owner.Append(1);
  CBlock parent;
  parent << owner.Lazy();
  CBlock child(L"ids");
  parent >> child;
  EXPECT_TRUE(parent.Found());
  EXPECT_EQ(child.Size(), 1);
  EXPECT_TRUE(parent.FindBlock(L"IDs")->Journal());
}

TEST(JournaledBlock, GivesUpTheJournalForTheContentOfAnother) {
  Owner owner;
  owner.Append(1);
  auto block = owner.Lazy();
  block = Two();
  EXPECT_FALSE(block.Journal());
  EXPECT_EQ(block.Size(), 2);
}

TEST(JournaledBlock, WithoutAJournalIsPlain) { EXPECT_TRUE(CBlock(L"IDs", nullptr).Empty()); }

TEST(JournaledBlock, StaysEmptyWhenTheOwnerWent) {
  Owner owner;
  owner.Append(1);
  auto const block = owner.Lazy();
  owner.Journal().Close();
  EXPECT_TRUE(block.Empty());
}

TEST(BlockJournal, KeepsEditsFromTheFirstStoreOn) {
  Owner owner;
  auto & journal = owner.Journal();
  owner.Append(1);
  EXPECT_EQ(journal.Position(), 1u);
  EXPECT_FALSE(journal.Knows(journal.Identity(), 1));
  journal.Stored(1);
  EXPECT_TRUE(journal.Knows(journal.Identity(), 1));
  EXPECT_FALSE(journal.Knows(journal.Identity(), 0));
  EXPECT_FALSE(journal.Knows(journal.Identity(), 2));
  EXPECT_EQ(Edits(journal, 1), "");
  owner.Insert(0, 2);
  owner.RemoveAt(1);
  EXPECT_EQ(journal.Position(), 3u);
  EXPECT_EQ(Edits(journal, 1), Line("insert ", Entry(2)) + Line("before ", Entry(1)) + Line("remove ", Entry(1)));
  EXPECT_EQ(Edits(journal, 2), Line("remove ", Entry(1)));
}

TEST(BlockJournal, ForgetsWhatWasStoredAndKnowsTheRest) {
  Owner owner;
  auto & journal = owner.Journal();
  journal.Stored(0);
  for (int id = 0; id < 4; ++id)
    owner.Append(id);
  journal.Stored(3);
  EXPECT_FALSE(journal.Knows(journal.Identity(), 2));
  EXPECT_TRUE(journal.Knows(journal.Identity(), 3));
  EXPECT_EQ(Edits(journal, 3), Line("insert ", Entry(3)));
  journal.Stored(1); // an older store brings nothing back
  EXPECT_TRUE(journal.Knows(journal.Identity(), 3));
  journal.Stored(99);
  EXPECT_EQ(journal.Position(), 4u);
  EXPECT_TRUE(journal.Knows(journal.Identity(), 4));
}

TEST(BlockJournal, KnowsNothingOfTheTimeBeforeARestart) {
  Owner owner;
  auto & journal = owner.Journal();
  journal.Stored(0);
  owner.Append(1);
  auto const identity = journal.Identity();
  journal.Restart();
  EXPECT_NE(journal.Identity(), identity);
  EXPECT_FALSE(journal.Knows(identity, 0));
  EXPECT_FALSE(journal.Knows(journal.Identity(), journal.Position()));
  journal.Stored(journal.Position());
  EXPECT_FALSE(journal.Knows(identity, journal.Position()));
  EXPECT_TRUE(journal.Knows(journal.Identity(), journal.Position()));
  EXPECT_NE(Owner().Journal().Identity(), journal.Identity());
}

TEST(BlockJournal, RestartsWhenItsEditsGrowBeyondUse) {
  Owner owner;
  auto & journal = owner.Journal();
  journal.Stored(0);
  auto const identity = journal.Identity();
  CBlock_func big(L"V");
  big << AString(std::wstring(kMostEditBytes / 4, L'x'));
  for (int i = 0; i < 3; ++i)
    journal.Remove(big);
  EXPECT_TRUE(journal.Knows(identity, 0));
  journal.Remove(big);
  EXPECT_FALSE(journal.Knows(identity, 0));
  EXPECT_NE(journal.Identity(), identity);
  EXPECT_EQ(Edits(journal, 0), "");
}

TEST(BlockJournal, StoredEditsMakeRoomForOthers) {
  Owner owner;
  auto & journal = owner.Journal();
  journal.Stored(0);
  auto const identity = journal.Identity();
  CBlock_func big(L"V");
  big << AString(std::wstring(kMostEditBytes / 4, L'x'));
  for (int i = 0; i < 9; ++i) {
    journal.Remove(big);
    journal.Stored(journal.Position());
  }
  EXPECT_EQ(journal.Identity(), identity);
}

TEST(BlockJournal, RestartsForAnItemThatCannotBeWritten) {
  CBlock_ptr<CBlock> deep(new CBlock(L"D"));
  for (int i = 0; i <= kMaxDepth; ++i) {
    CBlock_ptr<CBlock> const outer(new CBlock(L"D"));
    *outer << deep;
    deep = outer;
  }
  Owner owner;
  owner.Journal().Stored(0);
  auto identity = owner.Journal().Identity();
  owner.Journal().Insert(*deep, nullptr);
  EXPECT_NE(owner.Journal().Identity(), identity);
  owner.Journal().Stored(0);
  identity = owner.Journal().Identity();
  owner.Journal().Insert(Entry(1), deep.Item());
  EXPECT_NE(owner.Journal().Identity(), identity);
}

TEST(BlockEdits, MakeTheWholeWhateverWasDone) {
  std::mt19937 random(20);
  auto const below = [&](std::size_t bound) { return random() % bound; };
  Owner owner;
  auto & journal = owner.Journal();
  int nextId = 0;
  CBlock text(L"IDs");
  CBlock binary(L"IDs");
  journal.Stored(0);
  for (int step = 0; step < 10000; ++step) {
    auto const stored = journal.Position();
    for (auto edits = 1 + below(4); edits > 0; --edits) {
      if (owner.Size() > 0 && below(12) < owner.Size())
        owner.RemoveAt(below(owner.Size()));
      else
        owner.Insert(below(owner.Size() + 1), nextId++);
    }
    ASSERT_TRUE(journal.Knows(journal.Identity(), stored));
    auto const lines = Edits(journal, stored);
    // Each as it is after it was stored and read.
    CBlock readText;
    CBlock readBinary;
    ASSERT_TRUE(DecodeBlock(Bytes(text, Form::Text), Form::Text, readText));
    ASSERT_TRUE(DecodeBlock(Bytes(binary, Form::Binary), Form::Binary, readBinary));
    ASSERT_TRUE(ApplyEdits(lines, readText));
    ASSERT_TRUE(ApplyEdits(lines, readBinary));
    auto const whole = owner.Whole();
    ASSERT_EQ(Bytes(readText, Form::Text), Bytes(whole, Form::Text));
    ASSERT_EQ(Bytes(readBinary, Form::Binary), Bytes(whole, Form::Binary));
    text = readText;
    binary = readBinary;
    journal.Stored(journal.Position());
  }
}

TEST(BlockEdits, HoldForItemsOfAllKinds) {
  CBlock inner(L"Pass 1");
  inner << CBlock_named_value(L"Delta", -0.0) << CBlock_named_value(L"Name", L"a \"b\"\n");
  CBlock_vec files(L"Files");
  files << AString(L"a.s2p");
  CBlock_func reals(L"F");
  reals << 1e300 << 0.1 << CBlock_named_value(L"none", CBlock_value());
  CBlock block(L"B");
  block << inner << files << reals << CBlock_named_value(L"X", 1.5);
  auto const whole = Bytes(block, Form::Text);
  auto const lines = Line("remove ", inner) + Line("remove ", files) + Line("remove ", reals) + Line("insert ", reals) +
                     Line("insert ", inner) + Line("before ", CBlock_named_value(L"X", 1.5)) + Line("insert ", files) +
                     Line("before ", CBlock_named_value(L"X", 1.5)) + Line("remove ", reals) + Line("insert ", reals) +
                     Line("before ", CBlock_named_value(L"X", 1.5));
  ASSERT_TRUE(ApplyEdits(lines, block));
  EXPECT_EQ(Bytes(block, Form::Text), whole);
}

TEST(BlockEdits, OfNothingLeaveTheBlock) {
  auto block = Two();
  EXPECT_TRUE(ApplyEdits("", block));
  EXPECT_EQ(block.Size(), 2);
}

TEST(BlockEdits, EditAJournaledBlockAsAnyOther) {
  Owner owner;
  owner.Append(1);
  auto block = owner.Lazy();
  EXPECT_TRUE(ApplyEdits(Line("insert ", Entry(2)), block));
  EXPECT_EQ(Bytes(block, Form::Text), Bytes(Two(), Form::Text));
}

TEST(BlockEdits, ThatDoNotFitChangeNothing) {
  auto const three = Line("insert ", Entry(3));
  ExpectRefused(Line("insert ", Entry(1)));
  ExpectRefused(three + three);
  ExpectRefused(Line("remove ", Entry(3)));
  ExpectRefused(Line("remove ", Entry(1)) + Line("remove ", Entry(1)));
  ExpectRefused(three + Line("before ", Entry(4)));
  ExpectRefused(three + Line("before ", Entry(3)));
  ExpectRefused(three + Line("before ", Entry(1)) + Line("before ", Entry(2)));
  ExpectRefused(Line("before ", Entry(1)));
  ExpectRefused(three + Line("remove ", Entry(1)) + Line("before ", Entry(2)));
}

TEST(BlockEdits, ThatAreNoEditsChangeNothing) {
  for (char const * const lines :
       {"\n", "insert", "insert \n", "insert V(3)", "insert V(3\n", "insert V(3) V(4)\n", "insert 3\n",
        "insert \"x\"\n", "insert B {\n", "insert B { A = 1\n}\n", "Insert V(3)\n", "append V(3)\n", "remove \n",
        "before \n", "before", "insert V(3)\n\n", "insert V(3)\nbefore \n", "insert V(\"\xff\")\n",
        "insert V(\"\\u{110000000}\")\n"})
    ExpectRefused(lines);
  ExpectRefused(std::string("insert V(3)\0\n", 13));
  std::string deep = "insert ";
  for (int i = 0; i < 100000; ++i)
    deep += "A { ";
  ExpectRefused(deep + '\n');
}

TEST(BlockEdits, RefuseAnItemThatStandsTwiceAndKeepTwinsThatTheyDoNotName) {
  CBlock block(L"B");
  block << Entry(1) << Entry(2) << Entry(1);
  auto const before = Bytes(block, Form::Text);
  EXPECT_FALSE(ApplyEdits(Line("remove ", Entry(1)), block));
  EXPECT_EQ(Bytes(block, Form::Text), before);
  EXPECT_TRUE(ApplyEdits(Line("remove ", Entry(2)), block));
  EXPECT_EQ(block.Size(), 2);
}
