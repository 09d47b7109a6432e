// What the words of an expression mean to an extractor.

#include "basekit/value/AComplex.h"
#include "plotkit/simvalue/ReferencesSimValuesMessage.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/extraction/SDEOutputDataValueParser.h"
#include "tests/solutionmanager/extraction/ReportExtractor.h"
#include "tests/solutionmanager/outputvariables/EvaluationFixture.h"

namespace {

using support::AssertWatch;

ValueState UnknownQuantity() {
  return {Units::GetDefaultUnits(Units::kNoUnitType), Units::kNoUnitType, 1, val::kNotAQuantity};
}

SimValueContext ContextOf(int domain) {
  return SimValueContext(3, static_cast<rep::CalculationType>(domain), 2, 0, 1.0, 1.0, 0.0, 0.0);
}

class TextResolutionTest : public support::EvaluationTest {
protected:
  std::size_t SimValueCount() const {
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    m_extractor->DesignFileWrite(block);
    std::size_t count = 0;
    for (auto const & item : block)
      count += item->Name() == BaseSimDataExtractor::kSimValueBlockName ? 1 : 0;
    return count;
  }
};

} // namespace

TEST_F(TextResolutionTest, AWordIsACannedVariableBeforeAQuantity) {
  m_extractor->canned = L"P";
  auto const * const variable = dynamic_cast<OutputVariable const *>(m_extractor->ParseText(L"P"));
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(variable->GetValueBaseText(), L"2*P");
  EXPECT_EQ(m_extractor->ParseText(L"P"), variable) << "made on first use";
  Manager().DoGarbageCollection({});
}

TEST_F(TextResolutionTest, AWordIsACannedVariableBeforeAnOutputVariable) {
  AddVariable(L"v", L"Q");
  m_extractor->canned = L"v";
  auto const * const variable = dynamic_cast<OutputVariable const *>(m_extractor->ParseText(L"v"));
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(variable->GetValueBaseText(), L"2*P");
  Manager().DoGarbageCollection({});
}

TEST_F(TextResolutionTest, AWordIsAnOutputVariableBeforeAQuantity) {
  OutputVariable & variable = AddVariable(L"v", L"P");
  EXPECT_EQ(m_extractor->ParseText(L"v"), &variable);
  EXPECT_EQ(SimValueCount(), 0u);
}

TEST_F(TextResolutionTest, TheSameWordInTheSameContextIsTheSameSimValue) {
  ValueBase const * const first = m_extractor->ParseText(L"P");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(m_extractor->ParseText(L"P"), first);
  SimValueContext const other = ContextOf(2);
  m_extractor->SetSimValueContext(&other);
  ValueBase const * const second = m_extractor->ParseText(L"P");
  EXPECT_NE(second, first);
  EXPECT_EQ(dynamic_cast<SimValue const &>(*second).GetSimValueContext(), other);
  m_extractor->SetSimValueContext(nullptr);
  EXPECT_EQ(m_extractor->ParseText(L"P"), first);
  EXPECT_EQ(SimValueCount(), 2u);
}

TEST_F(TextResolutionTest, AWordThatTheProductDoesNotKnowIsNothing) {
  EXPECT_EQ(m_extractor->ParseText(L"unheard_of"), nullptr);
  EXPECT_EQ(SimValueCount(), 0u);
  EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(TextResolutionTest, SimValuesThatNothingRefersToGoInACollection) {
  {
    ValueParserSpan const span(m_extractor);
    Value value;
    ASSERT_TRUE(value.SetValueText(L"P + Q"));
    m_extractor->ParseText(L"C");
    EXPECT_EQ(SimValueCount(), 3u);
    m_extractor->DoGarbageCollection({});
    EXPECT_EQ(SimValueCount(), 2u);
  }
  m_extractor->DoGarbageCollection({});
  EXPECT_EQ(SimValueCount(), 0u);
}

TEST_F(TextResolutionTest, TheStateOfAWordIsThatOfTheVariableElseOfTheQuantity) {
  ValueState const array(Units::kNoUnits, Units::kNoUnitType, 1, val::kRealArray);
  ForceVariable(L"C", L"P", array);
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"C") == array) << "the stored state, whatever the expression";
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"Q") == support::EvaluationExtractor::RealState());
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"unheard_of") == UnknownQuantity());
}

TEST_F(TextResolutionTest, QuantitiesAreAskedForInTheDomainInForce) {
  SimValueContext const own = ContextOf(6);
  m_extractor->SetSimValueContext(&own);
  m_extractor->GetValueStateFromText(L"Q");
  EXPECT_EQ(m_extractor->askedDomains.back(), 6);
  SimValueContext const given = ContextOf(4);
  m_extractor->GetValueStateFromText(L"Q", &given);
  EXPECT_EQ(m_extractor->askedDomains.back(), 4);
  m_extractor->GetValueStateFromText(L"Q", nullptr);
  EXPECT_EQ(m_extractor->askedDomains.back(), 0) << "no context is the usual one";
}

TEST_F(TextResolutionTest, InAContextAVariableCountsOnlyWhenItIsValidThere) {
  AddVariable(L"v", L"Q");
  SimValueContext const good = ContextOf(0);
  SimValueContext const bad = ContextOf(5);
  EXPECT_EQ(m_extractor->GetValueStateFromText(L"v", &good).parameterType, val::kReal);
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"v", &bad) == UnknownQuantity());
  EXPECT_EQ(m_extractor->GetValueStateFromText(L"v").parameterType, val::kReal);
}

TEST_F(TextResolutionTest, AVariableThatLeadsBackToItselfIsUnknownInAContext) {
  ForceVariable(L"a", L"P");
  ForceVariable(L"b", L"a");
  Manager().FindOutputVariable(L"a")->SetValueBaseText(L"b", support::EvaluationExtractor::RealState());
  SimValueContext const context;
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"a", &context) == UnknownQuantity());
  EXPECT_TRUE(m_extractor->GetValueStateFromText(L"b", &context) == UnknownQuantity());
}

TEST_F(TextResolutionTest, UnderTheRewriteEvenTheNameOfAVariableIsAskedOfTheProduct) {
  ForceVariable(L"C", L"P");
  m_desktop.rewrite = true;
  EXPECT_EQ(m_extractor->GetValueStateFromText(L"C").parameterType, val::kComplex);
  m_desktop.rewrite = false;
  EXPECT_EQ(m_extractor->GetValueStateFromText(L"C").parameterType, val::kReal);
}

TEST_F(TextResolutionTest, TheSimValuesOfAnExpressionAreGathered) {
  AddVariable(L"v", L"Q + 1");
  ValueParserSpan const span(m_extractor);
  Value value;
  ASSERT_TRUE(value.SetValueText(L"P + 2*P + v"));
  std::vector<SimValue *> simValues;
  auto * const base = const_cast<ValueBase *>(value.GetValueBase());
  EXPECT_TRUE(m_extractor->GetReferencedSimValues(base, simValues, nullptr));
  std::set<AString> texts;
  for (SimValue const * const simValue : simValues)
    texts.insert(simValue->GetText());
  EXPECT_EQ(texts, (std::set<AString>{L"P", L"Q"}));
  EXPECT_EQ(simValues.size(), 2u) << "each once";
}

TEST_F(TextResolutionTest, AnExpressionWithoutSimValuesReferencesNone) {
  std::vector<SimValue *> simValues;
  Variable variable(L"t", L"1");
  EXPECT_FALSE(m_extractor->GetReferencedSimValues(&variable, simValues, nullptr));
  EXPECT_FALSE(m_extractor->GetReferencedSimValues(nullptr, simValues, nullptr));
  SimValue single(L"P", SimValueContext());
  EXPECT_TRUE(m_extractor->GetReferencedSimValues(&single, simValues, nullptr));
  EXPECT_EQ(simValues, (std::vector<SimValue *>{&single}));
  EXPECT_TRUE(m_extractor->GetReferencedSimValues(&variable, simValues, nullptr)) << "the list is not empty";
}

TEST_F(TextResolutionTest, TheMessageSaysForWhomItAsks) {
  SolutionPointSet set(*m_extractor);
  ReferencesSimValuesMessage message(m_extractor, &set, false);
  EXPECT_EQ(message.GetTag(), 0x76616C68u);
  EXPECT_EQ(message.GetISimDataExtractor(), m_extractor);
  EXPECT_EQ(message.GetSolutionPointSet(), &set);
}

TEST_F(TextResolutionTest, WhereOneIsEnoughTheFirstEndsTheGathering) {
  SimValue first(L"P", SimValueContext());
  SimValue second(L"Q", SimValueContext());
  ReferencesSimValuesMessage message(m_extractor, nullptr, true);
  EXPECT_TRUE(first.ReceiveMsg(message));
  EXPECT_TRUE(second.ReceiveMsg(message));
  EXPECT_EQ(message.GetSimValues(), (std::vector<SimValue *>{&first}));
  ValueMessage other(1);
  EXPECT_FALSE(first.ReceiveMsg(other));
}

TEST_F(TextResolutionTest, DatasetsAreTheDesktopsManagers) {
  EXPECT_EQ(m_extractor->GetDynamicDatasetValue(nullptr, nullptr), nullptr) << "there is no such manager";
  EXPECT_EQ(m_extractor->GetDynamicDatasetValueForValidation(ValueState(), ValueState()), nullptr);
  support::TestSimValueManager simValues;
  m_design.simValueManagerHost = &simValues;
  SimValueContext const context = ContextOf(4);
  m_extractor->SetSimValueContext(&context);
  EXPECT_EQ(m_extractor->GetDynamicDatasetValue(&m_x, &m_y), &simValues.dataset);
  ASSERT_EQ(simValues.askedDatasets.size(), 1u);
  EXPECT_EQ(simValues.askedDatasets[0].solutionID, m_solution->GetID());
  EXPECT_EQ(simValues.askedDatasets[0].context, context);
  EXPECT_EQ(simValues.askedDatasets[0].first, &m_x);
  EXPECT_EQ(simValues.askedDatasets[0].second, &m_y);
  ValueState const real = support::EvaluationExtractor::RealState();
  EXPECT_EQ(m_extractor->GetDynamicDatasetValueForValidation(real, ValueState()), &simValues.validationDataset);
  EXPECT_TRUE(simValues.askedStates.at(0) == std::pair(real, ValueState()));
  m_design.simValueManagerHost = nullptr;
}

TEST_F(TextResolutionTest, AnEvaluationsParserForwardsToTheExtractors) {
  support::TestSimValueManager simValues;
  m_design.simValueManagerHost = &simValues;
  SimValueContext const context = ContextOf(4);
  SDEOutputDataValueParser parser(m_extractor, &context);
  ValueBase * const value = parser.ParseText(L"P");
  EXPECT_EQ(value, m_extractor->ParseText(L"P"));
  EXPECT_EQ(dynamic_cast<SimValue const &>(*value).GetSimValueContext(), SimValueContext())
      << "the word is bound in the extractor's own context";
  EXPECT_EQ(parser.GetValue(*value), 12.0);
  EXPECT_EQ(parser.GetComplexValue(*value), AComplex<double>(1.0, 2.0));
  EXPECT_EQ(parser.GetDynamicDatasetValue(&m_x, &m_y), &simValues.dataset);
  EXPECT_EQ(parser.GetDynamicDatasetValueForValidation(ValueState(), ValueState()), &simValues.validationDataset);
  m_design.simValueManagerHost = nullptr;
}

TEST_F(TextResolutionTest, AnEvaluationsParserTakesStatesInItsOwnContext) {
  SimValueContext const context = ContextOf(5);
  SDEOutputDataValueParser parser(m_extractor, &context);
  EXPECT_EQ(parser.GetValueStateFromText(L"P").parameterType, val::kReal);
  EXPECT_EQ(m_extractor->askedDomains.back(), 5);
  EXPECT_EQ(parser.GetValueStateFromText(L"Q").parameterType, val::kNotAQuantity);
}

TEST_F(TextResolutionTest, HooksOfAnEvaluationsParserThatMustNotBeReachedAssert) {
  SDEOutputDataValueParser parser(m_extractor, nullptr);
  EXPECT_EQ(parser.ParserHookA(), nullptr);
  EXPECT_EQ(parser.ParserHookB(), nullptr);
  EXPECT_EQ(parser.ParserHookC(), nullptr);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>(3, "0"));
  EXPECT_FALSE(parser.ParserHookD());
  EXPECT_EQ(parser.ParserHookE(), nullptr);
  EXPECT_EQ(parser.ParserHookF(), nullptr);
  EXPECT_EQ(parser.ParserHookG(), nullptr);
  EXPECT_EQ(parser.ParserHookH(), nullptr);
  EXPECT_EQ(parser.ParserHookI(), nullptr);
}

TEST_F(TextResolutionTest, TheBaseExtractorEvaluatesNothing) {
  BaseSimDataExtractor base(&Manager(), m_solution);
  EXPECT_EQ(base.GetValue(m_x), 0.0);
  EXPECT_EQ(base.GetComplexValue(m_x), AComplex<double>(0.0, 0.0));
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>(2, "0"));
}
