// The export of a design point in the saved state, and what both states share.
#include "tests/solutionmanager/transfer/ExportFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

using support::AssertWatch;

namespace {

class ExportDesignPoint : public support::ExportTest {
protected:
  ExportDesignPoint() : m_setup(AddSetup(L"A")), m_solution(SolutionOf(m_setup)) {}

  void SolveTwoPoints() {
    Solve(m_solution, L"x=1", {1, 2});
    Solve(m_solution, L"x=2", {3});
    Commit();
    TakeTraces();
  }
  io::CBlock Named(AString const & name, double value) {
    io::CBlock block(name);
    io::CBlock_func data(L"Values");
    data << value;
    block << data;
    return block;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

TEST_F(ExportDesignPoint, TakesOutTheDataOfAllOtherVariationsAndTheirNames) {
  SolveTwoPoints();
  AString const other = Internal(DataName(m_solution, L"x=2"));
  auto expected = NamesOf(Library());
  expected.erase(other);
  auto names = NameMapOf(Library());
  names.erase(DataName(m_solution, L"x=2"));
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(NamesOf(TargetLibrary()), expected);
  EXPECT_EQ(NameMapOf(TargetLibrary()), names);
}

TEST_F(ExportDesignPoint, LeavesTheLibraryOfTheProjectAsItIs) {
  SolveTwoPoints();
  auto const before = BlocksOf(Library());
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(BlocksOf(Library()), before);
}

TEST_F(ExportDesignPoint, OfTheOnlyVariationDeletesNothingAndWritesTheCopyAnewAllTheSame) {
  Solve(m_solution, L"x=1", {1, 2});
  Commit();
  TakeTraces();
  auto before = BlocksOf(Library());
  ASSERT_TRUE(Export(L"x=1"));
  auto after = BlocksOf(TargetLibrary());
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  EXPECT_EQ(after, before);
  EXPECT_EQ(CountTraces(TakeTraces(), L"Rewriting BlockMapName block in qsol for export-design-point\n"), 1);
}

TEST_F(ExportDesignPoint, TakesVariationsWhoseTextsEqualForTheSame) {
  Solve(m_solution, L"x=1000", {1});
  Solve(m_solution, L"x=2", {2});
  Commit();
  ASSERT_TRUE(Export(L"X=1k"));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=1000")));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=2")));
}

TEST_F(ExportDesignPoint, KeepsFormerVersionsOfThePointAndTakesOutThoseOfOthers) {
  SolveTwoPoints();
  AString const former = DataName(m_solution, L"x=1");
  AString const formerOther = DataName(m_solution, L"x=2");
  m_solution.Invalidate(nullptr, id::invalidID);
  Commit();
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).contains(former));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(formerOther));
}

TEST_F(ExportDesignPoint, TakesConvergenceBlocksOfOthersOutForTheFirstSolutionOfASetupAlone) {
  BaseSolution * const second = m_setup.CreateSolution(L"Second");
  m_setup.AddSolution(second, nullptr);
  Solve(m_solution, L"x=1", {1});
  Solve(*second, L"x=2", {2});
  for (AString const variation : {L"x=1", L"x=2"}) {
    io::CBlock conv = Named(m_setup.GetConvBlockName(variation, second->GetVersionID()), 1.0);
    Manager().SaveSingleBlock(conv);
  }
  Solve(m_solution, L"x=3", {3});
  io::CBlock conv = Named(m_setup.GetConvBlockName(L"x=3", m_solution.GetVersionID()), 1.0);
  Manager().SaveSingleBlock(conv);
  Commit();
  AString const ofThird = Internal(m_setup.GetConvBlockName(L"x=3", m_solution.GetVersionID()));
  TakeTraces();
  ASSERT_TRUE(Export(L"x=1"));
  auto const names = NameMapOf(TargetLibrary());
  EXPECT_TRUE(names.contains(m_setup.GetConvBlockName(L"x=1", second->GetVersionID())));
  EXPECT_FALSE(names.contains(m_setup.GetConvBlockName(L"x=3", m_solution.GetVersionID())));
  // The second solution alone has x=2: its convergence block stays, as is meant.
  EXPECT_TRUE(names.contains(m_setup.GetConvBlockName(L"x=2", second->GetVersionID())));
  EXPECT_EQ(CountTraces(TakeTraces(),
                        AString(L"Found convergence block ") + ofThird + L" to delete for export-design-point\n"),
            1);
}

TEST_F(ExportDesignPoint, KeepsProfileBlocksOfOtherVariationsAsIsMeant) {
  SolveTwoPoints();
  AString const profile =
      SolutionVariationKey(m_setup.GetID(), L"x=2", SolutionVariationKey::kProfileDataKey, m_solution.GetVersionID())
          .Pack();
  io::CBlock block = Named(profile, 1.0);
  Manager().SaveSingleBlock(block);
  Commit();
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_TRUE(NameMapOf(TargetLibrary()).contains(profile));
}

TEST_F(ExportDesignPoint, WithoutHooksLeavesTheDefinitionBlocksAsTheyWere) {
  SolveTwoPoints();
  AString const definition = Internal(m_solution.GetBlockDefinitionName());
  auto const of = [&definition](AString const & path) {
    for (auto const & [name, content] : BlocksOf(path))
      if (name == definition)
        return content;
    return std::string();
  };
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_FALSE(of(Library()).empty());
  EXPECT_EQ(of(TargetLibrary()), of(Library()));
}

TEST_F(ExportDesignPoint, ReplacesBlocksThatTheProductGives) {
  SolveTwoPoints();
  AString const name = m_solution.GetBlockDefinitionName();
  Product().giveBlocks = [&](io::CBlock & blocks) {
    io::CBlock definition(name);
    m_solution.WriteDefinitionBlock(definition);
    blocks << definition;
  };
  ASSERT_TRUE(Export(L"x=1"));
  library::LibraryReader reader;
  io::CBlock definition(Internal(name));
  ASSERT_EQ(reader.OpenAlone(LongFileName(TargetLibrary())), CStreamioLibrary::kLibSuccess);
  ASSERT_EQ(reader.Load(definition), CStreamioLibrary::kLibSuccess);
  ASSERT_NE(definition.FindBlock(L"States"), nullptr);
  EXPECT_EQ(definition.FindBlock(L"States")->Size(), 1);
  EXPECT_EQ(
      CountTraces(TakeTraces(), AString(L"Replacing block ") + Internal(name) + L" in qsol for export-design-point\n"),
      1);
}

TEST_F(ExportDesignPoint, LeavesNothingBehindOfBlocksThatItTookOutOrReplaced) {
  SolveTwoPoints();
  Product().giveBlocks = [&](io::CBlock & blocks) {
    io::CBlock header(BaseSolutionManager::kHeaderBlockName);
    Manager().WriteDefinitionBlock(header);
    blocks << header;
  };
  auto const holds = [](AString const & path, char const * text) {
    std::ifstream file(text::ToUtf8(path), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str().find(text) != std::string::npos;
  };
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_TRUE(holds(Library(), "x=2"));
  EXPECT_TRUE(holds(TargetLibrary(), "x=1"));
  EXPECT_FALSE(holds(TargetLibrary(), "x=2"));
}

TEST_F(ExportDesignPoint, StoresAProductsBlockWithoutAnEntryUnderItsRealNameOutsideTheMap) {
  SolveTwoPoints();
  Product().giveBlocks = [&](io::CBlock & blocks) { blocks << Named(L"Extra", 7.0); };
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_TRUE(NamesOf(TargetLibrary()).contains(L"Extra"));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(L"Extra"));
}

TEST_F(ExportDesignPoint, TakesOutBlocksThatTheProductNames) {
  SolveTwoPoints();
  AString const setup = m_setup.GetBlockDefinitionName();
  AString const internal = Internal(setup);
  Product().namesToDelete = {setup};
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(setup));
  EXPECT_FALSE(NamesOf(TargetLibrary()).contains(internal));
  EXPECT_EQ(CountTraces(TakeTraces(),
                        AString(L"Products returned block ") + internal + L" to delete for export-design-point\n"),
            1);
}

TEST_F(ExportDesignPoint, OfAProductThatNamesABlockWithoutAnEntryReportsItAndTakesNothingOut) {
  SolveTwoPoints();
  auto const before = NameMapOf(Library());
  Product().namesToDelete = {L"Nobody"};
  AssertWatch::Expect("foundName");
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(NameMapOf(TargetLibrary()).size(), before.size() - 1);
}

TEST_F(ExportDesignPoint, ReportsAProductsChildThatIsNoBlockAndPassesItOver) {
  SolveTwoPoints();
  Product().giveBlocks = [](io::CBlock & blocks) { blocks << io::named(L"Number", 1); };
  AssertWatch::Expect("block");
  EXPECT_TRUE(Export(L"x=1"));
}

TEST_F(ExportDesignPoint, AsksTheProductWithinTheContextOfTheVariation) {
  SolveTwoPoints();
  AString const id = AString::Format(L"%d", Manager().GetVariationID(L"x=2"));
  ASSERT_TRUE(Export(L"x=2", true));
  ASSERT_TRUE(Export(L"x=2", false));
  EXPECT_EQ(Product().asked, (std::vector<AString>{AString(L"blocks, saved, x=2, ") + id, L"files, saved, x=2",
                                                   AString(L"blocks, unsaved, x=2, ") + id, L"files, unsaved, x=2"}));
  EXPECT_EQ(Manager().GetExportVariationContext(), nullptr);
}

TEST_F(ExportDesignPoint, GoesOnWhereAHookSaysFalse) {
  SolveTwoPoints();
  Product().result = false;
  Put("a.txt", "a");
  Product().files = {L"a.txt"};
  EXPECT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("a.txt"), "a");
}

TEST_F(ExportDesignPoint, TellsWhatItDoes) {
  SolveTwoPoints();
  AString const other = DataName(m_solution, L"x=2");
  AString const internal = Internal(other);
  AString const id = AString::Format(L"%d", Manager().GetVariationID(L"x=1"));
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(
      TakeTraces(),
      (std::vector<AString>{
          AString(L"ExportDesignPointResults with exportProjectResultsFolderLfn ") + Target().FilePath() +
              L", designVariationKey x=1\n",
          AString(L"Copied qsol file ") + Library() + L" to " + TargetLibrary() + L" for export-design-point\n",
          AString(L"Found variation block ") + internal + L" to delete for export-design-point\n",
          AString(L"ExportVariationContextObject constructor: designVariationKey x=1,designVariationID ") + id + L"\n",
          AString(L"ExportVariationContextObject destructor\n"),
          AString(L"Deleting block ") + internal + L" from qsol for export-design-point\n",
          AString(L"Rewriting BlockMapName block in qsol for export-design-point\n"),
          AString(L"Deleting Entry ") + other + L"=" + internal + L" from BlockMapName for export-design-point\n",
      }));
}

TEST_F(ExportDesignPoint, RunsWithinItsSpans) {
  SolveTwoPoints();
  support::SpanWatch watch;
  ASSERT_TRUE(Export(L"x=1"));
  std::vector<std::string> const files = {"BaseSolutionManager::ExportResultFilesAndDirsForDesignPoint",
                                          "BaseSolutionManager::CallGetFilesAndDirsToCopyForExportingVariation"};
  std::vector<std::string> expected = {"BaseSolutionManager::ExportDesignPointResults",
                                       "BaseSolutionManager::ExportQSolForDesignPoint",
                                       "BaseSolutionManager::CallGetQSolBlocksForExportingVariation"};
  expected.insert(expected.end(), files.begin(), files.end());
  EXPECT_EQ(watch.spans, expected);
  watch.spans.clear();
  ASSERT_TRUE(Export(L"x=1", false));
  expected.insert(expected.begin() + 2, "BaseSolutionManager::ExportQSolForDesignPointInUnsavedState");
  EXPECT_EQ(watch.spans, expected);
}

TEST_F(ExportDesignPoint, OfUnsavedChangesDiffersByALineAlone) {
  SolveTwoPoints();
  ASSERT_TRUE(Export(L"x=1"));
  auto const lines = TakeTraces();
  auto const blocks = BlocksOf(TargetLibrary());
  m_design.project.hasUnsavedChanges = true;
  ASSERT_TRUE(Export(L"x=1"));
  auto expected = lines;
  expected.insert(expected.begin() + 1, L"!!!!ExportDesignPointResults - Project has unsaved changes and "
                                        L"assumeSavedStateOfDesktopProject is true!!!!\n");
  EXPECT_EQ(TakeTraces(), expected);
  EXPECT_EQ(BlocksOf(TargetLibrary()), blocks);
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(CountTraces(TakeTraces(), expected[1]), 0);
}

TEST_F(ExportDesignPoint, RestsOnTheCommittedStateAndLeavesThePrivateFileWhereItIs) {
  SolveTwoPoints();
  AString const unsaved = DataName(m_solution, L"x=9");
  Solve(m_solution, L"x=9", {9});
  ASSERT_TRUE(Export(L"x=9"));
  EXPECT_FALSE(NamesOf(TargetLibrary()).contains(Internal(unsaved)));
  EXPECT_FALSE(LFN_Exists(LongFileName(TargetLibrary() + L"_priv")));
}

TEST_F(ExportDesignPoint, EndsWithFalseWhenTheLibraryCannotBeCopied) {
  Product().files = {L"a.txt"};
  Put("a.txt", "a");
  TakeTraces();
  EXPECT_FALSE(Export(L"x=1"));
  EXPECT_EQ(CountTraces(TakeTraces(), AString(L"Failed to copy qsol file ") + Library() + L" to " + TargetLibrary() +
                                          L" for export-design-point\n"),
            1);
  EXPECT_EQ(Exported("a.txt"), "-");
}

TEST_F(ExportDesignPoint, GoesOnIntoAFolderThatItCannotMakeUntilTheCopyFails) {
  SolveTwoPoints();
  std::ofstream(m_folder / "exported") << "a file";
  EXPECT_FALSE(Export(L"x=1"));
  auto const lines = TakeTraces();
  EXPECT_EQ(CountTraces(lines, AString(L"Unable to create ") + Target().FilePath() + L" or one of its parents\n"), 1);
  EXPECT_EQ(lines.size(), 3u);
}

TEST_F(ExportDesignPoint, TakesAFolderWithoutItsSlashForTheSame) {
  SolveTwoPoints();
  AString const path = Target().FilePath();
  ASSERT_TRUE(Manager().ExportDesignPointResults(LongFileName(path.substr(0, path.size() - 1)), L"x=1", true));
  EXPECT_TRUE(LFN_Exists(LongFileName(TargetLibrary())));
}

TEST_F(ExportDesignPoint, CopiesFilesAndFoldersUnderTheirNames) {
  SolveTwoPoints();
  Put("a.txt", "a");
  Put("deep/er/b.txt", "b");
  Put("folder/c.txt", "c");
  Put("folder/inner/d.txt", "d");
  Put("other.txt", "of another point");
  Product().files = {L"a.txt", L"deep/er/b.txt"};
  Product().dirs = {L"folder"};
  Product().renamed = {{L"a.txt", L"not asked in the saved state"}};
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("a.txt"), "a");
  EXPECT_EQ(Exported("deep/er/b.txt"), "b");
  EXPECT_EQ(Exported("folder/c.txt"), "c");
  EXPECT_EQ(Exported("folder/inner/d.txt"), "d");
  EXPECT_EQ(Exported("other.txt"), "-");
  AString const from = text::FromUtf8((m_folder / "results").string()) + L"/Design.files/";
  AString const to = Target().FilePath() + L"Design.files/";
  auto const lines = TakeTraces();
  EXPECT_EQ(CountTraces(lines, AString(L"Successfully copied ") + from + L"a.txt to " + to +
                                   L"a.txt for export-design-point\n"),
            1);
  EXPECT_EQ(CountTraces(lines, AString(L"Successfully copied ") + from + L"folder/ to " + to +
                                   L"folder/ for export-design-point\n"),
            1);
}

TEST_F(ExportDesignPoint, GivesUnsavedFilesAndFoldersTheNamesOfTheMap) {
  SolveTwoPoints();
  Put("work1", "one");
  Put("work2", "two");
  Put("folder1/c.txt", "c");
  Product().files = {L"work1", L"work2"};
  Product().dirs = {L"folder1"};
  Product().renamed = {{L"work1", L"saved/one"}, {L"folder1", L"folder2"}};
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(Exported("saved/one"), "one");
  EXPECT_EQ(Exported("work1"), "-");
  EXPECT_EQ(Exported("work2"), "two");
  EXPECT_EQ(Exported("folder2/c.txt"), "c");
}

TEST_F(ExportDesignPoint, TellsAFileThatIsNotThereAndCopiesTheNextOne) {
  SolveTwoPoints();
  Put("b.txt", "b");
  Product().files = {L"gone.txt", L"b.txt"};
  EXPECT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("b.txt"), "b");
  AString const from = text::FromUtf8((m_folder / "results").string()) + L"/Design.files/gone.txt";
  EXPECT_EQ(CountTraces(TakeTraces(), AString(L"Error in copying ") + from + L" to " + Target().FilePath() +
                                          L"Design.files/gone.txt for export-design-point\n"),
            1);
}

TEST_F(ExportDesignPoint, CopiesNothingFromOutsideTheResultsFolder) {
  SolveTwoPoints();
  Put("../secret.txt", "secret");
  Put("a.txt", "a");
  Product().files = {L"../secret.txt", text::FromUtf8((m_folder / "results/secret.txt").string()), L"a.txt"};
  Product().renamed = {{L"a.txt", L"../a.txt"}};
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(Exported("../secret.txt"), "-");
  EXPECT_EQ(Exported("../a.txt"), "-");
}

TEST_F(ExportDesignPoint, ReplacesWhatStandsInTheFolder) {
  SolveTwoPoints();
  Put("a.txt", "first");
  Product().files = {L"a.txt"};
  ASSERT_TRUE(Export(L"x=1"));
  Put("a.txt", "second");
  ASSERT_TRUE(Export(L"x=2"));
  EXPECT_EQ(Exported("a.txt"), "second");
  EXPECT_TRUE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=2")));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=1")));
}

TEST_F(ExportDesignPoint, LeavesADamagedBlockOutAndKeepsTheOthers) {
  SolveTwoPoints();
  AString const damaged = Internal(m_setup.GetBlockDefinitionName());
  library::LibraryReader reader;
  ASSERT_EQ(reader.OpenAlone(LongFileName(Library())), CStreamioLibrary::kLibSuccess);
  for (auto const & entry : reader.List())
    if (entry.name == damaged) {
      std::fstream file(text::ToUtf8(Library()), std::ios::in | std::ios::out | std::ios::binary);
      file.seekp(static_cast<std::streamoff>(entry.offset + 100)); // Behind the header and the name of the record.
      file.put('\xff');
    }
  EXPECT_TRUE(Export(L"x=1"));
  auto const names = NamesOf(TargetLibrary());
  EXPECT_FALSE(names.contains(damaged));
  EXPECT_TRUE(names.contains(Internal(DataName(m_solution, L"x=1"))));
}

TEST_F(ExportDesignPoint, OfALibraryThatIsNoneReportsItAndGoesOn) {
  support::TestDesign design(text::FromUtf8((m_folder / "foreign").string()) + L"/");
  support::ExportingManager manager(&design);
  manager.InitializeFromDesign(true);
  std::ofstream(m_folder / "foreign/Design.qsol") << std::string(500, 'x');
  TakeTraces();
  AssertWatch::Expect("isLoaded");
  EXPECT_TRUE(manager.ExportDesignPointResults(Target(), L"x=1", true));
  EXPECT_EQ(CountTraces(TakeTraces(), L"Error in loading RealToInternalBlockNameMap in ExportQSolForDesignPoint\n"), 1);
}

TEST_F(ExportDesignPoint, OnAFailingDiskChangesNothingOfTheProject) {
  SolveTwoPoints();
  Put("a.txt", "a");
  Product().files = {L"a.txt"};
  auto const before = BlocksOf(Library());
  for (int operation = 1; operation < 200; ++operation) {
    std::filesystem::remove_all(m_folder / "exported");
    support::FaultyFileSystem faulty;
    faulty.FailAt(operation, true);
    Export(L"x=1");
    if (!faulty.HasFailed())
      break;
  }
  EXPECT_EQ(Exported("a.txt"), "a") << "the last round met no failure";
  EXPECT_EQ(BlocksOf(Library()), before);
}

TEST_F(ExportDesignPoint, WithoutADesignHasNoLibraryToCopy) {
  SolveTwoPoints();
  BaseSolutionManager const reader{LongFileName(Library())};
  EXPECT_FALSE(reader.ExportDesignPointResults(Target(), L"x=1", true));
}

} // namespace
