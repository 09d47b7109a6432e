#include "basekit/io/CBlock.h"
#include "basekit/message/IProgressMonitor.h"
#include "basekit/value/Variable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "tests/desktop/report/ReportFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ReportDefinition;
using support::AssertWatch;

namespace {

/// Cancels after it was asked a number of times, and counts how often.
class Patience : public IProgressMonitor {
public:
  explicit Patience(int times) : m_times(times) {}
  void SetPercent(double) override {}
  void SetText(AString const &) override {}
  bool IsCancelled() const override { return asked++ >= m_times; }
  void BeginQuota(double) override {}
  void EndQuota() override {}

  mutable int asked = 0;

private:
  int m_times;
};

/// Reports that set the design's variables to one solved point after the other.
class DesignVariables : public support::ReportTest {
protected:
  DesignVariables() {
    for (int c = 1; c <= 3; ++c)
      for (int l = 2; l <= 4; ++l)
        Solve(*m_session, AString::Format(L"C=%d; L=%d", c, l), {10.0 * c + l, 20.0 * c + l});
    Editor().SetVariables({{L"C", L"2.5"}});
    m_before = Now();
  }

  /// Texts as they were written, and numbers.
  std::vector<std::pair<AString, double>> Now() {
    std::vector<std::pair<AString, double>> values;
    for (Variable const * const variable : m_session->GetDesign().GetVariables())
      values.emplace_back(variable->GetValueText(), variable->GetValue().GetSIValue());
    return values;
  }
  void ExpectUnchanged() { EXPECT_EQ(Now(), m_before); }

  std::vector<std::pair<AString, double>> m_before;
};

} // namespace

TEST_F(DesignVariables, HoldTheSameValuesAfterEveryUpdate) {
  ASSERT_EQ(Show(Report({L"V", L"C*W"}, {L"C", L"L"})).size(), 18u);
  ExpectUnchanged();
  ReportDefinition worst = Report({L"max(V)"}, {L"L"});
  worst.x = L"C";
  ASSERT_EQ(Show(worst).size(), 9u);
  ExpectUnchanged();
  Live().ResultsChanged();
  Show(worst);
  ExpectUnchanged();
  ReportDefinition question = Report({L"max(V)/L"}, {L"C"});
  question.variation = L"L=3";
  EXPECT_EQ(Live().Evaluate(question).table.RowCount(), 3u);
  ExpectUnchanged();
}

TEST_F(DesignVariables, HoldTheSameValuesWhereverAnUpdateIsCancelled) {
  Patience endless(1'000'000);
  Live().Show(Report({L"V"}, {L"C", L"L"}), &endless);
  ASSERT_GT(endless.asked, 3);
  for (int times = 0; times <= endless.asked; ++times) {
    Live().ResultsChanged();
    Patience monitor(times);
    Live().Show(Report({L"V"}, {L"C", L"L"}), &monitor);
    ExpectUnchanged();
  }
  EXPECT_EQ(Show(Report({L"V"}, {L"C", L"L"}))[17], (std::vector<AString>{L"3", L"4", L"2", L"64"}));
}

TEST_F(DesignVariables, HoldTheSameValuesAfterErrors) {
  EXPECT_FALSE(Live().Show(Report({L"Nothing", L"V"}, {L"C"})).problems.empty());
  ExpectUnchanged();
  EXPECT_FALSE(Live().Show(Report({L"V+Total+X"}, {L"C", L"L"})).problems.empty());
  ExpectUnchanged();
  ReportDefinition conflict = Report({L"V"}, {L"C"});
  conflict.variation = L"c=2";
  EXPECT_EQ(Live().Show(conflict).problems.size(), 1u);
  ExpectUnchanged();
}

TEST_F(DesignVariables, HoldTheSameValuesWhenSolvedDataCannotBeRead) {
  ReportDefinition const report = Report({L"V"}, {L"C", L"L"});
  for (int c = 4; c <= 6; ++c)
    SolveLarge(AString::Format(L"C=%d; L=2", c), {1, 2});
  m_session->Save();
  std::size_t gaps = 0;
  auto const show = [&](int failingOperation) {
    auto const files = ReopenCounted();
    files->FailAt(failingOperation, true);
    auto const shown = Live().Show(report);
    EXPECT_EQ(files->HasFailed(), failingOperation > 0);
    gaps = shown.table.GapCount();
    ExpectUnchanged();
    int const operations = files->Operations();
    m_session.reset();
    return operations;
  };
  int const operations = show(0);
  ASSERT_GE(operations, 3) << "a read for each of the large points";
  std::size_t const unsolved = gaps;
  EXPECT_EQ(unsolved, 6u);
  for (int operation = 1; operation <= operations; ++operation) {
    show(operation);
    EXPECT_GT(gaps, unsolved) << operation;
    AssertWatch::Take();
  }
}

TEST_F(DesignVariables, AreFewAsBeforeHoweverManyQuestionsWereAsked) {
  ReportDefinition question = Report({L"max(V)+L"}, {L"C"});
  question.variation = L"L=3";
  BaseSimDataExtractor const & extractor = *SolutionOf(*m_session).GetBaseSimDataExtractor();
  auto const written = [this] {
    io::CBlock block(L"SimDataExtractor");
    SolutionOf(*m_session).GetBaseSimDataExtractor()->BaseSimDataExtractor::DesignFileWrite(block);
    return std::distance(block.begin(), block.end());
  };
  auto const ask = [&] {
    EXPECT_EQ(Live().Evaluate(question).table.At(2, 1)->real(), 66.0);
    Live().Forget(question);
  };
  ask();
  auto const items = written();
#ifdef NDEBUG
  constexpr int questions = 10000;
#else
  constexpr int questions = 300;
#endif
  for (int i = 0; i < questions; ++i)
    ask();
  EXPECT_EQ(extractor.GetSolutionPointSetsSize(), 0u);
  EXPECT_EQ(written(), items);
  std::vector<IDesignInstance *> instances;
  m_session->GetDesign().GetDesignInstances(instances);
  EXPECT_LE(instances.size(), 20u);
  ExpectUnchanged();
}
