#include "products/rfcircuit/product/quantity/QuantityName.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/expression/Lexer.h"
#include "products/rfcircuit/product/quantity/NetworkLayout.h"
#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using namespace rfcircuit;

NetworkLayout TwoPorts() { return {true, {{1, L"Vin", 50}, {2, L"Vout", 75}}, {L"mid", L"x,2"}}; }

bool Is(wchar_t const * text, NetworkLayout const & layout = TwoPorts()) {
  QuantityName name;
  return FindNetworkQuantity(text, layout, name) != nullptr;
}

TEST(QuantityName, IsTakenApartAtParenthesesAndCommas) {
  auto const name = ParseQuantityName(L" S ( in , 2 ) ");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->symbol, L"S");
  EXPECT_EQ(name->arguments, (std::vector<AString>{L"in", L"2"}));
}

TEST(QuantityName, HasDigitsBehindItsSymbolInTheShortForm) {
  auto const name = ParseQuantityName(L"GD21");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->symbol, L"GD");
  EXPECT_EQ(name->digits, L"21");
  EXPECT_FALSE(ParseQuantityName(L""));
  EXPECT_FALSE(ParseQuantityName(L"S(2,1"));
  EXPECT_FALSE(ParseQuantityName(L"21"));
}

TEST(QuantityName, FindsPortsByNumberAndByNameWithoutCase) {
  for (wchar_t const * const text : {L"S(2,1)", L"S21", L"s21", L"S(Vout,Vin)", L"Y(vOUT,1)", L"Z22", L"VSWR1",
                                     L"VSWR(2)", L"Zo(Vin)", L"Zo2", L"GD(2,1)", L"Freq", L"freq"})
    EXPECT_TRUE(Is(text)) << text::ToUtf8(AString(text));
  for (wchar_t const * const text : {L"S(3,1)", L"S31", L"S(1)", L"S1", L"S211", L"S", L"VSWR", L"VSWR3", L"VSWR(1,1)",
                                     L"S(0,1)", L"S(,1)", L"Zo(5)", L"Freq1", L"Q(1,1)", L"S(2,1)x", L"S(-1,1)"})
    EXPECT_FALSE(Is(text)) << text::ToUtf8(AString(text));
}

TEST(QuantityName, FindsNodesAlsoThoseWithCommasInTheirNames) {
  for (wchar_t const * const text : {L"V(mid)", L"V(MID,2)", L"V(mid,Vout)", L"V(x,2)", L"V(x,2,1)"})
    EXPECT_TRUE(Is(text)) << text::ToUtf8(AString(text));
  for (wchar_t const * const text : {L"V(other)", L"V(mid,3)", L"V(x)", L"V()", L"V1", L"V"})
    EXPECT_FALSE(Is(text)) << text::ToUtf8(AString(text));
}

TEST(QuantityName, MayNameAnyPortWhileNothingIsSolved) {
  EXPECT_TRUE(Is(L"S(7,9)", {}));
  EXPECT_TRUE(Is(L"VSWR12", {}));
  EXPECT_FALSE(Is(L"S(in,out)", {}));
  EXPECT_FALSE(Is(L"V(mid)", {}));
}

// A group behind a function's name is its argument, so that VSWR(1) in an expression is the function of the number 1.
TEST(QuantityName, TakesParenthesesInExpressionsUnlessItIsAFunctionsName) {
  for (auto const & quantity : NetworkQuantities()) {
    bool const isFunction = expr::IsFunctionName(quantity->GetSymbol().View());
    EXPECT_EQ(isFunction, AString::MatchNoCase(quantity->GetSymbol(), L"VSWR")) << text::ToUtf8(quantity->GetSymbol());
  }
  for (wchar_t const * const word : {L"IL", L"RL", L"KFactor", L"MuFactor", L"Delta", L"MaxGain"})
    EXPECT_FALSE(expr::IsFunctionName(word)) << text::ToUtf8(AString(word));
}

TEST(QuantityName, IsListedAsExpressionsTakeIt) {
  std::vector<AString> names;
  for (auto const & quantity : NetworkQuantities())
    quantity->ListNames(TwoPorts(), names);
  for (AString const & name : names) {
    QuantityName parsed;
    EXPECT_NE(FindNetworkQuantity(name, TwoPorts(), parsed), nullptr) << text::ToUtf8(name);
    EXPECT_TRUE(expr::IsPlainName(name.View())) << text::ToUtf8(name);
  }
  EXPECT_EQ(names.size(), 4u + 4 + 4 + 2 + 4 + 2 + 1 + 4);
}

} // namespace
