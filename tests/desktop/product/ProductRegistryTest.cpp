#include "desktop/product/ProductRegistry.h"

#include "tests/desktop/support/FakeProduct.h"
#include "tests/support/Printers.h"

#include <algorithm>
#include <gtest/gtest.h>

using desktop::ProductRegistry;

TEST(ProductRegistry, FindsProductsWithoutCase) {
  ProductRegistry::Instance().Register(std::make_unique<support::FakeProduct>());
  ASSERT_NE(ProductRegistry::Instance().Find(L"FAKE"), nullptr);
  EXPECT_EQ(ProductRegistry::Instance().Find(L"FAKE")->GetName(), L"fake");
  EXPECT_EQ(ProductRegistry::Instance().Find(L"none"), nullptr);
}

TEST(ProductRegistry, ReplacesAProductOfTheSameName) {
  ProductRegistry::Instance().Register(std::make_unique<support::FakeProduct>());
  auto product = std::make_unique<support::FakeProduct>();
  auto const * const second = product.get();
  ProductRegistry::Instance().Register(std::move(product));
  auto const names = ProductRegistry::Instance().Names();
  EXPECT_EQ(std::count(names.begin(), names.end(), AString(L"fake")), 1);
  EXPECT_EQ(ProductRegistry::Instance().Find(L"fake"), second);
}
