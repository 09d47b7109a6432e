#include "CoreInterfaces/solution/IDesignDataExtractorForReportSetupUI.h"
#include "CoreInterfaces/solution/ISimDataExtractor3.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "plotkit/sweep/SynchronizedSweep.h"
#include "tests/solutionmanager/extraction/UpdateFixture.h"

using support::AssertWatch;

namespace {

/// A product's extractor that writes down what its views ask.
class WideExtractor : public support::ColumnExtractor, public IDesignDataExtractorForReportSetupUI {
public:
  using ColumnExtractor::ColumnExtractor;
  using ColumnExtractor::GetSweeps;
  long GetContextID(SimValueContext const & context) const override { return 10 + context.GetKind(); }
  AString GetContextName(SimValueContext const &) const override { return L"Sweep context"; }
  bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const override {
    contexts.assign(reportType, SimValueContext());
    return true;
  }
  int GetMatrixQuantityNames(std::vector<AString> & names, AString const & category, unsigned, rep::DisplayType,
                             SimValueContext const &) const override {
    names.push_back(category);
    return 1;
  }
  bool QuantityNeedsContext(AString const & quantity) const override { return quantity == L"S"; }
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const *, AString const & text) const override {
    return text == L"S";
  }
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const *, SimValueContext const *,
                                            unsigned reportType) const override {
    return reportType == 3;
  }
  bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const override {
    return reportTypes == std::vector<unsigned>{4};
  }
};

class SpanLog : public IMemoryTimeProfiler {
public:
  SpanLog() : m_former(SetInstance(this)) {}
  ~SpanLog() override { SetInstance(m_former); }
  void Begin(char const * label) override { spans.push_back(std::string("begin ") + label); }
  void End(char const * label) override { spans.push_back(std::string("end ") + label); }
  std::vector<std::string> spans;

private:
  IMemoryTimeProfiler * m_former;
};

class ExtractorViewsTest : public support::UpdateTest {
protected:
  ExtractorViewsTest() {
    m_solution->SetExtractor(m_extractor = new WideExtractor(m_manager.get(), m_solution));
    AddSweep(m_x, {1, 2});
  }
  ISimDataExtractorForReports & Reports() { return *m_extractor->GetISimDataExtractorForReports(); }
  IDesignDataExtractorForSweepwise & Sweepwise() { return *m_extractor->GetIDesignDataExtractorForSweepwise(); }
};

} // namespace

TEST_F(ExtractorViewsTest, TheManagerGivesTheReportsViewOfASolutionThatIsThere) {
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(m_solution->GetID()), &Reports());
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(m_solution->GetID() + 1000), nullptr);
  const_cast<BaseSimulationSetup &>(m_solution->GetBaseSimulationSetup()).DeleteSolution(m_solution->GetID(), nullptr);
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(m_solution->GetID()), nullptr) << "deleted";
}

TEST_F(ExtractorViewsTest, TheExtractorOfAnUnknownSolutionIsReported) {
  AssertWatch::Expect("0");
  EXPECT_EQ(Manager().GetISimDataExtractor3(m_solution->GetID() + 1000), nullptr);
}

TEST_F(ExtractorViewsTest, AProductOfTheOldRegimeHasNoOperationsToForwardTo) {
  AssertWatch::Expect("0");
  EXPECT_EQ(Manager().GetISimDataExtractor3(m_solution->GetID()), nullptr);
}

TEST_F(ExtractorViewsTest, ForAProductOfTheOldRegimeTheViewsReportThatOnceAndForwardNothing) {
  AssertWatch::Expect("0");
  for (auto const & forward : {&ISimDataExtractorForReports::Extractor3Op1, &ISimDataExtractorForReports::Extractor3Op7,
                               &ISimDataExtractorForReports::Extractor3Op16})
    (Reports().*forward)();
  Sweepwise().Extractor3Op11();
  EXPECT_EQ(Reports().GetQuantityTypeForReports(L"S", SimValueContext(), 1).parameterType, ValueState().parameterType);
}

TEST_F(ExtractorViewsTest, TheViewsOfACopiedExtractorAnswerForTheOriginalAsMeant) {
  WideExtractor const copy(*static_cast<WideExtractor *>(m_extractor));
  ISimDataExtractorForReports * const view = const_cast<WideExtractor &>(copy).GetISimDataExtractorForReports();
  auto const countOf = [](ISimDataExtractorForReports const & reports) {
    std::vector<SweepBase const *> sweeps;
    return reports.GetSweeps(sweeps, SimValueContext(), 4);
  };
  int const before = countOf(*view);
  AddSweep(m_y, {1, 2});
  EXPECT_EQ(countOf(*view), before + 1) << "a sweep that only the original has";
}

TEST_F(ExtractorViewsTest, AnExtractorWithoutASolutionHasNoNameAndNothingImported) {
  WideExtractor lonely(m_manager.get(), nullptr);
  ISimDataExtractorForReports const & view = *lonely.GetISimDataExtractorForReports();
  AssertWatch::Take();
  EXPECT_EQ(view.GetGlobalSolutionName(), AString());
  EXPECT_FALSE(view.IsImportedSolution());
  EXPECT_FALSE(AssertWatch::Take().empty());
}

TEST_F(ExtractorViewsTest, ASweepIsFoundByTheNameThatReportsShowWithoutCase) {
  auto * const pair = new SynchronizedSweep;
  for (Variable * const variable : {&m_y, &m_x}) {
    SweepColumn column(val::kReal, Units::kNoUnits, variable);
    column.SetValues(std::vector<double>{1, 2});
    EXPECT_TRUE(pair->AddColumn(column));
  }
  m_extractor->AddSweep(pair);
  EXPECT_EQ(pair->GetName(), L"y");
  AString const shown = pair->GetRepVarName();
  EXPECT_NE(shown, L"y");
  SimValueContext const context;
  EXPECT_EQ(Reports().GetSweep(shown, context, 1), pair);
  EXPECT_EQ(Reports().GetSweep(L"Y", context, 1), nullptr) << "its own name is not what reports show";
  EXPECT_EQ(Reports().GetSweep(L"X", context, 1), m_extractor->GetSweep(L"x"));
  EXPECT_EQ(Reports().GetSweep(L"nobody", context, 1), nullptr);
}

TEST_F(ExtractorViewsTest, ASearchForASweepIsASpanAroundTheListing) {
  SpanLog const log;
  Reports().GetSweep(L"nobody", SimValueContext(), 1);
  EXPECT_EQ(log.spans, (std::vector<std::string>{
                           "begin SimDataExtractorForReports::GetSweep", "begin SimDataExtractorForReports::GetSweeps",
                           "end SimDataExtractorForReports::GetSweeps", "end SimDataExtractorForReports::GetSweep"}));
}

TEST_F(ExtractorViewsTest, TheReportsViewAsksForOneReportTypeAtATime) {
  EXPECT_TRUE(Reports().IsReportTypeSupported(4));
  EXPECT_FALSE(Reports().IsReportTypeSupported(5));
  EXPECT_EQ(Reports().GetGlobalSolutionName(), m_solution->GetGlobalSolutionName());
  EXPECT_FALSE(Reports().IsImportedSolution());
  EXPECT_TRUE(Reports().ReportsViewIsAvailable());
}

TEST_F(ExtractorViewsTest, TheAddOnsViewHandsEveryQuestionOn) {
  SimValueContext const context;
  EXPECT_EQ(Sweepwise().GetContextID(context), 13);
  EXPECT_EQ(Sweepwise().GetContextName(context), L"Sweep context");
  std::vector<SimValueContext> contexts;
  EXPECT_TRUE(Sweepwise().GetContexts(contexts, 2));
  EXPECT_EQ(contexts.size(), 2u);
  std::vector<AString> names;
  EXPECT_EQ(Sweepwise().GetMatrixQuantityNames(names, L"Matrix", 1, rep::DisplayType{}, context), 1);
  EXPECT_EQ(names, (std::vector<AString>{L"Matrix"}));
  std::vector<SweepBase *> sweeps;
  EXPECT_EQ(Sweepwise().GetSweeps(sweeps, 1, nullptr, rep::DisplayType{}, true), 1);
  EXPECT_TRUE(Sweepwise().IsExpressionAffectedByMinorEdits(nullptr, L"S"));
  EXPECT_FALSE(Sweepwise().IsExpressionAffectedByMinorEdits(nullptr, L"Q"));
  EXPECT_TRUE(Sweepwise().IsSimContextDataAffectedByMinorEdits(nullptr, nullptr, 3));
  EXPECT_FALSE(Sweepwise().IsSimContextDataAffectedByMinorEdits(nullptr, nullptr, 4));
  EXPECT_TRUE(Sweepwise().IsSupportedReportTypes({4}));
  EXPECT_TRUE(Sweepwise().QuantityNeedsContext(L"S"));
  auto * const dialog = static_cast<IDesignDataExtractorForReportSetupUI *>(static_cast<WideExtractor *>(m_extractor));
  EXPECT_EQ(Sweepwise().GetIDesignDataExtractorForReportSetupUI(), dialog);
  EXPECT_EQ(Sweepwise().GetIDesignDataExtractorForReportSetupUIForEdit(), dialog);
}

TEST_F(ExtractorViewsTest, TheAddOnMakesSetsAndTracesOfTheExtractorsOwn) {
  ISimDataExtractorForSweepwise & view = *m_extractor->GetISimDataExtractorForSweepwise();
  SolutionPointSet * const set = view.CreateSolutionPointSet(AllOf({L"x"}), nullptr, nullptr, false);
  ASSERT_TRUE(set);
  std::unique_ptr<TraceComponent> const x(view.CreateTraceComponent(L"x", nullptr));
  std::unique_ptr<TraceComponent> const y(view.CreateTraceComponent(L"Q", nullptr));
  Trace const * const trace = view.CreateTrace2D(set, x.get(), y.get(), false);
  ASSERT_TRUE(trace);
  EXPECT_EQ(&trace->GetSolutionPointSet(), set);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
  view.RemoveSolutionPointSet(set);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 0u);
}
