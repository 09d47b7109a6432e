// Model and library brought in line with what the interface held when it stopped.

#include "tests/solutionmanager/support/RecoveryFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

namespace {

using namespace support;

std::vector<std::string> g_calls;

struct WatchedSolution : TestSolution {
  using TestSolution::TestSolution;
  ~WatchedSolution() override { g_calls.push_back("deleted " + std::to_string(GetID())); }
  void DeleteSolutionDatabase() override { g_calls.push_back("database of " + std::to_string(GetID())); }
};

struct WatchedSetup : TestSetup {
  using TestSetup::TestSetup;
  using TestSetup::WriteDefinitionBlock;
  bool WriteDefinitionBlock() const override {
    g_calls.emplace_back("definition of setup");
    return TestSetup::WriteDefinitionBlock();
  }
};

class UiDeletionsTest : public RecoveryTest {
protected:
  UiDeletionsTest() { g_calls.clear(); }
  BaseSimulationSetup & Watched(AString const & name, std::vector<long> const & solutionIDs) {
    auto * const setup = new WatchedSetup(&Manager(), name);
    Manager().AddSimulation(setup, nullptr);
    for (long const id : solutionIDs)
      setup->AddSolution(new WatchedSolution(*setup, id, 0), nullptr);
    for (long const id : solutionIDs)
      Save(Key(setup->GetID(), L"x=1", id, 0));
    g_calls.clear();
    return *setup;
  }
};

} // namespace

TEST_F(UiDeletionsTest, ASolutionThatIsNotKeptGoesWithItsBlocksAndItsDatabaseFirst) {
  BaseSimulationSetup & setup = Watched(L"A", {301, 302});
  EXPECT_TRUE(setup.RecoverUIDeletions({302}));
  EXPECT_EQ(g_calls, (std::vector<std::string>{"database of 301", "deleted 301", "definition of setup"}));
  EXPECT_FALSE(Has(Key(setup.GetID(), L"x=1", 301, 0)));
  EXPECT_TRUE(Has(Key(setup.GetID(), L"x=1", 302, 0)));
  EXPECT_EQ(setup.GetSolutions().size(), 1u);
}

TEST_F(UiDeletionsTest, NothingIsWrittenWhenAllSolutionsStay) {
  BaseSimulationSetup & setup = Watched(L"A", {301, 302});
  EXPECT_FALSE(setup.RecoverUIDeletions({301, 302}));
  EXPECT_TRUE(g_calls.empty());
}

TEST_F(UiDeletionsTest, AnEmptyListKeepsNoSolutionOnPurpose) {
  BaseSimulationSetup & setup = Watched(L"A", {301, 302});
  EXPECT_TRUE(setup.RecoverUIDeletions({}));
  EXPECT_TRUE(setup.GetSolutions().empty());
}

TEST_F(UiDeletionsTest, AnEmptyListKeepsNoSetupOnPurpose) {
  Watched(L"A", {301});
  Watched(L"B", {302});
  Manager().RecoverUIDeletions({}, {301, 302});
  EXPECT_TRUE(Manager().GetSetups().empty());
  EXPECT_FALSE(Manager().HasDataBlock(Key(-1, L"x=1", -1, -1)));
}

TEST_F(UiDeletionsTest, ADeletedSetupTakesAllItsBlocksAndSparesTheOthers) {
  BaseSimulationSetup & kept = Watched(L"A", {301});
  long const goneID = Watched(L"B", {302}).GetID();
  Save(Key(goneID, L"x=1", SolutionVariationKey::kProfileDataKey, 5));
  Manager().RecoverUIDeletions({kept.GetID()}, {301});
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_FALSE(Manager().HasDataBlock(Key(goneID, L"NotSet", -1, -1)));
  EXPECT_TRUE(Has(Key(kept.GetID(), L"x=1", 301, 0)));
}

TEST_F(UiDeletionsTest, AChangeIsCommitted) {
  BaseSimulationSetup & kept = Watched(L"A", {301});
  Watched(L"B", {302});
  Manager().RecoverUIDeletions({kept.GetID()}, {301});
  EXPECT_TRUE(std::filesystem::exists(PublicFile()));
}

TEST_F(UiDeletionsTest, NoChangeIsNotCommitted) {
  BaseSimulationSetup & kept = Watched(L"A", {301});
  Manager().RecoverUIDeletions({kept.GetID()}, {301});
  EXPECT_FALSE(std::filesystem::exists(PublicFile()));
}

TEST_F(UiDeletionsTest, ASolutionThatACopyOfASetupSharesIsNotFreedByTheCopy) {
  BaseSimulationSetup & setup = Watched(L"A", {301});
  BaseSimulationSetup copy(setup);
  EXPECT_TRUE(copy.RecoverUIDeletions({}));
  EXPECT_EQ(g_calls, (std::vector<std::string>{"database of 301"}));
  EXPECT_EQ(setup.GetSolutions().at(301)->GetID(), 301);
}
