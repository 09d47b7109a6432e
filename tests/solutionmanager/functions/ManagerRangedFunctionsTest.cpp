#include "CoreInterfaces/solution/IProductSolutionMgrForPlot.h"
#include "basekit/value/Value.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"
#include "viewkit/property/PropList.h"

using namespace support;

namespace {

using Names = std::vector<AString>;

constexpr auto kTable = static_cast<rep::DisplayType>(4);
constexpr auto kEyes = static_cast<rep::DisplayType>(15);

/// A product with one function of its own, and a wish to describe one of the core.
class PlotManager : public TestManager, public IProductSolutionMgrForPlot {
public:
  using TestManager::TestManager;

  int GetProductRangedFunctionCategoryNames(Names & names, unsigned reportType,
                                            rep::DisplayType displayType) const override {
    asked = {reportType, displayType};
    names.push_back(L"Own");
    return answer;
  }
  int GetProductRangedFunctionNames(Names & names, AString const & category, unsigned reportType,
                                    rep::DisplayType displayType) const override {
    asked = {reportType, displayType};
    names.push_back(category + L"Own");
    return answer;
  }
  AString GetProductRangedFunctionDescription(AString const & function) const override {
    return L"the product's " + function;
  }
  bool GetProductRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const override {
    parameters.AddProp(ValueProp(L"Depth", L"2", Units::kNoUnits, L"own"));
    return function == L"own";
  }
  bool ScaleProductRangedFunctionValueToGivenUnits(double & result, AString & units, AString const & function,
                                                   double value, Units::FullUnitType,
                                                   Units::FullUnitType) const override {
    result = 2 * value;
    units = L"own";
    return function == L"own";
  }

  int answer = 0;
  mutable std::pair<unsigned, rep::DisplayType> asked{};
};

class ManagerRangedFunctions : public ModelTest {
protected:
  Names Categories(BaseSolutionManager const & manager, rep::DisplayType display = kEyes) const {
    Names names;
    manager.GetRangedFunctionCategoryNames(names, 3, display);
    return names;
  }
  Names Functions(BaseSolutionManager const & manager, AString const & category) const {
    Names names;
    manager.GetRangedFunctionNames(names, category, 3, kTable);
    return names;
  }

  PlotManager m_plot{&m_design};
};

} // namespace

TEST_F(ManagerRangedFunctions, WithoutAProductAreThoseOfTheCore) {
  EXPECT_EQ(Categories(Manager()), Names{L"Eye Measurements"});
  EXPECT_EQ(Functions(Manager(), L"period"), (Names{L"per", L"pmax", L"pmin", L"prms"}));
  EXPECT_EQ(Manager().GetRangedFunctionDescription(L"MAX"), L"Maximum (of magnitudes).");
  EXPECT_EQ(Manager().GetRangedFunctionDescription(L"own"), L"");
  PropList parameters;
  EXPECT_TRUE(Manager().GetRangedFunctionDefaultParameters(parameters, L"settlingtime"));
  EXPECT_EQ(parameters.size(), 2u);
  EXPECT_FALSE(Manager().GetRangedFunctionDefaultParameters(parameters, L"own"));
  double result = 0;
  AString units;
  EXPECT_TRUE(Manager().ScaleRangedFunctionValueToGivenUnits(result, units, L"variance", 4e-6, Units::kSecond,
                                                             Units::kMillivolt));
  EXPECT_DOUBLE_EQ(result, 4);
  EXPECT_EQ(units, L"mV");
  EXPECT_FALSE(
      Manager().ScaleRangedFunctionValueToGivenUnits(result, units, L"own", 1, Units::kSecond, Units::kMillivolt));
}

TEST_F(ManagerRangedFunctions, AProductsListsComeFirst) {
  EXPECT_EQ(Categories(m_plot), (Names{L"Own", L"Eye Measurements"}));
  EXPECT_EQ(m_plot.asked, (std::pair{3u, kEyes}));
  EXPECT_EQ(Functions(m_plot, L"Error"), (Names{L"ErrorOwn", L"iae", L"ise", L"itae", L"itse"}));
  EXPECT_EQ(m_plot.asked, (std::pair{3u, kTable}));
}

TEST_F(ManagerRangedFunctions, AProductThatAnswersOneEndsTheListAndNoOtherAnswerDoes) {
  m_plot.answer = 1;
  EXPECT_EQ(Categories(m_plot), Names{L"Own"});
  EXPECT_EQ(Functions(m_plot, L"Error"), Names{L"ErrorOwn"});
  for (int const other : {-1, 2, 100}) {
    m_plot.answer = other;
    EXPECT_EQ(Categories(m_plot), (Names{L"Own", L"Eye Measurements"}));
    EXPECT_EQ(Functions(m_plot, L"Error").size(), 5u);
  }
}

TEST_F(ManagerRangedFunctions, OfOneFunctionTheCoreIsAskedFirst) {
  EXPECT_EQ(m_plot.GetRangedFunctionDescription(L"max"), L"Maximum (of magnitudes).");
  EXPECT_EQ(m_plot.GetRangedFunctionDescription(L"own"), L"the product's own");
  PropList parameters;
  EXPECT_TRUE(m_plot.GetRangedFunctionDefaultParameters(parameters, L"max"));
  EXPECT_TRUE(parameters.empty());
  EXPECT_TRUE(m_plot.GetRangedFunctionDefaultParameters(parameters, L"own"));
  EXPECT_EQ(parameters.size(), 1u);
  EXPECT_FALSE(m_plot.GetRangedFunctionDefaultParameters(parameters, L"other"));
  double result = 0;
  AString units;
  EXPECT_TRUE(m_plot.ScaleRangedFunctionValueToGivenUnits(result, units, L"max", 7, Units::kSecond, Units::kVolt));
  EXPECT_EQ(result, 7);
  EXPECT_TRUE(m_plot.ScaleRangedFunctionValueToGivenUnits(result, units, L"own", 7, Units::kSecond, Units::kVolt));
  EXPECT_EQ(result, 14);
  EXPECT_EQ(units, L"own");
  EXPECT_FALSE(m_plot.ScaleRangedFunctionValueToGivenUnits(result, units, L"other", 7, Units::kSecond, Units::kVolt));
}

TEST_F(ManagerRangedFunctions, ThePlotSystemReachesThemThroughItsFacet) {
  Names names;
  m_plot.GetISolutionMgrForPlot()->GetRangedFunctionCategoryNames(names, 0, kEyes);
  EXPECT_EQ(names, (Names{L"Own", L"Eye Measurements"}));
}

TEST_F(ManagerRangedFunctions, TheCoreAloneIsGivenByCategoryAndAddsToWhatIsThere) {
  std::vector<std::pair<AString, Names>> functions = {{L"Mine", {L"a"}}, {L"eye MEASUREMENTS", {L"b"}}};
  m_plot.GetAllCoreRangedFunctions(functions, kEyes);
  ASSERT_EQ(functions.size(), 2u);
  EXPECT_EQ(functions[0].second, Names{L"a"});
  ASSERT_EQ(functions[1].second.size(), 12u);
  EXPECT_EQ(functions[1].second[0], L"b");
  EXPECT_EQ(functions[1].second[1], L"EyeLevelZero");

  functions.clear();
  m_plot.GetAllCoreRangedFunctions(functions, static_cast<rep::DisplayType>(2));
  EXPECT_EQ(functions.size(), 3u); // none with an empty list
  for (auto const & [category, names] : functions)
    EXPECT_FALSE(names.empty());
}
