#include "basekit/text/Utf8.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "solutionmanager/functions/RangedFunctionsGUIHelper.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Golden.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>

using support::AssertWatch;

namespace {

constexpr auto kDataTable = static_cast<rep::DisplayType>(4); // shows all of them

RangedFunctionsGUIHelper const & Catalogue() { return RangedFunctionsGUIHelper::GetInstance(); }

std::vector<RangedFunctionsGUIHelper::CategoryFunctions> All() {
  std::vector<RangedFunctionsGUIHelper::CategoryFunctions> all;
  Catalogue().GetAllFunctions(all, kDataTable);
  return all;
}

AString DescriptionOf(AString const & function) {
  AString description;
  EXPECT_TRUE(Catalogue().GetDescription(description, function));
  return description;
}

PropList ParametersOf(AString const & function) {
  PropList parameters;
  EXPECT_TRUE(Catalogue().GetDefaultParameters(parameters, function));
  return parameters;
}

struct Scaled {
  double result = -1;
  AString units = L"as it was";
};

Scaled ScaledOf(AString const & function, double value) {
  Scaled scaled;
  EXPECT_TRUE(Catalogue().ScaleRangedFunctionValueToGivenUnits(scaled.result, scaled.units, function, value,
                                                               Units::kNanosecond, Units::kMillivolt));
  return scaled;
}

/// A catalogue to which a test adds.
class GrowingCatalogue final : public RangedFunctionsGUIHelper {
public:
  using RangedFunctionsGUIHelper::AddFunction;
};

} // namespace

TEST(RangedFunctionCatalogue, IsShownAsItAlwaysWas) {
  AString text;
  for (auto const & [category, functions] : All()) {
    text += category + L"\n";
    for (AString const & function : functions) {
      Scaled const scaled = ScaledOf(function, 1);
      text += AString::Format(L"  %s: %s\n    1 is %g %s\n", function, DescriptionOf(function), scaled.result,
                              scaled.units);
      for (ValueProp const & parameter : ParametersOf(function))
        text += AString::Format(L"    %s = %s: %s\n", parameter.GetName(), parameter.GetValue().GetText(),
                                parameter.GetDescription());
    }
  }
  EXPECT_TRUE(support::MatchesGolden(SOURCE_FOLDER "/tests/golden", "ranged_functions.txt", text::ToUtf8(text)));
}

TEST(RangedFunctionCatalogue, HoldsTheFunctionsOfTheEngineInTheSameOrder) {
  auto const engine = val::RangedFunctions();
  std::size_t i = 0;
  for (auto const & [category, functions] : All()) {
    for (AString const & function : functions) {
      ASSERT_LT(i, engine.size());
      EXPECT_EQ(function, AString(engine[i].name));
      PropList const parameters = ParametersOf(function);
      ASSERT_EQ(parameters.size(), engine[i].parameters.size()) << text::ToUtf8(function);
      for (std::size_t p = 0; p < parameters.size(); ++p) {
        EXPECT_EQ(parameters[p].GetName(), AString(engine[i].parameters[p].name));
        EXPECT_TRUE(parameters[p].GetValue().IsNumber());
        EXPECT_EQ(parameters[p].GetValue().GetSIValue(), engine[i].parameters[p].defaultValue);
      }
      ++i;
    }
  }
  EXPECT_EQ(i, 87u);
}

TEST(RangedFunctionCatalogue, LookUpsIgnoreCase) {
  EXPECT_EQ(DescriptionOf(L"MAX"), L"Maximum (of magnitudes).");
  EXPECT_EQ(ParametersOf(L"SETTLINGTIME").size(), 2u);
  EXPECT_EQ(ScaledOf(L"eyewidth", 3e-9).units, L"ns");
  std::vector<AString> names;
  Catalogue().GetFunctionNames(names, L"tr & dc", kDataTable);
  EXPECT_EQ(names.size(), 8u);
}

TEST(RangedFunctionCatalogue, ANameThatIsNotThereIsAnEmptyAnswerWithoutAReport) {
  AString description = L"mine";
  EXPECT_FALSE(Catalogue().GetDescription(description, L"nosuch"));
  EXPECT_EQ(description, L"mine");
  PropList parameters;
  EXPECT_FALSE(Catalogue().GetDefaultParameters(parameters, L"nosuch"));
  Scaled scaled;
  EXPECT_FALSE(Catalogue().ScaleRangedFunctionValueToGivenUnits(scaled.result, scaled.units, L"nosuch", 1,
                                                                Units::kSecond, Units::kVolt));
  EXPECT_EQ(scaled.result, -1);
  EXPECT_EQ(scaled.units, L"as it was");
  std::vector<AString> names;
  Catalogue().GetFunctionNames(names, L"Nonsense", kDataTable);
  EXPECT_TRUE(names.empty());
}

TEST(RangedFunctionCatalogue, ResultsScaleWithTheUnitsOfTheTrace) {
  EXPECT_EQ(ScaledOf(L"ripple", 0.5).result, 0.5);
  EXPECT_EQ(ScaledOf(L"ripple", 0.5).units, L"as it was");
  EXPECT_DOUBLE_EQ(ScaledOf(L"risetime", 2e-9).result, 2);
  EXPECT_EQ(ScaledOf(L"risetime", 2e-9).units, L"ns");
  EXPECT_DOUBLE_EQ(ScaledOf(L"max", 0.25).result, 250);
  EXPECT_EQ(ScaledOf(L"max", 0.25).units, L"mV");
  EXPECT_DOUBLE_EQ(ScaledOf(L"iae", 3e-12).result, 3);
  EXPECT_EQ(ScaledOf(L"iae", 3e-12).units, L"ns*mV");
  EXPECT_DOUBLE_EQ(ScaledOf(L"ise", 3e-15).result, 3);
  EXPECT_EQ(ScaledOf(L"ise", 3e-15).units, L"ns*mV^2");
}

TEST(RangedFunctionCatalogue, AnAxisInDegreesCelsiusScalesByTheConversionOfOneKelvinAsIsMeant) {
  double const factor = Units::ConvertFromSI(1.0, Units::kCelsius);
  Scaled scaled;
  EXPECT_TRUE(Catalogue().ScaleRangedFunctionValueToGivenUnits(scaled.result, scaled.units, L"XAtYMax", 300.0,
                                                               Units::kCelsius, Units::kVolt));
  EXPECT_DOUBLE_EQ(scaled.result, 300.0 * factor);
  EXPECT_DOUBLE_EQ(scaled.result, 300.0 * -272.15);
  EXPECT_EQ(scaled.units, L"cel");
}

TEST(RangedFunctionCatalogue, AVarianceScalesTwiceButItsUnitHasNoSquareMarkAsIsMeant) {
  EXPECT_DOUBLE_EQ(ScaledOf(L"variance", 4e-6).result, 4);
  EXPECT_EQ(ScaledOf(L"variance", 4e-6).units, L"mV");
}

TEST(RangedFunctionCatalogue, ParametersAreValuesOfTheirTexts) {
  PropList const eye = ParametersOf(L"MinEyeWidth");
  ASSERT_EQ(eye.size(), 7u);
  EXPECT_EQ(eye[0].GetValue().GetText(), L"0.0ns");
  EXPECT_EQ(eye[0].GetValue().GetUnits(), Units::kNanosecond);
  EXPECT_EQ(eye[3].GetValue().GetSIValue(), 1);
  EXPECT_EQ(eye[3].GetValue().GetUnits(), Units::kNoUnits);
  EXPECT_EQ(eye[4].GetValue().GetText(), L"0.0mv");
  EXPECT_EQ(eye[4].GetValue().GetUnits(), Units::kMillivolt);
  EXPECT_EQ(ParametersOf(L"xdb10Beamwidth")[0].GetDescription(), L"");
}

TEST(RangedFunctionCatalogue, HasOneSharedInstance) {
  EXPECT_EQ(&RangedFunctionsGUIHelper::GetInstance(), &RangedFunctionsGUIHelper::GetInstance());
}

TEST(RangedFunctionCatalogue, AFunctionAddedTwiceIsReportedAndLeftAsItIs) {
  GrowingCatalogue catalogue;
  catalogue.AddFunction(L"mine", L"My own.", L"Own", PropList(), nullptr);
  AssertWatch::Expect("!ACHAR(\"Function already present\")");
  AssertWatch::Expect("AssertFunctionNotPresent(funcName)");
  AssertWatch::Expect("defaultFunctionParametersIter == m_defaultFunctionParameters.end()");
  AssertWatch::Expect("AssertFunctionDefaultParametersNotPresent(funcName)");
  catalogue.AddFunction(L"MAX", L"Another.", L"Own", PropList(), nullptr);
  AString description;
  EXPECT_TRUE(catalogue.GetDescription(description, L"max"));
  EXPECT_EQ(description, L"Maximum (of magnitudes).");
  EXPECT_TRUE(catalogue.GetDescription(description, L"Mine"));
  EXPECT_EQ(description, L"My own.");
}

TEST(RangedFunctionCatalogue, AFunctionThatTheEngineDoesNotKnowIsNotShown) {
  GrowingCatalogue catalogue;
  catalogue.AddFunction(L"unheardof", L"My own.", L"Own", PropList(), nullptr);
  catalogue.AddFunction(L"sin", L"Takes no column.", L"Own", PropList(), nullptr);
  std::vector<AString> names;
  for (int display = 0; display < 18; ++display) {
    if (display != 15)
      catalogue.GetFunctionNames(names, L"Own", static_cast<rep::DisplayType>(display));
  }
  EXPECT_TRUE(names.empty());
  // A category whose functions all fail isn't listed either.
  catalogue.GetCategoryNames(names, kDataTable);
  EXPECT_EQ(std::count(names.begin(), names.end(), AString(L"Own")), 0);
  // The display of eyes asks for names alone.
  names.clear();
  catalogue.GetFunctionNames(names, L"Own", static_cast<rep::DisplayType>(15));
  EXPECT_EQ(names.size(), 2u);
}
