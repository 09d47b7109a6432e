#include "tests/desktop/report/ReportFixture.h"
#include "tests/support/FaultyFileSystem.h"

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
