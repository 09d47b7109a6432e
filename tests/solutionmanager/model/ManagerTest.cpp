#include "solutionmanager/model/BaseSolutionManager.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <fstream>

using support::AssertWatch;

class ManagerTest : public support::ModelTest {};

TEST_F(ManagerTest, IDsAreIssuedBeforeTheLibraryPathIsSetAndNothingIsWritten) {
  support::TestManager manager(&m_design);
  long const first = manager.FetchNextUniqueID();
  EXPECT_EQ(manager.FetchNextUniqueID(), first + 1);
  EXPECT_FALSE(manager.IsQsolLibraryInitialized());
  EXPECT_FALSE(LFN_Exists(LongFileName(manager.GetQsolPath())));
  EXPECT_FALSE(LFN_Exists(LongFileName(manager.GetQsolPath() + L"_priv")));
}

TEST_F(ManagerTest, AnIDTakenReachesTheLibraryAtOnce) {
  AddSetup(L"A");
  Commit();
  Reopen();
  ASSERT_TRUE(Manager().IsQsolLibraryInitialized());
  long const taken = Manager().FetchNextUniqueID();
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  ASSERT_EQ(Manager().LoadSingleBlock(header), CStreamioLibrary::kLibSuccess);
  KelvroIDServer reader;
  reader.ResetNextUniqueID(header);
  EXPECT_GT(reader.FetchNextUniqueID(), taken);
}

TEST_F(ManagerTest, TheLibraryIsNamedAfterTheDesignUnlessAnOlderNameIsThere) {
  AString const folder = m_design.project.resultsFolder;
  EXPECT_EQ(Manager().GetQsolPath(), folder + L"Design.qsol");
  std::ofstream(m_folder / "results" / "Project_Design.qsol_priv") << "x";
  EXPECT_EQ(Manager().GetQsolPath(), folder + L"Project_Design.qsol");
  std::ofstream(m_folder / "results" / "Design.qsol") << "x";
  EXPECT_EQ(Manager().GetQsolPath(), folder + L"Design.qsol");
}

TEST_F(ManagerTest, ADeletedSetupIsFoundOnlyWithItsFlag) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  long const id = setup.GetID();
  Manager().DeleteSimulationSetup(id, nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"a", false, true), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"a", true, false), &setup);
  EXPECT_EQ(Manager().GetISimulationSetupByID(id, true, false), &setup);
}

TEST_F(ManagerTest, ADeletedImportedSetupNeedsBothFlags) {
  auto setup = std::make_unique<support::TestSetup>(&Manager(), AString(L"Measured"));
  BaseSolution * const solution = setup->CreateSolution(L"Data");
  setup->AddSolution(solution, nullptr);
  ASSERT_TRUE(Manager().AddImportData(solution, nullptr));
  EXPECT_EQ(Manager().GetISimulationSetup(L"Measured", false, true), setup.get());
  Manager().DeleteSimulationSetup(setup->GetID(), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Measured", true, false), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Measured", false, true), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Measured", true, true), setup.get());
  std::vector<ISimulationSetup *> list;
  EXPECT_EQ(Manager().GetISimulationSetupList(list, true, true), 0);
}

TEST_F(ManagerTest, TheEquivalentOfAnOwnSetupIsThatVerySetup) {
  BaseSimulationSetup & first = AddSetup(L"A");
  BaseSimulationSetup & second = AddSetup(L"B");
  ASSERT_TRUE(second.IsEqual(&first));
  EXPECT_EQ(Manager().FindEquivalentISimulationSetup(&second), &second);
  support::TestSetup const foreign(&Manager(), AString(L"C"));
  EXPECT_EQ(Manager().FindEquivalentISimulationSetup(const_cast<support::TestSetup *>(&foreign)), &first);
}

TEST_F(ManagerTest, InvalidateOfSetupsLeavesTheManagersVersion) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Manager().Invalidate(nullptr, kInvalidateSetups);
  EXPECT_EQ(Manager().GetVersionID(), 0);
  EXPECT_GT(setup.GetVersionID(), 0);
  EXPECT_EQ(SolutionOf(setup).GetVersionID(), 0);
}

TEST_F(ManagerTest, OneInvalidateGivesOneNewVersionToAllThatItSelects) {
  BaseSimulationSetup & a = AddSetup(L"A");
  BaseSimulationSetup & b = AddSetup(L"B");
  Manager().Invalidate(nullptr, kInvalidateManager | kInvalidateSetups | kInvalidateSolutions);
  long const version = Manager().GetVersionID();
  EXPECT_EQ(a.GetVersionID(), version);
  EXPECT_EQ(SolutionOf(a).GetVersionID(), version);
  EXPECT_EQ(SolutionOf(b).GetVersionID(), version);
}

TEST_F(ManagerTest, InvalidateWithoutSetupsTellsTheDesign) {
  Manager().Invalidate(nullptr, 0);
  EXPECT_EQ(m_design.changes, 0);
  Manager().Invalidate(nullptr, kInvalidateManager);
  EXPECT_EQ(m_design.changes, 1);
}

TEST_F(ManagerTest, AddingAKnownSetupChangesNothingAndRecordsNothing) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  KelvroCommand command(L"add");
  Manager().AddSimulation(&setup, &command);
  EXPECT_FALSE(command.HasDeltaStates());
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
}

TEST_F(ManagerTest, AddingNothingIsReported) {
  AssertWatch::Expect("simSetup");
  Manager().AddSimulation(nullptr, nullptr);
}

TEST_F(ManagerTest, DeletingAnUnknownSetupIsReported) {
  AssertWatch::Expect("it != m_ImportedSimSetupMap.end()");
  Manager().DeleteSimulationSetup(999, nullptr);
}

TEST_F(ManagerTest, TheLaterConvergenceDefinitionOfASetupTypeIsKept) {
  auto * first = new SetupConvDef(L"Type");
  auto * second = new SetupConvDef(L"Type");
  Manager().AddSetupConvDef(first);
  AssertWatch::Expect("!\"Duplicate problem conv def\"");
  Manager().AddSetupConvDef(second);
  EXPECT_EQ(Manager().GetConvDefsForSetup(L"Type"), second);
  EXPECT_EQ(Manager().GetConvDefsForSetup(L"type"), nullptr);
}

TEST_F(ManagerTest, GlobalSolutionNamesAreFoundOverAllSetups) {
  AddSetup(L"A");
  BaseSimulationSetup & b = AddSetup(L"B", L"Other");
  EXPECT_EQ(Manager().GetISolution(L"b : OTHER", false, false), static_cast<ISolution *>(&SolutionOf(b)));
  EXPECT_EQ(Manager().GetISolution(L"A : Other", false, false), nullptr);
}

TEST_F(ManagerTest, OnlyItsOwnInterfaceIDsAreAnswered) {
  EXPECT_NE(Manager().GetInterface(0), nullptr);
  EXPECT_EQ(Manager().GetInterface(25), Manager().GetInterface(0));
  EXPECT_EQ(Manager().GetInterface(26), static_cast<ISolutionReporter *>(&Manager()));
  EXPECT_EQ(Manager().GetInterface(35500), static_cast<ITaskSetupManager *>(&Manager()));
  EXPECT_EQ(Manager().GetInterface(27), nullptr);
}

TEST_F(ManagerTest, AProductWithoutAReportInterfaceIsReportedAPlotInterfaceIsNot) {
  EXPECT_EQ(Manager().GetIProductSolutionMgrForPlot(), nullptr);
  AssertWatch::Expect("0");
  EXPECT_EQ(Manager().GetIProductSolutionMgrForReportSetupUI(), nullptr);
}

TEST_F(ManagerTest, DeembeddingIsOnForADistanceThatIsNoNumber) {
  PortSettings port(L"P1");
  port.SetDeembeddingDist(std::numeric_limits<double>::quiet_NaN());
  Manager().SetPortPostProcessingSettings({port});
  EXPECT_FALSE(Manager().IsDeembedding());
  Manager().SetPostProcessingIsOn(true);
  EXPECT_TRUE(Manager().IsDeembedding());
  Manager().SetPortPostProcessingSettings({});
  EXPECT_FALSE(Manager().IsDeembedding());
}

TEST_F(ManagerTest, OldReportStructuresGoWithTheRewriteUnlessTheDesignUpdatesReports) {
  EXPECT_TRUE(Manager().AreOldReportStructuresSupported());
  m_desktop.rewrite = true;
  EXPECT_FALSE(Manager().AreOldReportStructuresSupported());
  m_design.reportUpdateService = reinterpret_cast<IReportUpdateService *>(&m_design);
  EXPECT_TRUE(Manager().AreOldReportStructuresSupported());
}

TEST_F(ManagerTest, ASimValueCacheFileBelongsToADesignWithAnID) {
  AString name;
  ASSERT_TRUE(Manager().GetSimValueCacheFullFileName(name));
  EXPECT_EQ(name, m_design.project.resultsFolder + L"Design_3.svcache");
  m_design.designID = -1;
  EXPECT_FALSE(Manager().GetSimValueCacheFullFileName(name));
}

TEST_F(ManagerTest, StatisticsCountTheVariationsOfAllSetups) {
  BaseSimulationSetup & a = AddSetup(L"A");
  BaseSimulationSetup & b = AddSetup(L"B");
  Solve(SolutionOf(a), L"x=1", {1});
  Solve(SolutionOf(a), L"x=2", {2});
  Solve(SolutionOf(b), L"x=1", {3});
  EXPECT_EQ(Manager().GetFileStats().variations, 3u);
}

TEST_F(ManagerTest, ATextThatIsNoKeyNeverDeletesEverything) {
  BaseSimulationSetup & a = AddSetup(L"A");
  Solve(SolutionOf(a), L"x=1", {1});
  AssertWatch::Expect("unpacked");
  EXPECT_TRUE(Manager().DeleteOldBlocks({L"no key at all"}));
  EXPECT_TRUE(SolutionOf(a).HasSolutionData(L"x=1", 0));
}

TEST_F(ManagerTest, ASetupThatIsAddedAgainAfterItsDeletionStandsInOneMap) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Manager().DeleteSimulationSetup(setup.GetID(), nullptr);
  Manager().AddSimulation(&setup, nullptr);
  EXPECT_TRUE(Manager().GetDeletedSetups().empty());
  EXPECT_EQ(Manager().GetISimulationSetup(L"A", false, false), &setup);
}

TEST_F(ManagerTest, ADesignWithoutAVersionMapLeavesTheVersionsAsTheyAre) {
  AddSetup(L"A");
  Manager().Invalidate(nullptr, kInvalidateManager);
  long const version = Manager().GetVersionID();
  ASSERT_NE(version, 0);
  Manager().ApplyVersionIDs(io::CBlock(L"Module"));
  EXPECT_EQ(Manager().GetVersionID(), version);
}

TEST_F(ManagerTest, AKeyOfMissingFieldsNeverDeletesEverything) {
  BaseSimulationSetup & a = AddSetup(L"A");
  Solve(SolutionOf(a), L"x=1", {1});
  AssertWatch::Expect("unpacked");
  Manager().DeleteOldBlocks({L"SolutionKey(VersionID = -1)"});
  EXPECT_TRUE(SolutionOf(a).HasSolutionData(L"x=1", 0));
}

TEST_F(ManagerTest, AVariationEntryWithoutAnIDIsRefused) {
  io::CBlock header(L"FileHeader");
  io::CBlock variations(L"VariationIDs");
  io::CBlock_func entry(L"Map");
  entry << io::named(L"V", L"x=1");
  variations << entry;
  header << variations;
  AssertWatch::Expect("id != id::invalidID");
  Manager().ReadDefinitionBlock(header);
  EXPECT_TRUE(Manager().GetVariationIDMap().empty());
}

TEST_F(ManagerTest, NothingWhereAnObjectIsMeantIsReportedAndAnswered) {
  for (char const * const text : {"solution", "setup", "definition", "definition", "other", "task", "instance"})
    AssertWatch::Expect(text);
  EXPECT_FALSE(Manager().AddImportData(nullptr, nullptr));
  EXPECT_EQ(Manager().FindEquivalentISimulationSetup(nullptr), nullptr);
  Manager().AddSetupConvDef(nullptr);
  BaseSimulationSetup const & a = AddSetup(L"A");
  SolutionDefinitionMatch match = SolutionDefinitionMatch::kExact;
  EXPECT_EQ(a.FindBestISolutionFit(nullptr, match), nullptr);
  EXPECT_EQ(match, SolutionDefinitionMatch::kNone);
  EXPECT_FALSE(a.IsEqual(nullptr));
  EXPECT_EQ(a.StartSingleSimulation(nullptr, nullptr), kSolveRefused);
  EXPECT_EQ(a.StartSingleSimulation(nullptr, 0, 0, nullptr), kSolveRefused);
}
