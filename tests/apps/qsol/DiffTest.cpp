#include "apps/qsol/DiffVerb.h"
#include "apps/qsol/TreeDiff.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/apps/qsol/QsolFixture.h"

using io::CBlock;

namespace {

std::vector<std::string> Lines(std::string const & a, std::string const & b) {
  CBlock one;
  CBlock other;
  EXPECT_TRUE(one.Unpack(AString(std::wstring(a.begin(), a.end()))));
  EXPECT_TRUE(other.Unpack(AString(std::wstring(b.begin(), b.end()))));
  std::vector<std::string> lines;
  for (auto const & difference : qsol::DifferencesOf(one, other))
    lines.push_back(difference.Text());
  return lines;
}

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
  EXPECT_EQ(Lines("B { A = 1 T = \"x\" }", "B { A = 1.5 T = none }"), (List{"A: 1 -> 1.5", "T: \"x\" -> none"}));
  EXPECT_EQ(Lines("B { A = nan }", "B { A = -nan }"), (List{"A: nan -> -nan"}));
  EXPECT_EQ(Lines("B { A = 0.0 }", "B { A = -0.0 }"), (List{"A: 0 -> -0"}));
}

TEST(TreeDiff, NamesThePlaceInNestedBlocksAndRepeatedNames) {
  EXPECT_EQ(Lines("B { P { N = 1 } P { N = 2 } }", "B { P { N = 1 } P { N = 3 } }"), (List{"P[2]/N: 2 -> 3"}));
  EXPECT_EQ(Lines("B { S(1, 2, 3) }", "B { S(1, 5) }"), (List{"S[2]: 2 -> 5", "S[3]: only in the first: 3"}));
  EXPECT_EQ(Lines("B { S(1, z = 1) }", "B { S(1, z = 2, y = 3) }"),
            (List{"S/z: 1 -> 2", "S/y: only in the second: y = 3"}));
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
  EXPECT_NE(told.out.find("  Value: 0.1 -> 0.25\n"), told.out.npos) << told.out;
  qsol::DiffOptions options;
  options.json = true;
  auto const document = Diff(options).Document();
  ASSERT_EQ(document["only_in_a"].size(), 1u);
  EXPECT_EQ(document["only_in_a"][0]["variation"], "a=2; b=3");
  ASSERT_EQ(document["only_in_b"].size(), 1u);
  EXPECT_EQ(document["only_in_b"][0]["variation"], "a=9");
  ASSERT_EQ(document["changed"].size(), 1u);
  EXPECT_EQ(document["changed"][0]["differences"][0], (Json{{"path", "Value"}, {"a", 0.1}, {"b", 0.25}}));
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
