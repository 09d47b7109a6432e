// A manager from its making to its end: files and folders, what reaches the extractors, invalidation.

#include "basekit/command/KelvroCommand.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <filesystem>
#include <fstream>

using support::AssertWatch;

namespace {

class CountingExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) override {
    updates.emplace_back(stampVersion, pointSets);
  }
  void ValidateSolutionPointSet() override { ++validations; }
  void DoGarbageCollection(std::set<Trace *> const &) override { ++collections; }

  std::vector<std::pair<bool, std::vector<SolutionPointSet *> *>> updates;
  int validations = 0;
  int collections = 0;
};

class LoadingSetup : public support::TestSetup {
public:
  using TestSetup::TestSetup;
  bool LoadCurrentDesignSolutionData() override {
    ++loads;
    return hasLoaded;
  }
  int loads = 0;
  bool hasLoaded = false;
};

class ManagerOfOneSetupType : public support::TestManager {
public:
  using TestManager::TestManager;
  AString pathAtHook;

private:
  void SetupConvDefs() override {
    pathAtHook = GetSolutionFileManager().GetLibPath();
    AddSetupConvDef(new SetupConvDef(L"Type"));
  }
};

} // namespace

class ManagerLifeTest : public support::ModelTest {
protected:
  CountingExtractor & CountExtractorOf(BaseSimulationSetup & setup) {
    auto * const extractor = new CountingExtractor(&Manager(), &SolutionOf(setup));
    static_cast<support::TestSolution &>(SolutionOf(setup)).SetExtractor(extractor);
    return *extractor;
  }
  std::filesystem::path MakeCacheFile() {
    AString name;
    EXPECT_TRUE(Manager().GetSimValueCacheFullFileName(name));
    std::filesystem::path const path = text::ToUtf8(name);
    std::ofstream(path) << "cache";
    return path;
  }
};

TEST_F(ManagerLifeTest, AManagerClosedNormallyLeavesTheCacheFile) {
  auto const cache = MakeCacheFile();
  EXPECT_FALSE(Manager().GetDestroyResultsOnDelete());
  m_manager.reset();
  EXPECT_TRUE(std::filesystem::exists(cache));
}

TEST_F(ManagerLifeTest, AManagerThatDestroysItsResultsTakesTheCacheFileAlong) {
  auto const cache = MakeCacheFile();
  Manager().SetDestroyResultsOnDelete(true);
  EXPECT_TRUE(Manager().GetDestroyResultsOnDelete());
  m_manager.reset();
  EXPECT_FALSE(std::filesystem::exists(cache));
}

TEST_F(ManagerLifeTest, DesignsOfTheSecondKindAreNotUpdatedThisWay) {
  CountingExtractor & extractor = CountExtractorOf(AddSetup(L"A"));
  m_design.isV2 = true;
  AssertWatch::Expect("!\"Should just not be calling this. Done differently in V2\"");
  Manager().Update(true, nullptr);
  EXPECT_TRUE(extractor.updates.empty());
}

TEST_F(ManagerLifeTest, AnUpdateReachesTheExtractorsOfActiveSetupsWithItsArguments) {
  CountingExtractor & extractor = CountExtractorOf(AddSetup(L"A"));
  BaseSimulationSetup & deleted = AddSetup(L"B");
  CountingExtractor & ofDeleted = CountExtractorOf(deleted);
  static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"C"))).SetExtractor(nullptr);
  Manager().DeleteSimulationSetup(deleted.GetID(), nullptr);
  std::vector<SolutionPointSet *> pointSets;
  Manager().Update(true, &pointSets);
  Manager().Update(false, nullptr);
  ASSERT_EQ(extractor.updates.size(), 2u);
  EXPECT_EQ(extractor.updates[0], std::make_pair(true, &pointSets));
  EXPECT_EQ(extractor.updates[1], std::make_pair(false, static_cast<std::vector<SolutionPointSet *> *>(nullptr)));
  EXPECT_TRUE(ofDeleted.updates.empty());
}

TEST_F(ManagerLifeTest, MarkingItDirtyValidatesThePointSetsOfActiveSetups) {
  CountingExtractor & extractor = CountExtractorOf(AddSetup(L"A"));
  Manager().MarkItDirty();
  EXPECT_EQ(extractor.validations, 1);
}

TEST_F(ManagerLifeTest, GarbageIsCollectedInActiveSetups) {
  CountingExtractor & extractor = CountExtractorOf(AddSetup(L"A"));
  Manager().DoGarbageCollection({});
  EXPECT_EQ(extractor.collections, 1);
}

TEST_F(ManagerLifeTest, DeletingASetupEmptiesItsReports) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  CountingExtractor & extractor = CountExtractorOf(setup);
  Manager().DeleteSimulationSetup(setup.GetID(), nullptr);
  EXPECT_EQ(extractor.validations, 1);
  EXPECT_TRUE(extractor.updates.empty());
}

TEST_F(ManagerLifeTest, LoadingTheCurrentDataAsksEverySetupAndAnswersForAny) {
  EXPECT_FALSE(Manager().LoadCurrentDesignSolutionData());
  auto * const first = new LoadingSetup(&Manager(), AString(L"A"));
  auto * const second = new LoadingSetup(&Manager(), AString(L"B"));
  Manager().AddSimulation(first, nullptr);
  Manager().AddSimulation(second, nullptr);
  EXPECT_FALSE(Manager().LoadCurrentDesignSolutionData());
  first->hasLoaded = true;
  EXPECT_TRUE(Manager().LoadCurrentDesignSolutionData());
  EXPECT_EQ(second->loads, 2);
}

TEST_F(ManagerLifeTest, TheProductsConvergenceDefinitionsAreAskedForLastOnceThePathStands) {
  ManagerOfOneSetupType manager(&m_design);
  manager.InitializeFromDesign(false);
  EXPECT_EQ(manager.pathAtHook, manager.GetQsolPath());
  EXPECT_NE(manager.GetConvDefsForSetup(L"Type"), nullptr);
}

TEST_F(ManagerLifeTest, NamesOfProductAndCircuitComeWithTheDesign) {
  support::TestManager manager(&m_design);
  EXPECT_TRUE(manager.GetProductName().empty());
  EXPECT_TRUE(manager.GetCircuitName().empty());
  manager.ReSyncSolutionFileName(false);
  EXPECT_EQ(manager.GetProductName(), AString(L"TestProduct"));
  EXPECT_EQ(manager.GetCircuitName(), AString(L"Design"));
  EXPECT_EQ(manager.GetDesignName(), AString(L"Design"));
  EXPECT_EQ(manager.GetProjectName(), AString(L"Project"));
}

TEST_F(ManagerLifeTest, SavingUnderANewNameTakesTheLibraryAlong) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Solve(SolutionOf(setup), L"x=1", {1});
  Commit();
  m_design.name = L"Copy";
  Manager().ReSyncSolutionFileName(true);
  EXPECT_EQ(Manager().GetCircuitName(), AString(L"Copy"));
  EXPECT_EQ(Manager().GetSolutionFileManager().GetLibPath(), m_design.project.resultsFolder + L"Copy.qsol");
  EXPECT_TRUE(std::filesystem::exists(m_folder / "results" / "Copy.qsol"));
  EXPECT_TRUE(SolutionOf(setup).HasSolutionData(L"x=1", 0));
}

TEST_F(ManagerLifeTest, TheResultsFolderIsMadeOnlyWhenAskedFor) {
  support::TestDesign design(text::FromUtf8((m_folder / "elsewhere").string()) + L"/");
  support::TestManager manager(&design);
  manager.InitializeFromDesign(false);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "elsewhere"));
  manager.InitializeFromDesign(true);
  EXPECT_TRUE(std::filesystem::is_directory(m_folder / "elsewhere"));
}

TEST_F(ManagerLifeTest, ADesignWithoutAProjectHasNoResultsFolder) {
  m_design.hasProject = false;
  AssertWatch::Expect("pjt != 0");
  EXPECT_TRUE(Manager().GetProjectResultsDir().empty());
  EXPECT_TRUE(Manager().GetProjectName().empty());
}

TEST_F(ManagerLifeTest, AManagerOfAFileHasNeitherDesignNorManagedFiles) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Solve(SolutionOf(setup), L"x=1", {1});
  Commit();
  BaseSolutionManager manager{LongFileName(Manager().GetQsolPath())};
  EXPECT_EQ(manager.GetIDesign(), nullptr);
  EXPECT_EQ(manager.GetIManagedFileService(), nullptr);
  EXPECT_TRUE(manager.GetQsolPath().empty());
  EXPECT_TRUE(manager.GetProjectResultsDir().empty());
  EXPECT_TRUE(manager.GetDesignName().empty());
  EXPECT_EQ(manager.GetISimValueManager(), nullptr);
  EXPECT_EQ(manager.GetExportVariationContext(), nullptr);
  AString name;
  EXPECT_FALSE(manager.GetSimValueCacheFullFileName(name));
  AString managed;
  EXPECT_FALSE(manager.CreateManagedFile(managed, L"a", L"txt"));
  EXPECT_FALSE(manager.DeleteManagedFile(L"a", L"b.txt"));
  manager.CommitManagedData();
  manager.InitializeFromDesign(true);
  manager.ReSyncSolutionFileName(true);
  ASSERT_EQ(manager.GetSetups().size(), 1u);
  EXPECT_EQ(manager.GetSetups().begin()->second->GetName(), AString(L"A"));
}

TEST_F(ManagerLifeTest, AFileThatIsNoLibraryGivesAnEmptyManager) {
  std::ofstream(m_folder / "results" / "other.qsol") << "no library";
  BaseSolutionManager const manager{LongFileName(m_design.project.resultsFolder + L"other.qsol")};
  EXPECT_TRUE(manager.GetSetups().empty());
}

TEST_F(ManagerLifeTest, AnInvalidationOfTheManagerIsUndoneWithItsCommand) {
  AddSetup(L"A");
  KelvroCommand command(L"edit");
  Manager().Invalidate(&command, kInvalidateManager);
  long const version = Manager().GetVersionID();
  EXPECT_GT(version, 0);
  command.Undo();
  EXPECT_EQ(Manager().GetVersionID(), 0);
  command.Redo();
  EXPECT_EQ(Manager().GetVersionID(), version);
}

TEST_F(ManagerLifeTest, InvalidatingAllForGoodReachesDeletedSetupsAndLeavesManagerAndImportedOnes) {
  BaseSimulationSetup & active = AddSetup(L"A");
  BaseSimulationSetup & deleted = AddSetup(L"B");
  Manager().DeleteSimulationSetup(deleted.GetID(), nullptr);
  support::TestSetup imported(&Manager(), AString(L"Measured"));
  imported.AddSolution(imported.CreateSolution(L"Data"), nullptr);
  Manager().AddImportData(&SolutionOf(imported), nullptr);
  Manager().NonUndoableInvalidateAll();
  EXPECT_GT(active.GetVersionID(), 0);
  EXPECT_GT(deleted.GetVersionID(), active.GetVersionID());
  EXPECT_TRUE(SolutionOf(deleted).GetOverrideIsValid());
  EXPECT_EQ(imported.GetVersionID(), 0);
  EXPECT_EQ(Manager().GetVersionID(), 0);
}

TEST_F(ManagerLifeTest, AProductThatOverridesNothingHasPlainSetupsAndTheUsualExtension) {
  BaseSolutionManager manager(&m_design);
  std::unique_ptr<BaseSimulationSetup> const setup(manager.CreateSimulationSetup(AString(L"A"), AString(L"unused")));
  EXPECT_EQ(setup->GetSimSetupTypeName(), AString(L"BaseSetup"));
  EXPECT_EQ(setup->GetName(), AString(L"A"));
  EXPECT_EQ(manager.GetFileExt(), AString(L".qsol"));
}

TEST_F(ManagerLifeTest, WhatAProductMustOverrideSaysSo) {
  BaseSolutionManager manager(&m_design);
  RunStatusType status = RunStatusType::kNotRun;
  for (int operation = 0; operation < 3; ++operation)
    AssertWatch::Expect("0");
  EXPECT_EQ(manager.Simulate(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(manager.SimulateBlocking(nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(manager.GetISolution(L"A", nullptr, nullptr, status, false), nullptr);
}
