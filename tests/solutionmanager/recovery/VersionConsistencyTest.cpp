// After a takeover the library agrees with the versions that the design remembers.

#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/solutionmanager/support/RecoveryFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

namespace {

using namespace support;

class VersionConsistencyTest : public RecoveryTest {
protected:
  /// A saved design; then a solver stores blocks, and a crash; then the recovery.
  template <class Work> void RecoverAfter(Work work) {
    io::CBlock const design = SavedDesign();
    Crash([&] {
      Open();
      work();
    });
    ReopenRecovering(design);
  }
  static constexpr long kProfile = SolutionVariationKey::kProfileDataKey;
  static constexpr long kConvergence = SolutionVariationKey::kConvDataKey;
};

/// Names what the design knows before versions are compared, as a product does: a definition block that stands under
/// another version than the block names tell gives no name.
struct NamingManager : TestManager {
  using TestManager::TestManager;
  void SetRecoveredVersionIDs() override {
    BaseSolutionManager::SetRecoveredVersionIDs();
    GetSetups().begin()->second->SetName(L"A");
  }
};

/// Tells in which order the product's own parts of a recovery were called.
struct WatchedManager : TestManager {
  using TestManager::TestManager;
  void SetRecoveredVersionIDs() override {
    calls.push_back("versions of manager " + std::to_string(GetVersionID()));
    BaseSolutionManager::SetRecoveredVersionIDs();
    calls.push_back("now " + std::to_string(GetVersionID()));
  }
  void RecoverDerivedDataVersionConsistency() override {
    std::list<AString> names;
    GetSolutionFileManager().IndexKeyList(names, false);
    calls.push_back("derived data of " + std::to_string(names.size()) + " blocks");
  }
  std::vector<std::string> calls;
};

} // namespace

TEST_F(VersionConsistencyTest, BlocksOfAnUnknownSetupGo) {
  AddSetup(L"A");
  Save(Key(900, L"x=1", 901, 0));
  Save(Key(900, L"x=1", kProfile, 0));
  Manager().RecoverVersionConsistency(DesignBlock());
  EXPECT_FALSE(Has(Key(900, L"x=1", 901, 0)));
  EXPECT_FALSE(Has(Key(900, L"x=1", kProfile, 0)));
  EXPECT_TRUE(std::filesystem::exists(PublicFile())) << "a deletion is committed";
}

TEST_F(VersionConsistencyTest, BlocksOfAnUnknownSolutionGoWhateverTheirVersionOnPurpose) {
  long const setup = AddSetup(L"A").GetID();
  Save(Key(setup, L"x=1", 901, 0));
  Save(Key(setup, L"x=1", 901, 44));
  Save(Key(setup, L"x=1", SolutionOf(FirstSetup()).GetID(), 0));
  Manager().RecoverVersionConsistency(DesignBlock());
  EXPECT_FALSE(Has(Key(setup, L"x=1", 901, 0)));
  EXPECT_FALSE(Has(Key(setup, L"x=1", 901, 44)));
  EXPECT_TRUE(Has(Key(setup, L"x=1", SolutionOf(FirstSetup()).GetID(), 0)));
}

TEST_F(VersionConsistencyTest, ObjectsThatBlockNamesAloneMakeKeepTheirBlocksOnPurpose) {
  RecoverAfter([&] { Save(Key(900, L"x=1", 901, 0)); });
  EXPECT_TRUE(Has(Key(900, L"x=1", 901, 0)));
  EXPECT_NE(Manager().GetISolutionByID(901, false, false), nullptr) << "what the interface knows decides later";
}

TEST_F(VersionConsistencyTest, AKeyWithoutARealVersionTakesAllVersionsAlongOnPurpose) {
  long const setup = AddSetup(L"A").GetID();
  long const solution = SolutionOf(FirstSetup()).GetID();
  Save(Key(setup, L"x=1", solution, -1));
  Save(Key(setup, L"x=1", solution, 0));
  Save(Key(setup, L"x=2", solution, 0));
  Manager().RecoverVersionConsistency(DesignBlock());
  EXPECT_FALSE(Has(Key(setup, L"x=1", solution, 0)));
  EXPECT_TRUE(Has(Key(setup, L"x=2", solution, 0)));
  EXPECT_EQ(Report().dropped.size(), 2u);
}

TEST_F(VersionConsistencyTest, NothingToDropIsNotCommitted) {
  AddSetup(L"A");
  Manager().RecoverVersionConsistency(DesignBlock());
  EXPECT_FALSE(std::filesystem::exists(PublicFile()));
}

TEST_F(VersionConsistencyTest, AKeyOfNoSetupIsKeptOnPurpose) {
  RecoverAfter([&] { Save(Key(-1, L"x=1", 901, 44)); });
  EXPECT_TRUE(Has(Key(-1, L"x=1", 901, 44)));
}

TEST_F(VersionConsistencyTest, DataOfAnotherVersionThanTheSolutionsGoes) {
  RecoverAfter([&] {
    Save(DataKey(L"x=2"));
    Save(DataKey(L"x=2", 44));
  });
  EXPECT_TRUE(Has(DataKey(L"x=2")));
  EXPECT_FALSE(Has(DataKey(L"x=2", 44)));
}

TEST_F(VersionConsistencyTest, ProfilesAndConvergenceFollowTheVersionOfTheSetup) {
  io::CBlock const design = SavedDesign();
  std::vector<Key> kept, gone;
  for (long const kind : {kProfile, kConvergence}) {
    kept.push_back(Key(m_setupID, L"x=1", kind, 0));
    gone.push_back(Key(m_setupID, L"x=1", kind, 44));
  }
  Crash([&] {
    Open();
    for (auto const * const keys : {&kept, &gone})
      for (Key const & key : *keys)
        Save(key);
  });
  OpenAs<NamingManager>(design, true);
  for (Key const & key : kept)
    EXPECT_TRUE(Has(key)) << testing::PrintToString(key.Pack());
  for (Key const & key : gone)
    EXPECT_FALSE(Has(key)) << testing::PrintToString(key.Pack());
}

TEST_F(VersionConsistencyTest, ANameThatIsNoKeyIsKept) {
  io::CBlock const design = SavedDesign();
  Crash([&] {
    Open();
    io::CBlock block(L"Remarks");
    Manager().SaveSingleBlock(block);
  });
  ReopenRecovering(design);
  io::CBlock block(L"Remarks");
  EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
}

TEST_F(VersionConsistencyTest, VersionsOfTheDesignGoToManagerSetupsAndSolutions) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  setup.SetState(21, false);
  SolutionOf(setup).SetState(22, false);
  Manager().SetState(20, false);
  WriteDefinitions();
  ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
  io::CBlock const design = DesignBlock();
  m_manager.reset();
  Crash([this] {
    Open();
    Manager().Invalidate(nullptr, kInvalidateManager | kInvalidateSetups | kInvalidateSolutions);
    WriteDefinitions();
  });
  ReopenRecovering(design);
  ASSERT_TRUE(Manager().IsRecovered());
  EXPECT_EQ(Manager().GetVersionID(), 20);
  EXPECT_EQ(FirstSetup().GetVersionID(), 21);
  EXPECT_EQ(SolutionOf(FirstSetup()).GetVersionID(), 22);
}

TEST_F(VersionConsistencyTest, TheProductsPartsComeFirstAndLast) {
  io::CBlock design = SavedDesign();
  io::CBlock versions(L"Version ID Map");
  versions << io::named(L"V", 77L);
  io::CBlock remembered(L"Module");
  remembered << versions;
  Crash([this] {
    Open();
    Save(DataKey(L"x=2", 44));
  });
  OpenAs<WatchedManager>(remembered, true);
  auto const & calls = static_cast<WatchedManager &>(Manager()).calls;
  std::list<AString> names;
  Manager().GetSolutionFileManager().IndexKeyList(names, false);
  EXPECT_EQ(calls, (std::vector<std::string>{"versions of manager 0", "now 77",
                                             "derived data of " + std::to_string(names.size()) + " blocks"}));
}

TEST_F(VersionConsistencyTest, ADesignThatRemembersNoVersionLeavesTheManagersAsItIs) {
  SavedDesign();
  Crash([this] {
    Open();
    Save(DataKey(L"x=2"));
  });
  ReopenRecovering(io::CBlock(L"Module"));
  ASSERT_TRUE(Manager().IsRecovered());
  EXPECT_EQ(Manager().GetVersionID(), 0);
  EXPECT_TRUE(Has(DataKey(L"x=2")));
}

TEST_F(VersionConsistencyTest, ASolutionTakesItsDefinitionAlongToTheVersion) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  ASSERT_NE(solution.GetFrequencySolutionDefinition(0), nullptr);
  solution.RecoverVersionConsistency(30);
  EXPECT_EQ(solution.GetVersionID(), 30);
  ASSERT_NE(solution.GetFrequencySolutionDefinition(30), nullptr);
  EXPECT_NE(solution.GetFrequencySolutionDefinition(30), solution.GetFrequencySolutionDefinition(0));
}

TEST_F(VersionConsistencyTest, ADefinitionThatTheVersionHasAlreadyStays) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  solution.RecoverVersionConsistency(30);
  auto const * const there = solution.GetFrequencySolutionDefinition(30);
  solution.RecoverVersionConsistency(0);
  solution.RecoverVersionConsistency(30);
  EXPECT_EQ(solution.GetFrequencySolutionDefinition(30), there);
}

TEST_F(VersionConsistencyTest, ASolutionWithoutADefinitionTakesTheVersionAlone) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  solution.SetState(8, false);
  ASSERT_EQ(solution.GetFrequencySolutionDefinition(8), nullptr);
  solution.RecoverVersionConsistency(30);
  EXPECT_EQ(solution.GetVersionID(), 30);
  EXPECT_EQ(solution.GetFrequencySolutionDefinition(30), nullptr);
}

TEST_F(VersionConsistencyTest, WhatWasDroppedIsGoneFromThePublicFileToo) {
  RecoverAfter([&] { Save(DataKey(L"x=2", 44)); });
  m_manager.reset();
  Open();
  EXPECT_FALSE(Has(DataKey(L"x=2", 44)));
  EXPECT_TRUE(Has(DataKey(L"x=1")));
}
