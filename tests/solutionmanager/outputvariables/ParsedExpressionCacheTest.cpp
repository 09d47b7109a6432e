#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"
#include "solutionmanager/outputvariables/SharedAnalyses.h"

#include "plotkit/simvalue/SimValueContext.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace {

/// Knows S11 and S21 of report type 1 and Z of type 2; "bad" is no expression.
class QuantityManager : public support::TestManager {
public:
  using TestManager::TestManager;
  bool GetQuantityTypeInfo(ReportTypeMap &, AString const & expression, std::vector<OutputVariable *> *,
                           SimValuesByReportType * simValues, SolutionPointSet *) const override {
    ++analyses;
    if (expression == L"loud")
      m_messages->Post(KelvroMessage(24559, KelvroMessage::kError, 6));
    if (expression == L"empty")
      *simValues = {{3, {}}};
    if (expression == L"S11+S21+Z")
      *simValues = {{1, {L"S11", L"S21"}}, {2, {L"Z"}}};
    return expression != L"bad";
  }
  mutable int analyses = 0;

private:
  MessageManager * m_messages = &GetIKitDesktop()->GetMessageManager();
};

class ParsedExpressionCacheTest : public support::ModelTest {
protected:
  QuantityManager m_quantities{&m_design};
};

} // namespace

TEST_F(ParsedExpressionCacheTest, TheFirstQuestionAnalysesAndTheOthersDoNot) {
  CParsedExpressionCache cache(L"S11+S21+Z", &m_quantities);
  EXPECT_EQ(m_quantities.analyses, 0);
  EXPECT_TRUE(cache.IsExpressionValid());
  EXPECT_TRUE(cache.AreThereQuantitiesOfType(2));
  EXPECT_EQ(m_quantities.analyses, 1);
  CParsedExpressionCache copy(cache);
  EXPECT_TRUE(copy.AreThereQuantitiesOfType(1));
  EXPECT_EQ(m_quantities.analyses, 1) << "a copy of a computed cache answers without analysing";
}

TEST_F(ParsedExpressionCacheTest, WithoutAManagerItIsReportedAndNothingIsValid) {
  CParsedExpressionCache cache(L"S11", nullptr);
  support::AssertWatch::Expect("m_solutionManager");
  EXPECT_FALSE(cache.IsExpressionValid());
  std::vector<unsigned> types;
  cache.GetReferencedReportTypes(types);
  EXPECT_TRUE(types.empty());
}

TEST_F(ParsedExpressionCacheTest, AContainerIgnoresNull) {
  CParsedExpressionCacheContainer container;
  container.AddElement(nullptr);
  EXPECT_EQ(container.GetFirstElementForEdit(), container.GetLastElementForEdit());
}

TEST_F(ParsedExpressionCacheTest, SimValuesAreListedByReportTypeOrAllTogether) {
  CParsedExpressionCache cache(L"S11+S21+Z", &m_quantities);
  std::vector<unsigned> types;
  cache.GetReferencedReportTypes(types);
  EXPECT_EQ(types, (std::vector<unsigned>{1, 2}));
  std::vector<AString> texts;
  cache.GetReferencedSimValues(texts, 1);
  cache.GetReferencedSimValues(texts, 5);
  EXPECT_EQ(texts, (std::vector<AString>{L"S11", L"S21"}));
  texts.clear();
  cache.GetReferencedSimValues(texts, CParsedExpressionCache::kAllReportTypes);
  EXPECT_EQ(texts, (std::vector<AString>{L"S11", L"S21", L"Z"}));
}

TEST_F(ParsedExpressionCacheTest, ATextWithoutSimValuesIsValidAndRefersToNothing) {
  CParsedExpressionCache cache(L"1+2", &m_quantities);
  EXPECT_TRUE(cache.IsExpressionValid());
  EXPECT_FALSE(cache.AreThereQuantitiesOfType(1));
  std::vector<unsigned> types;
  std::vector<OutputVariable *> variables;
  cache.GetReferencedReportTypes(types);
  cache.GetReferencedOutputVars(variables);
  EXPECT_TRUE(types.empty());
  EXPECT_TRUE(variables.empty());
}

TEST_F(ParsedExpressionCacheTest, AnExpressionThatDoesNotParseIsNotValid) {
  EXPECT_FALSE(CParsedExpressionCache(L"bad", &m_quantities).IsExpressionValid());
}

TEST_F(ParsedExpressionCacheTest, EveryQuestionAnalysesWhenItIsTheFirst) {
  std::vector<AString> texts;
  std::vector<unsigned> types;
  std::vector<OutputVariable *> variables;
  CParsedExpressionCache sims(L"S11+S21+Z", &m_quantities), reports(sims), outputs(sims), kinds(sims);
  sims.GetReferencedSimValues(texts, 2);
  reports.GetReferencedReportTypes(types);
  outputs.GetReferencedOutputVars(variables);
  EXPECT_TRUE(kinds.AreThereQuantitiesOfType(1));
  EXPECT_EQ(m_quantities.analyses, 4) << "a copy of one that was not asked yet is not computed either";
  EXPECT_EQ(texts, std::vector<AString>{L"Z"});
  EXPECT_EQ(types, (std::vector<unsigned>{1, 2}));
}

TEST_F(ParsedExpressionCacheTest, AnAssignedCacheTakesTheAnswersOver) {
  CParsedExpressionCache computed(L"S11+S21+Z", &m_quantities);
  EXPECT_TRUE(computed.IsExpressionValid());
  CParsedExpressionCache other(L"bad", &m_quantities);
  EXPECT_FALSE(other.IsExpressionValid());
  other = computed;
  EXPECT_TRUE(other.IsExpressionValid());
  EXPECT_TRUE(other.AreThereQuantitiesOfType(2));
  EXPECT_EQ(m_quantities.analyses, 2);
}

TEST_F(ParsedExpressionCacheTest, AReportTypeWithoutSimValuesCountsAsNoQuantityThere) {
  CParsedExpressionCache cache(L"empty", &m_quantities);
  EXPECT_FALSE(cache.AreThereQuantitiesOfType(3));
  std::vector<unsigned> types;
  cache.GetReferencedReportTypes(types);
  EXPECT_EQ(types, std::vector<unsigned>{3});
}

TEST_F(ParsedExpressionCacheTest, TheUserHearsNothingOfTheAnalysis) {
  CParsedExpressionCache cache(L"loud", &m_quantities);
  EXPECT_TRUE(cache.IsExpressionValid());
  EXPECT_TRUE(m_desktop.posted.empty());
  EXPECT_FALSE(m_desktop.GetMessageManager().IsHoldingBack());
}

TEST_F(ParsedExpressionCacheTest, ADerivedCacheMayAnalyseInItsOwnWayButMustSayThatItDid) {
  class Lazy : public CParsedExpressionCache {
  public:
    using CParsedExpressionCache::CParsedExpressionCache;
    void PopulateCache() override {}
  };
  support::AssertWatch::Expect("m_cacheComputed");
  EXPECT_FALSE(Lazy(L"S11+S21+Z", &m_quantities).IsExpressionValid());
  EXPECT_EQ(m_quantities.analyses, 0);
}

TEST_F(ParsedExpressionCacheTest, TheManagerMakesOneForTheCallerToOwn) {
  std::unique_ptr<CParsedExpressionCache> const cache(m_quantities.CreateParsedExpressionCache(L"S11+S21+Z"));
  EXPECT_EQ(cache->GetSolutionManager(), &m_quantities);
  EXPECT_EQ(m_quantities.analyses, 0);
  EXPECT_TRUE(cache->IsExpressionValid());
}

TEST_F(ParsedExpressionCacheTest, AnEmptyContainerMayEnterAMap) {
  std::map<int, CParsedExpressionCacheContainer> containers;
  containers.emplace(1, CParsedExpressionCacheContainer());
  containers[1].AddElement(new CParsedExpressionCache(L"1", &m_quantities));
  EXPECT_EQ(std::distance(containers[1].GetFirstElementForEdit(), containers[1].GetLastElementForEdit()), 1);
}

TEST_F(ParsedExpressionCacheTest, ACopyOfAFilledContainerSharesWhatItDoesNotOwnAsMeant) {
  CParsedExpressionCacheContainer container;
  auto * cache = new CParsedExpressionCache(L"1", &m_quantities);
  container.AddElement(cache);
  CParsedExpressionCacheContainer copy(container);
  ASSERT_EQ(std::distance(copy.GetFirstElementForEdit(), copy.GetLastElementForEdit()), 1);
  EXPECT_EQ(*copy.GetFirstElementForEdit(), cache);
}

TEST_F(ParsedExpressionCacheTest, AContainerFreesEachElementAtItsEndAndWhenItBecomesACopy) {
  static int alive;
  struct Counted : CParsedExpressionCache {
    explicit Counted(BaseSolutionManager const * manager) : CParsedExpressionCache(L"1", manager) { ++alive; }
    ~Counted() override { --alive; }
  };
  alive = 0;
  {
    CParsedExpressionCacheContainer container;
    container.AddElement(new Counted(&m_quantities));
    container.AddElement(new Counted(&m_quantities));
    CParsedExpressionCacheContainer other;
    other.AddElement(new Counted(&m_quantities));
    other = container;
    EXPECT_EQ(alive, 2);
    EXPECT_EQ(std::distance(other.GetFirstElementForEdit(), other.GetLastElementForEdit()), 2);
  }
  EXPECT_EQ(alive, 0);
}

TEST_F(ParsedExpressionCacheTest, WhileAnalysesAreSharedATextIsAnalysedOnceForAllCachesOfTheManager) {
  auto const ask = [this](wchar_t const * text) {
    return CParsedExpressionCache(text, &m_quantities).IsExpressionValid();
  };
  {
    SharedAnalyses const outer(m_quantities);
    EXPECT_TRUE(ask(L"S11+S21+Z"));
    {
      SharedAnalyses const inner(m_quantities);
      EXPECT_TRUE(ask(L"S11+S21+Z")) << "the inner one serves through the outer one";
      EXPECT_EQ(SharedAnalyses::Of(&m_quantities), &outer);
    }
    EXPECT_TRUE(ask(L"S11+S21+Z"));
    EXPECT_EQ(m_quantities.analyses, 1);
    EXPECT_EQ(SharedAnalyses::Of(nullptr), nullptr) << "it serves its own manager alone";
  }
  EXPECT_EQ(SharedAnalyses::Of(&m_quantities), nullptr);
  EXPECT_TRUE(ask(L"S11+S21+Z"));
  EXPECT_EQ(m_quantities.analyses, 2) << "the design may have changed";
}
