#include "solutionmanager/extraction/BaseSimDataExtractor.h"

#include "CoreInterfaces/solution/IDesignDataExtractorForReportSetupUI.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "CoreInterfaces/solution/ISimDataExtractor3.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/VariableNameSpace.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

#include <string>

using support::AssertWatch;

namespace {

/// A product whose one quantity is "S11".
class ProductExtractor : public BaseSimDataExtractor,
                         public ISimDataExtractor2,
                         public ISimDataExtractor3,
                         public IDesignDataExtractorForReportSetupUI {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;

  ISimDataExtractor3 * GetISimDataExtractor3() override { return this; }
  ValueState GetQuantityType(AString const & text, int domain) const override {
    askedDomain = domain;
    return text == L"S11" ? ValueState(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex) : ValueState();
  }
  using BaseSimDataExtractor::GetCategoryNames;
  int GetCategoryNames(std::vector<AString> & names, unsigned, rep::DisplayType, int domain,
                       AString const *) const override {
    names.push_back(AString::Format(L"category of %d", domain));
    return static_cast<int>(names.size());
  }
  int GetQuantityNames(std::vector<AString> & names, AString const &, unsigned, rep::DisplayType,
                       SimValueContext const & context) const override {
    names.push_back(AString::Format(L"S11 in %d", static_cast<int>(context.GetCalculationType())));
    return static_cast<int>(names.size());
  }

  void Extractor3Op1() override { called = 1; }
  void Extractor3Op2() override { called = 2; }
  void Extractor3Op3() override { called = 3; }
  void Extractor3Op4() override { called = 4; }
  void Extractor3Op5() override { called = 5; }
  void Extractor3Op6() override { called = 6; }
  void Extractor3Op7() override { called = 7; }
  void GetQuantityType(ValueState & state, bool & isInteger, AString const &, SimValueContext const &,
                       unsigned) const override {
    state.parameterType = reportedType;
    isInteger = saysInteger;
  }
  void GetEnumQuantityText(AString & text, AString const &, SimValueContext const &, unsigned, double) const override {
    text = enumText;
  }
  void Extractor3Op10() override { called = 10; }
  void Extractor3Op11() override { called = 11; }
  void Extractor3Op12() override { called = 12; }
  void Extractor3Op13() override { called = 13; }
  void Extractor3Op14() override { called = 14; }
  void Extractor3Op15() override { called = 15; }
  void Extractor3Op16() override { called = 16; }

  int called = 0;
  mutable int askedDomain = -1;
  val::ParameterType reportedType = val::kReal;
  bool saysInteger = false;
  AString enumText;
};

class ExtractorTest : public support::ModelTest {
protected:
  ExtractorTest()
      : m_solution(SolutionOf(AddSetup(L"Setup1", L"Sweep"))), m_base(&Manager(), &m_solution),
        m_product(&Manager(), &m_solution) {}

  BaseSolution & m_solution;
  BaseSimDataExtractor m_base;
  ProductExtractor m_product;
};

struct SpanRecorder : IMemoryTimeProfiler {
  SpanRecorder() : m_former(SetInstance(this)) {}
  ~SpanRecorder() override { SetInstance(m_former); }
  void Begin(char const * label) override { spans.emplace_back(label); }
  void End(char const *) override {}
  std::vector<std::string> spans;
  IMemoryTimeProfiler * m_former;
};

} // namespace

TEST_F(ExtractorTest, IsNamedByItsSetupAndSolution) {
  EXPECT_EQ(m_base.GetName(), L"Setup1");
  EXPECT_EQ(m_base.GetSolutionName(), L"Sweep");
  EXPECT_EQ(m_base.GetISolution(), static_cast<ISolution *>(&m_solution));
  EXPECT_EQ(m_base.GetISolutionMgr(), &Manager());
  EXPECT_EQ(m_base.GetIValueParser(), &m_base);
}

TEST_F(ExtractorTest, TheBaseKnowsNoQuantitiesAndNoContexts) {
  std::vector<AString> names;
  std::vector<SimValueContext> contexts(1);
  SimValueContext const context;
  EXPECT_EQ(m_base.GetCategoryNames(names, 1, rep::DisplayType{}, context, nullptr), 0);
  EXPECT_EQ(m_base.GetQuantityNames(names, L"", 1, rep::DisplayType{}, context), 0);
  EXPECT_EQ(m_base.GetMatrixQuantityNames(names, L"", 1, rep::DisplayType{}, context), 0);
  EXPECT_FALSE(m_base.GetContexts(contexts, 1));
  EXPECT_TRUE(contexts.empty());
  EXPECT_FALSE(m_base.HasContexts(1));
  EXPECT_EQ(m_base.GetContextID(context), -1);
  EXPECT_FALSE(m_base.IsSupportedReportTypes({}));
  EXPECT_TRUE(m_base.IsSupportedReportTypes({1}));
}

TEST_F(ExtractorTest, TheBaseAsksEveryProductForQuantityTypesAndSimValues) {
  AssertWatch::Expect("0");
  EXPECT_EQ(m_base.GetQuantityType(L"S11", 0).parameterType, val::kNotAQuantity);
  AssertWatch::Expect("0");
  EXPECT_EQ(m_base.CreateSimValue(L"S11", SimValueContext()), nullptr);
  AssertWatch::Expect("0");
  EXPECT_EQ(m_base.GetISimDataExtractor3(), nullptr);
}

TEST_F(ExtractorTest, CategoriesOfAContextAreThoseOfItsDomain) {
  std::vector<AString> names;
  SimValueContext context;
  context.SetCalculationType(static_cast<rep::CalculationType>(4));
  EXPECT_EQ(m_product.GetCategoryNames(names, 1, rep::DisplayType{}, context, nullptr), 1);
  EXPECT_EQ(names.front(), L"category of 4");
}

TEST_F(ExtractorTest, QuantitiesOfAllContextsAreThoseOfTheDefaultOneWithItsDomain) {
  std::vector<AString> names;
  m_product.GetAllQuantityNamesForAllContexts(names, L"", 1, rep::DisplayType{});
  m_product.GetAllQuantityNamesForAllContextsGivenDomain(names, L"", 1, rep::DisplayType{}, 0);
  m_product.GetAllQuantityNamesForAllContextsGivenDomain(names, L"", 1, rep::DisplayType{}, 7);
  EXPECT_EQ(names, (std::vector<AString>{L"S11 in 0", L"S11 in 0", L"S11 in 7"}));
}

TEST_F(ExtractorTest, UnderTheRewriteAWordIsAskedOfTheProductAlone) {
  m_desktop.rewrite = true;
  SimValueContext context;
  context.SetCalculationType(static_cast<rep::CalculationType>(4));
  m_product.SetSimValueContext(&context);
  EXPECT_EQ(m_product.GetValueStateFromText(L"S11").parameterType, val::kComplex);
  EXPECT_EQ(m_product.askedDomain, 4);
  EXPECT_TRUE(m_product.GetValueStateFromText(L"nothing") ==
              ValueState(Units::GetDefaultUnits(Units::kNoUnitType), Units::kNoUnitType, 1, val::kNotAQuantity));
  AssertWatch::Expect("!\"Not supported in new reporter rewrite!\"");
  EXPECT_TRUE(m_product.GetValueStateFromText(L"S11", &context) == ValueState());
}

TEST_F(ExtractorTest, MembersOfTheOtherRegimeAreRetiredWithTheirOwnWords) {
  m_desktop.rewrite = true;
  std::list<Trace *> traces;
  EXPECT_EQ(m_base.ParseText(L"S11"), nullptr);
  EXPECT_EQ(m_base.GetAvailableTraces(traces), 0);
  m_base.SetUniqueSolutionPointSetName(nullptr);
  EXPECT_EQ(m_base.FetchNextUniqueSolutionPointSetID(), -1);
  EXPECT_FALSE(m_base.SolutionPointSetIsUsingInstance(nullptr, L""));
  EXPECT_TRUE(m_base.ReloadSolutionPointSetData(1, L""));
  EXPECT_EQ(AssertWatch::Take(),
            (std::vector<std::string>{"!\"Not supported in new reporter rewrite!\"",
                                      "!\"Not supported, use new reportsetupmodule for this!\"",
                                      "!\"Not supported, use new reportsetupmodule!\"",
                                      "!\"Should just not be calling this. Done differently in reporter rewrite\"",
                                      "!\"Not supported with new reporter rewrite!\"",
                                      "!\"Should just not be calling this. Done differently in reporter rewrite\""}));
}

TEST_F(ExtractorTest, PointSetIDsStartAtTheFirstOne) {
  EXPECT_EQ(m_base.FetchNextUniqueSolutionPointSetID(), 1);
  EXPECT_EQ(m_base.FetchNextUniqueSolutionPointSetID(), 2);
}

TEST_F(ExtractorTest, WithoutASetThereIsNoTrace) {
  EXPECT_EQ(m_base.CreateTrace2D(nullptr, nullptr, nullptr, true), nullptr);
}

TEST_F(ExtractorTest, WithNothingInItUpdatesAndBlocksHaveNothingToDo) {
  m_base.Update(true, nullptr);
  m_base.ValidateSolutionPointSet();
  m_base.DoGarbageCollection({});
  m_base.SynchronizeTraces(nullptr);
  EXPECT_EQ(m_base.GetFirstSolutionPointSet(), m_base.GetLastSolutionPointSet());
  io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
  EXPECT_TRUE(m_base.DesignFileWrite(block));
  EXPECT_TRUE(block.Empty());
  EXPECT_EQ(m_base.DesignFileRead(block), io::kNoError);
}

TEST_F(ExtractorTest, AFurtherInterfaceIsThatOfTheProductClass) {
  EXPECT_EQ(m_base.GetISimDataExtractor2(), nullptr);
  EXPECT_EQ(m_product.GetISimDataExtractor2(), static_cast<ISimDataExtractor2 *>(&m_product));
  EXPECT_EQ(m_product.GetIDesignDataExtractorForReportSetupUIForEdit(),
            static_cast<IDesignDataExtractorForReportSetupUI *>(&m_product));
  AssertWatch::Expect("0");
  EXPECT_EQ(m_base.GetIDesignDataExtractorForReportSetupUI(), nullptr);
}

TEST_F(ExtractorTest, ANameSpaceForADeletedSolutionStaysAsItWas) {
  VariableNameSpace nameSpace(false, false);
  auto const before = nameSpace.GetVariableSearchFlags();
  m_base.SetupVariableNameSpace(nameSpace);
  EXPECT_FALSE(nameSpace.GetVariableSearchFlags() == before);
  VariableNameSpace untouched(false, false);
  const_cast<BaseSimulationSetup &>(m_solution.GetBaseSimulationSetup()).DeleteSolution(m_solution.GetID(), nullptr);
  m_base.SetupVariableNameSpace(untouched);
  EXPECT_TRUE(untouched.GetVariableSearchFlags() == before);
}

TEST_F(ExtractorTest, TheReportsViewReachesTheOperationOfTheSameNumber) {
  ISimDataExtractorForReports & view = *m_product.GetISimDataExtractorForReports();
  auto const reaches = [&](void (ISimDataExtractorForReports::*operation)()) {
    (view.*operation)();
    return m_product.called;
  };
  using View = ISimDataExtractorForReports;
  EXPECT_EQ(reaches(&View::Extractor3Op1), 1);
  EXPECT_EQ(reaches(&View::Extractor3Op2), 2);
  EXPECT_EQ(reaches(&View::Extractor3Op3), 3);
  EXPECT_EQ(reaches(&View::Extractor3Op4), 4);
  EXPECT_EQ(reaches(&View::Extractor3Op5), 5);
  EXPECT_EQ(reaches(&View::Extractor3Op6), 6);
  EXPECT_EQ(reaches(&View::Extractor3Op7), 7);
  EXPECT_EQ(reaches(&View::Extractor3Op10), 10);
  EXPECT_EQ(reaches(&View::Extractor3Op11), 11);
  EXPECT_EQ(reaches(&View::Extractor3Op12), 12);
  EXPECT_EQ(reaches(&View::Extractor3Op13), 13);
  EXPECT_EQ(reaches(&View::Extractor3Op14), 14);
  EXPECT_EQ(reaches(&View::Extractor3Op15), 15);
  EXPECT_EQ(reaches(&View::Extractor3Op16), 16);
  EXPECT_TRUE(view.ReportsViewIsAvailable());
  EXPECT_TRUE(view.IsReportTypeSupported(1));
  EXPECT_FALSE(view.IsImportedSolution());
  EXPECT_EQ(view.GetGlobalSolutionName(), L"Setup1 : Sweep");
}

TEST_F(ExtractorTest, AWholeNumberQuantityMustSaySoByItsParameterType) {
  ISimDataExtractorForReports const & view = *m_product.GetISimDataExtractorForReports();
  m_product.saysInteger = true;
  m_product.reportedType = val::kInteger;
  EXPECT_EQ(view.GetQuantityTypeForReports(L"n", SimValueContext(), 1).parameterType, val::kInteger);
  m_product.reportedType = val::kReal;
  view.GetQuantityTypeForReports(L"n", SimValueContext(), 1);
  EXPECT_EQ(AssertWatch::Take(),
            (std::vector<std::string>{"!\"If quantity is integer, set the parameter-type to int.\"",
                                      "!\"Retiring the additional arg going forward.\"",
                                      "!\"Also data associated is to be returned as IntColumn\""}));
}

TEST_F(ExtractorTest, AnEnumTextThatStaysEmptyIsReported) {
  ISimDataExtractorForReports const & view = *m_product.GetISimDataExtractorForReports();
  m_product.enumText = L"on";
  EXPECT_EQ(view.GetEnumQuantityText(L"n", SimValueContext(), 1, 1.0), L"on");
  m_product.enumText = AString();
  AssertWatch::Expect("!\"To be called by core, only if type is enum-type and products to implement if so\"");
  EXPECT_EQ(view.GetEnumQuantityText(L"n", SimValueContext(), 1, 1.0), L"");
}

TEST_F(ExtractorTest, SweepQueriesOfTheReportsViewAreProfiled) {
  SpanRecorder recorder;
  EXPECT_EQ(m_base.GetISimDataExtractorForReports()->GetSweep(L"Freq", SimValueContext(), 1), nullptr);
  EXPECT_EQ(recorder.spans, (std::vector<std::string>{"SimDataExtractorForReports::GetSweep",
                                                      "SimDataExtractorForReports::GetSweeps"}));
}

TEST_F(ExtractorTest, TheAddOnsViewGoesOnToTheExtractor) {
  IDesignDataExtractorForSweepwise & view = *m_product.GetIDesignDataExtractorForSweepwise();
  view.Extractor3Op11();
  EXPECT_EQ(m_product.called, 11);
  view.Extractor3Op12();
  EXPECT_EQ(m_product.called, 12);
  EXPECT_TRUE(view.IsSupportedReportTypes({1}));
  EXPECT_EQ(view.GetContextID(SimValueContext()), -1);
  AssertWatch::Expect("0"); // nobody makes its sim values
  EXPECT_EQ(m_product.GetISimDataExtractorForSweepwise()->CreateTraceComponent(L"S11", nullptr), nullptr);
}

TEST_F(ExtractorTest, OperationsThatNobodyNamesKeepTheirDefaults) {
  ISimDataExtractor & extractor = m_base;
  EXPECT_TRUE(extractor.DesignHookA());
  EXPECT_TRUE(extractor.DesignHookH());
  EXPECT_TRUE(extractor.SimHookF());
  EXPECT_EQ(extractor.DesignHookC(), 0);
  EXPECT_EQ(extractor.DesignHookE(), 0);
  for (bool const answer : {extractor.DesignHookB(), extractor.DesignHookD(), extractor.DesignHookF(),
                            extractor.DesignHookG(), extractor.DesignHookJ()})
    EXPECT_FALSE(answer);
  for (bool const answer : {extractor.SimHookA(), extractor.SimHookJ(), extractor.SimHookK()})
    EXPECT_FALSE(answer);
  bool flag = true;
  EXPECT_FALSE(extractor.SimHookG(flag));
  EXPECT_FALSE(flag) << "it answers in its argument too";
  EXPECT_FALSE(extractor.SimHookH());
  EXPECT_FALSE(extractor.SimHookI());
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"0", "0"})) << "of the last two";
  extractor.DesignHookI();
  for (auto const hook : {&ISimDataExtractor::SimHookB, &ISimDataExtractor::SimHookC, &ISimDataExtractor::SimHookD,
                          &ISimDataExtractor::SimHookE, &ISimDataExtractor::SimHookL, &ISimDataExtractor::SimHookM})
    (extractor.*hook)();
}
