// How a library's names and definition blocks turn into objects, and what bad ones among them cost.

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/transfer/ExportVariationContext.h"
#include "solutionmanager/transfer/ExportVariationContextObject.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <limits>

using support::AssertWatch;

namespace {

constexpr long kHuge = std::numeric_limits<long>::max();
using Key = SolutionVariationKey;

AString SetupName(long setup, long version) { return Key(setup, Key::kSimSetupDefinitionKey, -1, version).Pack(); }

io::CBlock State(long variationID, long version) {
  io::CBlock_func item(L"F");
  item << io::named(L"VID", variationID) << io::named(L"Ver", version);
  io::CBlock states(L"States");
  states << item;
  return states;
}

io::CBlock Variation(AString const & text, long id) {
  io::CBlock_func item(L"Map");
  item << io::named(L"V", text) << io::named(L"ID", id);
  io::CBlock variations(L"VariationIDs");
  variations << item;
  return variations;
}

class SetupOfResult : public support::TestSetup {
public:
  using TestSetup::TestSetup;
  io::ReadError ReadDefinitionBlock(io::CBlock const & block) override {
    TestSetup::ReadDefinitionBlock(block);
    return result;
  }
  io::ReadError result = io::kNoError;
};

} // namespace

class DefinitionBlocksTest : public support::ModelTest {
protected:
  void SaveNamed(AString const & name) {
    io::CBlock block(name);
    block << io::named(L"N", 1L);
    ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  }
  /// The objects that a library of these block names gives.
  void ReadNames(std::vector<AString> const & names) {
    for (AString const & name : names)
      SaveNamed(name);
    ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
    Reopen();
  }
  BaseSimulationSetup * Setup(long id) {
    return dynamic_cast<BaseSimulationSetup *>(Manager().GetISimulationSetupByID(id, false, false));
  }
  BaseSolution * Solution(long setup, long id) {
    return Setup(setup) ? dynamic_cast<BaseSolution *>(Setup(setup)->GetISolutionByID(id, false)) : nullptr;
  }
};

TEST_F(DefinitionBlocksTest, TheFirstNameOfASolutionFixesItsVersionOnPurpose) {
  // Names stand in the order of their texts, so that 10 comes before 9.
  ReadNames({Key(5, L"x=1", 6, 9).Pack(), Key(5, L"x=1", 6, 10).Pack()});
  ASSERT_NE(Solution(5, 6), nullptr);
  EXPECT_EQ(Solution(5, 6)->GetVersionID(), 10);
}

TEST_F(DefinitionBlocksTest, TheLastOfASetupsOwnNamesFixesItsVersionOnPurpose) {
  ReadNames({SetupName(5, 9), SetupName(5, 10), Key(5, L"a=1", 6, 3).Pack()});
  ASSERT_NE(Setup(5), nullptr);
  EXPECT_EQ(Setup(5)->GetVersionID(), 9);
}

TEST_F(DefinitionBlocksTest, ConvergenceAndProfileNamesAreASetupsOwn) {
  ReadNames({Key(5, L"x=1", Key::kConvDataKey, 7).Pack()});
  ASSERT_NE(Setup(5), nullptr);
  EXPECT_EQ(Setup(5)->GetVersionID(), 7);
  EXPECT_TRUE(Setup(5)->GetSolutions().empty());
  ReadNames({Key(5, L"x=1", Key::kProfileDataKey, 8).Pack()});
  EXPECT_EQ(Setup(5)->GetVersionID(), 7); // "Solution=-2" stands before "Solution=-3"
}

TEST_F(DefinitionBlocksTest, ASetupThatIsThereIsNotMadeAgain) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  SaveNamed(Key(setup.GetID(), L"x=1", 77, 3).Pack());
  EXPECT_EQ(Manager().BuildUtilityCollections(), io::kNoError);
  EXPECT_EQ(Setup(setup.GetID()), &setup);
  EXPECT_EQ(setup.GetSolutions().size(), 2u);
}

TEST_F(DefinitionBlocksTest, AConvergenceBlockWithoutAVersionLeavesTheSetupsVersion) {
  ReadNames({SetupName(5, 4), Key(5, L"x=1", Key::kConvDataKey, -1).Pack()});
  ASSERT_NE(Setup(5), nullptr);
  EXPECT_EQ(Setup(5)->GetVersionID(), 4);
}

TEST_F(DefinitionBlocksTest, ABlockOfANegativeVersionMakesNoObjectAndStays) {
  AString const name = Key(5, L"x=1", 6, -7).Pack();
  SaveNamed(name);
  SaveNamed(SetupName(8, -1));
  AssertWatch::Expect("namesAnObject");
  EXPECT_EQ(Manager().BuildUtilityCollections(), io::kNoError);
  EXPECT_TRUE(Manager().GetSetups().empty());
  io::CBlock block(name);
  EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
}

TEST_F(DefinitionBlocksTest, ABlockOfANegativeSolutionMakesNoSolution) {
  SaveNamed(Key(5, L"x=1", -1, 3).Pack());
  SaveNamed(Key(5, L"x=1", -9, 3).Pack());
  SaveNamed(SetupName(5, 3));
  AssertWatch::Expect("namesAnObject");
  EXPECT_EQ(Manager().BuildUtilityCollections(), io::kNoError);
  ASSERT_NE(Setup(5), nullptr);
  EXPECT_TRUE(Setup(5)->GetSolutions().empty());
}

TEST_F(DefinitionBlocksTest, HugeNumbersComeBackAndLeaveRoomForNewIDs) {
  ReadNames({Key(kHuge, L"x=1", kHuge - 1, kHuge - 2).Pack(), Key(kHuge - 3, L"x=1", 1, 2).Pack()});
  ASSERT_NE(Solution(kHuge, kHuge - 1), nullptr);
  EXPECT_EQ(Solution(kHuge, kHuge - 1)->GetVersionID(), kHuge - 2);
  EXPECT_LT(Manager().FetchNextUniqueID(), 1000);
}

TEST_F(DefinitionBlocksTest, NegativeSetupIDsOtherThanTheWildcardComeBack) {
  ReadNames({Key(-5, L"x=1", 6, 3).Pack(), Key(-1, L"x=1", 6, 3).Pack()});
  ASSERT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_EQ(Manager().GetSetups().begin()->first, -5);
}

TEST_F(DefinitionBlocksTest, WithoutItsHeaderALibrarysIDsAreNotGivenOutAgain) {
  ReadNames({SetupName(500, 510), Key(500, L"x=1", 520, 530).Pack()});
  EXPECT_GT(Manager().FetchNextUniqueID(), 530);
}

TEST_F(DefinitionBlocksTest, IDsThatAHeadersCounterForgotAreNotGivenOutAgain) {
  io::CBlock header(L"FileHeader");
  header << io::named(L"VersionID", 600L) << io::named(L"NextUniqueID", 3L) << Variation(L"x=1", 700);
  Manager().ReadDefinitionBlock(header);
  EXPECT_EQ(Manager().GetVersionID(), 600);
  EXPECT_EQ(Manager().FetchNextUniqueID(), 701);
}

TEST_F(DefinitionBlocksTest, VariationIDsThatOnlyStatesKnowAreNotGivenOutAgain) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  EXPECT_EQ(solution.LoadSolutionVariations(State(800, 0)), io::kNoError);
  EXPECT_GT(Manager().GetVariationID(L"x=1"), 800);
}

TEST_F(DefinitionBlocksTest, AnUnknownVariationIDGivesTheEmptyVariationOnPurpose) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  EXPECT_EQ(solution.LoadSolutionVariations(State(800, 0)), io::kNoError);
  ASSERT_EQ(solution.size(), 1);
  EXPECT_TRUE(solution.GetVariations().begin()->first.GetVariation().empty());
}

TEST_F(DefinitionBlocksTest, StatesAreLookedUpByTheSolutionsVersionNotTheirOwnOnPurpose) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  long const id = Manager().GetVariationID(L"x=1");
  EXPECT_EQ(solution.LoadSolutionVariations(State(id, 7)), io::kNoError);
  EXPECT_EQ(solution.LoadSolutionVariations(State(id, 7)), io::kNoError);
  EXPECT_EQ(solution.size(), 1);
  EXPECT_NE(solution.GetBaseSolutionVariation(L"x=1", 7), nullptr);
  EXPECT_EQ(solution.LoadSolutionVariations(State(id, 0)), io::kNoError);
  EXPECT_EQ(solution.LoadSolutionVariations(State(id, 9)), io::kNoError);
  EXPECT_EQ(solution.size(), 2);
}

TEST_F(DefinitionBlocksTest, AnItemThatIsMissingLeavesTheHeadersMember) {
  PortSettings const port(L"P1");
  Manager().SetPortPostProcessingSettings({port});
  Manager().SetPostProcessingIsOn(true);
  Manager().ReadDefinitionBlock(io::CBlock(L"FileHeader"));
  EXPECT_EQ(Manager().GetCircuitName(), AString(L"Design"));
  EXPECT_TRUE(Manager().IsDeembeddingLossLess());
  std::vector<PortSettings> ports;
  EXPECT_EQ(Manager().GetPortPostProcessingSettings(ports), 1);
  io::CBlock header(L"FileHeader");
  header << io::CBlock(L"PortSettings");
  Manager().ReadDefinitionBlock(header);
  EXPECT_EQ(Manager().GetPortPostProcessingSettings(ports), 0);
}

TEST_F(DefinitionBlocksTest, TheHeaderComesBack) {
  PortSettings port(L"P1");
  port.SetDeembeddingDist(0.25);
  Manager().SetPortPostProcessingSettings({port});
  Manager().SetPostProcessingIsOn(true);
  Manager().SetDeembeddingLossLess(false);
  Manager().Invalidate(nullptr, kInvalidateManager);
  long const version = Manager().GetVersionID(), variation = Manager().GetVariationID(L"x=1");
  Commit();
  Reopen();
  EXPECT_EQ(Manager().GetVersionID(), version);
  EXPECT_EQ(Manager().GetVariationFromID(variation), AString(L"x=1"));
  EXPECT_EQ(Manager().GetProductName(), AString(L"TestProduct"));
  EXPECT_FALSE(Manager().IsDeembeddingLossLess());
  EXPECT_TRUE(Manager().IsDeembedding());
  EXPECT_GT(Manager().FetchNextUniqueID(), variation);
}

TEST_F(DefinitionBlocksTest, ANegativeVersionInABlockIsReportedAndLeftOut) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  io::CBlock header(L"FileHeader"), definition(setup.GetBlockDefinitionName());
  header << io::named(L"VersionID", -1L);
  definition << io::named(L"VersionID", std::numeric_limits<long>::min());
  AssertWatch::Expect("isVersion");
  Manager().ReadDefinitionBlock(header);
  EXPECT_EQ(setup.ReadDefinitionBlock(definition), io::kNoError);
  EXPECT_EQ(Manager().GetVersionID(), 0);
  EXPECT_EQ(setup.GetVersionID(), 0);
}

TEST_F(DefinitionBlocksTest, OfAVariationThatAHeaderNamesTwiceTheFirstIDStays) {
  io::CBlock header(L"FileHeader");
  header << Variation(L"x=1", 70);
  Manager().ReadDefinitionBlock(header);
  io::CBlock again(L"FileHeader");
  again << Variation(L"X=1", 71);
  Manager().ReadDefinitionBlock(again);
  EXPECT_EQ(Manager().GetVariationID(L"x=1"), 70);
}

TEST_F(DefinitionBlocksTest, TwoVariationsNeverShareAnID) {
  io::CBlock header(L"FileHeader");
  header << Variation(L"x=1", 70);
  Manager().ReadDefinitionBlock(header);
  io::CBlock again(L"FileHeader");
  again << Variation(L"x=2", 70);
  AssertWatch::Expect("isIDFree");
  Manager().ReadDefinitionBlock(again);
  EXPECT_EQ(Manager().GetVariationFromID(70), AString(L"x=1"));
  EXPECT_GT(Manager().GetVariationID(L"x=2"), 70);
}

TEST_F(DefinitionBlocksTest, AVersionMapWithoutProperVersionsLeavesThoseThatAreThere) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Manager().Invalidate(nullptr, kInvalidateManager | kInvalidateSetups | kInvalidateSolutions);
  long const version = Manager().GetVersionID();
  io::CBlock map(L"Version ID Map"), setupBlock(L"Setup");
  io::CBlock_func solution(L"Soln");
  solution << io::named(L"N", L"Sweep") << io::named(L"V", -3L);
  setupBlock << io::named(L"N", L"A") << solution;
  map << io::named(L"V", std::numeric_limits<long>::min()) << setupBlock;
  io::CBlock design(L"Module");
  design << map;
  // One site each for the block and for the function item.
  AssertWatch::Expect("isVersion");
  AssertWatch::Expect("isVersion");
  Manager().ApplyVersionIDs(design);
  EXPECT_EQ(Manager().GetVersionID(), version);
  EXPECT_EQ(setup.GetVersionID(), version);
  EXPECT_EQ(SolutionOf(setup).GetVersionID(), version);
}

TEST_F(DefinitionBlocksTest, VersionsThatTheDesignRemembersAreNotGivenOutAgain) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  setup.SetState(900, false);
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  support::TestManager manager(&m_design);
  manager.ApplyVersionIDs(design);
  EXPECT_EQ(manager.FetchNextUniqueID(), 901);
}

TEST_F(DefinitionBlocksTest, IDsThatOnlyTheDesignFileKnowsAreNotGivenOutToOthers) {
  AddSetup(L"A");
  long const last = SolutionOf(AddSetup(L"B")).GetID();
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  support::TestManager manager(&m_design);
  EXPECT_EQ(manager.DesignFileRead(design), io::kNoError);
  EXPECT_GE(manager.FetchNextUniqueID(), last);
}

TEST_F(DefinitionBlocksTest, ASetupsDefinitionGivesNameAndVersion) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  setup.SetState(9, false);
  io::CBlock block(setup.GetBlockDefinitionName());
  ASSERT_TRUE(setup.WriteDefinitionBlock(block));
  support::TestSetup other(&Manager(), setup.GetID(), 9);
  EXPECT_EQ(other.ReadDefinitionBlock(block), io::kNoError);
  EXPECT_EQ(other.GetName(), AString(L"A"));
  EXPECT_EQ(other.GetVersionID(), 9);
}

TEST_F(DefinitionBlocksTest, ADefinitionUnderAnotherNameIsReportedAndHandledAllTheSame) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  io::CBlock block(L"Other");
  for (int use = 0; use < 4; ++use)
    AssertWatch::Expect("name.Compare(GetBlockDefinitionName()) == 0");
  EXPECT_TRUE(setup.WriteDefinitionBlock(block));
  support::TestSetup other(&Manager(), AString(L"B"));
  EXPECT_EQ(other.ReadDefinitionBlock(block), io::kNoError);
  EXPECT_EQ(other.GetID(), setup.GetID());
  EXPECT_EQ(other.GetName(), AString(L"A"));
  io::CBlock solutionBlock(L"Other");
  EXPECT_TRUE(SolutionOf(setup).WriteDefinitionBlock(solutionBlock));
  EXPECT_EQ(SolutionOf(setup).ReadDefinitionBlock(solutionBlock), io::kNoError);
}

TEST_F(DefinitionBlocksTest, ADefinitionOfAnotherIDDoesNotRenumberWhatTheManagerKnows) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  long const setupID = setup.GetID(), solutionID = solution.GetID();
  io::CBlock block(setup.GetBlockDefinitionName()), solutionBlock(solution.GetBlockDefinitionName());
  block << io::named(L"SimSetupID", 4711L) << io::named(L"SimSetupName", L"Renamed");
  solutionBlock << io::named(L"SolutionName", L"Renamed") << io::named(L"SolutionID", 4712L);
  AssertWatch::Expect("isOwnID");
  AssertWatch::Expect("isOwnID");
  EXPECT_EQ(setup.ReadDefinitionBlock(block), io::kNoError);
  EXPECT_EQ(solution.ReadDefinitionBlock(solutionBlock), io::kNoError);
  EXPECT_EQ(setup.GetID(), setupID);
  EXPECT_EQ(solution.GetID(), solutionID);
  EXPECT_EQ(setup.GetName(), AString(L"Renamed"));
  EXPECT_EQ(solution.GetSolutionName(), AString(L"Renamed"));
}

TEST_F(DefinitionBlocksTest, TheGreatestResultOfTheSetupsIsTheManagers) {
  EXPECT_EQ(Manager().ReadAllDefinitionBlocks(), io::kNoError);
  for (io::ReadError const result : {io::kWarning, io::kBadContent, io::kNotFound}) {
    auto * const setup = new SetupOfResult(&Manager(), AString(L"A"));
    setup->result = result;
    Manager().AddSimulation(setup, nullptr);
  }
  EXPECT_EQ(Manager().ReadAllDefinitionBlocks(), io::kBadContent);
}

TEST_F(DefinitionBlocksTest, TheResultOfASetupIsThatOfItsLastReadOnPurpose) {
  SetupOfResult setup(&Manager(), AString(L"A"));
  setup.result = io::kBadContent;
  EXPECT_EQ(setup.ReadAllDefinitionBlocks(), io::kBadContent);
  setup.AddSolution(setup.CreateSolution(L"Sweep"), nullptr);
  EXPECT_EQ(setup.ReadAllDefinitionBlocks(), io::kNoError);
}

TEST_F(DefinitionBlocksTest, ASetupsDefinitionThatTheLibraryRefusesIsTold) {
  support::TestManager unattached(&m_design);
  support::TestSetup const setup(&unattached, AString(L"A"));
  EXPECT_FALSE(setup.WriteDefinitionBlock());
  BaseSimulationSetup const & attached = AddSetup(L"B");
  EXPECT_TRUE(attached.WriteDefinitionBlock());
}

TEST_F(DefinitionBlocksTest, ADesignFileThatNamesASetupTwiceIsReadOnceAndReported) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  io::CBlock block(L"SimSetup");
  block << io::named(L"TypeName", L"BaseSetup") << io::named(L"ID", setup.GetID()) << io::named(L"Name", L"A");
  io::CBlock solution(L"Solution");
  solution << io::named(L"ID", SolutionOf(setup).GetID()) << io::named(L"Name", L"Sweep");
  block << solution << solution;
  io::CBlock design(L"Module");
  design << block << block;
  AssertWatch::Expect("isFirst"); // of the setup
  AssertWatch::Expect("isFirst"); // of its solution
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  EXPECT_EQ(Setup(setup.GetID()), &setup);
}

TEST_F(DefinitionBlocksTest, AnImportedSetupOfATakenIDIsReportedAndTheFirstStays) {
  io::CBlock design(L"Module");
  for (wchar_t const * const name : {L"First", L"Second"}) {
    io::CBlock block(L"ImportedSimSetup");
    block << io::named(L"TypeName", L"X") << io::named(L"ID", 55L) << io::named(L"Name", name);
    design << block;
  }
  AssertWatch::Expect("it == m_ImportedSimSetupMap.end()");
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  ASSERT_EQ(Manager().GetImportedSetups().size(), 1u);
  std::unique_ptr<BaseSimulationSetup> const setup(Manager().GetImportedSetups().at(55));
  EXPECT_EQ(setup->GetName(), AString(L"First"));
  EXPECT_GT(Manager().FetchNextUniqueID(), 55);
}

TEST_F(DefinitionBlocksTest, ImportedSetupsWithoutAnIDGetOneEach) {
  io::CBlock design(L"Module");
  for (wchar_t const * const name : {L"First", L"Second"}) {
    io::CBlock block(L"ImportedSimSetup");
    block << io::named(L"TypeName", L"X") << io::named(L"Name", name);
    design << block;
  }
  AssertWatch::Expect("simSetupBlock->Found()");
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  auto const & imported = Manager().GetImportedSetups();
  EXPECT_EQ(imported.size(), 2u);
  for (auto const & [id, setup] : imported) {
    EXPECT_EQ(setup->GetID(), id);
    delete setup;
  }
}

TEST_F(DefinitionBlocksTest, DuringAnExportTheBlocksHoldTheOneVariation) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Solve(solution, L"x=1", {1});
  Solve(solution, L"x=2", {2});
  long const id = Manager().GetVariationID(L"x=2");
  auto const childrenOf = [](io::CBlock const & block, wchar_t const * name) { return block.FindBlock(name)->Size(); };
  {
    ExportVariationContextObject const exporting(Manager(), id, false);
    EXPECT_EQ(Manager().GetExportVariationContext()->designVariationKey, AString(L"x=2"));
    EXPECT_FALSE(Manager().GetExportVariationContext()->isSavedState);
    io::CBlock header(L"FileHeader"), definition(solution.GetBlockDefinitionName());
    ASSERT_TRUE(Manager().WriteDefinitionBlock(header));
    ASSERT_TRUE(solution.WriteDefinitionBlock(definition));
    ASSERT_EQ(childrenOf(header, L"VariationIDs"), 1);
    ASSERT_EQ(childrenOf(definition, L"States"), 1);
    long variationID = -1;
    *io::CBlock_ptr<io::CBlock_func>(*header.FindBlock(L"VariationIDs")->begin()) >> io::named(L"ID", variationID);
    EXPECT_EQ(variationID, id);
    *io::CBlock_ptr<io::CBlock_func>(*definition.FindBlock(L"States")->begin()) >> io::named(L"VID", variationID);
    EXPECT_EQ(variationID, id);
  }
  EXPECT_EQ(Manager().GetExportVariationContext(), nullptr);
  io::CBlock header(L"FileHeader"), definition(solution.GetBlockDefinitionName());
  ASSERT_TRUE(Manager().WriteDefinitionBlock(header));
  ASSERT_TRUE(solution.WriteDefinitionBlock(definition));
  EXPECT_EQ(childrenOf(header, L"VariationIDs"), 2);
  EXPECT_EQ(childrenOf(definition, L"States"), 2);
}

TEST_F(DefinitionBlocksTest, AnExportOfAVariationThatASolutionLacksLeavesItsStatesEmpty) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  Solve(solution, L"x=1", {1});
  long const id = Manager().GetVariationID(L"x=2");
  ExportVariationContextObject const exporting(Manager(), id, true);
  io::CBlock definition(solution.GetBlockDefinitionName());
  ASSERT_TRUE(solution.WriteDefinitionBlock(definition));
  ASSERT_NE(definition.FindBlock(L"States"), nullptr);
  EXPECT_TRUE(definition.FindBlock(L"States")->Empty());
}

TEST_F(DefinitionBlocksTest, ASetupThatOnlyAConvergenceBlockWithoutAVersionNamesIsMade) {
  ReadNames({Key(5, L"x=1", Key::kConvDataKey, -1).Pack()});
  ASSERT_NE(Setup(5), nullptr);
  EXPECT_EQ(Setup(5)->GetName(), AString());
}

TEST_F(DefinitionBlocksTest, AVersionMapWithoutAVersionIsNoFault) {
  io::CBlock design(L"Module");
  design << io::CBlock(L"Version ID Map");
  Manager().ApplyVersionIDs(design);
  EXPECT_EQ(Manager().GetVersionID(), 0);
}
