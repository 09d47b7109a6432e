// One solved point as a project of its own.
#include "desktop/project/PointExport.h"

#include "desktop/command/Editor.h"
#include "tests/desktop/support/StoresFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <algorithm>

using desktop::PointExport;
using State = desktop::PointExport::State;

class PointExports : public support::StoresTest {
protected:
  void SetUp() override {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kFirst, 1.5), 0);
    ASSERT_EQ(Solve(*session, kSecond, 2.5), 0);
    session->Save();
    std::filesystem::create_directory(m_folder / "out");
  }

  LongFileName Folder() const { return LongFileName(PathOf("out") + L"/"); }
  std::unique_ptr<desktop::Session> OpenExported() const {
    return desktop::Session::Open(PathOf("out/study"), Access::kReadOnly);
  }
  static std::vector<AString> BlocksOf(desktop::Session & session) {
    std::list<AString> names;
    session.GetManager().GetSolutionFileManager().IndexKeyList(names, false);
    return {names.begin(), names.end()};
  }
  static bool Tells(std::vector<AString> const & names, AString const & text) {
    return std::any_of(names.begin(), names.end(),
                       [&text](AString const & name) { return name.find(text) != AString::npos; });
  }
};

TEST_F(PointExports, OpensWithTheNumbersAndTheVariablesOfThePoint) {
  auto const session = Open(Access::kReadOnly);
  PointExport point(*session, kSecond, State::kSaved);
  point.Write(Folder());
  EXPECT_EQ(point.CountBlocks(), 1);
  auto const exported = OpenExported();
  EXPECT_EQ(ValueOf(*exported, kSecond), 2.5);
  EXPECT_EQ(ValueOf(*exported, kFirst), std::nullopt);
  EXPECT_EQ(TextOf(*exported, L"C"), L"3");
  EXPECT_EQ(TextOf(*session, L"C"), L"1") << "the project keeps its own";
  EXPECT_FALSE(Tells(BlocksOf(*exported), L"C=1"));
}

TEST_F(PointExports, FindsThePointByAnyTextThatEqualsIt) {
  auto const session = Open(Access::kReadOnly);
  EXPECT_EQ(PointExport::FindPoint(*session, L"l=2; c=0.003k"), kSecond);
  EXPECT_EQ(PointExport::FindPoint(*session, L"C=4; L=2"), L"");
  EXPECT_EQ(PointExport::SolvedVariations(*session), (std::vector<AString>{kFirst, kSecond}));
}

TEST_F(PointExports, OfTheSavedStateKnowsNothingOfUnsavedWork) {
  auto const writer = Open();
  ASSERT_EQ(Solve(*writer, kSecond, 7.5), 0);
  auto const session = Open(Access::kReadOnly);
  PointExport(*session, kSecond, State::kSaved).Write(Folder());
  EXPECT_EQ(ValueOf(*OpenExported(), kSecond), 2.5);
}

TEST_F(PointExports, OfThePresentStateHasUnsavedWorkAndLeavesItUnsaved) {
  auto const session = Open();
  ASSERT_EQ(Solve(*session, kSecond, 7.5), 0);
  PointExport(*session, kSecond, State::kPresent).Write(Folder());
  EXPECT_TRUE(session->HasUnsavedChanges());
  auto const exported = OpenExported();
  EXPECT_EQ(ValueOf(*exported, kSecond), 7.5);
  EXPECT_FALSE(exported->HasUnsavedChanges());
}

TEST_F(PointExports, KeepsDataOfFormerVersionsAndTellsThatItIsStale) {
  auto const session = Open();
  SolutionOf(*session).Invalidate(nullptr, id::invalidID);
  session->Save();
  PointExport point(*session, kFirst, State::kPresent);
  ASSERT_EQ(point.Parts().size(), 1u);
  EXPECT_FALSE(point.Parts().front().isValid);
  point.Write(Folder());
  auto const exported = OpenExported();
  EXPECT_TRUE(Tells(BlocksOf(*exported), L"C=1"));
  EXPECT_FALSE(PointExport(*exported, kFirst, State::kSaved).Parts().front().isValid);
}

TEST_F(PointExports, NamesSourcesByFullPathsSoThatTheyAreFoundFromThere) {
  auto const session = Open(Access::kReadOnly);
  PointExport(*session, kFirst, State::kSaved).Write(Folder());
  auto const exported = OpenExported();
  EXPECT_EQ(exported->GetProject().GetSourceFile().FilePath(), session->GetProject().GetSourceFile().FilePath());
  EXPECT_NO_THROW(exported->CheckSourceUnchanged());
}

TEST_F(PointExports, LeavesOutWhatTheDesignDeleted) {
  auto const session = Open();
  io::CBlock block(SolutionVariationKey(SolutionOf(*session, L"Fine").GetBaseSimulationSetup().GetID(), kFirst,
                                        SolutionOf(*session, L"Fine").GetID(),
                                        SolutionOf(*session, L"Fine").GetVersionID())
                       .Pack());
  ASSERT_EQ(session->GetManager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  AString const name = block.Name();
  session->GetEditor().DeleteSetup(L"Fine");
  PointExport(*session, kFirst, State::kPresent).Write(Folder());
  EXPECT_FALSE(Tells(BlocksOf(*OpenExported()), name));
}

TEST_F(PointExports, OnAFailingDiskAreRefusedOrWholeAndCostTheProjectNothing) {
  std::string const library = Read("study.results/study.qsol");
  int refused = 0;
  bool isWhole = false;
  for (int operation = 1; operation < 400 && !isWhole; ++operation) {
    std::filesystem::remove_all(m_folder / "out");
    std::filesystem::create_directory(m_folder / "out");
    auto const session = Open(Access::kReadOnly);
    support::FaultyFileSystem faulty;
    faulty.FailAt(operation, true);
    auto const refusal = RefusalOf([&] { PointExport(*session, kSecond, State::kSaved).Write(Folder()); });
    isWhole = !faulty.HasFailed();
    faulty.Pause(true);
    refused += refusal.kind ? 1 : 0;
    if (!refusal.kind) {
      EXPECT_EQ(ValueOf(*OpenExported(), kSecond), 2.5) << "operation " << operation;
    }
  }
  EXPECT_TRUE(isWhole);
  EXPECT_GT(refused, 5);
  EXPECT_EQ(Read("study.results/study.qsol"), library);
}
