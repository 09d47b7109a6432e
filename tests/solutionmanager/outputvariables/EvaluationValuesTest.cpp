// Values of output variables, and who is told what when there is none.

#include "CoreInterfaces/desktop/IReportUpdateService.h"
#include "plotkit/simvalue/IQuestionData.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "tests/solutionmanager/outputvariables/EvaluationFixture.h"

#include <cmath>

namespace {

using support::AssertWatch;

class EvaluationValuesTest : public support::EvaluationTest {
protected:
  EvaluationValuesTest() { SolveAll(); }

  /// No value, exactly these messages, and nothing left.
  void ExpectRefused(bool hasValue, Told const & told) {
    EXPECT_FALSE(hasValue);
    EXPECT_EQ(TakeMessages(), told);
    ExpectNothingLeft();
  }
};

/// A product's solution that has data but gives no extractor.
class SolvedWithoutExtractor : public support::TestSolution {
public:
  explicit SolvedWithoutExtractor(BaseSimulationSetup const & setup) : TestSolution(setup, -1, 0) {
    SetExtractor(nullptr);
  }
  using BaseSolution::HasValidSolutionData;
  bool HasValidSolutionData(AString const &, long) const override { return true; }
};

/// Writes down when a question is under way, and what was loaded meanwhile.
class QuestionedExtractor : public support::EvaluationExtractor, public IQuestionData {
public:
  using EvaluationExtractor::EvaluationExtractor;
  void BeginQuestion(VariableValues const & variation) override { log += L"(" + variation.GetVariationKey(); }
  void EndQuestion() override { log += L")"; }
  bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                      std::vector<unsigned> const & reportTypes,
                      std::map<unsigned, std::vector<AString>> const & quantities,
                      IProgressMonitor * progress) override {
    log += L" load";
    return EvaluationExtractor::LoadSolvedData(first, second, reportTypes, quantities, progress);
  }

  AString log;
};

/// Takes no data, and keeps what it was asked for.
class RecordingService final : public IReportUpdateService {
public:
  void UpdateSolutionPointSets(std::vector<ISolutionPointSet *> const & pointSets, int flags) override {
    asked += static_cast<int>(pointSets.size());
    lastFlags = flags;
    for (ISolutionPointSet * const pointSet : pointSets)
      if (auto * const set = dynamic_cast<SolutionPointSet *>(pointSet); set && updates)
        set->UpdateData();
  }
  int asked = 0;
  int lastFlags = -1;
  bool updates = false;
};

} // namespace

TEST_F(EvaluationValuesTest, AnOutputVariableHasItsValueAtEachSolvedVariation) {
  AddVariable(L"v", L"P + 0.5");
  EXPECT_EQ(ValueAt(L"v", L"x=1"), 12.5);
  EXPECT_EQ(ValueAt(L"v", L"x=3"), 32.5);
  EXPECT_TRUE(TakeMessages().empty());
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, AnExtractorKnowsOfTheQuestionUntilItIsAnswered) {
  auto * const extractor = new QuestionedExtractor(m_manager.get(), m_solution, m_x, m_y);
  m_solution->SetExtractor(extractor);
  m_extractor = extractor;
  AddSweep(m_x, {1.0, 2.0, 3.0});
  AddVariable(L"v", L"P");
  EXPECT_EQ(ValueAt(L"v", L"x=3"), 32.0);
  EXPECT_EQ(std::exchange(extractor->log, AString()), L"(x=3 load load)") << "for the update and for the extraction";
  ExpectNothingLeft();
  for (wchar_t const * const variable : {L"v", L"none"}) {
    EXPECT_FALSE(Evaluate(variable, L"x=9"));
    EXPECT_EQ(std::exchange(extractor->log, AString()), L"(x=9)");
  }
  EXPECT_FALSE(Evaluate(L"v", L"x=3", L"", L"No : Solution"));
  EXPECT_TRUE(extractor->log.empty());
  TakeMessages();
}

TEST_F(EvaluationValuesTest, WithoutAVariationTheNominalOneCounts) {
  AddVariable(L"v", L"P");
  EXPECT_EQ(ValueAt(L"v", L""), 12.0);
  m_instance.SetVariation(L"x=9; y=2");
  ExpectRefused(Evaluate(L"v", L""), {{24729, {L"Setup : Sweep"}}});
}

TEST_F(EvaluationValuesTest, AnInstanceThatIsGivenCountsInsteadOfTheFirst) {
  AddVariable(L"v", L"P");
  support::TestInstance other(m_design, L"x=1; y=8", 8);
  Value result;
  EXPECT_FALSE(Manager().GetOutputVariableValue(result, L"v", L"Setup : Sweep", L"x=1", L"", &other));
  EXPECT_EQ(TakeMessages(), (Told{{24729, {L"Setup : Sweep"}}})) << "y = 8 is not solved";
}

TEST_F(EvaluationValuesTest, ResultsKeepEveryBit) {
  AddVariable(L"v", L"Q/3");
  EXPECT_EQ(ValueAt(L"v", L"x=3"), 32.0 / 1000.0 / 3.0);
}

TEST_F(EvaluationValuesTest, AComplexVariableHasAComplexValue) {
  AddVariable(L"v", L"2*C");
  ASSERT_TRUE(Evaluate(L"v", L"x=3"));
  EXPECT_EQ(m_result.GetComplexSIValue(), AComplex<double>(6.0, 4.0));
}

TEST_F(EvaluationValuesTest, AVariableMayReferToAnother) {
  AddVariable(L"inner", L"P*2");
  AddVariable(L"outer", L"inner + Q");
  EXPECT_DOUBLE_EQ(ValueAt(L"outer", L"x=2"), 44.022);
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, TheDesignsVariablesComeBackToWhatTheyWere) {
  AddVariable(L"v", L"P");
  EXPECT_EQ(ValueAt(L"v", L"x=3"), 32.0);
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 1.0);
}

TEST_F(EvaluationValuesTest, AnEmptyNameIsRefused) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"", L"x=1"), {{24583, {}}});
  ExpectRefused(Evaluate(L"v", L"x=1", L"", L""), {{24583, {}}});
}

TEST_F(EvaluationValuesTest, AnUnknownSolutionIsNamed) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"x=1", L"", L"Setup : None"), {{24584, {L"Setup : None"}}});
}

TEST_F(EvaluationValuesTest, AnUnknownVariableIsNamed) { ExpectRefused(Evaluate(L"v", L"x=1"), {{24555, {L"v"}}}); }

TEST_F(EvaluationValuesTest, AVariationThatWasNotSolvedHasNoData) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"x=7"), {{24729, {L"Setup : Sweep"}}});
}

TEST_F(EvaluationValuesTest, ANameThatNothingKnowsHasNoData) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"bogus=5; x=1"), {{24729, {L"Setup : Sweep"}}});
}

TEST_F(EvaluationValuesTest, VariablesThatEachUseTheTwoBeforeHaveAValue) {
  AddChainOfPairs(L"P");
  double former = 12.0;
  double value = 0.012;
  for (int number = 2; number < 150; ++number)
    former = std::exchange(value, value + former);
  EXPECT_EQ(ValueAt(L"f149", L"x=1"), value);
}

TEST_F(EvaluationValuesTest, DataOfAnOlderVersionIsNoData) {
  AddVariable(L"v", L"P");
  m_solution->Invalidate(nullptr, Manager().FetchNextUniqueID());
  ExpectRefused(Evaluate(L"v", L"x=1"), {{24729, {L"Setup : Sweep"}}});
}

TEST_F(EvaluationValuesTest, ATextThatIsNoVariationHasNoDataRatherThanTheNominalOne) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"anything"), {{24729, {L"Setup : Sweep"}}});
}

TEST_F(EvaluationValuesTest, ASolutionWithoutAnExtractorIsReported) {
  AddVariable(L"v", L"P");
  BaseSimulationSetup & setup = AddSetup(L"Bare", L"Other");
  auto * const bare = new SolvedWithoutExtractor(setup);
  bare->SetSolutionName(L"Sweep");
  setup.AddSolution(bare, nullptr);
  AssertWatch::Expect("extractor");
  ExpectRefused(Evaluate(L"v", L"x=1", L"", L"Bare : Sweep"), {});
}

TEST_F(EvaluationValuesTest, AVariableOfTwoReportTypesIsRefusedByAssert) {
  AddVariable(L"v", L"P + R");
  AssertWatch::Expect("!\" There is more than one Report type in the outputvariable. Not Supported!\"");
  ExpectRefused(Evaluate(L"v", L"x=1"), {});
}

TEST_F(EvaluationValuesTest, AVariableOfNoReportTypeIsEvaluatedAllTheSame) {
  AddVariable(L"v", L"2*x + y");
  EXPECT_EQ(ValueAt(L"v", L"x=3"), 8.0);
  EXPECT_EQ(m_extractor->askedReportType, 0xFFFFFFFFu);
}

TEST_F(EvaluationValuesTest, AVariableThatIsNotValidHereHasNoValue) {
  ForceVariable(L"v", L"P + unheard_of");
  EXPECT_FALSE(Evaluate(L"v", L"x=1"));
  EXPECT_FALSE(TakeMessages().empty());
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, AVariableOfAnotherTypeThanRealOrComplexIsRefused) {
  ForceVariable(L"v", L"P", {Units::kNoUnits, Units::kNoUnitType, 1, val::kRealArray});
  ExpectRefused(Evaluate(L"v", L"x=1"), {{24618, {L"v"}}});
}

TEST_F(EvaluationValuesTest, AContextTextIsMadeAContextByTheProduct) {
  AddVariable(L"v", L"P");
  ASSERT_TRUE(Evaluate(L"v", L"x=1", L"4"));
  EXPECT_EQ(m_quantities->reportTypesOfContext, (std::vector<unsigned>{1}));
  EXPECT_EQ(m_extractor->contextOfSet.GetCalculationType(), 4);
  ASSERT_TRUE(Evaluate(L"v", L"x=1"));
  EXPECT_EQ(m_extractor->contextOfSet, SimValueContext()) << "without a text it is the usual one";
}

TEST_F(EvaluationValuesTest, AContextInWhichTheVariableIsNotValidGivesNoValue) {
  AddVariable(L"v", L"Q");
  EXPECT_FALSE(Evaluate(L"v", L"x=1", L"5"));
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, AContextForAVariableOfNoReportTypeIsReportedAndUsedAsMeant) {
  AddVariable(L"v", L"x");
  AssertWatch::Expect("rptTypes.size() > 0");
  EXPECT_TRUE(Evaluate(L"v", L"x=1", L"4"));
  EXPECT_EQ(m_extractor->contextOfSet.GetCalculationType(), 4);
}

TEST_F(EvaluationValuesTest, SpecialSweepsAssumeTheVariationWithoutNominalValuesForItsSpan) {
  AddVariable(L"v", L"P");
  ASSERT_TRUE(Evaluate(L"v", L"x=3"));
  EXPECT_EQ(m_extractor->variationInForce, L"x=3");
  EXPECT_TRUE(m_extractor->GetSpecialSweepVariation().empty());
}

TEST_F(EvaluationValuesTest, TheSetIsMadeForTheEvaluationAlone) {
  AddVariable(L"v", L"P");
  ASSERT_TRUE(Evaluate(L"v", L"x=3"));
  EXPECT_FALSE(m_extractor->askedForSharing);
  EXPECT_EQ(m_extractor->swept, (std::vector<AString>{L"x"}));
}

TEST_F(EvaluationValuesTest, AValueOffTheGridByLessThanTheToleranceIsFound) {
  AddVariable(L"v", L"P");
  for (wchar_t const * const near : {L"x=3.0000000000000133", L"x=2.99999999999998"})
    EXPECT_EQ(ValueAt(L"v", near), 32.0) << "the value of the grid counts";
  EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(EvaluationValuesTest, AValueOffTheGridByMoreIsOnNoSweep) {
  AddVariable(L"v", L"P");
  Solve(*m_solution, L"x=3.0000000000001; y=2", {1.0});
  ExpectRefused(Evaluate(L"v", L"x=3.0000000000001"), {{24586, {L"x", L"x=3.0000000000001"}}});
}

TEST_F(EvaluationValuesTest, AVariableThatNoSweepRunsOverIsNamedWithTheVariation) {
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"x=1; y=2"), {{24586, {L"y", L"x=1; y=2"}}});
}

TEST_F(EvaluationValuesTest, ASweepWithoutValuesIsToldByTheNameOfTheOutputVariable) {
  AddVariable(L"v", L"P");
  AddSweep(m_y, {});
  ExpectRefused(Evaluate(L"v", L"x=1; y=2"), {{24585, {L"v"}}});
}

TEST_F(EvaluationValuesTest, OfEqualPlacesTheFirstCounts) {
  AddVariable(L"v", L"P");
  AddSweep(m_y, {2.0, 2.0, 5.0});
  EXPECT_EQ(ValueAt(L"v", L"x=1; y=2"), 12.0);
}

TEST_F(EvaluationValuesTest, APostprocessSweepIsNarrowedToOneValueThatWasNeverSolved) {
  Variable distance(L"d", L"0");
  m_design.ownVariables.variables.push_back(&distance);
  auto * const sweep = new PostprocessSweep(&distance, Units::kNoUnits);
  sweep->SetMinMaxIncr(0.0, 10.0, 2.5);
  m_extractor->AddSweep(sweep);
  AddVariable(L"v", L"P + d");
  EXPECT_EQ(ValueAt(L"v", L"x=1; d=7.25"), 19.25);
  EXPECT_EQ(sweep->GetMin(), 0.0);
  EXPECT_EQ(sweep->GetMax(), 10.0);
  EXPECT_EQ(sweep->GetIncrement(), 2.5);
  EXPECT_EQ(distance.GetValue().GetSIValue(), 0.0);
  EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(EvaluationValuesTest, ATextIsOnNoPostprocessSweep) {
  Variable distance(L"d", L"0");
  m_design.ownVariables.variables.push_back(&distance);
  auto * const sweep = new PostprocessSweep(&distance, Units::kNoUnits);
  m_extractor->AddSweep(sweep);
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"x=1; d=far"), {{24586, {L"d", L"x=1; d=far"}}});
}

TEST_F(EvaluationValuesTest, AComplexNumberIsOnNoPostprocessSweep) {
  Variable distance(L"d", L"0");
  m_design.ownVariables.variables.push_back(&distance);
  m_extractor->AddSweep(new PostprocessSweep(&distance, Units::kNoUnits));
  AddVariable(L"v", L"P");
  ExpectRefused(Evaluate(L"v", L"x=1; d=1+2i"), {{24586, {L"d", L"x=1; d=1+2i"}}});
}

TEST_F(EvaluationValuesTest, SpecialSweepsStandInFrontOfTheOthers) {
  AddVariable(L"v", L"P");
  Variable & frequency = *Value::GetIntrinsicVariable(val::kIntrinsicFrequency);
  Sweep special(val::kReal, Units::kNoUnits, &frequency);
  special.Column().SetValues(std::vector<double>{1e9});
  m_extractor->special = &special;
  EXPECT_EQ(ValueAt(L"v", L"F=1e9; x=2"), 22.0);
  EXPECT_EQ(m_extractor->swept, (std::vector<AString>{L"F", L"x"}));
  EXPECT_EQ(m_extractor->variationInForce, L"F=1e9; x=2");
  m_extractor->special = nullptr;
}

TEST_F(EvaluationValuesTest, MoreThanOneValueIsNoResultThoughTheFirstIsWrittenAsMeant) {
  AddVariable(L"v", L"P");
  Variable & frequency = *Value::GetIntrinsicVariable(val::kIntrinsicFrequency);
  Sweep special(val::kReal, Units::kNoUnits, &frequency);
  special.Column().SetValues(std::vector<double>{1e9, 2e9});
  m_extractor->special = &special;
  EXPECT_FALSE(Evaluate(L"v", L"F=1e9; x=2"));
  EXPECT_EQ(m_result.GetSIValue(), 22.0);
  EXPECT_TRUE(TakeMessages().empty());
  m_extractor->special = nullptr;
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, NoValueIsNoResult) {
  AddVariable(L"v", L"P");
  RecordingService service;
  m_design.isV2 = true;
  m_design.reportUpdateService = &service;
  EXPECT_FALSE(Evaluate(L"v", L"x=2"));
  EXPECT_FALSE(m_result.IsNumber());
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, OnAV2DesignTheUpdateServiceTakesTheSet) {
  AddVariable(L"v", L"P");
  RecordingService service;
  service.updates = true;
  m_design.isV2 = true;
  m_design.reportUpdateService = &service;
  EXPECT_EQ(ValueAt(L"v", L"x=2"), 22.0);
  EXPECT_EQ(service.asked, 1);
  EXPECT_EQ(service.lastFlags, 0);
  ExpectNothingLeft();
}

TEST_F(EvaluationValuesTest, WhereAProductMakesNoSetOrComponentThereIsNoValue) {
  AddVariable(L"v", L"P");
  m_extractor->refusesSets = true;
  ExpectRefused(Evaluate(L"v", L"x=2"), {});
  m_extractor->refusesSets = false;
  m_extractor->refusesComponents = true;
  ExpectRefused(Evaluate(L"v", L"x=2"), {});
}

TEST_F(EvaluationValuesTest, UnderTheRewriteAnotherModuleAnswers) {
  AddVariable(L"v", L"P");
  m_desktop.rewrite = true;
  AssertWatch::Expect(
      "!\"Use Idesign to get IOutputVariableMgrForProducts and call it's GetOutputvariableValue function\"");
  EXPECT_FALSE(Evaluate(L"v", L"x=1"));
  m_desktop.rewrite = false;
}

TEST_F(EvaluationValuesTest, EvaluationsLeaveNothingBehindHoweverMany) {
#ifdef NDEBUG
  constexpr int evaluations = 10000;
#else
  constexpr int evaluations = 500;
#endif
  AddVariable(L"v", L"P + Q");
  ASSERT_TRUE(Evaluate(L"v", L"x=1"));
  int const simValues = support::CountedSimValue::alive;
  EXPECT_EQ(simValues, 2) << "the words of the expression, for the next evaluation";
  bool areGood = true;
  for (int i = 0; i < evaluations; ++i)
    areGood = Evaluate(L"v", i % 2 ? L"x=1" : L"x=3") && m_result.GetSIValue() == (i % 2 ? 12.012 : 32.032) && areGood;
  EXPECT_TRUE(areGood);
  EXPECT_EQ(support::CountedSimValue::alive, simValues);
  ExpectNothingLeft();
  m_extractor->DoGarbageCollection({});
  EXPECT_EQ(support::CountedSimValue::alive, 0);
}

TEST_F(EvaluationValuesTest, WithoutAnInstanceTheVariationAloneCounts) {
  AddVariable(L"v", L"P");
  AddSweep(m_y, {2.0});
  m_design.ownInstances.clear();
  ExpectRefused(Evaluate(L"v", L""), {{24729, {L"Setup : Sweep"}}});
  ExpectRefused(Evaluate(L"v", L"x=1"), {{24729, {L"Setup : Sweep"}}});
  EXPECT_EQ(ValueAt(L"v", L"x=3; y=2"), 32.0);
  EXPECT_TRUE(TakeMessages().empty());
  ExpectNothingLeft();
}
