// A kind of quantity is one small class: this one is written here, as a product's own would be, and all that reports
// ask of quantities follows from it.  In the product a line in NetworkQuantityList.cpp makes it one of all.
#include "desktop/product/quantity/QuantityColumn.h"
#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"
#include "products/rfcircuit/product/quantity/PortQuantities.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"
#include "products/rfcircuit/product/quantity/SolvedNetwork.h"
#include "tests/support/Printers.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace rfcircuit;

namespace {

/// "ISO(2,1)": by how much less comes out of port 2 than goes into port 1, as a ratio of magnitudes.
class Isolation : public PortQuantity {
public:
  AString GetSymbol() const override { return L"ISO"; }
  AString GetCategory() const override { return L"Isolation"; }
  ValueState GetState() const override { return {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal}; }

protected:
  int CountPorts() const override { return 2; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override {
    desktop::QuantityColumn::Reals ratios;
    for (auto const & through : view.S(ports[0], ports[1]))
      ratios.push_back(1.0 / std::abs(through));
    column.numbers = std::move(ratios);
  }
  bool Matters(PortChange const & change, std::vector<AString> const &) const override {
    return !change.impedances.empty();
  }
};

/// Of 50 ohm between two ports of 50 ohm, at two frequencies.
class OwnQuantity : public testing::Test {
protected:
  OwnQuantity() {
    for (std::size_t frequency = 0; frequency < 2; ++frequency)
      for (std::size_t port = 0; port < 2; ++port) {
        m_data.SetS(frequency, port, port, 1.0 / 3);
        m_data.SetS(frequency, port, 1 - port, 2.0 / 3);
      }
  }
  std::vector<double> Numbers(wchar_t const * text, PortConditions const & conditions = {}) const {
    SolvedNetwork network(m_data, conditions, nullptr);
    desktop::QuantityColumn column;
    bool const isThere = m_isolation.Compute(network, *ParseQuantityName(text), column);
    return isThere ? std::get<desktop::QuantityColumn::Reals>(column.numbers) : std::vector<double>();
  }
  NetworkLayout Layout() const { return {true, m_data.Ports(), {}}; }

  Isolation m_isolation;
  NetworkData m_data{{1e9, 2e9}, {{1, L"V1", 50.0}, {2, L"V2", 50.0}}};
};

} // namespace

TEST_F(OwnQuantity, HasANameForEachPairOfPorts) {
  std::vector<AString> expected;
  SParameter().ListNames(Layout(), expected);
  ASSERT_EQ(expected.size(), 4u);
  for (AString & name : expected)
    name = L"ISO" + AString(name.View().substr(1));
  std::vector<AString> names;
  m_isolation.ListNames(Layout(), names);
  EXPECT_EQ(names, expected);
}

TEST_F(OwnQuantity, IsKnownByNumbersAndNamesOfPortsThatAreThere) {
  auto const isKnown = [this](AString const & text) { return m_isolation.Knows(Layout(), *ParseQuantityName(text)); };
  EXPECT_TRUE(isKnown(L"ISO(2,1)"));
  EXPECT_TRUE(isKnown(L"ISO(v2,V1)"));
  EXPECT_FALSE(isKnown(L"ISO(3,1)"));
  EXPECT_FALSE(isKnown(L"ISO(2)"));
  EXPECT_FALSE(isKnown(L"ISO(nobody,1)"));
}

TEST_F(OwnQuantity, HasANumberForEachFrequency) {
  std::vector<double> const numbers = Numbers(L"ISO(2,1)");
  ASSERT_EQ(numbers.size(), 2u);
  for (double const number : numbers)
    EXPECT_NEAR(number, 1.5, 1e-12);
}

TEST_F(OwnQuantity, FollowsTheImpedancesOfThePortsAndTellsThatTheyReachIt) {
  PortConditions conditions;
  conditions.impedances = {std::complex<double>(75.0), std::nullopt};
  conditions.distances = {0.0, 0.0};
  std::vector<double> const numbers = Numbers(L"ISO(2,1)", conditions);
  ASSERT_EQ(numbers.size(), 2u);
  for (double const number : numbers)
    EXPECT_NEAR(number, (75 + 50 + 50) / (2 * std::sqrt(75.0 * 50.0)), 1e-12);
  PortChange change;
  change.impedances.insert(L"V1");
  EXPECT_TRUE(m_isolation.IsReachedBy(change, Layout(), *ParseQuantityName(L"ISO(2,1)")));
  EXPECT_FALSE(m_isolation.IsReachedBy(PortChange(), Layout(), *ParseQuantityName(L"ISO(2,1)")));
}
