#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/transfer/ExportVariationContext.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"

class VersionIDsTest : public support::ModelTest {
protected:
  io::CBlock WrittenMap() {
    io::CBlock design(L"Module");
    Manager().WriteVersionIDsToQdsn(design);
    io::CBlock map(L"Version ID Map");
    design >> map;
    EXPECT_TRUE(design.Found());
    return map;
  }
  template <class Item> static long Number(Item const & item, AString const & name) {
    long number = -99;
    item >> io::named(name, number);
    return number;
  }
  template <class Item> static AString Name(Item const & item) {
    AString name;
    item >> io::named(L"N", name);
    return name;
  }
};

TEST_F(VersionIDsTest, OneEditGivesOneNewIDToAllThatItsFlagsSelect) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  Manager().Invalidate(nullptr, 7);
  long const version = Manager().GetVersionID();
  EXPECT_NE(version, 0);
  EXPECT_EQ(setup.GetVersionID(), version);
  EXPECT_EQ(solution.GetVersionID(), version);
  Manager().Invalidate(nullptr, 1);
  EXPECT_GT(Manager().GetVersionID(), version) << "later versions are greater";
  EXPECT_EQ(setup.GetVersionID(), version);
  Manager().Invalidate(nullptr, 2);
  EXPECT_GT(setup.GetVersionID(), version);
  EXPECT_EQ(solution.GetVersionID(), version);
  long const ofSetup = setup.GetVersionID();
  Manager().Invalidate(nullptr, 4);
  EXPECT_GT(solution.GetVersionID(), ofSetup);
  EXPECT_EQ(setup.GetVersionID(), ofSetup);
}

TEST_F(VersionIDsTest, ANonUndoableInvalidationGivesSetupsAndSolutionsIDsOfTheirOwnAndLeavesTheManagersOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  Manager().NonUndoableInvalidateAll();
  EXPECT_EQ(Manager().GetVersionID(), 0);
  EXPECT_NE(setup.GetVersionID(), 0);
  EXPECT_NE(solution.GetVersionID(), 0);
  EXPECT_NE(solution.GetVersionID(), setup.GetVersionID());
  EXPECT_TRUE(solution.GetOverrideIsValid());
}

TEST_F(VersionIDsTest, TheMapNamesActiveSetupsAndTheirSolutionsInIDOrder) {
  BaseSimulationSetup & first = AddSetup(L"First", L"S1");
  first.AddSolution(first.CreateSolution(L"S2"), nullptr);
  BaseSimulationSetup & gone = AddSetup(L"Gone");
  BaseSimulationSetup & last = AddSetup(L"Last");
  Manager().DeleteSimulationSetup(gone.GetID(), nullptr);
  Manager().Invalidate(nullptr, 1);
  last.SetState(41, false);
  SolutionOf(last).SetState(42, false);

  io::CBlock const map = WrittenMap();
  EXPECT_EQ(Number(map, L"V"), Manager().GetVersionID());
  std::vector<AString> setups, solutions;
  for (auto const & child : map) {
    io::CBlock_ptr<io::CBlock> const setup(child);
    if (!setup)
      continue;
    EXPECT_EQ(setup->Name(), AString(L"Setup"));
    setups.push_back(Name(*setup));
    for (auto const & item : *setup)
      if (io::CBlock_ptr<io::CBlock_func> const solution(item); solution) {
        EXPECT_EQ(solution->Name(), AString(L"Soln"));
        solutions.push_back(Name(*solution));
        if (setups.back() == AString(L"Last")) {
          EXPECT_EQ(Number(*solution, L"V"), 42);
        }
      }
    if (setups.back() == AString(L"Last")) {
      EXPECT_EQ(Number(*setup, L"V"), 41);
    }
  }
  EXPECT_EQ(setups, (std::vector<AString>{L"First", L"Last"}));
  EXPECT_EQ(solutions, (std::vector<AString>{L"S1", L"S2", L"Sweep"}));
}

TEST_F(VersionIDsTest, AMapWithoutSetupsHoldsTheManagersVersionAlone) {
  io::CBlock const map = WrittenMap();
  EXPECT_EQ(map.Size(), 1);
  EXPECT_EQ(Number(map, L"V"), 0);
}

TEST_F(VersionIDsTest, ReadingTheMapAppliesNothing) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Manager().Invalidate(nullptr, 7);
  io::CBlock design(L"Module");
  Manager().WriteVersionIDsToQdsn(design);
  long const written = setup.GetVersionID();
  Manager().Invalidate(nullptr, 7);
  long const now = setup.GetVersionID();
  Manager().ReadVersionIDsFromQdsn(design);
  EXPECT_EQ(Manager().GetVersionID(), now);
  EXPECT_EQ(setup.GetVersionID(), now);
  Manager().ApplyVersionIDs(design);
  EXPECT_EQ(Manager().GetVersionID(), written);
  EXPECT_EQ(setup.GetVersionID(), written);
  EXPECT_EQ(SolutionOf(setup).GetVersionID(), written);
}

TEST_F(VersionIDsTest, TheHeaderHoldsTheTableInKeyOrder) {
  Manager().AddVariationID(L"z=1", 31);
  Manager().AddVariationID(L"A=1", 32);
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(Manager().WriteDefinitionBlock(header));
  io::CBlock table(L"VariationIDs");
  header >> table;
  std::vector<std::pair<AString, long>> entries;
  for (auto const & item : table) {
    io::CBlock_ptr<io::CBlock_func> const map(item);
    ASSERT_TRUE(map);
    EXPECT_EQ(map->Name(), AString(L"Map"));
    AString text;
    *map >> io::named(L"V", text);
    entries.emplace_back(text, Number(*map, L"ID"));
  }
  EXPECT_EQ(entries, (std::vector<std::pair<AString, long>>{{L"A=1", 32}, {L"z=1", 31}}));
}

TEST_F(VersionIDsTest, AHeaderWithoutVariationsHasNoTable) {
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(Manager().WriteDefinitionBlock(header));
  io::CBlock table(L"VariationIDs");
  header >> table;
  EXPECT_FALSE(header.Found());
}

TEST_F(VersionIDsTest, ReadingAHeaderAddsToTheTable) {
  Manager().AddVariationID(L"a=1", 31);
  io::CBlock table(L"VariationIDs");
  io::CBlock_func entry(L"Map"), known(L"Map");
  entry << io::named(L"V", L"b=1") << io::named(L"ID", 32L);
  known << io::named(L"V", L"A=1") << io::named(L"ID", 99L);
  table << entry << known;
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  header << table;
  Manager().ReadDefinitionBlock(header);
  EXPECT_EQ(Manager().GetVariationID(L"a=1"), 31);
  EXPECT_EQ(Manager().GetVariationID(L"b=1"), 32);
}

TEST_F(VersionIDsTest, ANewVariationReachesTheLibraryAtOnce) {
  long const id = Manager().GetVariationID(L"x=1");
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  ASSERT_EQ(Manager().LoadSingleBlock(header), CStreamioLibrary::kLibSuccess);
  io::CBlock table(L"VariationIDs");
  header >> table;
  ASSERT_EQ(table.Size(), 1);
  io::CBlock_ptr<io::CBlock_func> const entry(*table.begin());
  EXPECT_EQ(Number(*entry, L"ID"), id);
}

TEST_F(VersionIDsTest, WithoutALibraryAnIDIsIssuedAllTheSame) {
  support::TestManager manager(&m_design);
  EXPECT_FALSE(manager.IsQsolLibraryInitialized());
  long const id = manager.GetVariationID(L"x=1");
  EXPECT_EQ(manager.GetVariationID(L"X = 1"), id);
  EXPECT_NE(manager.GetVariationID(L"x=2"), id);
}
