#include "apps/qsol/DiffVerb.h"
#include "apps/qsol/TreeDiff.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/apps/qsol/QsolFixture.h"

using io::CBlock;

namespace {

qsol::TreeDifferences Compare(std::string const & a, std::string const & b, qsol::DiffRules const & rules = {}) {
  CBlock one;
  CBlock other;
  EXPECT_TRUE(one.Unpack(AString(std::wstring(a.begin(), a.end()))));
  EXPECT_TRUE(other.Unpack(AString(std::wstring(b.begin(), b.end()))));
  return qsol::DifferencesOf(one, other, rules);
}

std::vector<std::string> Lines(std::string const & a, std::string const & b, qsol::DiffRules const & rules = {}) {
  std::vector<std::string> lines;
  for (auto const & difference : Compare(a, b, rules).list)
    lines.push_back(difference.Text());
  return lines;
}

qsol::DiffRules Near(double absolute, double relative) { return {qsol::NumberRule{absolute, relative}, false}; }

using List = std::vector<std::string>;

class DiffOfLibraries : public QsolFixture {
protected:
  void MakeOther() {
    MakeLibrary();
    std::filesystem::copy_file(File(), File("other.qsol"));
  }
  void Change(auto const & edit) {
    SolutionFileManager files{Path(File("other.qsol"))};
    files.LoadRealToInternalBlockNameMap();
    edit(files);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  Told Diff(qsol::DiffOptions options = {}) const {
    options.other = File("other.qsol");
    return Perform(qsol::Diff, options);
  }
};

} // namespace

TEST(TreeDiff, TellsNothingOfEqualTrees) {
  EXPECT_EQ(Lines("B { A = 1 F(1, 2, x = 3) V [\"t\"] }", "B { A = 1 F(1, 2, x = 3) V [\"t\"] }"), List());
  EXPECT_EQ(Lines("B { A = 2e3 }", "B { A = 2000 }"), List()) << "the same number";
}

TEST(TreeDiff, ShowsBothValues) {
  EXPECT_EQ(Lines("B { A = 1 T = \"x\" }", "B { A = 1.5 T = none }"),
            (List{"A: 1 -> 1.5 (difference 0.5, relative 0.3333)", "T: \"x\" -> none"}));
  EXPECT_EQ(Lines("B { A = nan }", "B { A = -nan }"), (List{"A: nan -> -nan"}));
  EXPECT_EQ(Lines("B { A = 0.0 }", "B { A = -0.0 }"), (List{"A: 0 -> -0 (difference 0, relative 0)"}));
}

TEST(TreeDiff, NamesThePlaceInNestedBlocksAndRepeatedNames) {
  EXPECT_EQ(Lines("B { P { N = 1 } P { N = 2 } }", "B { P { N = 1 } P { N = 3 } }"),
            (List{"P[2]/N: 2 -> 3 (difference 1, relative 0.3333)"}));
  EXPECT_EQ(Lines("B { S(1, 2, 3) }", "B { S(1, 5) }"),
            (List{"S[2]: 2 -> 5 (difference 3, relative 0.6)", "S[3]: only in the first: 3"}));
  EXPECT_EQ(Lines("B { S(1, z = 1) }", "B { S(1, z = 2, y = 3) }"),
            (List{"S/z: 1 -> 2 (difference 1, relative 0.5)", "S/y: only in the second: y = 3"}));
}

TEST(TreeDiff, TellsAnInsertedItemAsOneDifference) {
  EXPECT_EQ(Lines("B { M(1) M(2) M(3) }", "B { M(1) M(9) M(2) M(3) }"), (List{"M[2]: only in the second: M(9)"}));
  EXPECT_EQ(Lines("B { M(1) M(2) M(3) }", "B { M(2) M(3) }"), (List{"M[1]: only in the first: M(1)"}));
}

TEST(TreeDiff, TellsAnotherOrder) {
  EXPECT_EQ(Lines("B { A = 1 C = 2 }", "B { C = 2 A = 1 }"), (List{".: in another order"}));
  EXPECT_EQ(Lines("B { F(1, x = 2) }", "B { F(x = 2, 1) }"), (List{"F: in another order"}));
}

TEST(TreeDiff, TellsAnItemOfAnotherKindAsGoneAndNew) {
  EXPECT_EQ(Lines("B { A = 1 }", "B { A(1) }"), (List{"A: only in the first: A = 1", "A: only in the second: A(1)"}));
}

TEST(TreeDiff, TakesNumbersForEqualThatAreAsNearAsToldAndNoFarther) {
  EXPECT_EQ(Lines("B { A = 1000.5 }", "B { A = 1000.6 }", Near(0, 1e-3)), List());
  EXPECT_EQ(Lines("B { A = 1000.5 }", "B { A = 1002.5 }", Near(0, 1e-3)).size(), 1u);
  EXPECT_EQ(Lines("B { A = 1e-13 }", "B { A = -1e-13 }", Near(1e-12, 0)), List());
  EXPECT_EQ(Lines("B { A = 1e-13 }", "B { A = -1e-13 }", Near(0, 1e-3)).size(), 1u) << "relative alone helps no zero";
  EXPECT_EQ(Lines("B { A = 1.5 }", "B { A = 1.75 }", Near(0.125, 0)).size(), 1u);
  EXPECT_EQ(Lines("B { A = 1.5 }", "B { A = 1.75 }", Near(0.25, 0)), List()) << "the bound itself is near enough";
  EXPECT_EQ(Lines("B { A = 4.5 }", "B { A = 2.25 }", Near(0, 0.5)), List()) << "relative to the larger one";
  EXPECT_EQ(Lines("B { A = 2.25 }", "B { A = 4.5 }", Near(0, 0.5)), List()) << "whichever comes first";
  EXPECT_EQ(Lines("B { A = 3.5 }", "B { A = 1.5 }", Near(1, 0.3)), List()) << "both parts add up";
}

TEST(TreeDiff, WithAToleranceTakesNanForNanAndInfinitiesForThemselvesAlone) {
  EXPECT_EQ(Lines("B { A = nan C = -0.0 D = inf }", "B { A = -nan C = 0.0 D = inf }", Near(0, 0)), List());
  EXPECT_EQ(Lines("B { A = inf }", "B { A = -inf }", Near(0, 1)), (List{"A: inf -> -inf"}));
  EXPECT_EQ(Lines("B { A = inf }", "B { A = 1.5 }", Near(1e300, 1)), (List{"A: inf -> 1.5"}));
  EXPECT_EQ(Lines("B { A = nan }", "B { A = 1.5 }", Near(1e300, 1)), (List{"A: nan -> 1.5"}));
}

TEST(TreeDiff, WithAToleranceKeepsWholeNumbersTextsAndShapesExact) {
  EXPECT_EQ(Lines("B { A = 1000 }", "B { A = 1001 }", Near(10, 1)).size(), 1u);
  EXPECT_EQ(Lines("B { A = \"1.5\" }", "B { A = \"1.6\" }", Near(10, 1)).size(), 1u);
  EXPECT_EQ(Lines("B { S(1.5, 2.5) }", "B { S(1.5) }", Near(10, 1)), (List{"S[2]: only in the first: 2.5"}));
  EXPECT_EQ(Lines("B { A = 1.5 }", "B { A = none }", Near(10, 1)).size(), 1u);
  EXPECT_EQ(Lines("B { F(1.5, x = 2) }", "B { F(x = 2, 1.6) }", Near(1, 0)), (List{"F: in another order"}));
  EXPECT_EQ(Lines("B { A = 1000 }", "B { A = 1000.5 }", Near(1, 0)), List()) << "one of them is a floating number";
}

TEST(TreeDiff, WithAToleranceFindsTheItemThatWasInsertedAmongNearOnes) {
  EXPECT_EQ(Lines("B { M(1.5) M(2.5) M(3.5) }", "B { M(1.6) M(9.5) M(2.6) M(3.6) }", Near(0.2, 0)),
            (List{"M[2]: only in the second: M(9.5)"}));
}

TEST(TreeDiff, TellsAListOfManyDifferencesByCountFirstAndLargest) {
  std::string const a = "B { S(1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5) }";
  std::string const b = "B { S(1.5, 2.75, 3.75, 9.0, 5.75, 6.75, 7.75) }";
  EXPECT_EQ(Lines(a, b), (List{"S: 6 of 7 numbers differ; first S[2]: 2.5 -> 2.75 (difference 0.25, relative 0.09091)"
                               "; largest S[4]: 4.5 -> 9 (difference 4.5, relative 0.5)"}));
  EXPECT_EQ(Lines(a, b, {{}, true}).size(), 6u) << "each one where all are asked for";
  EXPECT_EQ(Lines("B { S(1.5) }", "B { S(1.5, 2, 3, 4, 5, 6, 7) }"), (List{"S: 1 arguments -> 7"}));
}

TEST(TreeDiff, CountsNumbersThatDifferAndThoseThatAreNear) {
  auto const found =
      Compare("B { A = 1.5 C = 3.0 D = 8.5 E = 1 }", "B { A = 1.51 C = 6.5 D = 8.51 E = 4 }", Near(0.1, 0));
  EXPECT_EQ(found.differing.count, 2u);
  EXPECT_EQ(found.differing.largest, 0.75);
  EXPECT_EQ(found.differing.at, "E");
  EXPECT_EQ(found.near.count, 2u);
  EXPECT_EQ(found.near.at, "A");
  EXPECT_DOUBLE_EQ(found.near.largest, (1.51 - 1.5) / 1.51);
}

TEST(TreeDiff, TellsTheRelativeDifferenceOfNumbersWhoseDifferenceIsTooLarge) {
  auto const found = Compare("B { A = 1.5e308 }", "B { A = -1.5e308 }", Near(0, 0.1));
  EXPECT_EQ(found.differing.largest, 2.0);
  EXPECT_EQ(found.list.front().Text(), "A: 1.5e308 -> -1.5e308");
}

TEST_F(DiffOfLibraries, OfACopyIsEmptyAndSaysSoByItsCode) {
  MakeOther();
  auto const told = Diff();
  EXPECT_EQ(told.code, 0);
  EXPECT_NE(told.out.find("7 blocks equal, 0 changed, 0 and 0 only in one"), told.out.npos) << told.out;
}

TEST_F(DiffOfLibraries, TellsNewChangedAndMissingBlocksByTheirRealNames) {
  MakeOther();
  Change([](SolutionFileManager & files) {
    Save(files, DataName(L"a=1"), 0.25);
    Save(files, DataName(L"a=9"), 9);
    files.DeleteBlock(DataName(L"a=2; b=3"));
  });
  auto const told = Diff();
  EXPECT_EQ(told.code, 1);
  EXPECT_NE(told.out.find("  Value: 0.1 -> 0.25 (difference 0.15, relative 0.6)\n"), told.out.npos) << told.out;
  qsol::DiffOptions options;
  options.json = true;
  auto const document = Diff(options).Document();
  ASSERT_EQ(document["only_in_a"].size(), 1u);
  EXPECT_EQ(document["only_in_a"][0]["variation"], "a=2; b=3");
  ASSERT_EQ(document["only_in_b"].size(), 1u);
  EXPECT_EQ(document["only_in_b"][0]["variation"], "a=9");
  ASSERT_EQ(document["changed"].size(), 1u);
  Json const expected{{"path", "Value"}, {"a", 0.1}, {"b", 0.25}, {"difference", 0.15}, {"relative", 0.6}};
  EXPECT_EQ(document["changed"][0]["differences"][0], expected);
  EXPECT_EQ(document["tolerance"], Json());
  EXPECT_EQ(document["numbers"]["at"], "Value");
}

TEST_F(DiffOfLibraries, PairsBlocksWhoseInternalNamesAndSpellingDiffer) {
  MakeLibrary();
  {
    SolutionFileManager files{Path(File("other.qsol"))};
    Save(files, L"Unmapped", 3);
    Save(files, DataName(L"a=1.0"), 0.1);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  qsol::DiffOptions options;
  options.json = true;
  auto const document = Diff(options).Document();
  EXPECT_EQ(document["changed"].size(), 0u) << "a=1 and a=1.0 are one point, with one value";
  ASSERT_EQ(document["only_in_b"].size(), 1u);
  EXPECT_EQ(document["only_in_b"][0]["real_name"], "Unmapped");
}

TEST_F(DiffOfLibraries, TellsABlockThatCanNotBeReadAndComparesTheRest) {
  MakeOther();
  Spoil(File("other.qsol"), "4242.5");
  Change([](SolutionFileManager & files) { Save(files, DataName(L"a=1"), 0.25); });
  auto const told = Diff();
  EXPECT_EQ(told.code, 1);
  EXPECT_NE(told.out.find("can't be compared: "), told.out.npos) << told.out;
  EXPECT_NE(told.out.find("Value: 0.1 -> 0.25"), told.out.npos) << told.out;
}

TEST_F(DiffOfLibraries, ShowsTheFirstTwentyDifferencesOfABlockUnlessToldAll) {
  MakeOther();
  Change([](SolutionFileManager & files) {
    CBlock block(DataName(L"a=1"));
    for (int i = 0; i < 30; ++i)
      block << io::named(AString::Format(L"V%d", i), long(i));
    ASSERT_EQ(files.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
  });
  EXPECT_NE(Diff().out.find("... and 11 more; --all shows them"), std::string::npos);
  qsol::DiffOptions options;
  options.all = true;
  EXPECT_NE(Diff(options).out.find("  V29: only in the second: V29 = 29\n"), std::string::npos);
}

TEST_F(DiffOfLibraries, WithinTheToleranceAreEqualAndTellHowNear) {
  MakeOther();
  Change([](SolutionFileManager & files) { Save(files, DataName(L"a=1"), 0.1 * (1 + 1e-10)); });
  EXPECT_EQ(Diff().code, 1);
  qsol::DiffOptions options;
  options.relative = 1e-9;
  auto const told = Diff(options);
  EXPECT_EQ(told.code, 0);
  EXPECT_NE(told.out.find("7 blocks equal, 0 changed"), told.out.npos) << told.out;
  EXPECT_NE(told.out.find("1 number within the tolerance in 1 block, relative difference up to 1e-10 at "),
            told.out.npos)
      << told.out;
  options.json = true;
  auto const document = Diff(options).Document();
  EXPECT_EQ(document["tolerance"], (Json{{"absolute", 0.0}, {"relative", 1e-9}}));
  EXPECT_EQ(document["equal_blocks"], 7);
  EXPECT_EQ(document["changed"].size(), 0u);
  EXPECT_EQ(document["numbers"], Json());
  EXPECT_EQ(document["numbers_within"]["count"], 1);
  EXPECT_NEAR(document["numbers_within"]["largest_relative"].get<double>(), 1e-10, 1e-15);
}

TEST_F(DiffOfLibraries, TellTheLargestRelativeDifferenceOfABlockAndOfAll) {
  MakeOther();
  Change([](SolutionFileManager & files) {
    Save(files, DataName(L"a=1"), 0.2);
    Save(files, DataName(L"a=2; b=3"), 4242.75);
  });
  auto const told = Diff();
  EXPECT_NE(told.out.find("\n2 numbers differ, relative difference up to 0.5 at " + InternalName(DataName(L"a=1")) +
                          ": Value\n"),
            told.out.npos)
      << told.out;
  qsol::DiffOptions options;
  options.json = true;
  auto const document = Diff(options).Document();
  EXPECT_EQ(document["numbers"]["largest_relative"], 0.5);
  EXPECT_EQ(document["numbers"]["blocks"], 2);
  EXPECT_EQ(document["changed"].size(), 2u);
  for (auto const & changed : document["changed"])
    EXPECT_EQ(changed["numbers"]["count"], 1);
}

TEST_F(DiffOfLibraries, TellAListOfManyDifferencesToProgramsOnceUnlessToldAll) {
  MakeLibrary();
  std::filesystem::copy_file(File(), File("other.qsol"));
  auto const save = [](SolutionFileManager & files, double added) {
    CBlock block(DataName(L"a=1"));
    io::CBlockFuncPtr const column(L"S");
    for (int i = 0; i < 100; ++i)
      column->AppendReal(i + 0.5 + (i == 7 ? 2 * added : added));
    block << column;
    ASSERT_EQ(files.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
  };
  Change([&](SolutionFileManager & files) { save(files, 0.25); });
  std::filesystem::rename(File("other.qsol"), File("first.qsol"));
  std::filesystem::copy_file(File(), File("other.qsol"));
  Change([&](SolutionFileManager & files) { save(files, 0); });
  qsol::DiffOptions options;
  options.view.file = File("first.qsol");
  options.json = true;
  auto const differences = Diff(options).Document()["changed"][0]["differences"];
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(differences[0]["path"], "S");
  EXPECT_EQ(differences[0]["differing"], 100);
  EXPECT_EQ(differences[0]["compared"], 100);
  EXPECT_EQ(differences[0]["first"]["path"], "S[1]");
  EXPECT_EQ(differences[0]["largest"]["difference"], -0.25) << "half and quarter: relatively the first is the largest";
  options.all = true;
  EXPECT_EQ(Diff(options).Document()["changed"][0]["differences"].size(), 100u);
}

TEST_F(DiffOfLibraries, LookAtTheBlocksAloneThatAreAskedFor) {
  MakeOther();
  Change([](SolutionFileManager & files) {
    Save(files, L"FileHeader", 2);
    Save(files, DataName(L"a=9"), 9);
  });
  qsol::DiffOptions options;
  options.selection.kind = "data";
  EXPECT_NE(Diff(options).out.find("2 blocks equal, 0 changed, 0 and 1 only in one"), std::string::npos);
  options.selection.variation = "a=1";
  EXPECT_EQ(Diff(options).code, 0);
  options.selection = {};
  options.selection.kind = "header";
  EXPECT_NE(Diff(options).out.find("0 blocks equal, 1 changed, 0 and 0 only in one"), std::string::npos);
}

TEST_F(DiffOfLibraries, NeedATolerance) {
  MakeOther();
  qsol::DiffOptions options;
  options.relative = -1;
  auto const told = Diff(options);
  EXPECT_EQ(told.code, 2);
  EXPECT_TRUE(told.Notes("--relative -1: is no tolerance"));
}
