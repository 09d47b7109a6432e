#include "plotkit/sweep/SweepDefinition.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/Sweep.h"

#include <gtest/gtest.h>

namespace {

SweepDefinition Example() {
  SweepDefinition sweep(L"Freq", SweepDefinition::kDecadeCount, 1e6, 1e9);
  sweep.SetStep(2.5);
  sweep.SetCount(20);
  sweep.SetSynchronizeNumber(3);
  sweep.SetOffsetF1Flag(-1);
  return sweep;
}

} // namespace

TEST(SweepDefinition, TypeWordsMapBothWays) {
  wchar_t const * const words[] = {L"", L"LIN", L"DEC", L"OCT", L"ESTP", L"LINC"};
  for (int type = 0; type < 6; ++type) {
    EXPECT_EQ(SweepDefinition::GetSweepTypeName(static_cast<SweepDefinition::SweepType>(type)), words[type]);
    EXPECT_EQ(SweepDefinition::GetSweepType(words[type]), type);
  }
  EXPECT_EQ(SweepDefinition::GetSweepType(L"dec"), SweepDefinition::kDecadeCount);
}

TEST(SweepDefinition, AWordThatIsNoTypeIsSaidToBeNone) {
  EXPECT_EQ(SweepDefinition::GetSweepType(L"SPIRAL"), SweepDefinition::kNumOfSweepType);
  EXPECT_EQ(SweepDefinition::GetSweepTypeName(SweepDefinition::kNumOfSweepType), L"");
}

TEST(SweepDefinition, ABlockGivesBackAnEqualDefinition) {
  io::CBlock block(SweepDefinition::GetDataKeyword());
  ASSERT_TRUE(Example().Write(block));
  SweepDefinition read;
  EXPECT_EQ(read.Read(block), io::kNoError);
  EXPECT_TRUE(read == Example());
  EXPECT_EQ(read.GetVariableName(), L"Freq");
}

TEST(SweepDefinition, EveryFieldTakesPartInEquality) {
  auto const differs = [](auto const & change) {
    SweepDefinition sweep = Example();
    change(sweep);
    return !(sweep == Example());
  };
  EXPECT_TRUE(Example() == Example());
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetVariableName(L"freq"); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetType(SweepDefinition::kOctaveCount); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetRange(2e6, 1e9); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetRange(1e6, 2e9); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetStep(1.0); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetCount(21); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetSynchronizeNumber(0); }));
  EXPECT_TRUE(differs([](SweepDefinition & s) { s.SetOffsetF1Flag(0); }));
}

TEST(SweepDefinition, ABlockWithoutAVariableIsNoDefinition) {
  SweepDefinition read;
  EXPECT_EQ(read.Read(io::CBlock(SweepDefinition::GetDataKeyword())), io::kNotFound);
}

TEST(SweepDefinition, AnUnknownTypeIsRefusedAndLeavesTheDefinition) {
  io::CBlock block(SweepDefinition::GetDataKeyword());
  block << io::named(L"Variable", L"C1") << io::named(L"Type", L"SPIRAL");
  SweepDefinition read = Example();
  EXPECT_EQ(read.Read(block), io::kBadContent);
  EXPECT_TRUE(read == Example());
}

TEST(SweepDefinition, FreedStorageLosesNothing) {
  // The leak check of a sanitizer run is what proves it; a long name would not fit into any short buffer.
  auto * sweep = new SweepDefinition(AString(std::wstring(500, L'n')), SweepDefinition::kLinearStep, 0.0, 1.0);
  SweepDefinition::FreeStorage(sweep);
  SweepDefinition::FreeStorage(nullptr);
}

TEST(SweepDefinition, ASharedRecordLivesUntilItsLastHolderGivesItUp) {
  auto * sweep = new SweepDefinition(Example());
  sweep->Share();
  SweepDefinition::FreeStorage(sweep);
  EXPECT_TRUE(*sweep == Example());
  SweepDefinition const copy(*sweep);
  SweepDefinition::FreeStorage(sweep);
  EXPECT_TRUE(copy == Example());
}

TEST(SweepDefinition, ValuesFollowTheType) {
  auto const values = [](SweepDefinition::SweepType type, double start, double stop, double step, unsigned count) {
    SweepDefinition sweep(L"x", type, start, stop);
    sweep.SetStep(step);
    sweep.SetCount(count);
    std::vector<double> list;
    sweep.GetValues(list);
    return list;
  };
  using List = std::vector<double>;
  EXPECT_EQ(values(SweepDefinition::kLinearStep, 1, 2, 0.5, 0), (List{1, 1.5, 2}));
  EXPECT_EQ(values(SweepDefinition::kLinearCount, 1, 2, 0, 3), (List{1, 1.5, 2}));
  EXPECT_EQ(values(SweepDefinition::kDecadeCount, 1, 100, 0, 1), (List{1, 10, 100}));
  EXPECT_EQ(values(SweepDefinition::kOctaveCount, 1, 4, 0, 1), (List{1, 2, 4}));
  EXPECT_EQ(values(SweepDefinition::kExponentialCount, 1, 2.718281828, 0, 1), (List{1, 2.718281828}));
  EXPECT_EQ(values(SweepDefinition::kNoSweepType, 1, 2, 0.5, 3), List{});
}

TEST(SweepDefinition, GivesASweepItsValuesAndSortsThemWhenAsked) {
  SweepDefinition definition(L"x", SweepDefinition::kLinearCount, 3.0, 1.0);
  definition.SetCount(3);
  Sweep sweep;
  definition.ParseSweepData(sweep, false);
  EXPECT_EQ(sweep.GetValuesText(L' ', nullptr), L"3 2 1");
  definition.ParseSweepData(sweep, true);
  EXPECT_EQ(sweep.GetValuesText(L' ', nullptr), L"1 2 3");
  definition.SetType(SweepDefinition::kNoSweepType);
  definition.ParseSweepData(sweep, true);
  EXPECT_EQ(sweep.GetCount(), 0u);
}

TEST(SweepDefinition, ParsingGivesRealValuesToASweepThatHeldOthers) {
  SweepDefinition definition(L"x", SweepDefinition::kLinearCount, 1.0, 1.0);
  definition.SetCount(1);
  Sweep sweep(val::kComplex, Units::kNoUnits, nullptr);
  definition.ParseSweepData(sweep, false);
  EXPECT_EQ(sweep.GetParameterType(0), val::kReal);
}
