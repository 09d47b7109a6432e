// The blocks that grow by one entry at a time: a library that stores what changed of them has the same content as one
// that stores them whole.

#include "basekit/io/BlockCodec.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"

#include <filesystem>
#include <random>

using support::TestManager;

namespace {

std::string Text(io::CBlock const & block) {
  std::string bytes;
  EXPECT_TRUE(io::EncodeBlock(block, io::Form::Text, io::kExactDigits, bytes));
  return bytes;
}

AString VariationText(unsigned number) {
  return AString::Format(L"C%d=%dpF; L1=4nH", static_cast<int>(number % 7), static_cast<int>(number));
}

/// What a library does with a journaled block, in memory.
class Store {
public:
  void Save(io::CBlock const & block) {
    auto const journal = block.Journal();
    if (journal && journal->Knows(m_identity, m_position)) {
      std::string lines;
      journal->AppendEdits(m_position, lines);
      ASSERT_TRUE(io::ApplyEdits(lines, m_content));
      ++patches;
    } else {
      m_content = block;
      m_content.Size();
    }
    m_identity = journal ? journal->Identity() : 0;
    m_position = journal ? journal->Position() : 0;
    if (journal)
      journal->Stored(m_position);
  }
  std::string Content() const { return Text(m_content); }

  int patches = 0;

private:
  io::CBlock m_content;
  std::uint64_t m_identity = 0;
  std::uint64_t m_position = 0;
};

/// Names the number of variation IDs, and a note of its own, in the header.
class CountingManager : public TestManager {
public:
  using TestManager::TestManager;
  bool WriteDefinitionBlock(io::CBlock & block) const override {
    bool const written = TestManager::WriteDefinitionBlock(block);
    io::CBlock variations(L"VariationIDs");
    block >> variations;
    block << io::named(L"Count", variations.Size());
    return written;
  }
  using TestManager::WriteDefinitionBlock;
};

/// Answers for all variations with IDs of its own.
class RenumberingManager : public TestManager {
public:
  using TestManager::TestManager;
  long GetVariationID(AString const & variation) const override {
    long const id = TestManager::GetVariationID(variation);
    return isRenumbering ? 1000 - id : id;
  }
  bool isRenumbering = false;
};

} // namespace

class JournaledBlocksTest : public support::ModelTest {
protected:
  /// A manager whose own library takes nothing, so that all edits are left to a Store.
  void Detach() { m_manager = std::make_unique<TestManager>(&m_design); }
  io::CBlock Header() {
    io::CBlock header(BaseSolutionManager::kHeaderBlockName);
    EXPECT_TRUE(Manager().WriteDefinitionBlock(header));
    return header;
  }
  io::CBlock Definition(BaseSolution const & solution) {
    io::CBlock block(solution.GetBlockDefinitionName());
    EXPECT_TRUE(solution.WriteDefinitionBlock(block));
    return block;
  }
  std::string WholeVariationIDs() {
    io::CBlock whole(L"VariationIDs");
    for (auto const & entry : Manager().GetVariationIDMap())
      BaseSolutionManager::WriteVariationIDBlockFunc(whole, entry);
    return Text(whole);
  }
  std::string WholeStates(BaseSolution const & solution) {
    io::CBlock whole(L"States");
    for (auto const & entry : solution.GetVariations())
      if (entry.second->GetVersionID() == solution.GetVersionID())
        BaseSolution::WriteSolutionVariation(whole, entry, &Manager());
    return Text(whole);
  }
  void Enter(BaseSolution & solution, AString const & variation, long version) {
    solution.GetVariationData(VariationIDIndex(variation, version, &Manager()), true);
  }
  std::uintmax_t PrivateBytes() { return std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath()) + "_priv"); }
  /// The block as the library holds it.
  io::CBlock Loaded(AString const & name) {
    io::CBlock block(name);
    EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
    return block;
  }
};

TEST_F(JournaledBlocksTest, TheHeaderHandsOutItsVariationIDsJournaled) {
  long const second = Manager().GetVariationID(L"x=2");
  long const first = Manager().GetVariationID(L"X=1");
  auto const header = Header();
  io::CBlock const * const variations = header.FindBlock(L"VariationIDs");
  ASSERT_NE(variations, nullptr);
  EXPECT_TRUE(variations->Journal());
  io::CBlock expected(L"VariationIDs");
  BaseSolutionManager::WriteVariationIDBlockFunc(expected, {L"X=1", first});
  BaseSolutionManager::WriteVariationIDBlockFunc(expected, {L"x=2", second});
  EXPECT_EQ(Text(*variations), Text(expected));
}

TEST_F(JournaledBlocksTest, AHeaderWithoutVariationsHasNoBlockOfThem) {
  EXPECT_EQ(Header().FindBlock(L"VariationIDs"), nullptr);
}

TEST_F(JournaledBlocksTest, VariationIDsStoredByEditsEqualTheWhole) {
  Detach();
  std::mt19937 random(3);
  Store store;
  for (int step = 0; step < 400; ++step) {
    for (auto count = random() % 3; count > 0; --count)
      Manager().GetVariationID(VariationText(random() % 500));
    auto const header = Header();
    if (io::CBlock const * const variations = header.FindBlock(L"VariationIDs"))
      store.Save(*variations);
    else
      continue;
    ASSERT_EQ(store.Content(), WholeVariationIDs());
  }
  EXPECT_GT(store.patches, 390);
}

TEST_F(JournaledBlocksTest, VariationIDsThatWereReadAreToldToo) {
  Manager().GetVariationID(L"x=1");
  Manager().GetVariationID(L"x=3");
  auto const former = Header();
  former.FindBlock(L"VariationIDs")->Size(); // looked at while its manager is there
  Detach();
  Manager().ReserveUniqueID(100); // the IDs of the former header are not this one's
  Store store;
  Manager().GetVariationID(L"x=2");
  store.Save(*Header().FindBlock(L"VariationIDs"));
  Manager().ReadDefinitionBlock(former);
  store.Save(*Header().FindBlock(L"VariationIDs"));
  EXPECT_EQ(store.patches, 1);
  EXPECT_EQ(store.Content(), WholeVariationIDs());
}

TEST_F(JournaledBlocksTest, ManyIDsAtOnceAreToldOneByOne) {
  Detach();
  Store store;
  Manager().GetVariationID(L"x=5");
  store.Save(*Header().FindBlock(L"VariationIDs"));
  Manager().IssueVariationIDs({L"x=7", L"x=3", L"x=5", L"x=9"});
  store.Save(*Header().FindBlock(L"VariationIDs"));
  EXPECT_EQ(store.patches, 1);
  EXPECT_EQ(store.Content(), WholeVariationIDs());
}

TEST_F(JournaledBlocksTest, StatesStoredByEditsEqualTheWhole) {
  Detach();
  std::mt19937 random(4);
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  std::vector<long> versions{solution.GetVersionID()};
  Store store;
  int kept = 0;
  for (int step = 0; step < 400; ++step) {
    auto const what = random() % 20;
    bool const isOtherVersion = what < 2;
    if (what == 0) {
      solution.Invalidate(nullptr, -1);
      versions.push_back(solution.GetVersionID());
    } else if (what == 1) {
      solution.SetState(versions[random() % versions.size()], true);
    } else if (what < 8) {
      solution.DeleteSolutionVariation(VariationText(random() % 60), nullptr);
    } else if (what < 10) {
      Enter(solution, VariationText(random() % 60), versions[random() % versions.size()]);
    } else {
      Enter(solution, VariationText(random() % 60), solution.GetVersionID());
    }
    kept += isOtherVersion ? 0 : 1;
    auto const block = Definition(solution);
    ASSERT_NE(block.FindBlock(L"States"), nullptr);
    store.Save(*block.FindBlock(L"States"));
    ASSERT_EQ(store.Content(), WholeStates(solution)) << step;
  }
  EXPECT_GE(store.patches, kept - 1);
}

TEST_F(JournaledBlocksTest, StatesStandAlsoWhenThereAreNone) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  auto const block = Definition(solution);
  ASSERT_NE(block.FindBlock(L"States"), nullptr);
  EXPECT_TRUE(block.FindBlock(L"States")->Empty());
}

TEST_F(JournaledBlocksTest, StatesOfAFormerVersionKeepWhatItHad) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Enter(solution, L"x=1", solution.GetVersionID());
  Enter(solution, L"x=2", solution.GetVersionID());
  auto const former = Definition(solution);
  auto const states = WholeStates(solution);
  solution.Invalidate(nullptr, -1);
  Enter(solution, L"x=3", solution.GetVersionID());
  EXPECT_EQ(Text(*Definition(solution).FindBlock(L"States")), WholeStates(solution));
  EXPECT_EQ(Text(*former.FindBlock(L"States")), states);
}

TEST_F(JournaledBlocksTest, AVariationThatIsAddedToATakenIndexIsNotTold) {
  Detach();
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Enter(solution, L"x=1", solution.GetVersionID());
  Store store;
  store.Save(*Definition(solution).FindBlock(L"States"));
  support::TestVariation again(&solution, L"x=1", solution.GetVersionID());
  solution.AddSolutionVariation(&again);
  store.Save(*Definition(solution).FindBlock(L"States"));
  EXPECT_EQ(store.patches, 1);
  EXPECT_EQ(store.Content(), WholeStates(solution));
}

TEST_F(JournaledBlocksTest, StatesWhoseIDsAProductAnswersForItselfAreWrittenWhole) {
  auto owned = std::make_unique<RenumberingManager>(&m_design);
  auto & manager = *owned;
  m_manager = std::move(owned);
  m_manager->InitializeFromDesign(true);
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Enter(solution, L"x=1", solution.GetVersionID());
  EXPECT_TRUE(Definition(solution).FindBlock(L"States")->Journal());
  manager.isRenumbering = true;
  solution.Invalidate(nullptr, -1);
  Enter(solution, L"x=1", solution.GetVersionID());
  manager.isRenumbering = false;
  auto const block = Definition(solution);
  EXPECT_FALSE(block.FindBlock(L"States")->Journal());
  EXPECT_EQ(Text(*block.FindBlock(L"States")), WholeStates(solution));
}

TEST_F(JournaledBlocksTest, AProductThatLooksAtTheChildSeesItWhole) {
  m_manager = std::make_unique<CountingManager>(&m_design);
  m_manager->InitializeFromDesign(true);
  for (int i = 0; i < 5; ++i)
    Manager().GetVariationID(AString::Format(L"x=%d", i));
  EXPECT_EQ(Header().FindBlock(L"VariationIDs")->Size(), 5);
  auto const loaded = Loaded(BaseSolutionManager::kHeaderBlockName);
  int count = 0;
  loaded >> io::named(L"Count", count);
  EXPECT_EQ(count, 5);
  EXPECT_EQ(Text(*loaded.FindBlock(L"VariationIDs")), WholeVariationIDs());
}

TEST_F(JournaledBlocksTest, AreEmptyWhenTheirOwnerWentBeforeTheLook) {
  Manager().GetVariationID(L"x=1");
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Enter(solution, L"x=1", solution.GetVersionID());
  auto const header = Header();
  auto const definition = Definition(solution);
  m_manager.reset();
  EXPECT_TRUE(header.FindBlock(L"VariationIDs")->Empty());
  EXPECT_TRUE(definition.FindBlock(L"States")->Empty());
}

TEST_F(JournaledBlocksTest, ALibraryHoldsThemAsTheyAreAfterEachSave) {
  std::mt19937 random(5);
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  for (int step = 0; step < 120; ++step) {
    auto const what = random() % 20;
    if (what == 0)
      solution.Invalidate(nullptr, -1);
    else if (what < 6)
      solution.DeleteSolutionVariation(VariationText(random() % 30), nullptr);
    else if (what == 6)
      ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
    else
      Enter(solution, VariationText(random() % 30), solution.GetVersionID());
    auto block = Definition(solution);
    ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
    Manager().FetchNextUniqueID();
    ASSERT_EQ(Text(*Loaded(solution.GetBlockDefinitionName()).FindBlock(L"States")), WholeStates(solution)) << step;
    auto const header = Loaded(BaseSolutionManager::kHeaderBlockName);
    if (!Manager().GetVariationIDMap().empty()) {
      ASSERT_EQ(Text(*header.FindBlock(L"VariationIDs")), WholeVariationIDs()) << step;
    }
  }
}

TEST_F(JournaledBlocksTest, AReopenedLibraryHoldsThemAsTheyWere) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  AString const name = solution.GetBlockDefinitionName();
  for (int i : {4, 2, 9, 7, 1, 3}) {
    Solve(solution, AString::Format(L"x=%d", i), {1.0});
    WriteDefinitions();
  }
  solution.DeleteSolutionVariation(L"x=9", nullptr);
  Commit();
  auto const states = WholeStates(solution);
  auto const variationIDs = WholeVariationIDs();
  Reopen();
  EXPECT_EQ(Text(*Loaded(name).FindBlock(L"States")), states);
  EXPECT_EQ(Text(*Loaded(BaseSolutionManager::kHeaderBlockName).FindBlock(L"VariationIDs")), variationIDs);
  auto const & again = SolutionOf(*Manager().GetSetups().begin()->second);
  EXPECT_EQ(again.size(), 5);
  EXPECT_EQ(WholeStates(again), states);
}

TEST_F(JournaledBlocksTest, ASaveTakesNoMoreRoomInALibraryOfManyVariations) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  auto const bytesOfOneMore = [&](unsigned number) {
    auto const before = PrivateBytes();
    Enter(solution, VariationText(number), solution.GetVersionID());
    auto block = Definition(solution);
    EXPECT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
    Manager().FetchNextUniqueID();
    return PrivateBytes() - before;
  };
  WriteDefinitions();
  for (unsigned number = 0; number < 10; ++number)
    bytesOfOneMore(number);
  auto const ofFew = bytesOfOneMore(100);
  for (unsigned number = 1000; number < 2000; ++number)
    Enter(solution, VariationText(number), solution.GetVersionID());
  bytesOfOneMore(3000);
  EXPECT_LT(bytesOfOneMore(3001), 2 * ofFew);
}
