#include "products/command/product/CommandExtractor.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/Trace2D.h"
#include "plotkit/trace/TraceComponent.h"
#include "products/command/product/CommandManager.h"
#include "products/command/product/CommandProduct.h"
#include "products/command/product/CommandSetup.h"
#include "products/command/product/QuantityBlock.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "tests/solutionmanager/support/TestDesktop.h"
#include "tests/support/Printers.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using Quantities = std::vector<desktop::QuantityValues>;

// A body that falls from a height for a second: its path over t, levels of tones, and numbers.
Quantities Fall(double height) {
  return {{L"t", L"s", L"", false, {0, 0.5, 1}},
          {L"y", L"mm", L"t", false, {1000 * height, 1000 * height - 1225, 1000 * height - 4900}},
          {L"tone", L"Hz", L"", false, {10, 20}},
          {L"level", L"", L"tone", false, {height, 2 * height}},
          {L"top", L"m", L"", true, {height}},
          {L"speed", L"m/s", L"", true, {9.8}},
          {L"air", L"degC", L"", true, {20}}};
}

class CommandExtractor : public testing::Test {
protected:
  CommandExtractor() : m_design(FolderPath()), m_manager(&m_design) {
    m_design.ownVariables.variables.push_back(&m_height);
    m_design.ownInstances.push_back(&m_instance);
    m_manager.InitializeFromDesign(true);
    desktop::SourceSetup source;
    source.name = L"Run";
    source.typeName = command::CommandSetup::kTypeName;
    m_setup = command::CommandProduct().CreateSetup(m_manager, source, nullptr);
  }
  AString FolderPath() const { return text::FromUtf8((m_folder.Path() / "results").string()) + L"/"; }
  BaseSolution & Solution() { return *m_setup->GetSolutions().begin()->second; }
  command::CommandExtractor & Extractor() {
    return dynamic_cast<command::CommandExtractor &>(*Solution().GetBaseSimDataExtractor());
  }
  void Store(AString const & variation, Quantities const & quantities) {
    io::CBlock block(
        SolutionVariationKey(m_setup->GetID(), variation, Solution().GetID(), Solution().GetVersionID()).Pack());
    command::WriteQuantities(quantities, block);
    ASSERT_EQ(m_manager.SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
    VariationIDIndex const index(variation, Solution().GetVersionID(), &m_manager);
    BaseSolutionVariation * const stored = Solution().GetVariationData(index, false);
    ASSERT_NE(stored, nullptr);
    stored->ClearInstanceMemoryData();
  }
  bool Load(double height, unsigned reportType) {
    VariableValues values;
    values.Set(L"height", Value::Real(height));
    return Extractor().LoadSolvedData(values, VariableValues(), {reportType}, {}, nullptr);
  }
  std::vector<double> Numbers(AString const & quantity) {
    std::vector<double> numbers;
    if (!Extractor().GetSimValueColumn(SimValue(quantity, SimValueContext()), numbers))
      numbers.clear();
    return numbers;
  }
  unsigned ReportTypeOf(AString const & quantity) {
    desktop::QuantityInfo info;
    EXPECT_TRUE(Extractor().GetCatalogue().Describe(quantity, info)) << text::ToUtf8(quantity);
    return info.reportType;
  }
  std::vector<double> Curve(AString const & x, AString const & y, std::initializer_list<wchar_t const *> sweeps) {
    SubsweepVector points;
    for (wchar_t const * const name : sweeps)
      points.push_back(Extractor().GetSweep(name)->CreateSubsweep(true));
    SimValueContext const context;
    SolutionPointSet * const set = Extractor().CreateSolutionPointSet(points, &context, &m_instance, false);
    std::unique_ptr<TraceComponent> const abscissa(Extractor().CreateTraceComponent(x, &context));
    std::unique_ptr<TraceComponent> const ordinate(Extractor().CreateTraceComponent(y, &context));
    EXPECT_TRUE(abscissa && ordinate);
    Trace const * const trace = Extractor().CreateTrace2D(set, abscissa.get(), ordinate.get(), false);
    EXPECT_TRUE(set->UpdateData());
    auto const reals = trace->GetOrdinate()->GetValues().GetReals();
    return {reals.begin(), reals.end()};
  }

  support::TemporaryFolder m_folder;
  support::TestKitDesktop m_desktop;
  support::TestDesign m_design;
  Variable m_height{L"height", L"10"};
  support::TestInstance m_instance{m_design, L"height=10"};
  command::CommandManager m_manager;
  BaseSimulationSetup * m_setup = nullptr;
};

} // namespace

TEST_F(CommandExtractor, KnowsNothingWhileNothingIsSolved) {
  EXPECT_EQ(Extractor().GetQuantityType(L"top", 0), ValueState());
  EXPECT_TRUE(Extractor().IsSupportedReportTypes({1}));
  EXPECT_FALSE(Load(10, 1));
}

TEST_F(CommandExtractor, HasAReportTypeForNumbersAndOneForEachAxis) {
  Store(L"height=10", Fall(10));
  std::vector<AString> names;
  m_manager.GetReportTypeNames(names);
  EXPECT_EQ(names, (std::vector<AString>{L"Numbers", L"Columns over t", L"Columns over tone"}));
  EXPECT_EQ(ReportTypeOf(L"top"), 1u);
  EXPECT_EQ(ReportTypeOf(L"Y"), 2u);
  EXPECT_EQ(ReportTypeOf(L"t"), 2u);
  EXPECT_EQ(ReportTypeOf(L"level"), 3u);
  std::vector<AString> columns;
  Extractor().GetQuantityNames(columns, L"Columns", 2, static_cast<rep::DisplayType>(3), SimValueContext());
  EXPECT_EQ(columns, (std::vector<AString>{L"t", L"y"}));
}

TEST_F(CommandExtractor, GivesNumbersInSIUnitsWhereItKnowsTheUnit) {
  Store(L"height=10", Fall(10));
  ASSERT_TRUE(Load(10, 1));
  EXPECT_EQ(Extractor().GetSampleCount(), 1u);
  EXPECT_EQ(Numbers(L"top"), (std::vector<double>{10}));
  EXPECT_EQ(Numbers(L"speed"), (std::vector<double>{9.8}));
  EXPECT_EQ(Numbers(L"air"), (std::vector<double>{293.15}));
  EXPECT_EQ(Extractor().GetQuantityType(L"y", 0).unitType, Units::kLength);
  EXPECT_EQ(Extractor().GetQuantityType(L"speed", 0).fullUnit, Units::kNoUnits);
}

TEST_F(CommandExtractor, GivesColumnsAndTheirAxisAndNumbersAtAllItsPlaces) {
  Store(L"height=10", Fall(10));
  ASSERT_TRUE(Load(10, 2));
  std::vector<double> t;
  ASSERT_TRUE(Extractor().GetVariableColumn(L"T", t));
  EXPECT_EQ(t, (std::vector<double>{0, 0.5, 1}));
  EXPECT_EQ(Numbers(L"y"), (std::vector<double>{10, 8.775, 5.1}));
  EXPECT_EQ(Numbers(L"top"), (std::vector<double>{10, 10, 10}));
  EXPECT_TRUE(Numbers(L"level").empty()) << "runs over something else";
  EXPECT_FALSE(Extractor().GetVariableColumn(L"tone", t));
}

TEST_F(CommandExtractor, HasSweepsOverTheAxisOfAReportTypeAndOverVariables) {
  Store(L"height=10", Fall(10));
  Store(L"height=20", Fall(20));
  auto const names = [this](unsigned reportType) {
    std::vector<SweepBase *> sweeps;
    Extractor().GetSweeps(sweeps, reportType, nullptr, rep::DisplayType(), true);
    std::vector<AString> list;
    for (SweepBase const * const sweep : sweeps)
      list.push_back(sweep->GetName());
    return list;
  };
  EXPECT_EQ(names(1), (std::vector<AString>{L"height"}));
  EXPECT_EQ(names(2), (std::vector<AString>{L"t", L"height"}));
  EXPECT_EQ(names(3), (std::vector<AString>{L"tone", L"height"}));
}

TEST_F(CommandExtractor, ShowsNumbersOverAVariable) {
  Store(L"height=20", Fall(20));
  Store(L"height=10", Fall(10));
  EXPECT_EQ(Curve(L"height", L"2*top", {L"height"}), (std::vector<double>{20, 40}));
}

TEST_F(CommandExtractor, ShowsColumnsOverTheirAxisForEachValueOfAVariable) {
  Store(L"height=20", Fall(20));
  Store(L"height=10", Fall(10));
  auto const values = Curve(L"t", L"y/top", {L"t", L"height"});
  std::vector<double> const expected{1, 0.8775, 0.51, 1, 18.775 / 20, 15.1 / 20};
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_NEAR(values[i], expected[i], 1e-15);
}

TEST_F(CommandExtractor, TakesNumbersAndColumnsOfOneExpressionForOneReportType) {
  Store(L"height=10", Fall(10));
  BaseSolutionManager::ReportTypeMap types;
  EXPECT_EQ(m_manager.GetOutputVariableReportTypes(L"y/top", types), 1);
  EXPECT_EQ(types.begin()->first, 2u);
  types.clear();
  EXPECT_EQ(m_manager.GetOutputVariableReportTypes(L"level/y", types), 2);
}

TEST_F(CommandExtractor, EvaluatesAnOutputVariableOfNumbers) {
  Store(L"height=10", Fall(10));
  Store(L"height=20", Fall(20));
  ASSERT_NE(m_manager.CreateOutputVariable(L"double", L"2*top+1m", nullptr), nullptr);
  Value result;
  ASSERT_TRUE(m_manager.GetOutputVariableValue(result, L"double", Solution().GetGlobalSolutionName(), L"height=20", L"",
                                               nullptr));
  EXPECT_EQ(result.GetSIValue(), 41.0);
}
