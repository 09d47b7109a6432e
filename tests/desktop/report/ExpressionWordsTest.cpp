#include "desktop/report/ExpressionWords.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using desktop::ExpressionWords;
using desktop::WithRenamedWord;

TEST(ExpressionWords, AreTheNamesButNoFunctionsAndNumbers) {
  EXPECT_EQ(ExpressionWords(L"max(dB(S(2,1))) + 2*C1 - 'odd name'"),
            (std::vector<AString>{L"S(2,1)", L"C1", L"odd name"}));
  EXPECT_TRUE(ExpressionWords(L"").empty());
}

TEST(ExpressionWords, OfATextThatIsNoExpressionAreReadAsFarAsTheyGo) {
  EXPECT_EQ(ExpressionWords(L"C1 + ( * C2"), (std::vector<AString>{L"C1", L"C2"}));
}

TEST(ExpressionWords, ARenamedWordIsReplacedWhereItIsAWord) {
  EXPECT_EQ(WithRenamedWord(L"c*C + Cap - sin(C)", L"C", L"R1"), L"R1*R1 + Cap - sin(R1)");
  EXPECT_EQ(WithRenamedWord(L"2*C", L"C", L"odd name"), L"2*'odd name'");
  EXPECT_EQ(WithRenamedWord(L"2*L", L"C", L"R1"), L"2*L");
}
