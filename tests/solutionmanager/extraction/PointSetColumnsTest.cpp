#include "basekit/value/VariableValuesRestorer.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/trace/TextTraceComponent.h"
#include "tests/solutionmanager/extraction/UpdateFixture.h"

using support::AssertWatch;
using Numbers = std::vector<double>;
using Texts = std::vector<AString>;

namespace {

class PointSetColumnsTest : public support::UpdateTest {
protected:
  PointSetColumnsTest() {
    AddSweep(m_x, {1, 2, 3});
    for (wchar_t const * const variation : {L"x=1", L"x=2", L"x=3"})
      AddData(variation, {1e9, 2e9, 3e9});
  }
  Subsweep * Chosen(wchar_t const * name, std::vector<unsigned> const & places) {
    auto * const subsweep = new IndexedSubsweep(*m_extractor->GetSweep(name), false);
    subsweep->SetSelection(places);
    return subsweep;
  }
};

} // namespace

TEST_F(PointSetColumnsTest, ATraceOverVariationsHasOneSegmentForEachInTheOrderOfThePoints) {
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"im(S)+x");
  Update();
  EXPECT_EQ(X(trace), (Numbers{1e9, 2e9, 3e9, 1e9, 2e9, 3e9, 1e9, 2e9, 3e9}));
  EXPECT_EQ(Y(trace), (Numbers{2, 3, 4, 3, 4, 5, 4, 5, 6}));
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+3", L"x=2: 3+3", L"x=3: 6+3"}));
  EXPECT_FALSE(trace.IsDirty());
}

TEST_F(PointSetColumnsTest, SegmentsStandInTheOrderOfTheSetsPointsWhateverOrderTheDataComesIn) {
  m_extractor->GetSweep(L"x")->GetSweep()->Column().SetValues(Numbers{3, 1, 2});
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"re(S)");
  Update();
  EXPECT_EQ(m_extractor->log.front(), L"load x=1") << "by the order of the values";
  EXPECT_EQ(Segments(trace), (Texts{L"x=3: 0+3", L"x=1: 3+3", L"x=2: 6+3"}));
  EXPECT_EQ(Y(trace), (Numbers{3, 3, 3, 1, 1, 1, 2, 2, 2}));
}

TEST_F(PointSetColumnsTest, AMissingVariationIsAGap) {
  m_extractor->data.erase(At(L"x=2"));
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"re(S)");
  Update();
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+3", L"x=2: 3+1 missing", L"x=3: 4+3"}));
  EXPECT_TRUE(std::isnan(Y(trace)[3]) && std::isnan(X(trace)[3]));
  EXPECT_EQ(Y(trace)[4], 3.0);
}

TEST_F(PointSetColumnsTest, OtherSampleCountsShiftNothing) {
  AddData(L"x=1", {1e9});
  AddData(L"x=2", {1e9, 1.5e9, 2e9, 2.5e9});
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"im(S)");
  Update();
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+1", L"x=2: 1+4", L"x=3: 5+3"}));
  EXPECT_EQ(X(trace), (Numbers{1e9, 1e9, 1.5e9, 2e9, 2.5e9, 1e9, 2e9, 3e9}));
  EXPECT_EQ(Y(trace), (Numbers{1, 1, 1.5, 2, 2.5, 1, 2, 3}));
}

TEST_F(PointSetColumnsTest, AVariationWithoutSamplesAndOneWithoutTheQuantityAreMissing) {
  AddData(L"x=1", {});
  m_extractor->data[At(L"x=2")].s.clear();
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"re(S)");
  Update();
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+1 missing", L"x=2: 1+3", L"x=3: 4+3"}));
  EXPECT_EQ(X(trace)[2], 2e9);
  EXPECT_TRUE(std::isnan(Y(trace)[2]));
}

TEST_F(PointSetColumnsTest, ChosenSamplesComeInTheOrderOfTheChoiceAndOneThatIsNotThereIsMissing) {
  AddData(L"x=2", {1e9, 3e9});
  SubsweepVector subsweeps = AllOf({L"x"});
  subsweeps.push_back(Chosen(L"F", {1, 0}));
  Trace & trace = AddTrace(AddSet(subsweeps), L"F", L"im(S)");
  Update();
  EXPECT_EQ(X(trace), (Numbers{2e9, 1e9, 2e9, 1e9, 2e9, 1e9})) << "a chosen number stands where it has no data";
  EXPECT_EQ(Y(trace)[1], 1.0);
  EXPECT_TRUE(std::isnan(Y(trace)[2]));
  EXPECT_EQ(Y(trace)[3], 1.0);
}

TEST_F(PointSetColumnsTest, AChosenNumberMeetsOneThatTheSolverRounded) {
  AddData(L"x=1", {1e9 + 1e-3, 2e9 - 1e-3, 2.1e9});
  SubsweepVector subsweeps;
  subsweeps.push_back(Chosen(L"x", {0}));
  subsweeps.push_back(Chosen(L"F", {1}));
  Trace & trace = AddTrace(AddSet(subsweeps), L"F", L"im(S)");
  Update();
  EXPECT_EQ(X(trace), (Numbers{2e9 - 1e-3}));
}

TEST_F(PointSetColumnsTest, ARangePicksTheSolvedSamplesBetweenItsEnds) {
  auto * const range = new PostprocessSweep(Value::GetIntrinsicVariable(L"F"), Units::kNoUnits);
  range->SetMinMaxIncr(1.2e9, 3e9, 0.9e9);
  m_extractor->AddSweep(range);
  SubsweepVector subsweeps = AllOf({L"x"});
  subsweeps.push_back(range->CreateSubsweep(true));
  Trace & trace = AddTrace(AddSet(subsweeps), L"F", L"im(S)");
  Update();
  EXPECT_EQ(X(trace), (Numbers{2e9, 3e9, 2e9, 3e9, 2e9, 3e9}));
}

TEST_F(PointSetColumnsTest, AVariableThatNeedsNoSolveRunsOverItsValuesWithinEachVariation) {
  auto * const free = new PostprocessSweep(&m_y, Units::kNoUnits);
  free->SetMinMaxIncr(1, 2, 1);
  m_extractor->AddSweep(free);
  SubsweepVector subsweeps = AllOf({L"x", L"F"});
  subsweeps.push_back(free->CreateSubsweep(true));
  Trace & trace = AddTrace(AddSet(subsweeps), L"F", L"im(S)*y");
  Update();
  EXPECT_EQ(m_extractor->loads, 3);
  EXPECT_EQ(Segments(trace).front(), L"x=1: 0+6");
  EXPECT_EQ(Y(trace)[2], 3.0);
  EXPECT_EQ(Y(trace)[5], 6.0);
}

TEST_F(PointSetColumnsTest, AFunctionOfTheWholeTraceGivesOneValueForEachVariation) {
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"x", L"max(Q)");
  Update();
  EXPECT_EQ(X(trace), (Numbers{1, 2, 3}));
  EXPECT_EQ(Y(trace), (Numbers{103, 203, 303}));
}

TEST_F(PointSetColumnsTest, AComplexTraceKeepsBothParts) {
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", L"S");
  Update();
  ASSERT_EQ(trace.GetOrdinate()->GetValues().GetComplexes().size(), 9u);
  EXPECT_EQ(trace.GetOrdinate()->GetValues().GetComplexes()[5], std::complex<double>(2, 3));
}

TEST_F(PointSetColumnsTest, TheInstanceGivesTheVariablesThatAreNotSwept) {
  m_extractor->data.clear();
  for (wchar_t const * const variation : {L"x=1; y=5", L"x=2; y=5", L"x=3; y=5"})
    AddData(variation, {1e9});
  m_instance.SetVariation(L"x=9; y=5");
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"}), &m_instance), L"F", L"x*y");
  Update();
  EXPECT_EQ(Y(trace), (Numbers{5, 10, 15}));
  EXPECT_EQ(m_y.GetValue().GetSIValue(), 2.0) << "variables come back";
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 1.0);
}

TEST_F(PointSetColumnsTest, AVariableDefinedByAnotherIsSweptAsANumber) {
  m_x.SetValue(Value::Text(L"y/2"));
  Trace & trace = AddTrace(AddSet(AllOf({L"x", L"F"})), L"x", L"re(S)*x");
  Update();
  EXPECT_EQ(Y(trace), (Numbers{1, 1, 1, 4, 4, 4, 9, 9, 9}));
  EXPECT_EQ(m_x.GetValueText(), L"y/2");
}

TEST_F(PointSetColumnsTest, ASinglePointSetIsUpdatedByTheSameCode) {
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)+x");
  m_extractor->data.erase(At(L"x=2"));
  EXPECT_TRUE(set.UpdateData());
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+3", L"x=2: 3+1 missing", L"x=3: 4+3"}));
  EXPECT_EQ(m_extractor->finishes, 3);
  EXPECT_EQ(m_extractor->askedReportTypes, (std::vector<unsigned>{4}));
  EXPECT_EQ(m_extractor->askedQuantities, (std::map<unsigned, Texts>{{4, {L"S"}}}));
}

TEST_F(PointSetColumnsTest, ARefusedUpdateChangesNothing) {
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)");
  EXPECT_TRUE(set.UpdateData());
  Numbers const before = Y(trace);
  AddData(L"x=1", {5e9});
  m_extractor->refusesUpdates = true;
  EXPECT_FALSE(set.UpdateData());
  EXPECT_EQ(Y(trace), before);
}

TEST_F(PointSetColumnsTest, TooManyPointsAreRefused) {
  Numbers const many(4000);
  AddSweep(m_y, many);
  m_extractor->GetSweep(L"x")->GetSweep()->Column().SetValues(many);
  SolutionPointSet & set = AddSet(AllOf({L"x", L"y"}));
  AddTrace(set, L"x", L"y");
  AssertWatch::Expect("isCountInRange");
  EXPECT_FALSE(set.UpdateData());
  Update();
  EXPECT_EQ(m_extractor->loads, 0);
}

TEST_F(PointSetColumnsTest, TooManyValuesWithinAVariationAreRefused) {
  auto * const free = new PostprocessSweep(&m_y, Units::kNoUnits);
  free->SetMinMaxIncr(0, 9e6, 1);
  m_extractor->AddSweep(free);
  SubsweepVector subsweeps = AllOf({L"x", L"F"});
  subsweeps.push_back(free->CreateSubsweep(true));
  Trace & trace = AddTrace(AddSet(subsweeps), L"F", L"y");
  AssertWatch::Expect("isFreeCountInRange");
  Update();
  EXPECT_EQ(trace.GetValueCount(), 3u);
  EXPECT_TRUE(trace.GetSegments().Get().front().isMissing);
}

TEST_F(PointSetColumnsTest, ATextBesideNumbersHasAPlaceForEach) {
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  TextTraceComponent text(L"note");
  std::unique_ptr<TraceComponent> const y(m_extractor->CreateTraceComponent(L"im(S)", nullptr));
  Trace & trace = *m_extractor->CreateTrace2D(&set, &text, y.get(), false);
  Update();
  EXPECT_EQ(trace.GetValueCount(), 9u);
  EXPECT_EQ(trace.GetAbscissa()->GetEntryText(8), L"note");
}

TEST_F(PointSetColumnsTest, WhatWasReadIsKeptAndServesWhenNothingIsLoaded) {
  for (wchar_t const * const variation : {L"x=1", L"x=2", L"x=3"})
    Solve(*m_solution, variation, {1.0});
  AddData(L"x=2", {1e9, 2e9});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & first = AddTrace(set, L"F", L"im(S)");
  Update();
  int const loads = m_extractor->loads;
  m_extractor->data.clear();
  Trace & second = AddTrace(set, L"F", L"re(S)");
  Update();
  EXPECT_EQ(m_extractor->loads, loads);
  EXPECT_EQ(Segments(second), Segments(first));
  EXPECT_EQ(Y(second), (Numbers{1, 1, 1, 2, 2, 3, 3, 3}));
  EXPECT_EQ(X(second), X(first));
  AString const text = L"S";
  set.GetSimValueCache().Invalidate(static_cast<int>(set.GetSolutionVersionID()), &text);
  second.MarkItDirty(true);
  Update();
  EXPECT_GT(m_extractor->loads, loads) << "what was given up is loaded again";
}

TEST_F(PointSetColumnsTest, WhatWasKeptOfADeletedVariationIsNotShown) {
  for (wchar_t const * const variation : {L"x=1", L"x=2"})
    Solve(*m_solution, variation, {1.0});
  m_extractor->data.erase(At(L"x=2"));
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  AddTrace(set, L"F", L"im(S)");
  Update();
  m_extractor->data.clear();
  Trace & trace = AddTrace(set, L"F", L"re(S)");
  Update();
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+3", L"x=2: 3+1 missing", L"x=3: 4+1 missing"}))
      << "x=3 was read, but the solution does not have it";
}

TEST_F(PointSetColumnsTest, DataOfAnOlderVersionIsShownButNotKeptWhileTheSolutionsOwnHasNone) {
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)");
  Update();
  EXPECT_EQ(trace.GetValueCount(), 9u);
  EXPECT_TRUE(set.GetSimValueCache().empty());
}
