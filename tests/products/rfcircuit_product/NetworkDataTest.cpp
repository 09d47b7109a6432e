#include "tests/products/rfcircuit_product/ProductSupport.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using rfcircuit::NetworkData;
using namespace rftest;

namespace {

io::CBlock BlockOf(NetworkData const & data) {
  io::CBlock block(L"Data");
  data.Write(block);
  return block;
}

// A block whose three items are made by hand.
struct Items {
  std::vector<double> frequencies{1e9, 2e9};
  std::vector<int> portNumbers{1};
  double z0 = 50.0;
  std::vector<double> values{0.1, 0.2, 0.3, 0.4};
  bool hasFrequencies = true;
  bool hasPorts = true;
  bool hasValues = true;

  io::CBlock Block() const {
    io::CBlock block(L"Data");
    io::CBlock_func run(L"Frequencies");
    run.AppendReals(frequencies);
    if (hasFrequencies)
      block << run;
    io::CBlock ports(L"Ports");
    for (int const number : portNumbers) {
      io::CBlock_func port(L"Port");
      port << io::named(L"Number", number) << io::named(L"Name", L"V1") << io::named(L"Z0", z0);
      ports << port;
    }
    if (hasPorts)
      block << ports;
    io::CBlock_func s(L"S");
    s.AppendReals(values);
    if (hasValues)
      block << s;
    return block;
  }
};

void ExpectRefused(std::function<void(Items &)> const & spoil) {
  Items items;
  NetworkData data;
  ASSERT_TRUE(data.Read(items.Block()));
  spoil(items);
  EXPECT_FALSE(data.Read(items.Block()));
  EXPECT_TRUE(data.IsEmpty());
  EXPECT_TRUE(data.Frequencies().empty());
  EXPECT_TRUE(data.Ports().empty());
}

} // namespace

TEST(NetworkData, IsEmptyWithoutFrequenciesOrPorts) {
  EXPECT_TRUE(NetworkData().IsEmpty());
  EXPECT_TRUE(NetworkData({1e9}, {}).IsEmpty());
  EXPECT_TRUE(NetworkData({}, {{1, L"V1", 50.0}}).IsEmpty());
  EXPECT_FALSE(NetworkData({1e9}, {{1, L"V1", 50.0}}).IsEmpty());
}

TEST(NetworkData, ComesBackBitForBitFromItsBlock) {
  NetworkData data;
  ASSERT_TRUE(data.Read(BlockOf(SmallNetwork())));
  ExpectSame(data, SmallNetwork());
}

TEST(NetworkData, ComesBackBitForBitThroughText) {
  NetworkData data;
  ASSERT_TRUE(data.Read(ThroughText(BlockOf(SmallNetwork()))));
  ExpectSame(data, SmallNetwork());
}

TEST(NetworkData, ComesBackBitForBitThroughTheBinaryForm) {
  NetworkData data;
  ASSERT_TRUE(data.Read(ThroughBinary(BlockOf(SmallNetwork()))));
  ExpectSame(data, SmallNetwork());
}

TEST(NetworkData, StandsInTheBlockAsTheFormatPageShows) {
  NetworkData data({1e9, 1.5e9}, {{1, L"V1", 50.0}});
  data.SetS(0, 0, 0, {0.25, -0.5});
  data.SetS(1, 0, 0, {0.125, 0.0625});
  EXPECT_EQ(BlockOf(data).Pack(),
            AString(L"Data { Frequencies(1e9, 1.5e9) Ports { Port(Number = 1, Name = \"V1\", Z0 = 50) } "
                    L"S(0.25, -0.5, 0.125, 0.0625) }"));
}

TEST(NetworkData, TellsHowAnAdaptiveSweepGotIt) {
  NetworkData data({1.0, 2.0, 3.0, 4.0}, {{1, L"V1", 50.0}});
  data.SetOrigin({.solved = {0, 2, 3}, .passes = 3, .target = 1e-5, .change = 0.25, .isConverged = true});
  EXPECT_EQ(BlockOf(data).Pack(),
            AString(L"Data { Frequencies(1, 2, 3, 4) Ports { Port(Number = 1, Name = \"V1\", Z0 = 50) } "
                    L"S(0, 0, 0, 0, 0, 0, 0, 0) Adaptive(Passes = 3, Target = 1e-5, Change = 0.25, Converged = true) "
                    L"Solved(0, 2, 3) }"));
  for (io::CBlock const & block : {ThroughText(BlockOf(data)), ThroughBinary(BlockOf(data))}) {
    NetworkData read;
    ASSERT_TRUE(read.Read(block));
    ASSERT_TRUE(read.Origin().has_value());
    EXPECT_EQ(read.Origin()->solved, (std::vector<std::size_t>{0, 2, 3}));
    EXPECT_EQ(read.Origin()->passes, 3);
    EXPECT_EQ(read.Origin()->target, 1e-5);
    EXPECT_EQ(read.Origin()->change, 0.25);
    EXPECT_TRUE(read.Origin()->isConverged);
  }
}

TEST(NetworkData, OfADirectSweepForgetsTheOriginOfWhatItHeldBefore) {
  NetworkData data({1.0}, {{1, L"V1", 50.0}});
  data.SetOrigin({});
  ASSERT_TRUE(data.Read(BlockOf(SmallNetwork())));
  EXPECT_FALSE(data.Origin().has_value());
}

TEST(NetworkData, IsRefusedWhereSolvedPointsAreNotThoseOfTheSweep) {
  for (wchar_t const * const solved : {L"Solved(0, 4)", L"Solved(1, 1)", L"Solved(2, 1)", L"Solved(-1)", L"Solved(0.5)",
                                       L"Solved(nan)", L"Solved = 3", L""}) {
    io::CBlock block;
    ASSERT_TRUE(
        block.Unpack(AString(L"Data { Frequencies(1, 2, 3, 4) Ports { Port(Number = 1, Name = \"V1\", Z0 = 50) } "
                             L"S(0, 0, 0, 0, 0, 0, 0, 0) Adaptive(Passes = 3, Target = 1e-5, Change = 0, "
                             L"Converged = true) ") +
                     solved + L" }"));
    NetworkData data;
    EXPECT_FALSE(data.Read(block)) << text::ToUtf8(AString(solved));
    EXPECT_TRUE(data.IsEmpty());
  }
}

TEST(NetworkData, LaysFrequenciesOutSlowestAndColumnsFastest) {
  NetworkData data({1e9, 2e9}, {{1, L"V1", 50.0}, {2, L"V2", 50.0}});
  data.SetS(0, 0, 1, {12.0, 112.0});
  data.SetS(1, 1, 0, {221.0, 1221.0});
  io::CBlock const block = BlockOf(data);
  auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(L"S", io::CBlock_item::Kind::Func));
  ASSERT_NE(item, nullptr);
  auto const values = item->AllReals();
  ASSERT_EQ(values.size(), 16u);
  EXPECT_EQ(values[2], 12.0);
  EXPECT_EQ(values[3], 112.0);
  EXPECT_EQ(values[12], 221.0);
  EXPECT_EQ(values[13], 1221.0);
}

TEST(NetworkData, RefusesABlockWithoutFrequencies) {
  ExpectRefused([](Items & items) { items.hasFrequencies = false; });
  ExpectRefused([](Items & items) { items.frequencies = {}, items.values = {}; });
}

TEST(NetworkData, RefusesABlockWithoutPorts) {
  ExpectRefused([](Items & items) { items.hasPorts = false; });
  ExpectRefused([](Items & items) { items.portNumbers = {}; });
}

TEST(NetworkData, RefusesABlockWithoutValues) {
  ExpectRefused([](Items & items) { items.hasValues = false; });
}

TEST(NetworkData, RefusesTooFewAndTooManyValues) {
  ExpectRefused([](Items & items) { items.values.pop_back(); });
  ExpectRefused([](Items & items) { items.values.resize(2); });
  ExpectRefused([](Items & items) { items.values.push_back(0.5); });
  ExpectRefused([](Items & items) { items.values.resize(6); });
}

TEST(NetworkData, RefusesFrequenciesThatDoNotAscendFromZero) {
  ExpectRefused([](Items & items) { items.frequencies = {2e9, 1e9}; });
  ExpectRefused([](Items & items) { items.frequencies = {1e9, 1e9}; });
  ExpectRefused([](Items & items) { items.frequencies = {-1.0, 1e9}; });
}

TEST(NetworkData, RefusesNumbersThatAreNotFinite) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  double const infinity = std::numeric_limits<double>::infinity();
  ExpectRefused([&](Items & items) { items.values[3] = nan; });
  ExpectRefused([&](Items & items) { items.values[0] = infinity; });
  ExpectRefused([&](Items & items) { items.frequencies[1] = infinity; });
  ExpectRefused([&](Items & items) { items.z0 = infinity; });
}

TEST(NetworkData, RefusesPortsWithoutAPositiveImpedanceOrOutOfOrder) {
  ExpectRefused([](Items & items) { items.z0 = 0.0; });
  ExpectRefused([](Items & items) { items.portNumbers = {2}; });
  ExpectRefused([](Items & items) { items.portNumbers = {1, 1}, items.values.resize(16); });
}

TEST(NetworkData, RefusesTextAmongItsNumbers) {
  io::CBlock block(L"Data");
  for (auto const & child : Items().Block()) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    if (item && item->Name() == L"S")
      *item << L"0.5";
    block << child;
  }
  NetworkData data;
  EXPECT_FALSE(data.Read(block));
}
