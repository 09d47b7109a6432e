#include "desktop/reportsetup/ReportSetup.h"
#include "CoreInterfaces/reportkern/ISimDataExtractorForReports.h"
#include "CoreInterfaces/reportkern/ISolutionManagerForReports.h"
#include "basekit/message/IProgressMonitor.h"
#include "basekit/text/NumberText.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportList.h"
#include "tests/desktop/reportsetup/RewriteProduct.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/AssertWatch.h"

using desktop::ErrorKind;
using desktop::ReportDefinition;
using desktop::ReportSetup;
using support::AssertWatch;

namespace {

/// Cancels after it was asked a number of times.
class Patience : public IProgressMonitor {
public:
  explicit Patience(int times) : m_left(times) {}
  void SetPercent(double) override {}
  void SetText(AString const &) override {}
  bool IsCancelled() const override { return m_left-- <= 0; }
  void BeginQuota(double) override {}
  void EndQuota() override {}

private:
  mutable int m_left;
};

/// A project of a product for the reporter rewrite, which is active.
class ReportSetupModule : public support::SessionTest {
protected:
  using Rows = std::vector<std::vector<AString>>;

  ReportSetupModule() {
    desktop::ProductRegistry::Instance().Register(std::make_unique<support::RewriteProduct>());
    m_desktop.SetReportRewriteEnabled(true);
    m_session = desktop::Session::Create(ProjectPath(), PathOf("circuit.txt"), L"rewrite");
    Solve(*m_session, L"C=1; L=2", {10, 20, 30});
    Solve(*m_session, L"C=2; L=2", {11, 21});
  }

  static ReportDefinition Report(std::vector<AString> const & y, std::vector<AString> const & over = {}) {
    ReportDefinition report;
    report.name = L"curves";
    report.y = y;
    report.over = over;
    return report;
  }
  desktop::SetupTable Table(ReportDefinition const & report, IProgressMonitor * progress = nullptr) {
    return ReportSetup(*m_session).Show(report, progress);
  }
  Rows Show(ReportDefinition const & report) { return RowsOf(Table(report)); }
  static Rows RowsOf(desktop::SetupTable const & table) {
    Rows rows;
    for (auto const & cells : table.rows) {
      auto & row = rows.emplace_back();
      for (std::size_t i = 0; i < cells.size(); ++i) {
        AString text = cells[i].number ? Shortest(cells[i].number->real()) : cells[i].text;
        if (cells[i].number && table.columns[i].isComplex)
          text += AString(L",") + Shortest(cells[i].number->imag());
        row.push_back(text.empty() ? AString(L"-") : text);
      }
    }
    return rows;
  }
  static AString Shortest(double number) { return text::FromUtf8(text::ShortestReal(number)); }
  support::RewriteExtractor & Extractor() {
    return dynamic_cast<support::RewriteExtractor &>(*SolutionOf(*m_session).GetBaseSimDataExtractor());
  }
  void Reopen(bool isRewriteActive) {
    m_session.reset();
    m_desktop.SetReportRewriteEnabled(isRewriteActive);
    m_session = Open();
  }
  AString Variables() { return m_session->GetDesign().GetVariation(); }

  std::unique_ptr<desktop::Session> m_session;
};

} // namespace

TEST_F(ReportSetupModule, ShowsAReportThatWasAdded) {
  ASSERT_FALSE(m_session->GetManager().AreOldReportStructuresSupported());
  ReportSetup(*m_session).Add(Report({L"V", L"2*W"}, {L"C"}));
  auto const table = Table(*m_session->GetReports().Find(L"curves"));
  EXPECT_EQ(RowsOf(table), (Rows{{L"1", L"1", L"10", L"20,40"},
                                 {L"1", L"2", L"20", L"40,80"},
                                 {L"1", L"3", L"30", L"60,120"},
                                 {L"2", L"1", L"11", L"22,44"},
                                 {L"2", L"2", L"21", L"42,84"}}));
  ASSERT_EQ(table.columns.size(), 4u);
  EXPECT_EQ(table.columns[1].title, L"Freq");
  EXPECT_EQ(table.columns[1].units, Units::kHertz);
  EXPECT_TRUE(table.problems.empty());
}

TEST_F(ReportSetupModule, HoldsNoPointSetsTracesOrSimValuesInTheExtractor) {
  Show(Report({L"V"}, {L"C"}));
  EXPECT_EQ(Extractor().GetSolutionPointSetsSize(), 0u);
  io::CBlock block(L"SimDataExtractor");
  Extractor().BaseSimDataExtractor::DesignFileWrite(block);
  EXPECT_FALSE(block.FindItem(BaseSimDataExtractor::kSimValueBlockName, io::CBlock_item::Kind::Func));
}

TEST_F(ReportSetupModule, LoadsEachInstanceOnceForAllCurvesAndGivesItUp) {
  Show(Report({L"V", L"W", L"V+W"}, {L"C"}));
  EXPECT_EQ(Extractor().loads, 2);
  EXPECT_EQ(Extractor().inMemory, 0);
  EXPECT_EQ(Extractor().asked, (std::vector<AString>{L"V", L"W"}));
}

TEST_F(ReportSetupModule, StandsAtTheVariablesOfTheDesignOrAtTheGivenOnes) {
  EXPECT_EQ(Show(Report({L"C*V"})), (Rows{{L"1", L"10"}, {L"2", L"20"}, {L"3", L"30"}}));
  ReportDefinition report = Report({L"C*V"});
  report.variation = L"C=2";
  EXPECT_EQ(Show(report), (Rows{{L"1", L"22"}, {L"2", L"42"}}));
  m_session->GetEditor().SetVariables({{L"C", L"2"}});
  EXPECT_EQ(Show(Report({L"C*V"})), (Rows{{L"1", L"22"}, {L"2", L"42"}}));
}

TEST_F(ReportSetupModule, RunsOverAVariableWithFunctionsOfWholeCurves) {
  ReportDefinition report = Report({L"max(V)"});
  report.x = L"C";
  EXPECT_EQ(Show(report), (Rows{{L"1", L"30"}, {L"2", L"21"}}));
}

TEST_F(ReportSetupModule, ShowsNumbersWithoutAnAxis) {
  EXPECT_EQ(Show(Report({L"Total/C"}, {L"C"})), (Rows{{L"1", L"60"}, {L"2", L"16"}}));
}

TEST_F(ReportSetupModule, AVariationWithoutDataIsAGapAndNoShift) {
  Solve(*m_session, L"C=1; L=0.30000000000000004", {5});
  auto const table = Table(Report({L"V"}, {L"L", L"C"}));
  EXPECT_EQ(table.gaps, 1u);
  EXPECT_EQ(RowsOf(table), (Rows{{L"0.30000000000000004", L"1", L"1", L"5"},
                                 {L"0.30000000000000004", L"2", L"-", L"-"},
                                 {L"2", L"1", L"1", L"10"},
                                 {L"2", L"1", L"2", L"20"},
                                 {L"2", L"1", L"3", L"30"},
                                 {L"2", L"2", L"1", L"11"},
                                 {L"2", L"2", L"2", L"21"}}));
}

TEST_F(ReportSetupModule, RefusesWhatIsNotThereByName) {
  auto const refused = [this](ReportDefinition const & report) {
    auto const refusal = RefusalOf([&] { ReportSetup(*m_session).Add(report); });
    EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
    EXPECT_TRUE(m_session->GetReports().All().empty());
    return refusal.text;
  };
  ReportDefinition report = Report({L"V"});
  report.setup = L"None";
  EXPECT_EQ(refused(report), "report curves: no solution is named 'None'; there are: Sweep : Points, Fine : Points");
  EXPECT_NE(refused(Report({L"Nothing"})).find("'Nothing' can't be evaluated"), std::string::npos);
  EXPECT_NE(refused(Report({L"V"}, {L"X"})).find("'X' is no design variable"), std::string::npos);
  report = Report({L"V"});
  report.variation = L"X=1";
  EXPECT_NE(refused(report).find("'X' is no design variable"), std::string::npos);
}

TEST_F(ReportSetupModule, DesignVariablesHoldTheSameValuesWhateverHappens) {
  AString const before = Variables();
  Show(Report({L"V"}, {L"C"}));
  EXPECT_EQ(Variables(), before);
  for (int times = 0; times < 3; ++times) {
    Patience monitor(times);
    auto const table = Table(Report({L"V"}, {L"C"}), &monitor);
    EXPECT_EQ(table.isCancelled, times < 2);
    EXPECT_EQ(Variables(), before);
    EXPECT_EQ(Extractor().inMemory, 0);
  }
  EXPECT_TRUE(RefusalOf([&] { Show(Report({L"Nothing"}, {L"C"})); }).kind);
  EXPECT_EQ(Variables(), before);
}

TEST_F(ReportSetupModule, EditsSavesAndReopeningTouchNoRetiredMember) {
  ReportSetup(*m_session).Add(Report({L"V"}, {L"C"}));
  Rows const shown = Show(Report({L"V"}, {L"C"}));
  m_session->GetEditor().SetVariables({{L"L", L"3"}});
  EXPECT_TRUE(Show(Report({L"V"}))[0][1] == L"-");
  m_session->GetEditor().Undo();
  m_session->Save();
  m_session.reset();
  m_session = Open();
  EXPECT_EQ(Show(*m_session->GetReports().Find(L"curves")), shown);
  m_session->GetEditor().RemoveReport(L"curves");
  m_session->Discard();
  EXPECT_EQ(Show(*m_session->GetReports().Find(L"curves")), shown);
  EXPECT_TRUE(AssertWatch::Take().empty());
}

TEST_F(ReportSetupModule, ReportsFollowEditsOfVariables) {
  ReportSetup(*m_session).Add(Report({L"C*V"}, {L"C"}));
  desktop::Editor & editor = m_session->GetEditor();
  editor.RenameVariable(L"C", L"Cap");
  auto const report = *m_session->GetReports().Find(L"curves");
  EXPECT_EQ(report.y, (std::vector<AString>{L"Cap*V"}));
  EXPECT_EQ(Show(report)[0], (std::vector<AString>{L"1", L"1", L"10"}));
  editor.Undo();
  editor.EditSetup(L"Sweep", L"wide");
  EXPECT_EQ(Table(*m_session->GetReports().Find(L"curves")).gaps, 0u);
  editor.Undo();
  EXPECT_EQ(Show(Report({L"C*V"}, {L"C"})).size(), 5u);
}

TEST_F(ReportSetupModule, PointsFromBeforeAVariableWasAddedAreGaps) {
  m_session->GetEditor().AddVariable(L"T", L"1");
  EXPECT_EQ(Table(Report({L"V"}, {L"C"})).gaps, 2u);
  Solve(*m_session, L"C=2; L=2; T=1", {12});
  auto const table = Table(Report({L"V"}, {L"C"}));
  EXPECT_EQ(RowsOf(table).back(), (std::vector<AString>{L"2", L"1", L"12"}));
  EXPECT_EQ(table.gaps, 1u);
  m_session->GetEditor().Undo();
  EXPECT_EQ(Show(Report({L"V"}, {L"C"})).size(), 5u);
}

TEST_F(ReportSetupModule, OutputVariablesStayAsTheyAre) {
  EXPECT_EQ(RefusalOf([&] { m_session->GetEditor().AddOutputVariable(L"Double", L"2*V"); }).kind, ErrorKind::kUsage);
  Reopen(false);
  m_session->GetEditor().AddOutputVariable(L"Double", L"2*V");
  m_session->Save();
  Reopen(true);
  EXPECT_EQ(RefusalOf([&] { m_session->GetEditor().EditOutputVariable(L"Double", L"3*V"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { m_session->GetEditor().DeleteOutputVariable(L"Double"); }).kind, ErrorKind::kUsage);
  EXPECT_TRUE(RefusalOf([&] { Show(Report({L"Double"})); }).kind);
  m_session->GetEditor().SetVariables({{L"C", L"2"}});
  m_session->Save();
  Reopen(false);
  EXPECT_EQ(m_session->GetLiveReports().Show(Report({L"Double"})).table.At(0, 1)->real(), 22.0);
}

TEST_F(ReportSetupModule, TheFormerReportsAreRefusedAndTheOtherWayRound) {
  EXPECT_EQ(RefusalOf([&] { m_session->GetLiveReports().Show(Report({L"V"})); }).kind, ErrorKind::kUsage);
  m_desktop.SetReportRewriteEnabled(false);
  EXPECT_EQ(RefusalOf([&] { Show(Report({L"V"})); }).kind, ErrorKind::kUsage);
}

TEST_F(ReportSetupModule, AProductThatKnowsNoRewriteIsRefused) {
  m_session.reset();
  auto const session = desktop::Session::Create(PathOf("other"), PathOf("circuit.txt"), L"fake");
  auto const refusal = RefusalOf([&] { ReportSetup(*session).Show(Report({L"V"})); });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("no reports under the reporter rewrite"), std::string::npos);
}

TEST_F(ReportSetupModule, ReportsOfTheFormerStructuresAreShownOfTheSameProject) {
  Reopen(false);
  m_session->GetEditor().AddReport(Report({L"V"}, {L"C"}));
  auto const & former = m_session->GetLiveReports().Show(Report({L"V"}, {L"C"})).table;
  std::vector<double> numbers;
  for (std::size_t row = 0; row < former.RowCount(); ++row)
    numbers.push_back(former.At(row, 2)->real());
  m_session->Save();
  Reopen(true);
  auto const table = Table(Report({L"V"}, {L"C"}));
  ASSERT_EQ(table.rows.size(), numbers.size());
  for (std::size_t row = 0; row < numbers.size(); ++row)
    EXPECT_EQ(table.rows[row][2].number->real(), numbers[row]);
}

TEST_F(ReportSetupModule, FunctionsOfTheProductStandBesideTheCatalogue) {
  ISolutionMgrForPlot const & plot = *m_session->GetManager().GetISolutionMgrForPlot();
  std::vector<AString> categories;
  plot.GetRangedFunctionCategoryNames(categories, 1, rep::DisplayType{});
  EXPECT_NE(std::find(categories.begin(), categories.end(), AString(L"Rewrite")), categories.end());
  EXPECT_GT(categories.size(), 1u);
  EXPECT_EQ(plot.GetRangedFunctionDescription(L"swing"), L"from the lowest to the highest");
}

TEST_F(ReportSetupModule, TheViewTellsTheSolutionAndItsSweeps) {
  ISolutionManagerForReports const & reports = *m_session->GetManager().GetISolutionManagerForReports();
  std::vector<long> solutions;
  reports.GetAvailableSolutions(solutions, support::FakeExtractor::kOverFrequency);
  ISimDataExtractorForReports const * const view =
      reports.GetISimDataExtractorForReports(SolutionOf(*m_session).GetID());
  ASSERT_TRUE(view);
  EXPECT_NE(std::find(solutions.begin(), solutions.end(), SolutionOf(*m_session).GetID()), solutions.end());
  EXPECT_EQ(view->GetGlobalSolutionName(), L"Sweep : Points");
  EXPECT_TRUE(view->GetSweep(L"c", SimValueContext(), support::FakeExtractor::kOverFrequency));
  EXPECT_EQ(
      view->GetQuantityTypeForReports(L"W", SimValueContext(), support::FakeExtractor::kOverFrequency).parameterType,
      val::kComplex);
}
