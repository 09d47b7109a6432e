#include "desktop/product/ResultLayout.h"

#include "basekit/text/Utf8.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <limits>

using desktop::ResultLocation;

namespace {

void ExpectReadBack(ResultLocation const & location, AString const & text) {
  EXPECT_EQ(location.Text(), text);
  auto const parsed = ResultLocation::Parse(location.Text());
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->keyword, location.keyword);
  EXPECT_EQ(parsed->variationID, location.variationID);
  EXPECT_EQ(parsed->version, location.version);
  EXPECT_EQ(parsed->number, location.number);
  EXPECT_EQ(parsed->extension, location.extension);
}

} // namespace

TEST(ResultLayout, NamesReadBackWhatTheyWereMadeOf) {
  ExpectReadBack({L"Touchstone", 17, 5, std::nullopt, L".s2p"}, L"Touchstone/point17_v5.s2p");
  ExpectReadBack({L"NodeVoltages", 17, 0, 101, L".csv"}, L"NodeVoltages/point17_v0_n101.csv");
  ExpectReadBack({L"Plots", 0, 123456, std::nullopt, L""}, L"Plots/point0_v123456");
  ExpectReadBack({L"Plots", -1, -1, -1, L".x"}, L"Plots/point-1_v-1_n-1.x");
  long const largest = std::numeric_limits<long>::max();
  ExpectReadBack({L"Plots", largest, std::numeric_limits<long>::min(), largest, L".x"},
                 ResultLocation{L"Plots", largest, std::numeric_limits<long>::min(), largest, L".x"}.Text());
}

TEST(ResultLayout, TextsOfAnotherLayoutAreNone) {
  for (wchar_t const * const text : {L"",
                                     L"/",
                                     L"point1_v1",
                                     L"/point1_v1.s2p",
                                     L"a/b/point1_v1.s2p",
                                     L"T/point_v1",
                                     L"T/point1",
                                     L"T/point1_v",
                                     L"T/point1_v1_n",
                                     L"T/point1_v1_n.csv",
                                     L"T/point01_v1",
                                     L"T/point+1_v1",
                                     L"T/point1_v-0",
                                     L"T/point 1_v1",
                                     L"T/point1_v99999999999999999999",
                                     L"T/point1_v1.a.b",
                                     L"T/point1_v1x",
                                     L"T/point1_v1.",
                                     L"T/Point1_v1",
                                     L"T/point1_v1.s2p/",
                                     L"T/\x0661",
                                     L"../point1_v1/x"})
    EXPECT_FALSE(ResultLocation::Parse(text)) << text::ToUtf8(AString(text));
}
