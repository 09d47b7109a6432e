// Which quantities there are, and how the data of a variation comes and goes.
#include "products/rfcircuit/product/RfExtractor.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "plotkit/sweep/Sweep.h"
#include "tests/products/rfcircuit_product/quantity/ExtractorFixture.h"

using namespace rftest;

namespace {

std::string const kDivider = "V1 in 0 portnum 1 z0 50\nV2 out 0 portnum 2 z0 50\n.param r=50\nR1 in out {r}\n"
                             ".sp lin 5 1g 2g";

class RfExtractor : public ExtractorTest {
protected:
  void Divider() {
    Netlist(kDivider);
    AddVariable(L"r", L"50");
  }
  void StoreNetwork(AString const & variation, std::vector<double> const & frequencies, std::size_t ports) {
    std::vector<rfcircuit::NetworkPort> list;
    for (std::size_t i = 0; i < ports; ++i)
      list.push_back({static_cast<int>(i) + 1, AString::Format(L"V%lu", i + 1), 50.0});
    rfcircuit::NetworkData data(frequencies, list);
    for (std::size_t i = 0; i < frequencies.size(); ++i)
      data.SetS(i, ports - 1, 0, {frequencies[i], -1.0});
    io::CBlock block;
    data.Write(block);
    Store(*m_setup, variation, block);
    ASSERT_NE(VariationAt(*m_setup, variation), nullptr);
  }
  std::vector<double> ValuesOf(AString const & sweep) {
    std::vector<double> values;
    SweepBase * const found = Extractor().GetSweep(sweep);
    for (unsigned i = 0; found && i < found->GetCount(); ++i)
      values.push_back(found->GetSweep()->Column().ComplexAt(i).real());
    return values;
  }
  std::vector<AString> Sweeps(unsigned reportType) {
    std::vector<SweepBase *> sweeps;
    Extractor().GetSweeps(sweeps, reportType, nullptr, rep::DisplayType(), true);
    std::vector<AString> names;
    for (SweepBase const * const sweep : sweeps)
      names.push_back(sweep->GetName());
    return names;
  }
};

} // namespace

TEST_F(RfExtractor, ListsItsQuantitiesByCategory) {
  Divider();
  Solve(L"r=50");
  std::vector<AString> categories;
  Extractor().GetCategoryNames(categories, 1, static_cast<rep::DisplayType>(3), 0, nullptr);
  EXPECT_EQ(categories, (std::vector<AString>{L"S Parameter", L"Y Parameter", L"Z Parameter", L"VSWR", L"Group Delay",
                                              L"Port Impedance", L"Frequency"}));
  EXPECT_EQ(Names(L"S Parameter"), (std::vector<AString>{L"S(1,1)", L"S(1,2)", L"S(2,1)", L"S(2,2)"}));
  EXPECT_EQ(Names(L"VSWR"), (std::vector<AString>{L"VSWR1", L"VSWR2"}));
}

TEST_F(RfExtractor, ListsComplexQuantitiesAloneForThePolarPlane) {
  Divider();
  Solve(L"r=50");
  std::vector<AString> names;
  Extractor().GetQuantityNames(names, L"", 1, static_cast<rep::DisplayType>(2), SimValueContext());
  EXPECT_EQ(names.size(), 4u + 4 + 4 + 2);
}

TEST_F(RfExtractor, TellsTheStateOfAQuantityByItsText) {
  Divider();
  Solve(L"r=50");
  EXPECT_EQ(Extractor().GetQuantityType(L"S(2,1)", 0),
            ValueState(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex));
  EXPECT_EQ(Extractor().GetQuantityType(L"GD21", 0).unitType, Units::kTime);
  EXPECT_EQ(Extractor().GetQuantityType(L"GD21", 0).parameterType, val::kReal);
  EXPECT_EQ(Extractor().GetQuantityType(L"Z(1,1)", 0).fullUnit, Units::kOhm);
  EXPECT_EQ(Extractor().GetQuantityType(L"S(3,1)", 0), ValueState());
}

TEST_F(RfExtractor, KnowsOfItsManagerWhichReportsThereAre) {
  Divider();
  Solve(L"r=50");
  std::vector<AString> names;
  EXPECT_EQ(Manager().GetReportTypeNames(names), 1);
  EXPECT_EQ(names, (std::vector<AString>{L"S Parameters"}));
  EXPECT_EQ(Manager().GetReportType(L"s parameters"), 1u);
  EXPECT_EQ(Manager().GetReportType(L"Far Field"), 0u);
  std::vector<rep::DisplayType> displays;
  EXPECT_EQ(Manager().GetDisplayTypes(displays, 1), 5);
  std::vector<ISimDataExtractor *> extractors;
  EXPECT_EQ(Manager().GetISimDataExtractors(extractors, 1, false), 1);
  EXPECT_EQ(Manager().GetISimDataExtractors(extractors, 7, false), 1);
  EXPECT_TRUE(Manager().IsValidSimValue(L"S(2,1)"));
  EXPECT_FALSE(Manager().IsValidSimValue(L"S(3,1)"));
}

TEST_F(RfExtractor, ForgetsTheQuantitiesOfAPortThatIsDeleted) {
  Divider();
  StoreNetwork(L"r=50", {1e9, 2e9}, 3);
  EXPECT_EQ(Extractor().GetQuantityType(L"S(3,1)", 0).parameterType, val::kComplex);
  ASSERT_TRUE(Load(L"r=50"));
  EXPECT_EQ(Numbers(L"S(3,1)").size(), 2u);
  Extractor().FinishLoadingSolvedData();
  Manager().Invalidate(nullptr, 7);
  Solve(L"r=50");
  EXPECT_EQ(Extractor().GetQuantityType(L"S(3,1)", 0).parameterType, val::kNotAQuantity);
  EXPECT_EQ(Extractor().CreateSimValue(L"S(3,1)", SimValueContext()), nullptr);
  ASSERT_TRUE(Load(L"r=50"));
  EXPECT_TRUE(Numbers(L"S(3,1)").empty());
  EXPECT_EQ(Numbers(L"S(2,1)").size(), 5u);
}

TEST_F(RfExtractor, ShowsStaleDataWhileNothingElseIsSolved) {
  Divider();
  Solve(L"r=50");
  Manager().Invalidate(nullptr, 7);
  EXPECT_TRUE(Load(L"r=50"));
  EXPECT_EQ(Numbers(L"S(2,1)").size(), 5u);
}

TEST_F(RfExtractor, GivesEachVariationItsOwnSamples) {
  Divider();
  Solve(L"r=50");
  StoreNetwork(L"r=60", {1e9, 3e9, 4e9}, 2);
  ASSERT_TRUE(Load(L"r=50"));
  EXPECT_EQ(Extractor().GetSampleCount(), 5u);
  ASSERT_TRUE(Load(L"r=60"));
  EXPECT_EQ(Extractor().GetSampleCount(), 3u);
  EXPECT_EQ(Axis(), (std::vector<double>{1e9, 3e9, 4e9}));
  EXPECT_EQ(Numbers(L"S(2,1)"), (Column{{1e9, -1}, {3e9, -1}, {4e9, -1}}));
}

TEST_F(RfExtractor, HasNothingOfAVariationThatIsNotSolvedAndMakesItNotKnown) {
  Divider();
  Solve(L"r=50");
  long id = 0;
  EXPECT_FALSE(Load(L"r=70"));
  EXPECT_EQ(Extractor().GetSampleCount(), 0u);
  EXPECT_TRUE(Numbers(L"S(2,1)").empty());
  EXPECT_FALSE(Manager().FindVariationID(L"r=70", id));
}

TEST_F(RfExtractor, FindsAVariationByValueAndTakesWhatIsNotToldFromTheDesign) {
  Divider();
  Solve(L"r=0.05k");
  EXPECT_TRUE(Load(L"r=50"));
  EXPECT_TRUE(Load(L""));
}

TEST_F(RfExtractor, LeavesInMemoryWhatWasThereAndNothingElse) {
  Divider();
  auto const & loaded = Solve(L"r=50");
  auto const & other = Solve(L"r=60");
  Unload();
  VariationAt(*m_setup, L"r=50");
  ASSERT_TRUE(Load(L"r=60"));
  EXPECT_TRUE(other.HasSolutionData());
  ASSERT_TRUE(Load(L"r=50"));
  EXPECT_FALSE(other.HasSolutionData());
  Extractor().FinishLoadingSolvedData();
  EXPECT_TRUE(loaded.HasSolutionData());
}

TEST_F(RfExtractor, HasASweepOverTheFrequenciesAndOneOverEachVariablesSolvedValues) {
  Netlist(kDivider + "\n.param unused=1");
  AddVariable(L"r", L"50");
  AddVariable(L"unused", L"1");
  for (wchar_t const * const variation : {L"r=60; unused=1", L"r=50; unused=1", L"r=0.06k; unused=1"})
    Solve(variation);
  EXPECT_EQ(Sweeps(1), (std::vector<AString>{L"Freq", L"r", L"unused"}));
  EXPECT_EQ(ValuesOf(L"F"), (std::vector<double>{1e9, 1.25e9, 1.5e9, 1.75e9, 2e9}));
  EXPECT_EQ(ValuesOf(L"Freq"), ValuesOf(L"F"));
  EXPECT_EQ(ValuesOf(L"r"), (std::vector<double>{50, 60}));
  EXPECT_EQ(ValuesOf(L"unused"), (std::vector<double>{1}));
}

TEST_F(RfExtractor, KeepsItsSweepsWhenMoreIsSolved) {
  Divider();
  Solve(L"r=50");
  SweepBase const * const sweep = Extractor().GetSweep(L"r");
  ASSERT_NE(sweep, nullptr);
  Solve(L"r=70");
  EXPECT_EQ(Extractor().GetSweep(L"R"), sweep);
  EXPECT_EQ(ValuesOf(L"r"), (std::vector<double>{50, 70}));
}

TEST_F(RfExtractor, HasNoSweepsWhileNothingIsSolved) {
  Divider();
  EXPECT_EQ(ValuesOf(L"F"), std::vector<double>());
  EXPECT_EQ(Sweeps(1), (std::vector<AString>{L"Freq"}));
}

TEST_F(RfExtractor, FillsASpecialSweepWithTheFrequencies) {
  Divider();
  Solve(L"r=50");
  Sweep const * const sweep = Extractor().CreateSpecialSweep(L"F", val::kReal, Units::kHertz);
  ASSERT_NE(sweep, nullptr);
  EXPECT_EQ(sweep->GetCount(), 5u);
  EXPECT_EQ(Extractor().GetSpecialSweep(L"f"), sweep);
}

TEST_F(RfExtractor, HasTheOneSampleThatAnEvaluationAssumes) {
  Divider();
  Solve(L"r=50");
  VariableValues assumed;
  assumed.Set(L"F", Value::Real(1.5e9));
  Extractor().SetSpecialSweepVariation(assumed);
  ASSERT_TRUE(Load(L"r=50"));
  EXPECT_EQ(Extractor().GetSampleCount(), 1u);
  EXPECT_EQ(Reals(L"Freq"), (std::vector<double>{1.5e9}));
  assumed.Set(L"F", Value::Real(1.6e9));
  Extractor().SetSpecialSweepVariation(assumed);
  EXPECT_FALSE(Load(L"r=50"));
  Extractor().SetSpecialSweepVariation(VariableValues());
}

TEST_F(RfExtractor, HasFiguresOfTwoPortsAndLossesReadyAsOutputVariables) {
  Divider();
  Solve(L"r=50");
  AString expression;
  ValueState state;
  EXPECT_TRUE(Extractor().GetExpressionForCannedOutputVariable(L"kfactor", expression, state));
  EXPECT_EQ(state.parameterType, val::kReal);
  EXPECT_TRUE(Extractor().GetExpressionForCannedOutputVariable(L"IL(2,V1)", expression, state));
  EXPECT_EQ(expression, L"-dB(S(2,1))");
  EXPECT_EQ(state.unitType, Units::kLevel);
  EXPECT_TRUE(Extractor().GetExpressionForCannedOutputVariable(L"RL(2)", expression, state));
  EXPECT_EQ(expression, L"-dB(S(2,2))");
  for (wchar_t const * const name : {L"IL(3,1)", L"RL", L"IL(1)", L"RL(1,1)", L"S(2,1)", L""})
    EXPECT_FALSE(Extractor().GetExpressionForCannedOutputVariable(name, expression, state))
        << text::ToUtf8(AString(name));
}
