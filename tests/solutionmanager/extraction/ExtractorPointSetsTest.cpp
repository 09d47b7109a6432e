#include "basekit/command/PropertyCommandInfo.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "tests/solutionmanager/extraction/ReportExtractor.h"

using support::AssertWatch;
using support::RecordingTrace;

namespace {

class ExtractorPointSetsTest : public support::ReportTest {
protected:
  ExtractorPointSetsTest() {
    AddSweep(m_x, {1, 2, 3});
    AddSweep(m_y, {10, 20});
    Solve(m_solution, L"x=1; y=2", {1});
  }
  SolutionPointSet * SetOfX(bool share = true) { return CreateSet(SubsweepsOf({L"x"}), share); }
  SolutionPointSet * SetOnInstance(std::vector<AString> const & swept) {
    SolutionPointSet * const set = CreateSet(SubsweepsOf(swept), true, &m_instance);
    m_extractor->ValidateSolutionPointSet();
    return set;
  }
  bool IsOnX(Subsweep * subsweep, AString const & variation) {
    SubsweepVector subsweeps;
    subsweeps.push_back(subsweep);
    SolutionPointSet const set(*m_extractor, subsweeps, nullptr, nullptr, 1);
    return m_extractor->SolutionPointSetIsUsingInstance(&set, variation);
  }
  Subsweep * SelectX(unsigned place) {
    Subsweep * const subsweep = m_extractor->GetSweep(L"x")->CreateSubsweep(false);
    subsweep->SetSelection(place);
    return subsweep;
  }
  bool DependsOn(SolutionPointSet const & set, AString const & name, unsigned flags) {
    PropertyCommandInfo info;
    info.AddProperty(name, flags);
    return set.IsDependentOnCurrentDesign(&info);
  }
};

} // namespace

TEST_F(ExtractorPointSetsTest, ANewSetKnowsItsPointsVersionIDAndName) {
  SimValueContext const context(1, static_cast<rep::CalculationType>(2), 3, 4, 5, 6, 7, 8);
  SolutionPointSet * const set =
      m_extractor->CreateSolutionPointSet(SubsweepsOf({L"x", L"y"}), &context, &m_instance, true);
  EXPECT_EQ(set->GetID(), 1);
  EXPECT_EQ(set->GetName(), L"Sweep:SolutionPointSet 1");
  EXPECT_EQ(set->GetSolutionVersionID(), m_solution.GetVersionID());
  EXPECT_EQ(set->GetSolutionID(), m_solution.GetID());
  EXPECT_TRUE(set->GetIsShared());
  EXPECT_FALSE(set->IsDirty());
  EXPECT_TRUE(set->GetSimValueContext() == context);
  EXPECT_EQ(set->GetIDesignInstance(), &m_instance);
  EXPECT_EQ(set->GetDesignVariation(), L"x=1; y=2");
  EXPECT_EQ(set->GetSubsweeps().size(), 2u);
  EXPECT_EQ(set->GetISimDataExtractor(), m_extractor.get());
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
}

TEST_F(ExtractorPointSetsTest, EqualArgumentsShareOneSet) {
  SolutionPointSet * const set = SetOfX();
  EXPECT_EQ(SetOfX(), set);
  EXPECT_NE(SetOfX(false), set);
  EXPECT_NE(CreateSet(SubsweepsOf({L"y"})), set);
  EXPECT_NE(CreateSet(SubsweepsOf({L"x"}), true, &m_instance), set);
  SimValueContext const context(1, static_cast<rep::CalculationType>(2), 3, 4, 5, 6, 7, 8);
  EXPECT_NE(m_extractor->CreateSolutionPointSet(SubsweepsOf({L"x"}), &context, nullptr, true), set);
  EXPECT_EQ(SetOfX(), set);
}

TEST_F(ExtractorPointSetsTest, ASharedSetOfAnotherVersionIsNotTakenAndADirtyOneStaysDirty) {
  SolutionPointSet * const set = SetOfX();
  set->MarkItDirty(true);
  EXPECT_EQ(SetOfX(), set);
  EXPECT_TRUE(set->IsDirty()) << "nothing is done to it";
  set->SetSolutionVersionID(99);
  EXPECT_NE(SetOfX(), set);
}

TEST_F(ExtractorPointSetsTest, AnExtractorThatLoadsForAllSetsAtOnceNeverShares) {
  support::LoadingExtractor extractor(&Manager(), &m_solution);
  SolutionPointSet * const first = extractor.CreateSolutionPointSet(SubsweepVector(), nullptr, nullptr, true);
  EXPECT_FALSE(first->GetIsShared());
  EXPECT_NE(extractor.CreateSolutionPointSet(SubsweepVector(), nullptr, nullptr, true), first);
}

TEST_F(ExtractorPointSetsTest, ASetOnAnOlderVersionIsDirtyFromBirth) {
  long const solved = m_solution.GetVersionID();
  m_solution.Invalidate(nullptr, solved + 5);
  SolutionPointSet const * const set = SetOfX();
  EXPECT_EQ(set->GetSolutionVersionID(), solved);
  EXPECT_TRUE(set->IsDirty());
}

TEST_F(ExtractorPointSetsTest, NamesAreCountedWithoutCase) {
  SetOfX(false);
  SetOfX(false)->SetName(L"SWEEP:solutionpointset 2");
  EXPECT_EQ(SetOfX(false)->GetName(), L"Sweep:SolutionPointSet 3");
  m_extractor->RemoveSolutionPointSet(Sets()[0]);
  EXPECT_EQ(SetOfX(false)->GetName(), L"Sweep:SolutionPointSet 1") << "the first free number is taken";
}

TEST_F(ExtractorPointSetsTest, ASetsOwnOldNameCountsWhenItIsInTheListAsMeant) {
  SolutionPointSet * const set = SetOfX(false);
  m_extractor->SetUniqueSolutionPointSetName(set);
  EXPECT_EQ(set->GetName(), L"Sweep:SolutionPointSet 2");
}

TEST_F(ExtractorPointSetsTest, ASolutionNameWithAPercentSignIsNoFormat) {
  m_solution.SetSolutionName(L"100%d %s");
  EXPECT_EQ(SetOfX()->GetName(), L"100%d %s:SolutionPointSet 1");
}

TEST_F(ExtractorPointSetsTest, RemovesASetThatIsInTheListAndIgnoresOthers) {
  SolutionPointSet * const set = SetOfX(false);
  SolutionPointSet other(*m_extractor);
  m_extractor->RemoveSolutionPointSet(&other);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
  m_extractor->RemoveSolutionPointSet(nullptr);
  m_extractor->RemoveSolutionPointSet(set);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 0u);
}

TEST_F(ExtractorPointSetsTest, TheRemovalOfASharedSetIsReported) {
  SolutionPointSet * const set = SetOfX();
  AssertWatch::Expect("(*it)->GetIsShared() == false");
  m_extractor->RemoveSolutionPointSet(set);
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 0u);
}

TEST_F(ExtractorPointSetsTest, AnUpdateStampsTheVersionOnlyWhenAsked) {
  SolutionPointSet * const set = SetOfX();
  m_solution.Invalidate(nullptr, 12);
  m_extractor->Update(false, nullptr);
  EXPECT_EQ(m_extractor->updated, (std::vector<SolutionPointSet *>{set}));
  EXPECT_NE(set->GetSolutionVersionID(), 12);
  EXPECT_TRUE(set->IsDirty());
  m_extractor->Update(true, nullptr);
  EXPECT_EQ(set->GetSolutionVersionID(), 12);
  EXPECT_FALSE(set->IsDirty());
  EXPECT_EQ(m_extractor->updated.size(), 2u);
}

TEST_F(ExtractorPointSetsTest, AnUpdateOfChosenSetsSkipsThoseOfOtherExtractors) {
  support::ReportExtractor other(&Manager(), &m_solution);
  SolutionPointSet foreign(other);
  SolutionPointSet * const first = SetOfX(false);
  SolutionPointSet * const second = SetOfX(false);
  std::vector<SolutionPointSet *> chosen{&foreign, second, nullptr};
  m_extractor->Update(true, &chosen);
  EXPECT_EQ(m_extractor->updated, (std::vector<SolutionPointSet *>{second}));
  EXPECT_TRUE(other.updated.empty());
  EXPECT_FALSE(first->IsDirty());
}

TEST_F(ExtractorPointSetsTest, OnAV2DesignUpdatesAndValidationAreNeverUsed) {
  SolutionPointSet * const set = SetOfX();
  m_design.isV2 = true;
  m_extractor->Update(true, nullptr);
  EXPECT_TRUE(m_extractor->updated.empty());
  m_solution.Invalidate(nullptr, 12);
  m_extractor->ValidateSolutionPointSet();
  EXPECT_FALSE(set->IsDirty());
}

TEST_F(ExtractorPointSetsTest, ASetIsCleanWhileItHasTheVersionOfAValidSolution) {
  SolutionPointSet * const set = SetOfX();
  set->MarkItDirty(true);
  m_extractor->ValidateSolutionPointSet();
  EXPECT_FALSE(set->IsDirty());
  m_solution.Invalidate(nullptr, 12);
  m_extractor->ValidateSolutionPointSet();
  EXPECT_TRUE(set->IsDirty());
}

TEST_F(ExtractorPointSetsTest, ADeletedSolutionMarksAllSetsDirty) {
  SolutionPointSet * const set = SetOfX();
  const_cast<BaseSimulationSetup &>(m_solution.GetBaseSimulationSetup()).DeleteSolution(m_solution.GetID(), nullptr);
  m_extractor->ValidateSolutionPointSet();
  EXPECT_TRUE(set->IsDirty());
}

TEST_F(ExtractorPointSetsTest, ASetIsDirtyWhileTheInstanceHasAnotherVariation) {
  SolutionPointSet * const set = SetOnInstance({L"x"});
  EXPECT_FALSE(set->IsDirty());
  m_instance.SetVariation(L"Y=2.0; X=1");
  m_extractor->ValidateSolutionPointSet();
  EXPECT_FALSE(set->IsDirty()) << "variations are compared by value";
  m_instance.SetVariation(L"x=1; y=3");
  m_extractor->ValidateSolutionPointSet();
  EXPECT_TRUE(set->IsDirty());
  m_extractor->Update(false, nullptr);
  EXPECT_FALSE(set->IsDirty()) << "its data is now that of the new variation";
}

TEST_F(ExtractorPointSetsTest, ASetThatSweepsAllVariablesDoesNotDependOnTheDesign) {
  SolutionPointSet * const set = SetOnInstance({L"x", L"y"});
  EXPECT_FALSE(set->IsDependentOnCurrentDesign(nullptr));
  m_instance.SetVariation(L"x=7; y=8");
  m_extractor->ValidateSolutionPointSet();
  EXPECT_FALSE(set->IsDirty());
}

TEST_F(ExtractorPointSetsTest, ASetDependsOnEditsOfTheVariablesThatItDoesNotSweep) {
  constexpr unsigned kEditedVariable = PropertyCommandInfo::kVariableProp | PropertyCommandInfo::kEdited;
  SolutionPointSet const & set = *SetOnInstance({L"x"});
  EXPECT_TRUE(set.IsDependentOnCurrentDesign(nullptr));
  EXPECT_TRUE(DependsOn(set, L"y", kEditedVariable));
  EXPECT_FALSE(DependsOn(set, L"X", kEditedVariable));
  EXPECT_FALSE(DependsOn(set, L"y", PropertyCommandInfo::kEdited)) << "a property that is no variable";
  EXPECT_FALSE(DependsOn(set, L"y", PropertyCommandInfo::kVariableProp)) << "a variable that was not edited";
  EXPECT_FALSE(DependsOn(*SetOfX(), L"y", kEditedVariable)) << "a set without an instance";
}

TEST_F(ExtractorPointSetsTest, AVariationLiesOnPointsWithinATolerance) {
  EXPECT_TRUE(IsOnX(SelectX(1), L"x=2"));
  EXPECT_TRUE(IsOnX(SelectX(1), L"x=2.0000000009"));
  EXPECT_FALSE(IsOnX(SelectX(1), L"x=2.0000000011"));
  EXPECT_FALSE(IsOnX(SelectX(1), L"x=1"));
  EXPECT_FALSE(IsOnX(SelectX(1), L"x=2+1i"));
  EXPECT_TRUE(IsOnX(SelectX(1), L"y=77")) << "a variable that the variation lacks is skipped";
}

TEST_F(ExtractorPointSetsTest, TheToleranceOfPointsIsAbsoluteWhateverTheUnitAsMeant) {
  m_extractor->GetSweep(L"x")->GetSweep()->Column().SetValues(std::vector<double>{1e-12, 1e9});
  EXPECT_TRUE(IsOnX(SelectX(0), L"x=9pF")) << "all that is picofarad is the same";
  EXPECT_FALSE(IsOnX(SelectX(1), L"x=1000000000.0001"));
}

TEST_F(ExtractorPointSetsTest, AComplexVariationIsComparedWithComplexPoints) {
  m_extractor->GetSweep(L"x")->GetSweep()->Column().SetValues(std::vector<AComplex<double>>{{50, 10}, {50, 20}});
  EXPECT_TRUE(IsOnX(SelectX(1), L"x=50+20i"));
  EXPECT_FALSE(IsOnX(SelectX(1), L"x=50+10i"));
}

TEST_F(ExtractorPointSetsTest, ASubsweepOfAllPointsAndNoSubsweepAtAllHoldEveryVariation) {
  EXPECT_TRUE(IsOnX(m_extractor->GetSweep(L"x")->CreateSubsweep(true), L"x=4711"));
  EXPECT_TRUE(m_extractor->SolutionPointSetIsUsingInstance(CreateSet(SubsweepVector()), L"x=4711"));
  EXPECT_FALSE(m_extractor->SolutionPointSetIsUsingInstance(nullptr, L"x=1"));
}

TEST_F(ExtractorPointSetsTest, ARangeHoldsItsOwnNumbersEvenWhenAllCount) {
  auto * const range = new PostprocessSweep(&m_x, Units::kNoUnits);
  range->SetMinMaxIncr(5, 6, 1);
  m_extractor->AddSweep(range);
  EXPECT_TRUE(IsOnX(range->CreateSubsweep(true), L"x=6"));
  EXPECT_FALSE(IsOnX(range->CreateSubsweep(true), L"x=7"));
}

TEST_F(ExtractorPointSetsTest, AReloadTouchesTheSetsOnTheVariation) {
  SubsweepVector first;
  first.push_back(SelectX(0));
  SubsweepVector second;
  second.push_back(SelectX(1));
  SolutionPointSet * const onOne = CreateSet(first);
  SolutionPointSet * const onTwo = CreateSet(second);
  EXPECT_TRUE(m_extractor->ReloadSolutionPointSetData(42, L"x=2"));
  EXPECT_EQ(m_extractor->updated, (std::vector<SolutionPointSet *>{onTwo}));
  EXPECT_EQ(onTwo->GetSolutionVersionID(), 42);
  EXPECT_NE(onOne->GetSolutionVersionID(), 42);
  EXPECT_FALSE(m_extractor->ReloadSolutionPointSetData(43, L"x=9"));
}

TEST_F(ExtractorPointSetsTest, AnUpdateOfDataVisitsAllPointsAndGivesTheVariablesBack) {
  SolutionPointSet * const set = CreateSet(SubsweepsOf({L"x", L"y"}));
  auto * const xs = new RecordingTrace(*set, m_x);
  auto * const ys = new RecordingTrace(*set, m_y);
  set->AddTraceToList(xs);
  set->AddTraceToList(ys);
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(set->UpdateData());
    EXPECT_EQ(xs->values, (std::vector<double>{1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(ys->values, (std::vector<double>{10, 20, 10, 20, 10, 20}));
  }
  EXPECT_EQ(m_x.GetValueText(), L"1");
  EXPECT_EQ(m_y.GetValueText(), L"2");
  EXPECT_FALSE(m_extractor->PostprocessingUpdateIsInProgress());
  EXPECT_EQ(m_extractor->GetCurrentSolutionPointSet(), nullptr);
}

TEST_F(ExtractorPointSetsTest, TooManyPointsAreRefusedBeforeAnythingIsDone) {
  std::vector<double> const many(5000, 1.0);
  m_extractor->GetSweep(L"x")->GetSweep()->Column().SetValues(many);
  m_extractor->GetSweep(L"y")->GetSweep()->Column().SetValues(many);
  SolutionPointSet * const set = CreateSet(SubsweepsOf({L"x", L"y"}));
  AssertWatch::Expect("isCountInRange");
  EXPECT_FALSE(set->UpdateData());
  EXPECT_TRUE(m_extractor->updated.empty());
}

TEST_F(ExtractorPointSetsTest, AnUpdateInProgressKnowsItsSet) {
  SolutionPointSet * const set = SetOfX();
  EXPECT_TRUE(m_extractor->BeginPostprocessingUpdate(*set));
  EXPECT_TRUE(m_extractor->PostprocessingUpdateIsInProgress());
  EXPECT_EQ(m_extractor->GetCurrentSolutionPointSet(), set);
  m_extractor->EndPostprocessingUpdate();
  EXPECT_FALSE(m_extractor->PostprocessingUpdateIsInProgress());
  EXPECT_EQ(m_extractor->GetCurrentSolutionPointSet(), nullptr);
}

TEST_F(ExtractorPointSetsTest, CollectionDropsTracesThatAreNotInUseAndSetsWithoutTraces) {
  int deaths = 0;
  SolutionPointSet * const kept = SetOfX(false);
  SolutionPointSet * const dropped = SetOfX(false);
  auto * const used = new RecordingTrace(*kept, m_x, &deaths);
  kept->AddTraceToList(used);
  kept->AddTraceToList(new RecordingTrace(*kept, m_x, &deaths));
  dropped->AddTraceToList(new RecordingTrace(*dropped, m_x, &deaths));
  std::list<Trace *> traces;
  EXPECT_EQ(m_extractor->GetAvailableTraces(traces), 3);
  m_extractor->DoGarbageCollection({used});
  EXPECT_EQ(deaths, 2);
  EXPECT_EQ(Sets(), (std::vector<SolutionPointSet *>{kept}));
  traces.clear();
  EXPECT_EQ(m_extractor->GetAvailableTraces(traces), 1);
  kept->RemoveTrace(used);
  EXPECT_EQ(deaths, 3);
  kept->RemoveTrace(used);
  EXPECT_TRUE(kept->OKtoDelete());
}

TEST_F(ExtractorPointSetsTest, SharedValuesAreCollectedAndReleasedUnlessTheRewriteIsActive) {
  support::TestSimValueManager manager;
  m_design.simValueManagerHost = &manager;
  using Released = std::vector<std::pair<long, bool>>;
  m_extractor->DoGarbageCollection({});
  EXPECT_EQ(manager.released, (Released{{m_solution.GetID(), false}}));
  m_extractor.reset();
  EXPECT_EQ(manager.released, (Released{{m_solution.GetID(), false}, {m_solution.GetID(), true}}));
  m_desktop.rewrite = true;
  m_design.reportUpdateService = reinterpret_cast<IReportUpdateService *>(&m_design);
  {
    support::ReportExtractor extractor(&Manager(), &m_solution);
    extractor.DoGarbageCollection({});
  }
  EXPECT_EQ(manager.released.size(), 2u) << "old structures may be in use, but the rewrite is active";
  m_design.simValueManagerHost = nullptr;
}

TEST_F(ExtractorPointSetsTest, ACopyIsASnapshotThatFreesNothing) {
  SolutionPointSet * const set = SetOfX();
  m_extractor->CreateSpecialSweep(L"F", val::kReal, Units::kNoUnits);
  {
    BaseSimDataExtractor const copy(*m_extractor);
    EXPECT_EQ(*copy.GetFirstSolutionPointSet(), set);
    EXPECT_EQ(copy.GetSweep(L"x"), m_extractor->GetSweep(L"x"));
    EXPECT_EQ(copy.GetSpecialSweep(L"F"), m_extractor->GetSpecialSweep(L"F"));
  }
  EXPECT_EQ(set->GetName(), L"Sweep:SolutionPointSet 1");
  EXPECT_EQ(m_extractor->GetSweep(L"x")->GetCount(), 3u);
}

TEST_F(ExtractorPointSetsTest, AnAssignmentFreesNothingBeforeTheEnd) {
  SolutionPointSet * const set = SetOfX();
  BaseSimDataExtractor first(&Manager(), &m_solution);
  first.AddSweep(new Sweep(val::kReal, Units::kNoUnits, &m_y));
  BaseSimDataExtractor const snapshot(first);
  first = *m_extractor;
  EXPECT_EQ(*first.GetFirstSolutionPointSet(), set);
  EXPECT_EQ(snapshot.GetSweep(L"y")->GetName(), L"y") << "what a snapshot shares lives on";
  first = snapshot;
  auto const & itself = first;
  first = itself;
  EXPECT_EQ(first.GetSweep(L"y"), snapshot.GetSweep(L"y"));
}
