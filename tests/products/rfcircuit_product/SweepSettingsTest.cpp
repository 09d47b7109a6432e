#include "products/rfcircuit/product/SweepSettings.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "products/rfcircuit/engine/sweep/FrequencySweep.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace rfcircuit;
using rf::FrequencySweep;

namespace {

std::vector<FrequencySweep> const & AllKinds() {
  static std::vector<FrequencySweep> const kinds{
      FrequencySweep::Linear(201, 10e6, 2.01e9), FrequencySweep::Decade(10, 1e6, 1e9),
      FrequencySweep::Octave(4, 1e6, 512e6), FrequencySweep::List({1e9, 1.1e9 / 3.0, 0.0})};
  return kinds;
}

io::CBlock SettingsOf(FrequencySweep const & sweep) {
  io::CBlock settings(L"Settings");
  WriteSweep(settings, sweep);
  return settings;
}

AString ErrorOf(io::CBlock const & settings) {
  AString error;
  EXPECT_FALSE(ReadSweep(settings, error).has_value());
  EXPECT_EQ(error.find(L'\n'), AString::npos);
  return error;
}

std::vector<double> FrequenciesOf(FrequencySolutionDefinition const & definition) {
  std::vector<double> frequencies;
  definition.GetFrequencies(frequencies);
  return frequencies;
}

} // namespace

TEST(SweepSettings, ReadWell) {
  EXPECT_EQ(SettingsOf(FrequencySweep::Linear(201, 10e6, 2e9)).Pack(),
            AString(L"Settings { Kind = \"lin\" Points = 201 Start = 1e7 Stop = 2e9 }"));
  EXPECT_EQ(SettingsOf(FrequencySweep::List({2e9, 1e9})).Pack(),
            AString(L"Settings { Kind = \"list\" Frequencies(1e9, 2e9) }"));
}

TEST(SweepSettings, OfAnyKindComeBackWithTheSameFrequencies) {
  for (FrequencySweep const & sweep : AllKinds()) {
    io::CBlock settings;
    ASSERT_TRUE(settings.Unpack(SettingsOf(sweep).Pack(16, 0)));
    AString error;
    auto const read = ReadSweep(settings, error);
    ASSERT_TRUE(read.has_value()) << sweep.KindName();
    EXPECT_EQ(read->GetKind(), sweep.GetKind());
    EXPECT_EQ(read->Frequencies(), sweep.Frequencies());
  }
}

TEST(SweepSettings, WithoutAKindAreRefused) {
  EXPECT_EQ(ErrorOf(io::CBlock(L"Settings")), L"sweep: the settings hold none; define the sweep of the setup anew");
}

TEST(SweepSettings, OfAnUnknownKindAreRefused) {
  io::CBlock settings(L"Settings");
  settings << io::named(L"Kind", L"adaptive");
  EXPECT_EQ(ErrorOf(settings), L"sweep: there is no kind 'adaptive'; use lin, dec, oct or list");
}

TEST(SweepSettings, WithoutTheirNumbersAreRefused) {
  io::CBlock settings(L"Settings");
  settings << io::named(L"Kind", L"lin") << io::named(L"Points", 11L) << io::named(L"Start", 1e9);
  EXPECT_EQ(ErrorOf(settings), L"sweep: the stop frequency is missing; define the sweep of the setup anew");
  io::CBlock list(L"Settings");
  list << io::named(L"Kind", L"list");
  EXPECT_EQ(ErrorOf(list), L"sweep: the list of frequencies is missing; define the sweep of the setup anew");
}

TEST(SweepSettings, WithSenselessNumbersAreRefused) {
  io::CBlock settings(L"Settings");
  settings << io::named(L"Kind", L"dec") << io::named(L"Points", 10L) << io::named(L"Start", 0.0)
           << io::named(L"Stop", 1e9);
  EXPECT_EQ(ErrorOf(settings), L"sweep: a logarithmic sweep can't start at 0 Hz; start above 0 Hz or use lin");
}

TEST(SweepSettings, BecomeASweepDefinitionAndComeBack) {
  for (FrequencySweep const & sweep : AllKinds()) {
    SweepDefinition * const definition = MakeSweepDefinition(sweep);
    if (sweep.GetKind() == FrequencySweep::Kind::List) {
      EXPECT_EQ(definition, nullptr);
      continue;
    }
    ASSERT_NE(definition, nullptr);
    EXPECT_EQ(definition->GetVariableName(), L"F");
    EXPECT_EQ(definition->GetCount(), sweep.GivenPoints());
    auto const back = SweepOf(*definition);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(back->Frequencies(), sweep.Frequencies());
    SweepDefinition::FreeStorage(definition);
  }
}

TEST(SweepSettings, IgnoreDefinitionsOfOtherVariablesAndKinds) {
  EXPECT_FALSE(SweepOf(SweepDefinition(L"C1", SweepDefinition::kLinearCount, 1.0, 2.0)).has_value());
  EXPECT_FALSE(SweepOf(SweepDefinition(L"F", SweepDefinition::kLinearStep, 1.0, 2.0)).has_value());
  EXPECT_FALSE(SweepOf(SweepDefinition(L"F", SweepDefinition::kLinearCount, 2.0, 1.0)).has_value());
}

TEST(SweepSettings, DescribeWhatIsSolvedByTheNumbersOfTheSweep) {
  for (FrequencySweep const & sweep : AllKinds()) {
    FrequencySolutionDefinition definition;
    DescribeSweep(sweep, definition);
    EXPECT_EQ(definition.AreFrequenciesGenerated(), sweep.GetKind() != FrequencySweep::Kind::List) << sweep.KindName();
    std::vector<double> const told = FrequenciesOf(definition);
    std::vector<double> const solved = sweep.Frequencies();
    ASSERT_EQ(told.size(), solved.size()) << sweep.KindName();
    for (std::size_t i = 0; i < solved.size(); ++i)
      EXPECT_LE(std::abs(told[i] - solved[i]), 1e-12 * solved[i]);
  }
}

TEST(SweepSettings, DescribeALogarithmicSweepThatMissesItsStopByItsList) {
  FrequencySweep const sweep = FrequencySweep::Decade(1, 1e6, 9e6);
  FrequencySolutionDefinition definition;
  DescribeSweep(sweep, definition);
  EXPECT_FALSE(definition.AreFrequenciesGenerated());
  EXPECT_EQ(FrequenciesOf(definition), sweep.Frequencies());
}
