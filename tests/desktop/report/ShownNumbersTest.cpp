#include "desktop/report/ShownNumbers.h"
#include "desktop/product/ProductSolutionManager.h"
#include "tests/desktop/report/ReportFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

#include <filesystem>

using support::AssertWatch;

namespace {

/// A project that was saved after its report was shown, the numbers of which a later session finds beside it.
class ShownNumbers : public support::ReportTest {
protected:
  ShownNumbers() {
    Solve(*m_session, L"C=1; L=2", {10, 20, 30});
    Solve(*m_session, L"C=2; L=2", {11, 21, 31});
    Editor().AddReport(Kept());
  }

  static desktop::ReportDefinition Kept() { return Report({L"V", L"2*W", L"C*V"}, {L"C"}); }
  void ShowAndSave() {
    m_shown = Show(Kept());
    ASSERT_FALSE(m_shown.empty());
    m_session->Save();
    ASSERT_TRUE(std::filesystem::exists(File()));
  }
  std::filesystem::path File() const {
    for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
      if (entry.path().extension() == ".svcache")
        return entry.path();
    return {};
  }
  std::string Content() const { return Read(File().lexically_relative(m_folder.Path()).string()); }
  void SetContent(std::string const & content) const {
    Write(File().lexically_relative(m_folder.Path()).string(), content);
  }
  /// How many operations on files, reads among them, a session takes to show the report once it is open.
  int OperationsOfShowing(desktop::ReportDefinition const & report, Rows & rows, Access access = Access::kWrite) {
    auto const files = ReopenCounted(access);
    if (m_discards)
      m_session->Discard();
    int const opening = files->Operations();
    rows = Show(report);
    return files->Operations() - opening;
  }
  /// That a session opened anew shows what was shown, from solved data or without any.
  void ExpectSameNumbers(bool areLoaded, Access access = Access::kWrite) {
    Rows rows;
    int const operations = OperationsOfShowing(Kept(), rows, access);
    EXPECT_EQ(rows, m_shown);
    EXPECT_EQ(operations > 0, areLoaded) << operations;
  }

  Rows m_shown;
  bool m_discards = false;
};

} // namespace

TEST_F(ShownNumbers, AreShownByTheNextSessionWithoutAnyFileBeingRead) {
  ShowAndSave();
  ExpectSameNumbers(false);
}

TEST_F(ShownNumbers, AreShownToReaders) {
  ShowAndSave();
  ExpectSameNumbers(false, Access::kReadOnly);
}

TEST_F(ShownNumbers, OfAFixedVariationComeBackWithIt) {
  desktop::ReportDefinition fixed = Report({L"V"});
  fixed.name = L"fixed";
  fixed.variation = L"C=2";
  Editor().AddReport(fixed);
  auto const shown = Show(fixed);
  ShowAndSave();
  Rows rows;
  EXPECT_EQ(OperationsOfShowing(fixed, rows), 0);
  EXPECT_EQ(rows, shown);
}

TEST_F(ShownNumbers, StayThroughSessionsThatDoNotLookAtThem) {
  ShowAndSave();
  Reopen();
  m_session->Save();
  ExpectSameNumbers(false);
}

TEST_F(ShownNumbers, OfARemovedReportGo) {
  ShowAndSave();
  Reopen();
  Editor().RemoveReport(L"curves");
  m_session->Save();
  EXPECT_TRUE(File().empty());
}

TEST_F(ShownNumbers, AreInNoAutosave) {
  ShowAndSave();
  EXPECT_NE(Read("study.sproject").find("SolutionPointSets"), std::string::npos);
  Editor().SetVariables({{L"L", L"4"}});
  std::string const autosave = Read("study.sproject.auto");
  ASSERT_FALSE(autosave.empty());
  for (char const * const name : {"SolutionPointSets", "Sweeps", "Catalogue", "SimValue"})
    EXPECT_EQ(autosave.find(name), std::string::npos) << name;
}

TEST_F(ShownNumbers, WithoutAReportShownThereIsNoFile) {
  m_session->Save();
  EXPECT_TRUE(File().empty());
}

TEST_F(ShownNumbers, AreReadFromSolvedDataWithoutTheFile) {
  ShowAndSave();
  std::filesystem::remove(File());
  ExpectSameNumbers(true);
}

TEST_F(ShownNumbers, OfAnEarlierSaveAreNotTaken) {
  ShowAndSave();
  std::string const former = Content();
  Solve(*m_session, L"C=2; L=2", {12, 22, 32});
  desktop::ForgetShownNumbers(
      m_session->GetManager(),
      {SolutionVariationKey(SolutionOf(*m_session).GetBaseSimulationSetup().GetID(), L"C=2; L=2",
                            SolutionOf(*m_session).GetID(), SolutionOf(*m_session).GetVersionID())});
  Live().ResultsChanged();
  ShowAndSave();
  EXPECT_EQ(m_shown[3][2], L"12") << "a point that was solved anew is read anew";
  SetContent(former);
  ExpectSameNumbers(true);
}

TEST_F(ShownNumbers, OfAnotherProjectAreNotTaken) {
  ShowAndSave();
  std::string foreign = Content();
  m_session.reset();
  auto const design = foreign.find("DesignID = ");
  ASSERT_NE(design, std::string::npos);
  foreign.insert(design + 11, "7");
  SetContent(foreign);
  ExpectSameNumbers(true);
}

TEST_F(ShownNumbers, CutAnywhereGiveWayToSolvedData) {
  ShowAndSave();
  std::string const whole = Content();
  for (std::size_t length = 0; length < whole.size(); length += whole.size() / 7 + 1) {
    SetContent(whole.substr(0, length));
    ExpectSameNumbers(true);
  }
}

TEST_F(ShownNumbers, FlippedAnywhereGiveWayToSolvedData) {
  ShowAndSave();
  std::string const whole = Content();
  for (std::size_t at = 3; at < whole.size(); at += whole.size() / 7 + 1) {
    std::string flipped = whole;
    flipped[at] = static_cast<char>(flipped[at] ^ 1);
    SetContent(flipped);
    ExpectSameNumbers(true);
  }
}

TEST_F(ShownNumbers, ThatCannotBeWrittenFailNoSave) {
  ShowAndSave();
  auto const file = File();
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  m_session->Save();
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"!\"Could not write solution manager simvalue cache file\""});
  EXPECT_FALSE(m_session->HasUnsavedChanges());
  ExpectSameNumbers(true);
}

TEST_F(ShownNumbers, BesideUnsavedWorkAreNotTakenAndComeBackWithDiscard) {
  ShowAndSave();
  Editor().SetVariables({{L"L", L"3"}});
  Rows rows;
  EXPECT_GT(OperationsOfShowing(Report({L"V"}, {L"C", L"L"}), rows), 0);
  m_discards = true;
  ExpectSameNumbers(false);
}

TEST_F(ShownNumbers, OfPointsThatAreGoneAreIgnored) {
  ShowAndSave();
  Editor().DeleteVariation(L"C=2; L=2", L"Sweep");
  m_session->Save();
  Reopen();
  EXPECT_EQ(Show(Report({L"V"}, {L"C"})).size(), 3u);
}

TEST_F(ShownNumbers, ServeBesideAPointThatIsNew) {
  ShowAndSave();
  Reopen();
  Solve(*m_session, L"C=3; L=2", {12, 22});
  Live().ResultsChanged();
  Rows const rows = Show(Kept());
  ASSERT_EQ(rows.size(), m_shown.size() + 2);
  EXPECT_TRUE(std::equal(m_shown.begin(), m_shown.end(), rows.begin()));
  EXPECT_EQ(rows[6][2], L"12");
}
