#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <fstream>

using support::AssertWatch;
using support::TestVariation;

class PersistenceTest : public support::ModelTest {};

TEST_F(PersistenceTest, ALibraryComesBackAsTheObjectsItWasMadeOf) {
  BaseSimulationSetup & setup = AddSetup(L"Wide", L"Sweep");
  long const setupID = setup.GetID(), solutionID = SolutionOf(setup).GetID();
  Solve(SolutionOf(setup), L"x=1", {1.5, -2.25});
  Solve(SolutionOf(setup), L"x=2", {0.1});
  Commit();
  Reopen();
  auto * const again = dynamic_cast<BaseSimulationSetup *>(Manager().GetISimulationSetupByID(setupID, false, false));
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->GetName(), AString(L"Wide"));
  auto * const solution = dynamic_cast<BaseSolution *>(again->GetISolutionByID(solutionID, false));
  ASSERT_NE(solution, nullptr);
  EXPECT_EQ(solution->GetSolutionName(), AString(L"Sweep"));
  EXPECT_EQ(solution->size(), 2);
  EXPECT_TRUE(solution->HasValidSolutionData(L"x=2", -1));
  auto * const data =
      static_cast<TestVariation *>(solution->GetVariationData(VariationIDIndex(L"x=1", 0, &Manager()), false));
  EXPECT_EQ(data->values, (std::vector<double>{1.5, -2.25}));
}

TEST_F(PersistenceTest, TheHeaderHoldsItsItemsInOrder) {
  AddSetup(L"A");
  Manager().GetVariationID(L"x=1");
  PortSettings port(L"P1");
  Manager().SetPortPostProcessingSettings({port});
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  ASSERT_TRUE(Manager().WriteDefinitionBlock(header));
  std::vector<AString> names;
  for (auto const & child : header)
    names.push_back(child->Name());
  ASSERT_EQ(names.size(), 8u);
  EXPECT_EQ((std::vector<AString>(names.begin(), names.begin() + 6)),
            (std::vector<AString>{L"ProductName", L"CircuitName", L"VersionID", L"PostProcess", L"LossLess",
                                  L"PortSettings"}));
  EXPECT_EQ(names.back(), AString(L"VariationIDs"));
}

TEST_F(PersistenceTest, AKeyWithoutASetupCreatesNothing) {
  Manager().WriteDefinitionBlock();
  Commit();
  Reopen();
  EXPECT_TRUE(Manager().GetSetups().empty());
}

TEST_F(PersistenceTest, ALibraryWithoutANameMapCantBeTurnedIntoObjects) {
  EXPECT_EQ(Manager().BuildUtilityCollections(), io::kNotFound);
}

TEST_F(PersistenceTest, TheHeadersWriteSucceedsEvenWhenTheLibraryRefusesItOnPurpose) {
  support::TestManager unattached(&m_design);
  EXPECT_TRUE(unattached.WriteDefinitionBlock());
}

TEST_F(PersistenceTest, ASetupWhoseDefinitionBlockIsMissingHasAnEmptyName) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Solve(SolutionOf(setup), L"x=1", {1});
  ASSERT_EQ(Manager().GetSolutionFileManager().CommitAll(false), CStreamioLibrary::kLibSuccess);
  long const id = setup.GetID();
  Reopen();
  ASSERT_EQ(Manager().GetSetups().count(id), 1u);
  EXPECT_TRUE(Manager().GetSetups().at(id)->GetName().empty());
}

TEST_F(PersistenceTest, ADesignFileNamesSetupsAndTheirVersions) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Manager().Invalidate(nullptr, kInvalidateSolutions);
  io::CBlock design(L"Module");
  ASSERT_TRUE(Manager().DesignFileWrite(design));
  io::CBlock const * const setupBlock = design.FindBlock(L"SimSetup");
  ASSERT_NE(setupBlock, nullptr);
  AString typeName, name;
  long id = -1;
  *setupBlock >> io::named(L"TypeName", typeName) >> io::named(L"ID", id) >> io::named(L"Name", name);
  EXPECT_EQ(typeName, AString(L"BaseSetup"));
  EXPECT_EQ(id, setup.GetID());
  EXPECT_EQ(name, AString(L"A"));
  EXPECT_NE(setupBlock->FindBlock(L"Solution"), nullptr);
  io::CBlock const * const versions = design.FindBlock(L"Version ID Map");
  ASSERT_NE(versions, nullptr);
  EXPECT_NE(versions->FindBlock(L"Setup"), nullptr);
}

TEST_F(PersistenceTest, ASetupThatOnlyTheDesignFileKnowsIsSkippedOnPurpose) {
  AddSetup(L"A");
  io::CBlock design(L"Module");
  Manager().DesignFileWrite(design);
  support::TestManager other(&m_design);
  EXPECT_EQ(other.DesignFileRead(design), io::kNoError);
  EXPECT_TRUE(other.GetSetups().empty());
}

TEST_F(PersistenceTest, ImportedSetupsComeBackAsPlainOnesOnPurpose) {
  io::CBlock design(L"Module");
  io::CBlock imported(L"ImportedSimSetup");
  imported << io::named(L"TypeName", L"Fancy") << io::named(L"ID", 55L) << io::named(L"Name", L"Measured");
  design << imported;
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  ASSERT_EQ(Manager().GetImportedSetups().count(55), 1u);
  std::unique_ptr<BaseSimulationSetup> const setup(Manager().GetImportedSetups().at(55));
  EXPECT_EQ(setup->GetSimSetupTypeName(), AString(L"BaseSetup"));
  EXPECT_EQ(setup->GetName(), AString(L"Measured"));
}

TEST_F(PersistenceTest, ReadingAModuleWithDiscardDropsTheCacheFirst) {
  AString cache;
  ASSERT_TRUE(Manager().GetSimValueCacheFullFileName(cache));
  std::ofstream(text::ToUtf8(cache)) << "stale";
  io::CBlock const module(L"Module");
  Manager().ReadModule(module, true, ReadMethod::kAllFiles);
  EXPECT_FALSE(std::ifstream(text::ToUtf8(cache)).good());
}

TEST_F(PersistenceTest, LoadingSetupsFromAFileTellsHowManyThereAreAndHandsOutSetupsThatAreGoneOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Solve(SolutionOf(setup), L"x=1", {1});
  Commit();
  std::vector<ISimulationSetup *> setups;
  support::TestManager other(&m_design);
  EXPECT_TRUE(other.LoadSetupsFromFile(LongFileName(Manager().GetQsolPath()), setups));
  EXPECT_EQ(setups.size(), 1u);
  setups.clear();
  EXPECT_FALSE(other.LoadSetupsFromFile(LongFileName(m_design.project.resultsFolder + L"none.qsol"), setups));
}
