#include "plotkit/simvalue/SimValueContext.h"

#include <gtest/gtest.h>

namespace {

SimValueContext Example() { return {1, static_cast<rep::CalculationType>(4), 5, 6, 0.5, 0.25, 0.125, 2.0}; }

} // namespace

TEST(SimValueContext, TextsThatSayNoContextMeanOneOfTheFirstDomain) {
  EXPECT_TRUE(SimValueContext() == SimValueContext(3, rep::CalculationType{}, 2, 0, 1.0, 1.0, 0.0, 0.0));
}

TEST(SimValueContext, ResetTakesAllOfAnotherOne) {
  SimValueContext const other = Example();
  SimValueContext context;
  context.Reset(&other);
  EXPECT_TRUE(context == Example());
  EXPECT_TRUE(SimValueContext(&other) == Example());
  context.Reset(nullptr);
  EXPECT_TRUE(context == SimValueContext());
}

TEST(SimValueContext, TheDomainIsPartOfIt) {
  SimValueContext context = Example();
  context.SetCalculationType(rep::CalculationType{});
  EXPECT_FALSE(context == Example());
}
