#include "basekit/diag/Assert.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace {
void FailHere(bool condition) { KVRO_ASSERT(condition); }
} // namespace

TEST(Assert, ReportsOncePerSiteWithTheConditionsOwnText) {
  FailHere(false);
  FailHere(false);
  EXPECT_EQ(support::AssertWatch::Take(), std::vector<std::string>{"condition"});
  FailHere(true);
}

TEST(Assert, TextsAreGivenAsWritten) {
  KVRO_ASSERT(!"Duplicate entry");
  EXPECT_EQ(support::AssertWatch::Take(), std::vector<std::string>{"!\"Duplicate entry\""});
}

TEST(Assert, SilenceIsGlobal) {
  IgnoreAllAsserts_G = true;
  FailHere(false);
  IgnoreAllAsserts_G = false;
  EXPECT_TRUE(support::AssertWatch::Take().empty());
}
