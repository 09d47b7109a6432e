// The export of a design point whose project has work that is not saved: a library of what the product hands out.
#include "tests/solutionmanager/transfer/ExportFixture.h"
#include "tests/support/AssertWatch.h"

using support::AssertWatch;

namespace {

class ExportUnsavedPoint : public support::ExportTest {
protected:
  ExportUnsavedPoint() : m_setup(AddSetup(L"A")), m_solution(SolutionOf(m_setup)) {
    Solve(m_solution, L"x=1", {1, 2});
    Solve(m_solution, L"x=2", {3});
    WriteDefinitions();
    TakeTraces();
  }
  /// The product hands out the data of the point, and the definitions cut down to it.
  void GivePoint(AString const & variation) {
    Product().giveBlocks = [this, variation](io::CBlock & blocks) {
      io::CBlock data(DataName(m_solution, variation));
      EXPECT_EQ(Manager().LoadSingleBlock(data), CStreamioLibrary::kLibSuccess);
      io::CBlock definition(m_solution.GetBlockDefinitionName());
      m_solution.WriteDefinitionBlock(definition);
      io::CBlock setup(m_setup.GetBlockDefinitionName());
      m_setup.WriteDefinitionBlock(setup);
      io::CBlock header(BaseSolutionManager::kHeaderBlockName);
      Manager().WriteDefinitionBlock(header);
      blocks << data << definition << setup << header;
    };
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

TEST_F(ExportUnsavedPoint, WithoutHooksWritesALibraryThatHoldsAnEmptyNameMapAlone) {
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(NamesOf(TargetLibrary()), (std::set<AString>{L"BlockMapName"}));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).empty());
}

TEST_F(ExportUnsavedPoint, HoldsWhatTheProductHandsOutUnderTheNamesOfTheProject) {
  GivePoint(L"x=1");
  ASSERT_TRUE(Export(L"x=1", false));
  std::map<AString, AString> expected;
  for (AString const & name : {DataName(m_solution, L"x=1"), m_solution.GetBlockDefinitionName(),
                               m_setup.GetBlockDefinitionName(), BaseSolutionManager::kHeaderBlockName})
    expected[name] = Internal(name);
  EXPECT_EQ(NameMapOf(TargetLibrary()), expected);
  EXPECT_EQ(NamesOf(TargetLibrary()).size(), expected.size() + 1);
}

TEST_F(ExportUnsavedPoint, OpensAsTheResultsOfThatPointWithTheSameNumbers) {
  GivePoint(L"x=1");
  ASSERT_TRUE(Export(L"x=1", false));
  long const setupID = m_setup.GetID();
  long const solutionID = m_solution.GetID();
  support::TestDesign design(Target().FilePath());
  support::TestManager manager(&design);
  manager.InitializeFromDesign(false);
  ASSERT_EQ(manager.BuildUtilityCollections(), io::kNoError);
  auto const * const setup =
      dynamic_cast<BaseSimulationSetup const *>(manager.GetISimulationSetupByID(setupID, false, false));
  ASSERT_NE(setup, nullptr);
  ASSERT_TRUE(setup->GetSolutions().contains(solutionID));
  BaseSolution & solution = *setup->GetSolutions().at(solutionID);
  ASSERT_EQ(solution.GetVariations().size(), 1u);
  auto const & [index, variation] = *solution.GetVariations().begin();
  EXPECT_TRUE(variation->IsVariationValid());
  auto const * const data = dynamic_cast<support::TestVariation const *>(solution.GetVariationData(index, false));
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->values, (std::vector<double>{1, 2}));
}

TEST_F(ExportUnsavedPoint, CopiesNothingOfTheLibraryAndNeedsNoneOnTheDisk) {
  EXPECT_FALSE(LFN_Exists(LongFileName(Library()))) << "nothing was saved yet";
  GivePoint(L"x=2");
  EXPECT_TRUE(Export(L"x=2", false));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=2")));
}

TEST_F(ExportUnsavedPoint, DropsWhatStoodInTheFileBefore) {
  GivePoint(L"x=1");
  ASSERT_TRUE(Export(L"x=1", false));
  GivePoint(L"x=2");
  ASSERT_TRUE(Export(L"x=2", false));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=1")));
  EXPECT_FALSE(NamesOf(TargetLibrary()).contains(Internal(DataName(m_solution, L"x=1"))));
}

TEST_F(ExportUnsavedPoint, TellsTheEntryOfABlockThatIsHandedOutUnderItsInternalName) {
  AString const name = DataName(m_solution, L"x=1");
  Product().giveBlocks = [&](io::CBlock & blocks) { blocks << io::CBlock(Internal(name)); };
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(NameMapOf(TargetLibrary()), (std::map<AString, AString>{{name, Internal(name)}}));
}

TEST_F(ExportUnsavedPoint, StoresABlockThatTheMapLacksUnderItsRealNameOutsideTheMap) {
  Product().giveBlocks = [](io::CBlock & blocks) { blocks << io::CBlock(L"Extra"); };
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(NamesOf(TargetLibrary()), (std::set<AString>{L"Extra", L"BlockMapName"}));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).empty());
}

TEST_F(ExportUnsavedPoint, ReportsAChildThatIsNoBlockAndPassesItOver) {
  Product().giveBlocks = [](io::CBlock & blocks) { blocks << io::named(L"Number", 1) << io::CBlock(L"Extra"); };
  AssertWatch::Expect("block");
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_TRUE(NamesOf(TargetLibrary()).contains(L"Extra"));
}

TEST_F(ExportUnsavedPoint, OfALibraryThatIsNoneReportsItAndGoesOn) {
  support::TestDesign design(text::FromUtf8((m_folder / "foreign").string()) + L"/");
  support::ExportingManager manager(&design);
  manager.InitializeFromDesign(true);
  std::ofstream(m_folder / "foreign/Design.qsol") << std::string(500, 'x');
  TakeTraces();
  AssertWatch::Expect("isLoaded");
  EXPECT_TRUE(manager.ExportDesignPointResults(Target(), L"x=1", false));
  EXPECT_EQ(CountTraces(TakeTraces(), L"Error in loading RealToInternalBlockNameMap in ExportQSolForDesignPoint\n"), 1);
  EXPECT_EQ(NamesOf(TargetLibrary()), (std::set<AString>{L"BlockMapName"}));
}

} // namespace
