#include "plotkit/SolutionLoadDefinition.h"
#include "solutionmanager/extraction/SingleISolutionUpdateInfo.h"
#include "solutionmanager/extraction/SolutionPointSetUpdateHelper.h"
#include "tests/solutionmanager/extraction/UpdateFixture.h"

using support::AssertWatch;
using Numbers = std::vector<double>;
using Texts = std::vector<AString>;

namespace {

/// A set that registers what it is told to, and writes down what it is asked.
class PlainPointSet : public ISolutionPointSet {
public:
  PlainPointSet(long solutionID, Texts & diary, wchar_t const * name)
      : m_solutionID(solutionID), m_diary(diary), m_name(name) {}

  void RegisterForUpdate(ISolutionPointSetUpdateRegistry * registry, IProgressMonitor *) override {
    for (auto const & [first, second] : wanted)
      registry->RegisterPointSet(this, first, second, reportTypes);
  }
  bool UpdateFromLoadedData(VariableValues const & first, VariableValues const &, IProgressMonitor *) override {
    m_diary.push_back(m_name + L" " + first.GetVariationKey());
    if (variableToSpoil)
      variableToSpoil->SetValueText(L"88");
    return succeeds;
  }
  long GetSolutionID() const override { return m_solutionID; }
  void GetLoadQuantities(std::map<unsigned, Texts> & quantities) override { quantities[4].push_back(L"S"); }

  std::vector<std::pair<VariableValues, VariableValues>> wanted;
  std::vector<unsigned> reportTypes{4};
  bool succeeds = true;
  Variable * variableToSpoil = nullptr;

private:
  long m_solutionID;
  Texts & m_diary;
  AString m_name;
};

class CentralizedUpdateTest : public support::UpdateTest {
protected:
  CentralizedUpdateTest() {
    for (wchar_t const * const variation : {L"x=1", L"x=2"})
      AddData(variation, {1e9, 2e9, 3e9});
  }
  PlainPointSet & AddPlain(wchar_t const * name, Texts const & variations, long solutionID = id::invalidID) {
    m_plain.push_back(
        std::make_unique<PlainPointSet>(solutionID == id::invalidID ? m_solution->GetID() : solutionID, m_diary, name));
    for (AString const & variation : variations)
      m_plain.back()->wanted.emplace_back(At(variation.c_str()), VariableValues());
    m_chosen.push_back(m_plain.back().get());
    return *m_plain.back();
  }
  bool Run(IProgressMonitor * progress = nullptr) {
    return SolutionPointSetUpdateHelper(m_manager.get()).Run(progress, &m_chosen);
  }

  Texts m_diary;
  std::vector<std::unique_ptr<PlainPointSet>> m_plain;
  std::vector<ISolutionPointSet *> m_chosen;
};

} // namespace

TEST_F(CentralizedUpdateTest, EachVariationIsLoadedReadByAllSetsAndGivenUpBeforeTheNext) {
  AddPlain(L"a", {L"x=2", L"x=1"});
  AddPlain(L"b", {L"x=1", L"x=2"});
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_extractor->log, (Texts{L"load x=1", L"load x=1", L"finish", L"load x=2", L"load x=2", L"finish"}));
  EXPECT_EQ(m_extractor->reads, 2);
  EXPECT_EQ(m_diary.size(), 4u);
  EXPECT_EQ(m_diary[0].substr(1), L" x=1");
  EXPECT_EQ(m_diary[1].substr(1), L" x=1");
  EXPECT_EQ(m_extractor->askedQuantities, (std::map<unsigned, Texts>{{4, {L"S"}}}));
}

TEST_F(CentralizedUpdateTest, ANullVectorMeansAllSetsThatTheManagerListsAndAnEmptyOneNone) {
  AddPlain(L"a", {L"x=1"});
  m_updates->listed = m_chosen;
  std::vector<ISolutionPointSet *> const none;
  Manager().CentralizedUpdateSolutionPointSets(nullptr, &none);
  EXPECT_TRUE(m_diary.empty());
  Manager().CentralizedUpdateSolutionPointSets(nullptr, nullptr);
  EXPECT_EQ(m_diary, (Texts{L"a x=1"}));
}

TEST_F(CentralizedUpdateTest, NoSetsAndSetsThatWantNothingSucceedAtOnce) {
  EXPECT_TRUE(Run());
  AddPlain(L"a", {});
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_extractor->finishes, 0);
}

TEST_F(CentralizedUpdateTest, ASetRegisteredTwiceUnderTheSameKeysStaysOneRecordWithItsFirstReportTypes) {
  SingleISolutionUpdateInfo info;
  PlainPointSet & set = AddPlain(L"a", {});
  info.RegisterPointSet(&set, At(L"x=1"), VariableValues(), {1, 2});
  info.RegisterPointSet(&set, At(L"X=1.000000000000000001"), VariableValues(), {3});
  EXPECT_EQ(info.GetCount(), 1u);
  auto const & pointSets = info.GetFirstGroup().begin()->second.begin()->second;
  EXPECT_EQ(pointSets.begin()->second.m_reportTypes, (std::vector<unsigned>{1, 2}));
  EXPECT_EQ(pointSets.begin()->second.m_pointSet, &set);
  info.RegisterPointSet(&set, At(L"x=1"), At(L"y=1"), {3});
  EXPECT_EQ(info.GetCount(), 2u) << "the second group tells them apart";
}

TEST_F(CentralizedUpdateTest, DataLivesForOneKeyOfTheSecondGroupAtATime) {
  PlainPointSet & set = AddPlain(L"a", {L"x=1"});
  set.wanted = {{At(L"x=2"), VariableValues()}, {At(L"x=1"), At(L"y=8")}, {At(L"x=1"), At(L"y=7")}};
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_extractor->log,
            (Texts{L"load x=1 / y=7", L"finish", L"load x=1 / y=8", L"finish", L"load x=2", L"finish"}));
  EXPECT_EQ(m_diary, (Texts{L"a x=1", L"a x=1", L"a x=2"}));
}

TEST_F(CentralizedUpdateTest, AFailedLoadCountsAsSuccessAndIsNotRead) {
  AddPlain(L"a", {L"x=1", L"x=3"});
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_extractor->log, (Texts{L"load x=1", L"finish", L"load x=3", L"finish"}));
  EXPECT_EQ(m_diary, (Texts{L"a x=1"}));
}

TEST_F(CentralizedUpdateTest, SolutionsComeInTheOrderOfTheirIdentifiersUntilOneIsGone) {
  auto & second = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Other", L"Sweep")));
  auto * const extractor = new support::ColumnExtractor(m_manager.get(), &second);
  second.SetExtractor(extractor);
  extractor->data = m_extractor->data;
  ASSERT_LT(m_solution->GetID(), second.GetID());
  AddPlain(L"b", {L"x=1"}, second.GetID());
  AddPlain(L"a", {L"x=2"});
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_diary, (Texts{L"a x=2", L"b x=1"}));
  AddPlain(L"c", {L"x=1"}, m_solution->GetID() + 1);
  ASSERT_FALSE(Manager().GetISolutionByID(m_solution->GetID() + 1, false, false));
  ASSERT_LT(m_solution->GetID() + 1, second.GetID());
  EXPECT_FALSE(Run());
  EXPECT_EQ(m_diary, (Texts{L"a x=2", L"b x=1", L"a x=2"})) << "what comes after the one that is gone is not reached";
  EXPECT_EQ(extractor->finishes, 1);
}

TEST_F(CentralizedUpdateTest, ASolutionWithoutAnExtractorStopsTheUpdate) {
  m_solution->SetExtractor(nullptr);
  m_extractor = nullptr;
  AddPlain(L"a", {L"x=1"});
  EXPECT_FALSE(Run());
  EXPECT_TRUE(m_diary.empty());
}

TEST_F(CentralizedUpdateTest, ANullInTheListIsPassedOver) {
  m_chosen.push_back(nullptr);
  AddPlain(L"a", {L"x=1"});
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_diary, (Texts{L"a x=1"}));
}

TEST_F(CentralizedUpdateTest, CancellationBetweenTwoSetsStopsAfterTheFirstAndFinishesLoadingOnce) {
  AddPlain(L"a", {L"x=1"});
  AddPlain(L"b", {L"x=1"});
  support::CountingMonitor monitor;
  monitor.cancelAfter = 1;
  EXPECT_FALSE(Run(&monitor));
  EXPECT_EQ(m_diary.size(), 1u);
  EXPECT_EQ(m_extractor->finishes, 1);
  EXPECT_EQ(monitor.ended, static_cast<int>(monitor.quotas.size())) << "every share is closed";
}

TEST_F(CentralizedUpdateTest, ASetThatFailsStopsTheUpdateAndFinishesLoadingOnce) {
  AddPlain(L"a", {L"x=1"}).succeeds = false;
  AddPlain(L"b", {L"x=2"});
  EXPECT_FALSE(Run());
  EXPECT_EQ(m_diary, (Texts{L"a x=1"}));
  EXPECT_EQ(m_extractor->finishes, 1);
}

TEST_F(CentralizedUpdateTest, ASolutionThatIsGoneStopsTheUpdateWithoutAWord) {
  AddPlain(L"a", {L"x=1"}, m_solution->GetID() - 1);
  AddPlain(L"b", {L"x=1"});
  EXPECT_FALSE(Run());
  EXPECT_TRUE(m_diary.empty());
}

TEST_F(CentralizedUpdateTest, SharesOfProgressAreAsLongAsTheWork) {
  AddPlain(L"a", {L"x=1", L"x=2"});
  AddPlain(L"b", {});
  support::CountingMonitor monitor;
  EXPECT_TRUE(Run(&monitor));
  EXPECT_EQ(monitor.quotas, (Numbers{25, 50, 50, 75, 50, 70, 30, 50, 70, 30}));
}

TEST_F(CentralizedUpdateTest, VariablesHoldTheSameValuesAfterwardsOnCancellationAndFailureToo) {
  PlainPointSet & set = AddPlain(L"a", {L"x=1", L"x=2"});
  set.variableToSpoil = &m_x;
  m_extractor->variableToSpoil = &m_y;
  support::CountingMonitor monitor;
  monitor.cancelAfter = 1;
  for (int pass = 0; pass < 3; ++pass) {
    Manager().CentralizedUpdateSolutionPointSets(pass == 1 ? &monitor : nullptr, &m_chosen);
    EXPECT_EQ(m_x.GetValueText(), L"1") << pass;
    EXPECT_EQ(m_y.GetValueText(), L"2") << pass;
    set.succeeds = false;
  }
}

TEST_F(CentralizedUpdateTest, ASetWithoutReportTypesIsReportedAndUpdated) {
  AddPlain(L"a", {L"x=1"}).reportTypes.clear();
  AssertWatch::Expect("ptSetInfo->m_reportTypes.empty() == false");
  EXPECT_TRUE(Run());
  EXPECT_EQ(m_diary.size(), 1u);
}

TEST_F(CentralizedUpdateTest, ADesignOfTheSecondKindIsNotUpdatedThisWay) {
  AddPlain(L"a", {L"x=1"});
  m_design.isV2 = true;
  AssertWatch::Expect("!\"Should just not be calling this. Done differently in V2\"");
  Manager().CentralizedUpdateSolutionPointSets(nullptr, &m_chosen);
  EXPECT_TRUE(m_diary.empty());
}

TEST_F(CentralizedUpdateTest, AHelperWithoutAManagerIsReported) {
  AssertWatch::Expect("m_solnMgr");
  EXPECT_FALSE(SolutionPointSetUpdateHelper(nullptr).Run(nullptr, &m_chosen));
}

TEST_F(CentralizedUpdateTest, ManySetsOverTheSameVariationsReadEachOnce) {
  AddSweep(m_x, {1, 2});
  std::vector<Trace *> traces;
  for (int report = 0; report < 5; ++report)
    traces.push_back(&AddTrace(AddSet(AllOf({L"x", L"F"})), L"F", report % 2 ? L"re(S)" : L"im(S)"));
  Update();
  EXPECT_EQ(m_extractor->reads, 2);
  for (Trace const * const trace : traces)
    EXPECT_EQ(trace->GetValueCount(), 6u);
}

TEST_F(CentralizedUpdateTest, WhatIsCleanAndHasItsValuesIsNotUpdatedAgain) {
  AddSolved(L"x=1", {1e9, 2e9});
  AddSolved(L"x=2", {1e9});
  AddSweep(m_x, {1, 2});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)");
  Update();
  EXPECT_FALSE(set.IsDirty());
  EXPECT_EQ(set.GetSolutionVersionID(), m_solution->GetVersionID());
  int const loads = m_extractor->loads;
  Numbers const values = Y(trace);
  Update();
  EXPECT_EQ(m_extractor->loads, loads);
  EXPECT_EQ(Y(trace), values);
}

TEST_F(CentralizedUpdateTest, ACancelledSetKeepsItsFormerValues) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)");
  Update();
  Numbers const before = Y(trace);
  auto const segments = Segments(trace);
  AddData(L"x=1", {7e9});
  trace.MarkItDirty(true);
  support::CountingMonitor monitor;
  monitor.cancelAfter = 1;
  Update(&monitor);
  EXPECT_EQ(Y(trace), before);
  EXPECT_EQ(Segments(trace), segments);
  EXPECT_TRUE(trace.IsDirty());
  Update();
  EXPECT_EQ(Y(trace).front(), 7.0);
}

TEST_F(CentralizedUpdateTest, ASetOutsideTheListStaysAsItWas) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & chosen = AddSet(AllOf({L"x", L"F"}));
  AddTrace(chosen, L"F", L"im(S)");
  SolutionPointSet & other = AddSet(AllOf({L"x", L"F"}));
  AddTrace(other, L"F", L"re(S)");
  Update();
  chosen.MarkItDirty(true);
  other.MarkItDirty(true);
  m_chosen = {&chosen};
  EXPECT_TRUE(Run());
  EXPECT_FALSE(chosen.IsDirty());
  EXPECT_TRUE(other.IsDirty());
}

TEST_F(CentralizedUpdateTest, OfACancelledUpdateTheSetsThatWereReachedAreCleanAndTheOthersStayDirty) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & reached = AddSet(AllOf({L"F"}), &m_instance);
  AddTrace(reached, L"F", L"im(S)");
  AddData(L"x=1; y=2", {1e9});
  SolutionPointSet & other = AddSet(AllOf({L"x", L"F"}));
  AddTrace(other, L"F", L"im(S)");
  Update();
  for (SolutionPointSet * const set : {&reached, &other}) {
    set->MarkItDirty(true);
    set->GetSimValueCache().Clear();
  }
  support::CountingMonitor monitor;
  monitor.cancelAfter = 2; // x=1, and x=1 with y=2, which come in this order
  Update(&monitor);
  EXPECT_FALSE(reached.IsDirty());
  EXPECT_TRUE(other.IsDirty());
}

TEST_F(CentralizedUpdateTest, ASetOfAnOlderVersionIsUpdatedWithAllItsTracesThoughNobodyMarkedIt) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace const & trace = AddTrace(set, L"F", L"im(S)");
  Trace & marked = AddTrace(set, L"F", L"im(S)");
  Update();
  AddData(L"x=1", {7e9});
  set.SetSolutionVersionID(m_solution->GetVersionID() - 1);
  ASSERT_FALSE(set.IsDirty());
  marked.MarkItDirty(true);
  support::CountingMonitor monitor;
  monitor.cancelAfter = 1;
  Update(&monitor);
  EXPECT_EQ(set.GetSolutionVersionID(), m_solution->GetVersionID() - 1) << "a cancelled update leaves the version";
  Update();
  EXPECT_EQ(Y(trace).front(), 7.0);
  EXPECT_EQ(Y(marked).front(), 7.0);
  EXPECT_EQ(set.GetSolutionVersionID(), m_solution->GetVersionID());
}

TEST_F(CentralizedUpdateTest, ADirtyTraceIsUpdatedWhileItsCleanFellowsStay) {
  AddSweep(m_x, {1, 2});
  for (wchar_t const * const variation : {L"x=1", L"x=2"})
    Solve(*m_solution, variation, {1.0});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & dirty = AddTrace(set, L"F", L"im(S)");
  Trace & clean = AddTrace(set, L"F", L"im(S)");
  Update();
  set.GetSimValueCache().Clear();
  AddData(L"x=1", {7e9});
  dirty.MarkItDirty(true);
  Update();
  EXPECT_EQ(Y(dirty).front(), 7.0);
  EXPECT_EQ(Y(clean).front(), 1.0);
}

TEST_F(CentralizedUpdateTest, ATraceRemovedDuringAnUpdateIsLeftAlone) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  Trace & trace = AddTrace(set, L"F", L"im(S)");
  SingleISolutionUpdateInfo info;
  set.RegisterForUpdate(&info, nullptr);
  EXPECT_EQ(info.GetCount(), 2u);
  set.RemoveTrace(&trace);
  EXPECT_FALSE(set.UpdateFromLoadedData(At(L"x=1"), VariableValues(), nullptr)) << "nothing is under way";
  set.FinishUpdate(true);
}

TEST_F(CentralizedUpdateTest, DataForPointsThatASetDoesNotHaveIsRefused) {
  AddSweep(m_x, {1, 2});
  SolutionPointSet & set = AddSet(AllOf({L"x", L"F"}));
  AddTrace(set, L"F", L"im(S)");
  SingleISolutionUpdateInfo info;
  set.RegisterForUpdate(&info, nullptr);
  EXPECT_FALSE(set.UpdateFromLoadedData(At(L"x=5"), VariableValues(), nullptr));
}
