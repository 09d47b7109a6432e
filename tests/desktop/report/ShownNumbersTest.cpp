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
    SolveLarge(L"C=1; L=2", {10, 20, 30});
    SolveLarge(L"C=2; L=2", {11, 21, 31});
    Editor().AddReport(Kept());
  }

  /// As the solve queue tells of a point that it stored again.
  void SolveLargeAgain(AString const & variation, std::vector<double> const & values) {
    SolveLarge(variation, values);
    BaseSolution const & solution = SolutionOf(*m_session);
    desktop::ForgetShownNumbers(m_session->GetManager(),
                                {SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation,
                                                      solution.GetID(), solution.GetVersionID())});
    Live().ResultsChanged();
  }

  static void CopyFolder(std::filesystem::path const & from, std::filesystem::path const & to) {
    for (auto const & entry : std::filesystem::directory_iterator(to))
      std::filesystem::remove_all(entry);
    std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
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
  Reopen(); // A variation that is in memory is not read again.
  SolveLargeAgain(L"C=2; L=2", {12, 22, 32});
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

TEST_F(ShownNumbers, FollowEditsOfASessionThatDidNotLookAtThem) {
  desktop::ReportDefinition nominal = Report({L"V", L"Double"});
  nominal.name = L"nominal";
  Editor().AddOutputVariable(L"Double", L"2*V");
  Editor().AddReport(nominal);
  EXPECT_EQ(Show(nominal)[0], (std::vector<AString>{L"1", L"10", L"20"}));
  ShowAndSave();
  Reopen();
  ASSERT_FALSE(Live().IsEmpty()) << "curves came with the file";
  Editor().EditOutputVariable(L"Double", L"3*V");
  Editor().SetVariables({{L"C", L"2"}});
  EXPECT_EQ(Show(nominal)[0], (std::vector<AString>{L"1", L"11", L"33"}));
  m_session->Save();
  Reopen();
  EXPECT_EQ(Show(nominal)[0], (std::vector<AString>{L"1", L"11", L"33"}));
  Rows const kept = Show(Kept());
  EXPECT_EQ(kept, m_shown);
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
  SolveLargeAgain(L"C=3; L=2", {12, 22});
  m_session->Save();
  auto const files = ReopenCounted();
  std::uint64_t const opened = files->BytesRead();
  Rows const rows = Show(Kept());
  ASSERT_EQ(rows.size(), m_shown.size() + 2);
  EXPECT_TRUE(std::equal(m_shown.begin(), m_shown.end(), rows.begin()));
  EXPECT_EQ(rows[6][2], L"12");
  EXPECT_GT(files->BytesRead() - opened, kLarge);
  EXPECT_LT(files->BytesRead() - opened, 2 * kLarge) << "of three points one is read";
}

TEST_F(ShownNumbers, AreOldOrNewButNeverWrongWhereverASaveDies) {
  ShowAndSave();
  Reopen();
  SolveLargeAgain(L"C=2; L=2", {12, 22, 32});
  m_session.reset(); // Unsaved work, which each of the following sessions goes on with.
  support::TemporaryFolder kept;
  CopyFolder(m_folder.Path(), kept.Path());
  constexpr int kSteps = 12;
  int operations = 0;
  for (int step = 0; step <= kSteps; ++step) {
    CopyFolder(kept.Path(), m_folder.Path());
    {
      support::FaultyFileSystem files;
      m_session = Open();
      m_shown = Show(Kept());
      ASSERT_EQ(m_shown[3][2], L"12");
      if (step > 0)
        files.FailAt(1 + (operations - 1) * (step - 1) / (kSteps - 1), true);
      int const opened = files.Operations();
      bool isSaved = true;
      try {
        m_session->Save();
      } catch (desktop::Error const &) {
        isSaved = false;
      }
      if (step == 0)
        operations = files.Operations() - opened;
      EXPECT_TRUE(isSaved || step > 0);
      m_session.reset();
    }
    AssertWatch::Take(); // Of a cache that could not be written.
    m_session = Open();
    EXPECT_EQ(Show(Kept()), m_shown) << "operation " << step << " of " << kSteps << ", " << operations << " in all";
    m_session.reset();
  }
  EXPECT_GT(operations, kSteps);
}

TEST_F(ShownNumbers, OfALaterSaveAreNotTaken) {
  ShowAndSave();
  m_session.reset();
  support::TemporaryFolder kept;
  CopyFolder(m_folder.Path(), kept.Path());
  m_session = Open();
  SolveLargeAgain(L"C=2; L=2", {12, 22, 32});
  Show(Kept());
  m_session->Save();
  std::string const later = Content();
  m_session.reset();
  CopyFolder(kept.Path(), m_folder.Path());
  ASSERT_NE(Content(), later);
  SetContent(later);
  ExpectSameNumbers(true);
}

// An opening reads the library's head and its last index, about 1 MB in all, however much is solved.
TEST_F(ShownNumbers, NeedNoSolvedDataWhileASessionOpensEither) {
  constexpr std::size_t huge = 10 * kLarge;
  SolveLarge(L"C=3; L=2", {12, 22, 32}, huge);
  ShowAndSave();
  auto const bytesOfASession = [this] {
    auto const files = ReopenCounted();
    EXPECT_EQ(Show(Kept()), m_shown);
    return files->BytesRead();
  };
  EXPECT_LT(bytesOfASession(), huge);
  std::filesystem::remove(File());
  EXPECT_GT(bytesOfASession(), huge);
}
