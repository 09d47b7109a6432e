#include "products/command/product/QuantityBlock.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "products/command/product/SettingsBlock.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using desktop::QuantityValues;

std::vector<QuantityValues> Sample() {
  return {{L"time", L"s", L"", false, {0, 0.1, 0.2}},
          {L"height", L"m", L"time", false, {0, 1e-300, 0.30000000000000004}},
          {L"range", L"", L"", true, {-0.0}}};
}

io::CBlock Written(std::vector<QuantityValues> const & quantities) {
  io::CBlock block(L"Data");
  command::WriteQuantities(quantities, block);
  return block;
}

TEST(QuantityBlock, ReadsBackWhatWasWritten) {
  std::vector<QuantityValues> read;
  ASSERT_TRUE(command::ReadQuantities(Written(Sample()), read));
  ASSERT_EQ(read.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(read[i].name, Sample()[i].name);
    EXPECT_EQ(read[i].unit, Sample()[i].unit);
    EXPECT_EQ(read[i].over, Sample()[i].over);
    EXPECT_EQ(read[i].isScalar, Sample()[i].isScalar);
    EXPECT_EQ(read[i].values, Sample()[i].values);
  }
}

TEST(QuantityBlock, RefusesBlocksThatDontFit) {
  std::vector<QuantityValues> read;
  EXPECT_FALSE(command::ReadQuantities(io::CBlock(L"Data"), read));
  for (auto const & spoil : std::vector<void (*)(std::vector<QuantityValues> &)>{
           [](auto & all) { all.clear(); },
           [](auto & all) { all[1].name = L"TIME"; },
           [](auto & all) { all[0].name = AString(); },
           [](auto & all) { all[0].values.push_back(1); },
           [](auto & all) { all[1].over = L"none"; },
           [](auto & all) { all[1].over = L"range"; },
           [](auto & all) { all[0].values.clear(); },
           [](auto & all) { all[2].values = {std::numeric_limits<double>::quiet_NaN()}; },
       }) {
    auto quantities = Sample();
    spoil(quantities);
    EXPECT_FALSE(command::ProblemOfQuantities(quantities).empty());
    EXPECT_FALSE(command::ReadQuantities(Written(quantities), read));
    EXPECT_TRUE(read.empty());
  }
}

TEST(SettingsBlock, ReadsBackWhatWasWritten) {
  command::HoleValues const settings{{"steps", "1000"}, {"method", "rk 4 \"a\\b\"="}};
  io::CBlock block(L"Settings");
  command::WriteSettings(block, settings);
  EXPECT_EQ(command::ReadSettings(block), settings);
}

TEST(SettingsBlock, WordsLeadToTheSameSettings) {
  for (command::HoleValues const & settings :
       {command::HoleValues{}, {{"steps", "1000"}}, {{"steps", ""}, {"method", "rk 4 \"a\\b\"="}}}) {
    command::HoleValues read{{"former", "1"}};
    AString error;
    EXPECT_TRUE(command::SettingsOfWords(command::WordsOfSettings(settings), read, error));
    EXPECT_EQ(read, settings);
  }
}

TEST(SettingsBlock, RefusesWordsThatAreNoSettings) {
  for (wchar_t const * words : {L"", L"steps", L"steps=", L"=5", L"a=1 b", L"a=1 A=2", L"2=3", L"a=\"1", L"a==b"}) {
    command::HoleValues settings;
    AString error;
    EXPECT_FALSE(command::SettingsOfWords(words, settings, error)) << text::ToUtf8(AString(words));
    EXPECT_FALSE(error.empty());
  }
}

} // namespace
