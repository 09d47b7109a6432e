#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "tests/solutionmanager/outputvariables/EvaluationFixture.h"

namespace {

using support::AssertWatch;
using SimValues = BaseSolutionManager::SimValuesByReportType;
using ReportTypes = ISolutionMgr::ReportTypeMap;

class QuantityTypesTest : public support::EvaluationTest {
protected:
  bool Find(wchar_t const * expression) {
    m_reportTypes.clear();
    m_variables.clear();
    m_simValues.clear();
    return Manager().GetQuantityTypeInfo(m_reportTypes, expression, &m_variables, &m_simValues, nullptr);
  }
  std::vector<AString> Names() const {
    std::vector<AString> names;
    for (OutputVariable const * const variable : m_variables)
      names.push_back(variable->GetName());
    return names;
  }
  std::vector<AString> ReferencedBy(wchar_t const * expression, bool isGood = true) {
    std::vector<AString> names;
    EXPECT_EQ(Manager().GetReferencedVariables(expression, names, nullptr), isGood);
    return names;
  }

  ReportTypes m_reportTypes;
  std::vector<OutputVariable *> m_variables;
  SimValues m_simValues;
};

} // namespace

TEST_F(QuantityTypesTest, AnExpressionTellsTheQuantitiesThatItNeeds) {
  ASSERT_TRUE(Find(L"P + x*R + P/Q"));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"P", L"Q"}}, {2, {L"R"}}}));
  EXPECT_EQ(m_reportTypes, (ReportTypes{{1, {SimValueContext(), SimValueContext()}}, {2, {SimValueContext()}}}));
  EXPECT_TRUE(m_variables.empty());
}

TEST_F(QuantityTypesTest, WithoutForeignWordsNothingIsAdded) {
  EXPECT_TRUE(Find(L"2*x + y"));
  EXPECT_TRUE(m_reportTypes.empty());
  EXPECT_EQ(m_quantities->askedForReportType, 0);
}

TEST_F(QuantityTypesTest, ABadExpressionIsRefused) {
  EXPECT_FALSE(Find(L"P +"));
  EXPECT_FALSE(Find(L"P + unheard_of"));
  EXPECT_TRUE(m_reportTypes.empty());
}

TEST_F(QuantityTypesTest, OutputVariablesAreOpened) {
  AddVariable(L"inner", L"P + 1");
  AddVariable(L"outer", L"inner*R");
  ASSERT_TRUE(Find(L"outer + Q"));
  EXPECT_EQ(Names(), (std::vector<AString>{L"inner", L"outer"})) << "what a variable refers to comes before it";
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"P", L"Q"}}, {2, {L"R"}}}));
}

TEST_F(QuantityTypesTest, ListAndMapMayBeLeftOut) {
  AddVariable(L"v", L"P");
  ReportTypes reportTypes;
  EXPECT_TRUE(Manager().GetQuantityTypeInfo(reportTypes, L"v", nullptr, nullptr, nullptr));
  EXPECT_EQ(reportTypes.size(), 1u);
}

TEST_F(QuantityTypesTest, ACannedVariableComesBeforeAQuantityOfItsName) {
  m_extractor->canned = L"R";
  ASSERT_TRUE(Find(L"R"));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"P"}}}));
  m_variables.clear();
  Manager().DoGarbageCollection({});
}

TEST_F(QuantityTypesTest, AVariableWhoseExpressionIsBadMakesTheAnswerFalseAndCountsAsAWordAsMeant) {
  ForceVariable(L"v", L"P + unheard_of");
  EXPECT_FALSE(Find(L"v + Q"));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"Q"}}})) << "the walk goes on";
  EXPECT_TRUE(m_variables.empty());
  EXPECT_EQ(m_quantities->askedForReportType, 2) << "the variable's name is asked for as a quantity too";
}

TEST_F(QuantityTypesTest, AWordWithoutAReportTypeAddsNothingAndIsNoFault) {
  m_quantities->knowsReportTypes = false;
  EXPECT_TRUE(Find(L"P + Q"));
  EXPECT_TRUE(m_reportTypes.empty());
  EXPECT_TRUE(m_simValues.empty());
}

TEST_F(QuantityTypesTest, TheFirstSolutionThatKnowsAWordEndsTheSearch) {
  auto & second = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Other", L"Sweep")));
  second.SetExtractor(new support::EvaluationExtractor(&Manager(), &second, m_x, m_y));
  ASSERT_TRUE(Find(L"P"));
  EXPECT_EQ(m_quantities->askedForReportType, 1);
  EXPECT_EQ(m_reportTypes[1].size(), 1u);
}

TEST_F(QuantityTypesTest, AnAnswerOfSeveralReportTypesIsReportedAndTheFirstCounts) {
  m_quantities->answersTwoTypes = true;
  AssertWatch::Expect("tempinfo.size()<=1");
  ASSERT_TRUE(Find(L"P"));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"P"}}}));
}

TEST_F(QuantityTypesTest, DefinitionsThatGoRoundInACircleAreRefused) {
  ForceVariable(L"a", L"P");
  ForceVariable(L"b", L"a + 1");
  Manager().FindOutputVariable(L"a")->SetValueBaseText(L"b + 1", support::EvaluationExtractor::RealState());
  EXPECT_FALSE(Find(L"a"));
  EXPECT_FALSE(Find(L"b + P"));
  ReferencedBy(L"a", false);
  EXPECT_FALSE(Evaluate(L"a", L"x=1"));
}

TEST_F(QuantityTypesTest, VariablesThatEachUseTheTwoBeforeAreOpenedOnceEach) {
  AddChainOfPairs(L"P");
  ASSERT_TRUE(Find(L"f149"));
  EXPECT_EQ(m_variables.size(), 150u);
  EXPECT_EQ(m_variables.back()->GetName(), L"f149");
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"Q", L"P"}}})) << "words of a variable that is met again are listed once";
  EXPECT_EQ(m_quantities->askedForReportType, 2);
  EXPECT_EQ(ReferencedBy(L"f149"), (std::vector<AString>{L"Q", L"P"}));
}

TEST_F(QuantityTypesTest, VariablesThatEachUseTheTwoBeforeAndABadOneAreOpenedOnceEach) {
  AddChainOfPairs(L"P + unheard_of");
  EXPECT_FALSE(Find(L"f149"));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"Q"}}})) << "the walk goes on";
  EXPECT_LT(m_quantities->askedForReportType, 1000);
}

TEST_F(QuantityTypesTest, AQuestionThatIsAskedAgainOpensEverythingAgain) {
  AddVariable(L"v", L"P");
  ASSERT_TRUE(Find(L"v"));
  EXPECT_TRUE(Manager().GetQuantityTypeInfo(m_reportTypes, L"v", &m_variables, &m_simValues, nullptr));
  EXPECT_EQ(m_simValues, (SimValues{{1, {L"P", L"P"}}}));
  EXPECT_EQ(Names(), (std::vector<AString>{L"v", L"v"}));
}

TEST_F(QuantityTypesTest, TheWordsOfACannedVariableAreReferredTo) {
  m_extractor->canned = L"Twice";
  EXPECT_EQ(ReferencedBy(L"Twice + Q"), (std::vector<AString>{L"P", L"Q"}));
  Manager().DoGarbageCollection({});
}

TEST_F(QuantityTypesTest, TheNumberOfReportTypesIsMinusOneForABadExpression) {
  ReportTypes reportTypes;
  EXPECT_EQ(Manager().GetOutputVariableReportTypes(L"P + Q", reportTypes), 1);
  EXPECT_EQ(Manager().GetOutputVariableReportTypes(L"R", reportTypes), 2) << "the map's size counts";
  EXPECT_EQ(Manager().GetOutputVariableReportTypes(L"x", reportTypes), 2);
  EXPECT_EQ(Manager().GetOutputVariableReportTypes(L"P +", reportTypes), -1);
}

TEST_F(QuantityTypesTest, TheBaseManagerAsksEveryProductForReportTypes) {
  support::TestManager manager(&m_design);
  ReportTypes reportTypes;
  EXPECT_TRUE(manager.GetQuantityTypeInfo(reportTypes, L"x", nullptr, nullptr, nullptr));
  EXPECT_FALSE(manager.GetQuantityTypeInfo(reportTypes, L"P", nullptr, nullptr, nullptr)) << "nobody parses the word";
}

TEST_F(QuantityTypesTest, TheValueOfAnExpressionIsKnownBeforeItIsEvaluated) {
  Value value;
  EXPECT_TRUE(Manager().GetValueInfoForExpression(L"2*P + Q", m_solution, value));
  EXPECT_EQ(value.GetParameterType(), val::kReal);
  EXPECT_TRUE(Manager().GetValueInfoForExpression(L"C*x", m_solution->GetID(), value));
  EXPECT_EQ(value.GetParameterType(), val::kComplex);
}

TEST_F(QuantityTypesTest, ValuesOfNoOrSeveralReportTypesAreNotKnown) {
  Value value;
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P + R", m_solution, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"2*x", m_solution, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P +", m_solution, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P", nullptr, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P", 999L, value));
}

TEST_F(QuantityTypesTest, ContextsOfSeveralDomainsAreRefused) {
  Value value;
  m_quantities->contextsDiffer = true;
  EXPECT_TRUE(Manager().GetValueInfoForExpression(L"P", m_solution, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P + Q", m_solution, value));
}

TEST_F(QuantityTypesTest, TheContextOfTheExpressionGivesTheDomain) {
  Value value;
  m_quantities->contextOfQuantities.SetCalculationType(static_cast<rep::CalculationType>(4));
  m_extractor->askedDomains.clear();
  ASSERT_TRUE(Manager().GetValueInfoForExpression(L"P", m_solution, value));
  EXPECT_EQ(m_extractor->askedDomains.back(), 4);
}

TEST_F(QuantityTypesTest, ASolutionWithoutAnExtractorKnowsNoValueInAContext) {
  auto & bare = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Other", L"Sweep")));
  bare.SetExtractor(nullptr);
  Value value;
  EXPECT_TRUE(Manager().GetValueInfoForExpression(L"P", m_solution, value));
  EXPECT_FALSE(Manager().GetValueInfoForExpression(L"P", &bare, value));
}

TEST_F(QuantityTypesTest, AContextWithoutAKindIsThatOfEachSolutionsOwnParser) {
  Value value;
  SimValueContext const own(3, static_cast<rep::CalculationType>(6), 2, 0, 1.0, 1.0, 0.0, 0.0);
  m_extractor->SetSimValueContext(&own);
  m_quantities->contextOfQuantities = SimValueContext(-1, rep::CalculationType{}, 2, 0, 1.0, 1.0, 0.0, 0.0);
  m_extractor->askedDomains.clear();
  ASSERT_TRUE(Manager().GetValueInfoForExpression(L"P", m_solution, value));
  EXPECT_EQ(m_extractor->askedDomains.back(), 6);
}

TEST_F(QuantityTypesTest, WordsThatRemainWhenAllOutputVariablesAreOpenedAreReferredTo) {
  AddVariable(L"inner", L"P + x");
  AddVariable(L"outer", L"inner*R");
  EXPECT_EQ(ReferencedBy(L"outer + Q + P"), (std::vector<AString>{L"P", L"R", L"Q", L"P"}));
}

TEST_F(QuantityTypesTest, AnExpressionOfDesignVariablesAloneRefersToNoWords) {
  EXPECT_TRUE(ReferencedBy(L"2*x + y").empty());
  EXPECT_TRUE(ReferencedBy(L"17").empty());
  EXPECT_TRUE(ReferencedBy(L"").empty());
  EXPECT_EQ(m_design.nameSpaceCalls.size(), 0u) << "the design sets no name space up for it";
}

TEST_F(QuantityTypesTest, AnExpressionCacheIsFilledWithWhatTheExpressionNeeds) {
  AddVariable(L"v", L"P");
  CParsedExpressionCache cache(L"v + R", &Manager());
  std::vector<AString> texts;
  cache.GetReferencedSimValues(texts, CParsedExpressionCache::kAllReportTypes);
  EXPECT_TRUE(cache.IsExpressionValid());
  EXPECT_EQ(texts, (std::vector<AString>{L"P", L"R"}));
}

TEST_F(QuantityTypesTest, AValidSimValueIsKnownToAnExtractorOfSomeReportType) {
  EXPECT_TRUE(Manager().IsValidSimValue(L"P"));
  EXPECT_FALSE(Manager().IsValidSimValue(L"x"));
  m_quantities->reportTypeNames.clear();
  EXPECT_FALSE(Manager().IsValidSimValue(L"P")) << "without report types a manager knows no sim value";
  EXPECT_FALSE(support::TestManager(&m_design).IsValidSimValue(L"P"));
}

TEST_F(QuantityTypesTest, ParsersAreThoseOfAllSolutionsOrOfOneSet) {
  auto & second = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Other", L"Sweep")));
  std::vector<IValueParser *> parsers;
  Manager().GetValParserList(parsers, nullptr);
  EXPECT_EQ(parsers, (std::vector<IValueParser *>{m_extractor, second.GetBaseSimDataExtractor()}));
  SolutionPointSet set(*m_extractor);
  Manager().GetImportedParserList(parsers, &set);
  EXPECT_EQ(parsers.size(), 3u) << "the list is appended to";
  EXPECT_EQ(parsers.back(), m_extractor);
}

TEST_F(QuantityTypesTest, AProductsOwnParsersAreNoneOfTheImportedOnesAsMeant) {
  class OwnParsers : public support::TestManager {
  public:
    using TestManager::TestManager;
    void GetValParserList(std::vector<IValueParser *> & parsers, SolutionPointSet *) const override {
      parsers.push_back(nullptr);
    }
  };
  OwnParsers const product(&m_design);
  SolutionPointSet set(*m_extractor);
  std::vector<IValueParser *> parsers;
  product.GetImportedParserList(parsers, &set);
  EXPECT_EQ(parsers, std::vector<IValueParser *>{m_extractor});
}

TEST_F(QuantityTypesTest, ASolutionWithoutAnExtractorGivesANullParserAsMeant) {
  auto & bare = static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"Other", L"Sweep")));
  BaseSimDataExtractor former(&Manager(), &bare);
  bare.SetExtractor(nullptr);
  SolutionPointSet set(former);
  std::vector<IValueParser *> parsers;
  Manager().GetValParserList(parsers, &set);
  Manager().GetImportedParserList(parsers, &set);
  EXPECT_EQ(parsers, (std::vector<IValueParser *>{nullptr, nullptr}));
}

TEST_F(QuantityTypesTest, AChainOfVariablesThatIsTooDeepToBeEvaluatedIsRefused) {
  ForceVariable(L"v0", L"P");
  for (int i = 1; i <= 1000; ++i)
    ForceVariable(AString::Format(L"v%d", i).c_str(), AString::Format(L"v%d + 1", i - 1).c_str());
  EXPECT_TRUE(Find(L"v150"));
  EXPECT_FALSE(Find(L"v1000"));
  ReferencedBy(L"v150");
  ReferencedBy(L"v1000", false);
}
