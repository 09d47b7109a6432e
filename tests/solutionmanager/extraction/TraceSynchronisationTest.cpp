#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"
#include "tests/solutionmanager/extraction/TraceFixture.h"

using support::AssertWatch;

namespace {

char const * const kV2 = "!\"Should just not be calling this. Done differently in V2\"";

class TraceSynchronisationTest : public support::TraceTest {
protected:
  TraceSynchronisationTest() {
    m_set = CreateSet(true, &m_instance);
    m_s11 = AddTrace(m_set, L"x", L"dB(S11)");
    m_s21 = AddTrace(m_set, L"x", L"S21");
    Clean();
  }
  void Clean() {
    m_s11->MarkItDirty(false);
    m_s21->MarkItDirty(false);
    for (wchar_t const * const text : {L"S11", L"S21", L"T"})
      Keep(*m_set, text);
  }
  bool Synchronise(KelvroCommand * command) {
    return m_extractor->SynchronizeTracesForSolutionPointSet(command, m_set);
  }
  void ExpectAllGivenUp() {
    EXPECT_TRUE(m_s11->IsDirty());
    EXPECT_TRUE(m_s21->IsDirty());
    EXPECT_TRUE(m_set->GetSimValueCache().empty());
  }
  void ExpectAllKept() {
    EXPECT_FALSE(m_s11->IsDirty());
    EXPECT_FALSE(m_s21->IsDirty());
    for (wchar_t const * const text : {L"S11", L"S21", L"T"})
      EXPECT_TRUE(Keeps(*m_set, text)) << text;
  }

  SolutionPointSet * m_set = nullptr;
  Trace * m_s11 = nullptr;
  Trace * m_s21 = nullptr;
  KelvroCommand m_command{L"Edit"};
};

} // namespace

TEST_F(TraceSynchronisationTest, CreatingOrDeletingAnyVariableReachesEverySet) {
  for (unsigned const flag : {PropertyCommandInfo::kCreated, PropertyCommandInfo::kDeleted})
    for (int const number : {KelvroCommandInfo::kDesignProperties, KelvroCommandInfo::kProjectProperties}) {
      Clean();
      EXPECT_TRUE(Synchronise(Edit(L"elsewhere", flag, number).get()));
      ExpectAllGivenUp();
    }
}

TEST_F(TraceSynchronisationTest, AnEditedVariableReachesTheSetsThatTakeItFromTheirInstance) {
  EXPECT_TRUE(Synchronise(Edit(L"y", PropertyCommandInfo::kEdited).get()));
  ExpectAllGivenUp();
  Clean();
  EXPECT_FALSE(Synchronise(Edit(L"x", PropertyCommandInfo::kEdited).get())) << "x is swept";
  ExpectAllKept();
  m_set->SetIDesignInstance(nullptr);
  EXPECT_FALSE(Synchronise(Edit(L"y", PropertyCommandInfo::kEdited).get()));
  ExpectAllKept();
}

TEST_F(TraceSynchronisationTest, WithoutAnInstanceAnEditedVariableReachesTheSetsWhoseExpressionsUseIt) {
  auto const isReached = [this](wchar_t const * expression, wchar_t const * edited) {
    SolutionPointSet * const set = CreateSet(false);
    AddTrace(set, L"x", expression);
    return m_extractor->SynchronizeTracesForSolutionPointSet(Edit(edited, PropertyCommandInfo::kEdited).get(), set);
  };
  EXPECT_TRUE(isReached(L"dB(S11)*y", L"y"));
  EXPECT_TRUE(isReached(L"dB(S11)*y", L"Y"));
  EXPECT_FALSE(isReached(L"dB(S11)*x", L"y"));
  EXPECT_FALSE(isReached(L"dB(S11)*y", L"x")) << "x is swept";
  EXPECT_FALSE(isReached(L"dB(S11)*y", L"elsewhere"));
  AddVariable(L"Scaled", L"y*dB(S11)");
  EXPECT_TRUE(isReached(L"2*Scaled", L"y")) << "through an output variable";
  Variable z(L"z", L"3");
  m_design.ownVariables.variables.push_back(&z);
  m_y.SetValue(Value::Text(L"z/2"));
  EXPECT_TRUE(isReached(L"dB(S11)*y", L"z")) << "through the definition of another variable";
  EXPECT_TRUE(isReached(L"2*Scaled", L"y"));
  EXPECT_FALSE(isReached(L"dB(S11)", L"z"));
  m_design.ownVariables.variables.pop_back();
}

TEST_F(TraceSynchronisationTest, AnExpressionBoundBeforeItsVariableWasRedefinedIsReached) {
  SolutionPointSet * const set = CreateSet(false);
  Trace * const trace = AddTrace(set, L"x", L"T*y");
  trace->MarkItDirty(false);
  m_y.SetValue(Value::Text(L"4/2"));
  EXPECT_TRUE(m_extractor->SynchronizeTracesForSolutionPointSet(Edit(L"y", PropertyCommandInfo::kEdited).get(), set));
  EXPECT_TRUE(trace->IsDirty());
}

TEST_F(TraceSynchronisationTest, WithoutAnInstanceAVariableThatTheDataWasSolvedForReachesTheSimValues) {
  Solve(*m_solution, L"x=1; y=2", {1});
  SolutionPointSet * const set = CreateSet(false);
  Trace * const trace = AddTrace(set, L"x", L"T");
  trace->MarkItDirty(false);
  Keep(*set, L"T");
  auto const isReached = [&](wchar_t const * edited) {
    return m_extractor->SynchronizeTracesForSolutionPointSet(Edit(edited, PropertyCommandInfo::kEdited).get(), set);
  };
  EXPECT_FALSE(isReached(L"x")) << "x is swept";
  EXPECT_FALSE(isReached(L"elsewhere")) << "no data of it";
  EXPECT_FALSE(trace->IsDirty());
  EXPECT_TRUE(Keeps(*set, L"T"));
  EXPECT_TRUE(isReached(L"y"));
  EXPECT_TRUE(trace->IsDirty());
  EXPECT_FALSE(Keeps(*set, L"T"));
  SolutionPointSet * const ofVariables = CreateSet(false);
  AddTrace(ofVariables, L"x", L"2*x");
  EXPECT_FALSE(
      m_extractor->SynchronizeTracesForSolutionPointSet(Edit(L"y", PropertyCommandInfo::kEdited).get(), ofVariables))
      << "no sim values";
}

TEST_F(TraceSynchronisationTest, OfTheTwoPropertyInfosTheFirstPresentCounts) {
  std::unique_ptr<KelvroCommand> const command = Edit(L"x", PropertyCommandInfo::kEdited);
  auto * const project = new PropertyCommandInfo;
  project->AddProperty(L"p", PropertyCommandInfo::kVariableProp | PropertyCommandInfo::kCreated);
  command->SetInfo(KelvroCommandInfo::kProjectProperties, project);
  EXPECT_FALSE(Synchronise(command.get()));
  ExpectAllKept();
}

TEST_F(TraceSynchronisationTest, AnInfoOfAnotherKindSaysNothing) {
  m_command.SetInfo(KelvroCommandInfo::kDesignProperties, new KelvroCommandInfo);
  EXPECT_FALSE(Synchronise(&m_command));
  ExpectAllKept();
}

TEST_F(TraceSynchronisationTest, ASetOfAnOlderVersionIsAffectedButLeftAlone) {
  m_set->SetSolutionVersionID(m_solution->GetVersionID() + 1);
  EXPECT_TRUE(Synchronise(Edit(L"y", PropertyCommandInfo::kCreated).get()));
  EXPECT_FALSE(m_s11->IsDirty());
}

TEST_F(TraceSynchronisationTest, AnExpressionThatNoLongerParsesDirtiesTheSet) {
  ASSERT_NE(AddVariable(L"Loss", L"S21"), nullptr);
  AddTrace(m_set, L"x", L"Loss")->MarkItDirty(false);
  EXPECT_FALSE(Synchronise(&m_command));
  ASSERT_TRUE(Manager().DeleteOutputVariable(Manager().FindOutputVariable(L"Loss"), &m_command));
  EXPECT_TRUE(Synchronise(&m_command));
  ExpectAllGivenUp();
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(TraceSynchronisationTest, AContextThatAMinorEditReachesDirtiesTheSet) {
  Traces().isContextAffected = true;
  EXPECT_TRUE(Synchronise(&m_command));
  ExpectAllGivenUp();
  EXPECT_EQ(Traces().askedContextTypes, std::vector<unsigned>{1});
}

TEST_F(TraceSynchronisationTest, ASetWithoutReportTypeIsNotAskedAboutItsContext) {
  SolutionPointSet * const set = CreateSet(false);
  AddTrace(set, L"x", L"2*x")->MarkItDirty(false);
  Traces().isContextAffected = true;
  EXPECT_FALSE(m_extractor->SynchronizeTracesForSolutionPointSet(&m_command, set));
  EXPECT_TRUE(Traces().askedContextTypes.empty());
}

TEST_F(TraceSynchronisationTest, AMinorEditReachesTheTracesThatReferToIt) {
  Traces().affectedText = L"S21";
  Traces().affectedTypes = {1};
  EXPECT_TRUE(Synchronise(&m_command));
  EXPECT_FALSE(m_s11->IsDirty());
  EXPECT_TRUE(m_s21->IsDirty());
  EXPECT_TRUE(Keeps(*m_set, L"S11"));
  EXPECT_FALSE(Keeps(*m_set, L"S21"));
}

TEST_F(TraceSynchronisationTest, OnlySimValuesOfAffectedReportTypesLoseTheirNumbers) {
  Trace * const mixed = AddTrace(m_set, L"T", L"S21+0");
  mixed->MarkItDirty(true);
  Traces().affectedTypes = {2};
  EXPECT_FALSE(Synchronise(&m_command)) << "it was dirty before";
  EXPECT_FALSE(Keeps(*m_set, L"T"));
  EXPECT_TRUE(Keeps(*m_set, L"S21"));
  EXPECT_TRUE(Keeps(*m_set, L"S11"));
}

TEST_F(TraceSynchronisationTest, WithoutACommandNoPropertyIsAskedAboutAndNoTraceIsReached) {
  Traces().affectedText = L"S21";
  m_s21->MarkItDirty(true);
  Traces().affectedTypes = {1};
  EXPECT_FALSE(Synchronise(nullptr));
  EXPECT_TRUE(Keeps(*m_set, L"S21"));
  CParsedExpressionCacheContainer expressions;
  EXPECT_FALSE(m_extractor->SynchronizeOneTrace(nullptr, m_s21, m_set, expressions));
  EXPECT_FALSE(m_extractor->SynchronizeOneTrace(&m_command, nullptr, m_set, expressions));
  EXPECT_FALSE(m_extractor->SynchronizeOneTrace(&m_command, m_s21, nullptr, expressions));
  EXPECT_FALSE(m_extractor->SynchronizeTracesForSolutionPointSet(&m_command, nullptr));
}

TEST_F(TraceSynchronisationTest, CleaningNeedsCommandTraceAndSet) {
  CParsedExpressionCacheContainer expressions;
  m_extractor->CleanDirtySVCaches(nullptr, nullptr, nullptr, expressions);
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"cmd", "tr", "ptset"}));
}

TEST_F(TraceSynchronisationTest, TheAffectedSetsAreAppended) {
  SolutionPointSet * const other = CreateSet(false);
  AddTrace(other, L"x", L"S11")->MarkItDirty(false);
  std::vector<ISolutionPointSet *> affected(1, nullptr);
  Traces().affectedText = L"S21";
  m_extractor->SynchronizeTracesAndGetAffectedSPS(affected, &m_command);
  EXPECT_EQ(affected, (std::vector<ISolutionPointSet *>{nullptr, m_set}));
  Clean();
  m_extractor->SynchronizeTraces(&m_command);
  EXPECT_TRUE(m_s21->IsDirty());
}

TEST_F(TraceSynchronisationTest, TheManagerGoesThroughTheExtractorsOfReportTypeOne) {
  Traces().affectedText = L"S21";
  std::vector<ISolutionPointSet *> affected;
  Manager().SynchronizeTracesAndGetAffectedSPS(affected, &m_command);
  EXPECT_EQ(affected, std::vector<ISolutionPointSet *>{m_set});
  EXPECT_EQ(Traces().askedReportTypes, std::vector<unsigned>{1});
  EXPECT_EQ(Traces().askedForImported, std::vector<bool>{Manager().AllowImportDataInTraces()});
  Clean();
  Manager().SynchronizeTraces(&m_command);
  EXPECT_TRUE(m_s21->IsDirty());
}

TEST_F(TraceSynchronisationTest, AProductThatListsNoExtractorsHasNothingSynchronisedAsMeant) {
  Traces().listsExtractors = false;
  std::vector<ISolutionPointSet *> affected;
  Manager().SynchronizeTracesAndGetAffectedSPS(affected, Edit(L"y", PropertyCommandInfo::kCreated).get());
  EXPECT_TRUE(affected.empty());
  ExpectAllKept();
}

TEST_F(TraceSynchronisationTest, OnAV2DesignItSaysThatItIsDoneDifferentlyAndGoesOn) {
  m_design.isV2 = true;
  EXPECT_TRUE(Synchronise(Edit(L"y", PropertyCommandInfo::kCreated).get()));
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{kV2});
  m_extractor->SynchronizeTraces(nullptr);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{kV2});
}

TEST_F(TraceSynchronisationTest, UnderTheReporterRewriteEverySetSaysSoAndNothingHappens) {
  m_desktop.rewrite = true;
  std::vector<ISolutionPointSet *> affected;
  m_extractor->SynchronizeTracesAndGetAffectedSPS(affected, Edit(L"y", PropertyCommandInfo::kCreated).get());
  EXPECT_TRUE(affected.empty());
  EXPECT_FALSE(m_s11->IsDirty());
  EXPECT_FALSE(AssertWatch::Take().empty());
}

TEST_F(TraceSynchronisationTest, EmptyTextsAndAsMeantPlainTextsGetNoExpressionCache) {
  TraceComponent empty(L"  ", 0, 0, false, Units::kNoUnits);
  TextTraceComponent text(L"not an expression at all");
  Trace * const trace = m_extractor->CreateTrace2D(m_set, &empty, &text, true);
  CParsedExpressionCacheContainer expressions;
  Manager().CreateParsedExpressionCacheOfTraces(trace, expressions);
  EXPECT_EQ(expressions.GetFirstElementForEdit(), expressions.GetLastElementForEdit());
  Manager().CreateParsedExpressionCacheOfTraces(m_s11, expressions);
  EXPECT_EQ(expressions.GetLastElementForEdit() - expressions.GetFirstElementForEdit(), 2);
  EXPECT_FALSE(Synchronise(&m_command));
}

TEST_F(TraceSynchronisationTest, AThousandTracesAreAnalysedOncePerDistinctText) {
  for (int number = 0; number < 998; ++number)
    AddTrace(m_set, L"x", AString::Format(L"S11*%d", number + 2))->MarkItDirty(false);
  SolutionPointSet * const other = CreateSet(false, &m_instance);
  AddTrace(other, L"x", L"S21")->MarkItDirty(false);
  Traces().analysed.clear();
  int const made = m_extractor->made;
  std::vector<ISolutionPointSet *> affected;
  Manager().SynchronizeTracesAndGetAffectedSPS(affected, Edit(L"x", PropertyCommandInfo::kEdited).get());
  EXPECT_TRUE(affected.empty());
  ExpectAllKept();
  std::set<AString> const distinct(Traces().analysed.begin(), Traces().analysed.end());
  EXPECT_EQ(distinct.size(), 1001u) << "x, S11, S21 and the 998";
  EXPECT_EQ(Traces().analysed.size(), distinct.size());
  EXPECT_EQ(m_extractor->made, made);
  EXPECT_EQ(m_extractor->evaluated, 0);
  Manager().SynchronizeTraces(&m_command);
  EXPECT_EQ(Traces().analysed.size(), 2 * distinct.size()) << "the next synchronisation looks again";
}

TEST_F(TraceSynchronisationTest, TheReportTypeOfASetIsTheFirstThatItsExpressionsReferTo) {
  EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(m_set), 1u);
  SolutionPointSet * const ofVariables = CreateSet(false);
  AddTrace(ofVariables, L"x", L"2*x");
  EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(ofVariables), 0xFFFFFFFFu);
  EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(nullptr), 0xFFFFFFFFu);
  SolutionPointSet * const ofBoth = CreateSet(false);
  AddTrace(ofBoth, L"x", L"S11+T");
  AssertWatch::Expect("reptypes.size()==1");
  EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(ofBoth), 1u);
}

TEST_F(TraceSynchronisationTest, OfTracesOfSeveralReportTypesTheFirstOfTheSetTellsItWhereverTheyLieInMemory) {
  for (int i = 0; i < 20; ++i) {
    SolutionPointSet * const set = CreateSet(false);
    bool const isFirstT = i % 2 == 0;
    AddTrace(set, L"x", isFirstT ? L"T" : L"S11", false);
    for (int more = 0; more < 5; ++more)
      AddTrace(set, L"x", isFirstT ? L"S11" : L"T", false);
    EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(set), isFirstT ? 2u : 1u) << i;
  }
}

TEST_F(TraceSynchronisationTest, ATraceOfAnotherSetOrWithoutExpressionsTellsNoReportType) {
  SolutionPointSet * const set = CreateSet(false);
  m_extractor->CreateTrace2D(set, nullptr, nullptr, false);
  std::map<Trace *, CParsedExpressionCacheContainer> caches;
  Manager().ConstructTraceExprCacheMap(set, caches);
  ASSERT_EQ(caches.size(), 1u);
  auto & container = caches.begin()->second;
  EXPECT_EQ(container.GetFirstElementForEdit(), container.GetLastElementForEdit());
  EXPECT_EQ(Manager().GetReportTypeOfSolutionPointSet(set), 0xFFFFFFFFu);
}

TEST_F(TraceSynchronisationTest, AThirdComponentHasAnExpressionCacheToo) {
  std::unique_ptr<TraceComponent> const x(m_extractor->CreateTraceComponent(L"x", nullptr));
  std::unique_ptr<TraceComponent> const y(m_extractor->CreateTraceComponent(L"S11", nullptr));
  std::unique_ptr<TraceComponent> const z(m_extractor->CreateTraceComponent(L"S21", nullptr));
  Trace * const trace = m_extractor->CreateTrace3D(CreateSet(false), x.get(), y.get(), z.get(), true);
  CParsedExpressionCacheContainer container;
  Manager().CreateParsedExpressionCacheOfTraces(trace, container);
  EXPECT_EQ(container.GetLastElementForEdit() - container.GetFirstElementForEdit(), 3);
}

TEST_F(TraceSynchronisationTest, WithoutAManagerNothingIsSynchronised) {
  support::TraceExtractor lonely(nullptr, m_solution);
  AssertWatch::Take();
  std::vector<ISolutionPointSet *> affected;
  lonely.SynchronizeTracesAndGetAffectedSPS(affected, &m_command);
  EXPECT_TRUE(affected.empty());
  EXPECT_FALSE(AssertWatch::Take().empty());
}

TEST_F(TraceSynchronisationTest, ADefinitionIsValidWhileEveryExpressionParses) {
  EXPECT_TRUE(Manager().IsSolutionPointSetDefinitionValid(static_cast<ISolutionPointSet *>(m_set)));
  EXPECT_TRUE(Manager().IsSolutionPointSetDefinitionValid(m_set, nullptr));
  TraceComponent bad(L"nobody+1", 0, 0, false, Units::kNoUnits);
  m_extractor->CreateTrace2D(m_set, nullptr, &bad, true);
  EXPECT_FALSE(Manager().IsSolutionPointSetDefinitionValid(static_cast<ISolutionPointSet *>(m_set)));
  EXPECT_FALSE(Manager().IsSolutionPointSetDefinitionValid(static_cast<ISolutionPointSet *>(nullptr)));
}

TEST_F(TraceSynchronisationTest, TheManagerListsTheTracesOfAllExtractors) {
  std::list<Trace *> traces;
  EXPECT_EQ(Manager().GetAvailableTraces(traces), 2);
  EXPECT_EQ(traces, (std::list<Trace *>{m_s11, m_s21}));
  m_desktop.rewrite = true;
  traces.clear();
  EXPECT_EQ(Manager().GetAvailableTraces(traces), 0);
  EXPECT_EQ(AssertWatch::Take(),
            std::vector<std::string>{"!\"Should'nt be calling this method in new reporter rewrite\""});
}
