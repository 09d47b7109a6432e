#include "desktop/page/Ticks.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using desktop::page::DecadeTicks;
using desktop::page::LinearTicks;
using desktop::page::Ticks;

std::vector<std::string> Texts(Ticks const & ticks) {
  std::vector<std::string> texts;
  for (auto const & tick : ticks.ticks)
    if (!tick.text.empty())
      texts.push_back(tick.text);
  return texts;
}

using Words = std::vector<std::string>;

TEST(Ticks, StandAtStepsOfOneTwoOrFive) {
  EXPECT_EQ(Texts(LinearTicks(0, 1, 5, L"")), (Words{"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
  EXPECT_EQ(Texts(LinearTicks(0, 40, 9, L"dB")), (Words{"0", "5", "10", "15", "20", "25", "30", "35", "40"}));
  EXPECT_EQ(Texts(LinearTicks(-7, 7, 4, L"dB")), (Words{"-5", "0", "5"}));
}

TEST(Ticks, AreTheNumbersThatTheirTextsTell) {
  auto const ticks = LinearTicks(0.0, 0.7, 7, L"");
  ASSERT_EQ(ticks.ticks.size(), 8u);
  EXPECT_EQ(ticks.ticks[3].value, 0.3); // not 0.30000000000000004
  EXPECT_EQ(ticks.ticks[7].value, 0.7);
}

TEST(Ticks, OfAPlainUnitAreToldWithAPrefix) {
  auto const ticks = LinearTicks(1e9, 2e9, 5, L"Hz");
  EXPECT_EQ(ticks.unit, "GHz");
  EXPECT_EQ(Texts(ticks), (Words{"1.0", "1.2", "1.4", "1.6", "1.8", "2.0"}));
  EXPECT_EQ(LinearTicks(0, 4e-12, 4, L"F").unit, "pF");
  EXPECT_EQ(LinearTicks(-0.8, 0.8, 4, L"V").unit, "mV");
}

TEST(Ticks, OfAUnitWithPrefixOrNoneAreToldAsTheyAre) {
  EXPECT_EQ(LinearTicks(0, 10, 5, L"GHz").unit, "GHz");
  EXPECT_EQ(LinearTicks(0, 10, 5, L"").unit, "");
  EXPECT_EQ(LinearTicks(0, 4e6, 5, L"dB").unit, "10⁶ dB");
  EXPECT_EQ(LinearTicks(0, 4e-7, 5, L"").unit, "10⁻⁹");
}

TEST(Ticks, ZeroHasNoSign) { EXPECT_EQ(Texts(LinearTicks(-0.2, 0.2, 4, L""))[2], "0.0"); }

TEST(Ticks, OfANarrowRangeShowWhereTheyDiffer) {
  EXPECT_EQ(Texts(LinearTicks(1.00001e9, 1.00002e9, 2, L"Hz")), (Words{"1.000010", "1.000015", "1.000020"}));
}

TEST(Ticks, OfARangeThatIsNoneAreNone) {
  EXPECT_TRUE(LinearTicks(1, 1, 5, L"").ticks.empty());
  EXPECT_TRUE(LinearTicks(2, 1, 5, L"").ticks.empty());
  EXPECT_TRUE(LinearTicks(0, std::numeric_limits<double>::infinity(), 5, L"").ticks.empty());
  EXPECT_TRUE(LinearTicks(std::numeric_limits<double>::quiet_NaN(), 1, 5, L"").ticks.empty());
}

TEST(Ticks, NeverExceedAHundred) {
  EXPECT_LE(LinearTicks(1e300, 1.0000000000000002e300, 10, L"").ticks.size(), 100u);
  EXPECT_LE(DecadeTicks(1e-300, 1e300, 5, L"").ticks.size(), 100u);
  EXPECT_LE(DecadeTicks(0.0, std::numeric_limits<double>::infinity(), 5, L"").ticks.size(), 100u);
}

TEST(Ticks, OfALogarithmicAxisStandAtDecades) {
  EXPECT_EQ(Texts(DecadeTicks(1e6, 1e9, 4, L"Hz")), (Words{"1M", "10M", "100M", "1G"}));
  EXPECT_EQ(Texts(DecadeTicks(1e6, 1e8, 8, L"Hz")), (Words{"1M", "2M", "5M", "10M", "20M", "50M", "100M"}));
  EXPECT_EQ(DecadeTicks(1e6, 1e8, 4, L"Hz").ticks.size(), 19u);
}

TEST(Ticks, OfAShortLogarithmicAxisAreLinear) {
  EXPECT_EQ(Texts(DecadeTicks(1, 4, 4, L"")), (Words{"1", "2", "3", "4"}));
}

} // namespace
