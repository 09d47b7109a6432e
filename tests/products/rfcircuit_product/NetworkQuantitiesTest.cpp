#include "products/rfcircuit/product/NetworkQuantities.h"

#include "tests/products/rfcircuit_product/ProductSupport.h"

#include <gtest/gtest.h>

namespace {

TEST(NetworkQuantities, TellsEachSParameterOverFrequency) {
  auto const data = rftest::SmallNetwork();
  auto const quantities = rfcircuit::QuantitiesOf(data);
  ASSERT_EQ(quantities.size(), 9u);
  EXPECT_EQ(quantities[0].name, L"Freq");
  EXPECT_EQ(quantities[0].unit, L"Hz");
  EXPECT_EQ(quantities[0].values, data.Frequencies());
  EXPECT_EQ(quantities[5].name, L"S21.re");
  EXPECT_EQ(quantities[6].name, L"S21.im");
  EXPECT_EQ(quantities[6].over, L"Freq");
  for (std::size_t i = 0; i < data.Frequencies().size(); ++i)
    EXPECT_EQ(std::complex<double>(quantities[5].values[i], quantities[6].values[i]), data.S(i, 1, 0));
}

TEST(NetworkQuantities, NamesOfManyPortsStayApart) {
  std::vector<rfcircuit::NetworkPort> ports;
  for (int number = 1; number <= 11; ++number)
    ports.push_back({number, L"P", 50});
  auto const quantities = rfcircuit::QuantitiesOf(rfcircuit::NetworkData({1e9}, ports));
  ASSERT_EQ(quantities.size(), 1u + 2 * 121);
  EXPECT_EQ(quantities.back().name, L"S(11,11).im");
}

TEST(NetworkQuantities, WithoutDataThereAreNone) {
  EXPECT_TRUE(rfcircuit::QuantitiesOf(rfcircuit::NetworkData()).empty());
}

} // namespace
