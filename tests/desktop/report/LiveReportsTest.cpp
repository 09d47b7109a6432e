#include "basekit/text/Utf8.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/report/ReportCurves.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "tests/desktop/report/ReportFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <cmath>
#include <functional>

using desktop::ReportDefinition;

class LiveReports : public support::ReportTest {
protected:
  LiveReports() {
    Solve(*m_session, L"C=1; L=2", {10, 20, 30});
    Solve(*m_session, L"C=2; L=2", {11, 21, 31});
  }

  std::size_t DirtyOf(AString const & report) {
    for (auto const & state : Live().States())
      if (state.report == report)
        return state.dirty;
    return 99;
  }
  static ReportDefinition Named(AString const & name, ReportDefinition report) {
    report.name = name;
    return report;
  }
  /// The sets of all curves that there are.
  std::set<SolutionPointSet const *> Sets() {
    std::list<Trace *> traces;
    m_session->GetManager().GetAvailableTraces(traces);
    std::set<SolutionPointSet const *> sets;
    for (Trace const * const trace : traces)
      sets.insert(&trace->GetSolutionPointSet());
    return sets;
  }
  /// What the work does to files, in a session that has nothing of the solved data in memory.
  int OperationsOf(std::function<void()> const & work) {
    auto const files = ReopenCounted();
    int const before = files->Operations();
    work();
    return files->Operations() - before;
  }
  Rows RowsAt(AString const & expression, AString const & variation) {
    ReportDefinition question = Report({expression});
    question.name = AString();
    question.variation = variation;
    Rows const rows = RowsOf(Live().Evaluate(question).table);
    Live().Forget(question);
    return rows;
  }
  /// nan when there is none.
  double ValueAt(AString const & variable, AString const & variation) {
    Value result;
    bool const isThere = m_session->GetManager().GetOutputVariableValue(
        result, variable, SolutionOf(*m_session).GetGlobalSolutionName(), variation, L"", nullptr);
    return isThere ? result.GetSIValue() : std::nan("");
  }
};

/// A solution takes its extractor from its own product alone; this is the way in for a test.
class ExtractorDoor : public BaseSolution {
public:
  static void Enter(BaseSolution & solution, BaseSimDataExtractor * extractor) {
    (solution.*&ExtractorDoor::SetExtractor)(extractor);
  }
};

TEST_F(LiveReports, ShowTheSamplesOfThePresentVariation) {
  EXPECT_EQ(Show(Report({L"V", L"2*V+1"})), (Rows{{L"1", L"10", L"21"}, {L"2", L"20", L"41"}, {L"3", L"30", L"61"}}));
}

TEST_F(LiveReports, RunOverTheSolvedValuesOfAVariable) {
  EXPECT_EQ(Show(Report({L"V"}, {L"c"})), (Rows{{L"1", L"1", L"10"},
                                                {L"1", L"2", L"20"},
                                                {L"1", L"3", L"30"},
                                                {L"2", L"1", L"11"},
                                                {L"2", L"2", L"21"},
                                                {L"2", L"3", L"31"}}));
}

TEST_F(LiveReports, HaveOneRowForAVariationWhereNothingRunsOverSamples) {
  ReportDefinition report = Report({L"max(V)"});
  report.x = L"C";
  EXPECT_EQ(Show(report), (Rows{{L"1", L"30"}, {L"2", L"31"}}));
}

TEST_F(LiveReports, TellASingleNumberInAllRowsOfItsVariation) {
  EXPECT_EQ(Show(Report({L"V", L"max(V)"})), (Rows{{L"1", L"10", L"30"}, {L"2", L"20", L"30"}, {L"3", L"30", L"30"}}));
}

TEST_F(LiveReports, AMissingVariationIsOneRowAndMovesNoOther) {
  Solve(*m_session, L"C=3; L=4", {12, 22});
  Live().ResultsChanged();
  auto const shown = Live().Show(Report({L"V"}, {L"C", L"L"}));
  EXPECT_EQ(shown.table.GapCount(), 3u);
  EXPECT_EQ(RowsOf(shown.table), (Rows{{L"1", L"2", L"1", L"10"},
                                       {L"1", L"2", L"2", L"20"},
                                       {L"1", L"2", L"3", L"30"},
                                       {L"1", L"4", L"-", L"-"},
                                       {L"2", L"2", L"1", L"11"},
                                       {L"2", L"2", L"2", L"21"},
                                       {L"2", L"2", L"3", L"31"},
                                       {L"2", L"4", L"-", L"-"},
                                       {L"3", L"2", L"-", L"-"},
                                       {L"3", L"4", L"1", L"12"},
                                       {L"3", L"4", L"2", L"22"}}));
}

TEST_F(LiveReports, ComplexNumbersStayWhole) {
  auto const shown = Live().Show(Report({L"W", L"mag(W)"}));
  EXPECT_TRUE(shown.table.Columns()[1].isComplex);
  EXPECT_FALSE(shown.table.Columns()[2].isComplex);
  EXPECT_EQ(shown.table.At(0, 1), std::complex<double>(10, 20));
}

TEST_F(LiveReports, StandAtTheVariationAndSampleThatTheyName) {
  ReportDefinition report = Report({L"V"});
  report.variation = L"C=2";
  EXPECT_EQ(Show(report), (Rows{{L"1", L"11"}, {L"2", L"21"}, {L"3", L"31"}}));
  report.variation = L"C=2; Freq=2";
  EXPECT_EQ(Show(report), (Rows{{L"2", L"21"}}));
  report.variation = L"C=2; Freq=2.5";
  EXPECT_EQ(Live().Show(report).problems.size(), 1u);
}

TEST_F(LiveReports, ShownAgainReadNoFile) {
  ReportDefinition const report = Report({L"V"}, {L"C"});
  SolveLarge(L"C=3; L=2", {12, 22, 32});
  m_session->Save();
  auto const files = ReopenCounted();
  int const opening = files->Operations();
  auto const first = Show(report);
  int const showing = files->Operations();
  EXPECT_GT(showing, opening) << "reads of the library, which is open already, are seen";
  auto const again = Live().Show(report);
  EXPECT_EQ(files->Operations(), showing);
  EXPECT_EQ(again.updated, 0u);
  EXPECT_EQ(RowsOf(again.table), first);
}

TEST_F(LiveReports, AnEditDirtiesTheCurvesThatItReaches) {
  Editor().AddReport(Report({L"V", L"C*V"}));
  ReportDefinition over = Report({L"V"}, {L"C", L"L"});
  over.name = L"over";
  Editor().AddReport(over);
  Show(Report({L"V", L"C*V"}));
  Show(over);
  EXPECT_EQ(DirtyOf(L"curves"), 0u);
  EXPECT_EQ(DirtyOf(L"over"), 0u);
  Editor().SetVariables({{L"C", L"2"}});
  EXPECT_EQ(DirtyOf(L"curves"), 2u);
  EXPECT_EQ(DirtyOf(L"over"), 0u) << "it runs over all variables, wherever these stand";
  EXPECT_EQ(Show(Report({L"V", L"C*V"})), (Rows{{L"1", L"11", L"22"}, {L"2", L"21", L"42"}, {L"3", L"31", L"62"}}));
  Editor().Undo();
  EXPECT_EQ(DirtyOf(L"curves"), 2u);
  EXPECT_EQ(Show(Report({L"V", L"C*V"}))[0], (std::vector<AString>{L"1", L"10", L"10"}));
}

TEST_F(LiveReports, AnEditOfASetupMakesThemStaleUntilItIsUndone) {
  Editor().AddReport(Report({L"V"}));
  auto const before = Show(Report({L"V"}));
  Editor().EditSetup(L"Sweep", L"wide");
  EXPECT_EQ(DirtyOf(L"curves"), 1u);
  Editor().Undo();
  EXPECT_EQ(Show(Report({L"V"})), before);
}

TEST_F(LiveReports, AnEditOfAnOutputVariableDirtiesTheCurvesThatUseIt) {
  Editor().AddOutputVariable(L"Double", L"2*V");
  Editor().AddReport(Report({L"V", L"Double", L"1+Double"}));
  EXPECT_EQ(Show(Report({L"V", L"Double", L"1+Double"}))[0], (std::vector<AString>{L"1", L"10", L"20", L"21"}));
  Editor().EditOutputVariable(L"Double", L"3*V");
  EXPECT_EQ(DirtyOf(L"curves"), 2u);
  EXPECT_EQ(Show(Report({L"V", L"Double", L"1+Double"}))[0], (std::vector<AString>{L"1", L"10", L"30", L"31"}));
  Editor().Undo();
  EXPECT_EQ(Show(Report({L"V", L"Double", L"1+Double"}))[0], (std::vector<AString>{L"1", L"10", L"20", L"21"}));
}

TEST_F(LiveReports, ACurveThatMakesNoSenseIsToldAndTheOthersAreThere) {
  auto const shown = Live().Show(Report({L"V", L"Nothing+1"}));
  ASSERT_EQ(shown.problems.size(), 1u);
  EXPECT_NE(shown.problems.front().find(L"Nothing"), AString::npos);
  EXPECT_EQ(RowsOf(shown.table)[0], (std::vector<AString>{L"1", L"10", L"-"}));
}

TEST_F(LiveReports, WhatNamesNoSolutionOrVariableIsTold) {
  ReportDefinition report = Report({L"V"});
  report.setup = L"None";
  EXPECT_EQ(Live().Show(report).problems.size(), 1u);
  EXPECT_EQ(Live().Show(Report({L"V"}, {L"X"})).problems.size(), 1u);
}

TEST_F(LiveReports, ADeletedVariationIsAGapUntilItIsUndone) {
  ReportDefinition const report = Report({L"V"}, {L"C"});
  Editor().AddReport(report);
  Show(report);
  Editor().DeleteVariation(L"C=1; L=2", AString());
  EXPECT_EQ(DirtyOf(L"curves"), 1u);
  EXPECT_EQ(Show(report).back(), (std::vector<AString>{L"2", L"3", L"31"}));
  Editor().Undo();
  EXPECT_EQ(Show(report).size(), 6u);
}

TEST_F(LiveReports, AnExpressionIsOneNumberOrRunsOverSamples) {
  auto const rowsOf = [this](ReportDefinition const & question) {
    Rows const rows = RowsOf(Live().Evaluate(question).table);
    Live().Forget(question);
    return rows;
  };
  EXPECT_EQ(rowsOf(Report({L"max(V)"})), Rows{{L"30"}});
  EXPECT_EQ(rowsOf(Report({L"Total"})), Rows{{L"60"}});
  EXPECT_EQ(rowsOf(Report({L"V"})), (Rows{{L"1", L"10"}, {L"2", L"20"}, {L"3", L"30"}}));
  EXPECT_EQ(rowsOf(Report({L"Total"}, {L"C"})), (Rows{{L"1", L"60"}, {L"2", L"63"}}));
}

TEST_F(LiveReports, WhatWasAskedOnceIsNotKept) {
  ReportDefinition const question = Report({L"max(V)"});
  Live().Evaluate(question);
  Live().Forget(question);
  std::list<Trace *> traces;
  EXPECT_EQ(m_session->GetManager().GetAvailableTraces(traces), 0);
}

TEST_F(LiveReports, ASingleNumberIsOneRowWhateverWasShownBefore) {
  Rows const one{{L"60"}};
  auto const total = [this] {
    ReportDefinition question = Report({L"Total"});
    question.name = AString();
    Rows const rows = RowsOf(Live().Evaluate(question).table);
    Live().Forget(question);
    return rows;
  };
  Show(Report({L"V"}));
  EXPECT_EQ(total(), one);
  Show(Report({L"Total"}));
  EXPECT_EQ(total(), one);
  Show(Report({L"V", L"Total"}));
  EXPECT_EQ(total(), one);
  Show(Report({L"V*Total", L"Total"}, {L"C"}));
  EXPECT_EQ(total(), one);
  ReportDefinition overVariable = Report({L"Total"});
  overVariable.x = L"C";
  Show(overVariable);
  EXPECT_EQ(total(), one);
  EXPECT_EQ(RowsOf(Live().Evaluate(Report({L"Total"}, {L"C"})).table), (Rows{{L"1", L"60"}, {L"2", L"63"}}));
  Live().Forget(Report({L"Total"}, {L"C"}));
  Editor().AddReport(Report({L"Total", L"V"}));
  Show(Report({L"Total", L"V"}));
  m_session->Save();
  Reopen();
  Show(Report({L"Total", L"V"}));
  EXPECT_EQ(total(), one);
}

TEST_F(LiveReports, TellThatOneSampleIsNoCurveForAFunctionOfAWholeOne) {
  Editor().AddOutputVariable(L"most", L"max(V)");
  ReportDefinition report = Report({L"V", L"most", L"max(1,2)"});
  EXPECT_TRUE(Live().Show(report).notes.empty());
  report.variation = L"Freq=2";
  auto const shown = Live().Show(report);
  EXPECT_TRUE(shown.problems.empty());
  ASSERT_EQ(shown.notes.size(), 1u);
  EXPECT_NE(shown.notes.front().find(L"'most' takes a whole curve"), AString::npos);
  EXPECT_NE(shown.notes.front().find(L"YAtXVal(V,2)"), AString::npos);
}

TEST_F(LiveReports, TellUnitsOfWhatRangedFunctionsFindOnAnAxis) {
  Editor().AddOutputVariable(L"where", L"XAtYMax(V)");
  auto const shown = Live().Show(Report({L"XAtYMax(V)", L"where", L"max(dB(V))", L"max(V)", L"2*XAtYMax(V)"}));
  ASSERT_TRUE(shown.problems.empty());
  std::vector<Units::FullUnitType> units;
  for (auto const & column : shown.table.Columns())
    units.push_back(column.units);
  EXPECT_EQ(units, (std::vector<Units::FullUnitType>{Units::kHertz, Units::kHertz, Units::kHertz, Units::kDecibel,
                                                     Units::kNoUnits, Units::kNoUnits}));
}

TEST_F(LiveReports, TellWhetherTheWordsOrMissingDataAreTheProblem) {
  EXPECT_TRUE(Live().Show(Report({L"V", L"nobody"})).areWordsWrong);
  EXPECT_FALSE(Live().Show(Report({L"V"})).areWordsWrong);
  ReportDefinition elsewhere = Report({L"V"});
  elsewhere.variation = L"C=9";
  auto const shown = Live().Show(elsewhere);
  EXPECT_FALSE(shown.areWordsWrong);
}

TEST_F(LiveReports, ManyReportsOverTheSameVariationsReadEachOnce) {
  for (wchar_t const * const variation : {L"C=3; L=2", L"C=4; L=2", L"C=5; L=2"})
    SolveLarge(variation, {12, 22, 32});
  m_session->Save();
  ReportDefinition const over = Report({L"V"}, {L"C"});
  ReportDefinition along = Named(L"along", Report({L"max(V)"}));
  along.x = L"C";
  ReportDefinition fixed = Named(L"fixed", Report({L"V"}));
  fixed.variation = L"C=3";
  Rows rows;
  int const ofOne = OperationsOf([&] { rows = Show(over); });
  ASSERT_GE(ofOne, 3);
  int const ofAll = OperationsOf([&] { Live().Update({over, along, fixed}); });
  EXPECT_EQ(ofAll, ofOne);
  EXPECT_EQ(Sets().size(), 3u) << "they share no set, so each has to be brought up to date";
  for (ReportDefinition const & report : {over, along, fixed})
    EXPECT_EQ(Live().Show(report).updated, 0u);
  EXPECT_EQ(Show(over), rows);
  EXPECT_EQ(Show(along).back(), (std::vector<AString>{L"5", L"32"}));
  EXPECT_EQ(Show(fixed).back(), (std::vector<AString>{L"3", L"32"}));
  int const apart = OperationsOf([&] {
    for (ReportDefinition const & report : {over, along, fixed})
      Show(report);
  });
  EXPECT_GT(apart, ofAll) << "reads are seen";
}

TEST_F(LiveReports, OneThatMakesNoSenseKeepsNoOtherFromBeingUpdated) {
  ReportDefinition none = Named(L"none", Report({L"V"}));
  none.setup = L"None";
  ReportDefinition const odd = Named(L"odd", Report({L"Nothing+1"}));
  Live().Update({none, odd, Report({L"V"})});
  EXPECT_EQ(Live().Show(Report({L"V"})).updated, 0u);
  EXPECT_EQ(Live().Show(none).problems.size(), 1u);
  EXPECT_EQ(Live().Show(odd).problems.size(), 1u);
}

TEST_F(LiveReports, OfImportedDataAreUpdatedTogetherWithOthers) {
  Write("measured.data", "7 8 9\n");
  Editor().Import(LongFileName(PathOf("measured.data")), L"Measured");
  ReportDefinition imported = Named(L"imported", Report({L"V"}));
  imported.setup = L"Measured";
  Live().Update({imported, Report({L"V"})});
  EXPECT_EQ(Live().Show(Report({L"V"})).updated, 0u);
  EXPECT_EQ(Live().Show(imported).updated, 0u);
  EXPECT_EQ(Show(imported).size(), 3u);
  Live().ResultsChanged();
  m_session->GetManager().CentralizedUpdateSolutionPointSets(nullptr, nullptr);
  EXPECT_EQ(Live().Show(Report({L"V"})).updated, 0u) << "a set of imported data ends no update of all";
  EXPECT_EQ(Live().Show(imported).updated, 1u);
}

TEST_F(LiveReports, ANullListMeansAllReportsOfAProject) {
  ReportDefinition const here = Report({L"V"});
  ReportDefinition const over = Named(L"over", Report({L"V", L"W"}, {L"C"}));
  Editor().AddReport(here);
  Editor().AddReport(over);
  Show(here);
  Show(over);
  Live().ResultsChanged();
  ASSERT_EQ(DirtyOf(L"curves"), 1u);
  ASSERT_EQ(DirtyOf(L"over"), 2u);
  m_session->GetManager().CentralizedUpdateSolutionPointSets(nullptr, nullptr);
  EXPECT_EQ(DirtyOf(L"curves"), 0u);
  EXPECT_EQ(DirtyOf(L"over"), 0u);
}

TEST_F(LiveReports, TheFirstQuestionOfASessionReadsNothingButItsVariation) {
  Editor().AddOutputVariable(L"more", L"Total+1");
  SolveLarge(L"C=1; L=2", {10, 20, 30});
  SolveLarge(L"C=3; L=2", {12, 22, 32});
  m_session->Save();
  int const load = OperationsOf([this] {
    BaseSolution & solution = SolutionOf(*m_session);
    solution.GetVariationData(VariationIDIndex(L"C=3; L=2", solution.GetVersionID(), &m_session->GetManager()), false);
  });
  ASSERT_GT(load, 0);
  for (wchar_t const * const variation : {L"C=3", L"C=1"}) {
    EXPECT_EQ(OperationsOf([&] { EXPECT_GT(ValueAt(L"more", variation), 60.0); }), load)
        << text::ToUtf8(AString(variation));
    EXPECT_EQ(OperationsOf([&] { EXPECT_EQ(RowsAt(L"more", variation).size(), 1u); }), load)
        << text::ToUtf8(AString(variation));
  }
  EXPECT_EQ(OperationsOf([&] { RowsAt(L"more", AString()); }), load);
  EXPECT_GT(OperationsOf([&] { RowsAt(L"more", L"C=3"), RowsAt(L"more", L"C=3"); }), load) << "nothing stays in memory";
}

TEST_F(LiveReports, AQuestionLeavesNothingInMemory) {
  Editor().AddOutputVariable(L"more", L"Total+1");
  SolveLarge(L"C=3; L=2", {12, 22, 32});
  m_session->Save();
  Reopen();
  EXPECT_EQ(ValueAt(L"more", L"C=3"), 67.0);
  EXPECT_EQ(RowsAt(L"more", L"C=3"), Rows{{L"67"}});
  EXPECT_TRUE(std::isnan(ValueAt(L"more", L"C=9")));
  EXPECT_TRUE(std::isnan(ValueAt(L"none", L"C=3")));
  BaseSolution & solution = SolutionOf(*m_session);
  EXPECT_FALSE(solution.HasLoadedSolutionData(L"C=3; L=2", solution.GetVersionID()));
  EXPECT_FALSE(solution.HasLoadedSolutionData(L"C=1; L=2", solution.GetVersionID()));
}

TEST_F(LiveReports, AQuestionHasTheSamplesOfItsOwnVariation) {
  Solve(*m_session, L"C=3; L=2", {12, 22, 32, 42, 52});
  Editor().AddOutputVariable(L"twice", L"2*V");
  m_session->Save();
  Reopen();
  EXPECT_EQ(ValueAt(L"twice", L"C=3; F=5"), 104.0);
  EXPECT_EQ(RowsAt(L"twice", L"C=3; Freq=5"), (Rows{{L"104"}}));
  EXPECT_TRUE(std::isnan(ValueAt(L"twice", L"C=1; F=5")));
  EXPECT_EQ(RowsAt(L"V", L"C=3").size(), 5u);
  EXPECT_EQ(RowsAt(L"V", L"C=2").size(), 3u);
  Rows const here{{L"1", L"10"}, {L"2", L"20"}, {L"3", L"30"}};
  EXPECT_EQ(Show(Report({L"V"})), here) << "what was asked before counts no more";
  EXPECT_EQ(RowsAt(L"V", L"C=3").size(), 5u);
  EXPECT_EQ(Show(Report({L"V"})), here);
}

TEST_F(LiveReports, TakeASampleThatIsNamedToOnePartInABillion) {
  EXPECT_EQ(RowsAt(L"V", L"Freq=2.000000001"), (Rows{{L"20"}}));
  EXPECT_EQ(RowsAt(L"V", L"Freq=1.999999999"), (Rows{{L"20"}}));
  for (wchar_t const * const off : {L"Freq=2.000000004", L"Freq=1.999999996"}) {
    ReportDefinition question = Report({L"V"});
    question.variation = off;
    auto const shown = Live().Evaluate(question);
    ASSERT_EQ(shown.problems.size(), 1u);
    EXPECT_NE(shown.problems.front().find(L"there is no such sample"), AString::npos);
    Live().Forget(question);
  }
}

TEST_F(LiveReports, ASolutionWithoutDataForReportsIsTold) {
  ExtractorDoor::Enter(SolutionOf(*m_session, L"Fine"), nullptr);
  ReportDefinition report = Report({L"V"});
  report.setup = L"Fine";
  auto const shown = Live().Show(report);
  ASSERT_EQ(shown.problems.size(), 1u);
  EXPECT_EQ(shown.problems.front(), AString(L"report curves: the solution '") +
                                        SolutionOf(*m_session, L"Fine").GetGlobalSolutionName() +
                                        L"' has no data that reports could show; choose another one");
  EXPECT_TRUE(shown.areWordsWrong);
  EXPECT_EQ(desktop::FindProblems(*m_session, report), shown.problems);
  EXPECT_EQ(Show(Report({L"V"})).size(), 3u) << "others are shown as ever";
}

TEST_F(LiveReports, AnOutputVariableThatLeadsBackToItselfIsToldWithTheWay) {
  Editor().AddOutputVariable(L"first", L"V");
  Editor().AddOutputVariable(L"second", L"first+1");
  Editor().AddOutputVariable(L"good", L"V+V");
  m_session->GetManager().FindOutputVariable(L"first")->SetValueBaseText(L"2*SECOND", ValueState());
  auto const shown = Live().Show(Report({L"good", L"3*second"}));
  ASSERT_EQ(shown.problems.size(), 1u);
  EXPECT_EQ(shown.problems.front(), L"report curves: '3*second' can't be evaluated: 'second' refers to itself: "
                                    L"second -> first -> second; edit it with `var edit`");
  EXPECT_EQ(RowsOf(shown.table)[0], (std::vector<AString>{L"1", L"20", L"-"}));
}

TEST_F(LiveReports, ADeletedSweepDirtiesWhatRunsOverItAndAllThatSharesItsPointsUntilUndone) {
  ReportDefinition over = Report({L"V"}, {L"C"});
  over.setup = L"Sweep";
  ReportDefinition other = Report({L"V"}, {L"L"});
  other.setup = L"Sweep";
  other.name = L"other";
  Editor().AddReport(over);
  Editor().AddReport(other);
  Rows const before = Show(over);
  Rows const otherBefore = Show(other);
  std::vector<std::function<void()>> const deletions{[this] { Editor().RemoveVariable(L"C"); },
                                                     [this] { Editor().DeleteSetup(L"Sweep"); }};
  for (auto const & deletes : deletions) {
    ASSERT_EQ(DirtyOf(L"curves") + DirtyOf(L"other"), 0u);
    deletes();
    EXPECT_EQ(DirtyOf(L"curves"), 1u);
    EXPECT_EQ(DirtyOf(L"other"), 1u) << "its points are those of the same variable and setup";
    EXPECT_EQ(Live().Show(over).problems.size(), 1u);
    Editor().Undo();
    EXPECT_EQ(Show(over), before);
    EXPECT_EQ(Show(other), otherBefore);
  }
}
