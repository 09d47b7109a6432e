// The export of a design point in the saved state, and what both states share.
#include "basekit/io/BlockCodec.h"
#include "tests/solutionmanager/transfer/ExportFixture.h"
#include "tests/support/AssertWatch.h"
#include "viewkit/library/CStreamioLibPrivate.h"

using support::AssertWatch;

namespace {

class ExportDesignPoint : public support::SavedPointsTest {};

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
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(SortedBlocksOf(TargetLibrary()), SortedBlocksOf(Library()));
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

// The list of variations that it asks for tells each text once.
TEST_F(ExportDesignPoint, OfAnotherVariationAtTwoVersionsTakesOneOutAndKeepsTheOtherAsIsMeant) {
  SolveTwoPoints();
  AString const former = DataName(m_solution, L"x=2");
  m_solution.Invalidate(nullptr, id::invalidID);
  Solve(m_solution, L"x=2", {4});
  Commit();
  ASSERT_NE(DataName(m_solution, L"x=2"), former);
  ASSERT_TRUE(Export(L"x=1"));
  auto const names = NameMapOf(TargetLibrary());
  EXPECT_EQ(names.count(former) + names.count(DataName(m_solution, L"x=2")), 1u);
}

// The ID is new to the project, which keeps it like any other one.
TEST_F(ExportDesignPoint, OfAVariationThatNobodySolvedTakesAllDataOutAndGivesItAnID) {
  SolveTwoPoints();
  std::string const library = BytesOf(Library());
  auto const names = NameMapOf(Library());
  ASSERT_TRUE(Export(L"x=77"));
  EXPECT_EQ(NameMapOf(TargetLibrary()).size(), names.size() - 2);
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(DataName(m_solution, L"x=1")));
  EXPECT_EQ(Manager().GetVariationFromID(Manager().GetVariationID(L"x=77")), AString(L"x=77"));
  EXPECT_EQ(BytesOf(Library()), library);
}

TEST_F(ExportDesignPoint, TakesTheNameMapInAnyCaseForTheOneThatItWritesAnew) {
  SolveTwoPoints();
  AString const other = DataName(m_solution, L"x=2");
  {
    m_manager.reset();
    CStreamioLibPrivate library;
    library.SetLibPath(text::FromUtf8((m_folder / "results/Design.qsol").string()));
    io::CBlock map(L"BlockMapName");
    ASSERT_EQ(library.LoadDefinition(map), CStreamioLibrary::kLibSuccess);
    map.Name(L"BLOCKMAPNAME");
    ASSERT_EQ(library.SaveDefinition(map), CStreamioLibrary::kLibSuccess);
  }
  OpenAgain();
  TakeTraces();
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_FALSE(NamesOf(TargetLibrary()).contains(L"BLOCKMAPNAME"));
  EXPECT_FALSE(NameMapOf(TargetLibrary()).contains(other));
  EXPECT_EQ(CountTraces(TakeTraces(), L"Rewriting BlockMapName block in qsol for export-design-point\n"), 1);
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

TEST_F(ExportDesignPoint, KeepsTheFormerBlockWhereTheOneOfTheProductCannotBeStored) {
  SolveTwoPoints();
  AString const name = m_solution.GetBlockDefinitionName();
  Product().giveBlocks = [&](io::CBlock & blocks) {
    io::CBlock tooDeep(L"Inner");
    for (int depth = 0; depth < io::kMaxDepth; ++depth) {
      io::CBlock outer(L"Outer");
      outer << tooDeep;
      tooDeep = outer;
    }
    tooDeep.Name(name);
    blocks << tooDeep;
  };
  ASSERT_TRUE(Export(L"x=1"));
  auto const kept = SortedBlocksOf(TargetLibrary());
  EXPECT_TRUE(std::any_of(kept.begin(), kept.end(), [&](auto const & block) { return block.first == Internal(name); }));
  EXPECT_EQ(CountTraces(TakeTraces(), AString(L"Error in saving block ") + Internal(name) + L" in " + TargetLibrary() +
                                          L" for export-design-point: block " + Internal(name) +
                                          L" is nested too deeply\n"),
            1);
}

TEST_F(ExportDesignPoint, OfAProductThatGivesABlockTwiceKeepsTheLastOne) {
  SolveTwoPoints();
  Product().giveBlocks = [](io::CBlock & blocks) { blocks << Named(L"Extra", 7.0) << Named(L"Extra", 8.0); };
  ASSERT_TRUE(Export(L"x=1"));
  auto const blocks = BlocksOf(TargetLibrary());
  EXPECT_EQ(
      std::count_if(blocks.begin(), blocks.end(), [](auto const & block) { return block.first == AString(L"Extra"); }),
      1);
  EXPECT_NE(blocks.back().second.find('8'), std::string::npos) << blocks.back().second;
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

TEST_F(ExportDesignPoint, EndsEachOfItsSpansWithinTheOneAroundIt) {
  SolveTwoPoints();
  support::SpanWatch watch;
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(watch.ends, (std::vector<std::string>{
                            "+BaseSolutionManager::ExportDesignPointResults",
                            "+BaseSolutionManager::ExportQSolForDesignPoint",
                            "+BaseSolutionManager::ExportQSolForDesignPointInUnsavedState",
                            "+BaseSolutionManager::CallGetQSolBlocksForExportingVariation",
                            "-BaseSolutionManager::CallGetQSolBlocksForExportingVariation",
                            "-BaseSolutionManager::ExportQSolForDesignPointInUnsavedState",
                            "-BaseSolutionManager::ExportQSolForDesignPoint",
                            "+BaseSolutionManager::ExportResultFilesAndDirsForDesignPoint",
                            "+BaseSolutionManager::CallGetFilesAndDirsToCopyForExportingVariation",
                            "-BaseSolutionManager::CallGetFilesAndDirsToCopyForExportingVariation",
                            "-BaseSolutionManager::ExportResultFilesAndDirsForDesignPoint",
                            "-BaseSolutionManager::ExportDesignPointResults",
                        }));
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

TEST_F(ExportDesignPoint, OpensAsThePointWhereAPrivateFileOfAnotherLibraryLay) {
  SolveTwoPoints();
  AString const name = DataName(m_solution, L"x=1");
  {
    std::filesystem::create_directory(m_folder / "exported");
    support::TestDesign other(Target().FilePath());
    support::TestManager manager(&other);
    manager.InitializeFromDesign(true);
    io::CBlock foreign = Named(name, 99.0);
    ASSERT_EQ(manager.SaveSingleBlock(foreign), CStreamioLibrary::kLibSuccess);
  }
  ASSERT_TRUE(LFN_Exists(LongFileName(TargetLibrary() + L"_priv")));
  ASSERT_TRUE(Export(L"x=1"));
  support::TestDesign design(Target().FilePath());
  support::TestManager manager(&design);
  manager.InitializeFromDesign(false);
  ASSERT_EQ(manager.BuildUtilityCollections(), io::kNoError);
  io::CBlock mine(name);
  io::CBlock exported(name);
  ASSERT_EQ(Manager().LoadSingleBlock(mine), CStreamioLibrary::kLibSuccess);
  ASSERT_EQ(manager.LoadSingleBlock(exported), CStreamioLibrary::kLibSuccess);
  EXPECT_EQ(exported.Pack(), mine.Pack());
}

TEST_F(ExportDesignPoint, WithoutADesignHasNoLibraryToCopy) {
  SolveTwoPoints();
  BaseSolutionManager const reader{LongFileName(Library())};
  EXPECT_FALSE(reader.ExportDesignPointResults(Target(), L"x=1", true));
}

} // namespace
