// What is printed reads back as the same expression.

#include "basekit/value/expression/Lexer.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "tests/basekit/value/expression/Evaluator.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

AString Printed(AString const & text) {
  expr::SyntaxTree tree;
  expr::Error error;
  EXPECT_TRUE(expr::ReadSyntax(text, tree, error)) << ::testing::PrintToString(text);
  return tree.Print();
}

bool IsSameNode(expr::SyntaxTree const & a, expr::SyntaxTree const & b, std::size_t i) {
  expr::Node const & left = a.nodes[i];
  expr::Node const & right = b.nodes[i];
  if (left.kind != right.kind || left.argumentCount != right.argumentCount || left.first != right.first)
    return false;
  switch (left.kind) {
  case expr::Node::Kind::kNumber: {
    val::Quantity const & x = a.numbers[left.payload];
    val::Quantity const & y = b.numbers[right.payload];
    return x.real == y.real && x.imaginary == y.imaginary && x.isComplex == y.isComplex && x.unit == y.unit;
  }
  case expr::Node::Kind::kUnary:
  case expr::Node::Kind::kBinary:
    return left.op == right.op;
  default:
    return a.names[left.payload] == b.names[right.payload];
  }
}

bool IsSameTree(expr::SyntaxTree const & a, expr::SyntaxTree const & b) {
  if (a.nodes.size() != b.nodes.size())
    return false;
  for (std::size_t i = 0; i < a.nodes.size(); ++i)
    if (!IsSameNode(a, b, i))
      return false;
  return true;
}

/// Writes random expressions, with more parentheses and blanks than are needed.
class Writer {
public:
  explicit Writer(unsigned seed) : m_random(seed) {}

  std::wstring Any(int depth) {
    switch (depth <= 0 ? Pick(3) : Pick(8)) {
    case 0:
      return Number();
    case 1:
      return OneOf({L"x", L"y", L"S(2,1)", L"Setup1:Sweep", L"'my name'", L"F", L"a_1"});
    case 2:
      return OneOf({L"pi", L"2i", L"0.5j", L"10meg", L"30deg", L"-5cel", L"3.3%", L"7mil"});
    case 3:
      return OneOf({L"-", L"!", L"+"}) + Any(depth - 1);
    case 4:
      return L"(" + Any(depth - 1) + L")";
    case 5:
      return OneOf({L"dB", L"max", L"ang_deg", L"sqrt"}) + L"( " + Any(depth - 1) + L" )";
    case 6:
      return L"if(" + Any(depth - 1) + L"," + Any(depth - 1) + L",  " + Any(depth - 1) + L")";
    default:
      return L"(" + Any(depth - 1) + L")" +
             OneOf({L"+", L"-", L"*", L"/", L"^", L"**", L" && ", L"||", L"<", L">=", L"==", L" != "}) +
             (Pick(2) == 0 ? Any(0) : L"(" + Any(depth - 1) + L")");
    }
  }

private:
  std::size_t Pick(std::size_t count) { return m_random() % count; }
  std::wstring OneOf(std::vector<std::wstring> const & choices) { return choices[Pick(choices.size())]; }
  std::wstring Number() {
    double const value = std::ldexp(static_cast<double>(m_random()), -20);
    return std::wstring(AString::Format(L"%g", value).View()) +
           OneOf({L"", L"", L"GHz", L"pF", L"k", L"mm", L"%", L"dB", L"deg", L"cel", L"mil", L" ns", L"Ohm"});
  }

  std::mt19937 m_random;
};

} // namespace

TEST(Printing, WritesNoMoreParenthesesThanAreNeeded) {
  EXPECT_EQ(Printed(L"((1)+(2*3))"), AString(L"1 + 2*3"));
  EXPECT_EQ(Printed(L"(1+2)*3"), AString(L"(1 + 2)*3"));
  EXPECT_EQ(Printed(L"1-(2-3)"), AString(L"1 - (2 - 3)"));
  EXPECT_EQ(Printed(L"(1-2)-3"), AString(L"1 - 2 - 3"));
  EXPECT_EQ(Printed(L"(-2)^2"), AString(L"(-2)^2"));
  EXPECT_EQ(Printed(L"-(2^2)"), AString(L"-2^2"));
  EXPECT_EQ(Printed(L"2^(-3)"), AString(L"2^-3"));
  EXPECT_EQ(Printed(L"(2^3)^4"), AString(L"(2^3)^4"));
  EXPECT_EQ(Printed(L"2^(3^4)"), AString(L"2^3^4"));
  EXPECT_EQ(Printed(L"(1<2)<3"), AString(L"(1 < 2) < 3"));
  EXPECT_EQ(Printed(L"1 == (2 == 3)"), AString(L"1 == (2 == 3)"));
  EXPECT_EQ(Printed(L"a||(b&&c)"), AString(L"a || b && c"));
  EXPECT_EQ(Printed(L"(a||b)&&c"), AString(L"(a || b) && c"));
  EXPECT_EQ(Printed(L"max( dB( S(2,1) ) ,3 )"), AString(L"max(dB(S(2,1)), 3)"));
}

TEST(Printing, KeepsUnitsAndQuotesWhatNeedsThem) {
  EXPECT_EQ(Printed(L"2.40 GHz*3i"), AString(L"2.4GHz*3i"));
  EXPECT_EQ(Printed(L"'S21' + 'my ''name'''"), AString(L"S21 + 'my ''name'''"));
  EXPECT_EQ(Printed(L"interp(\"a \"\"b\"\"\", x)"), AString(L"interp(\"a \"\"b\"\"\", x)"));
  EXPECT_EQ(Printed(L"'dB(x)' + dB(x)"), AString(L"'dB(x)' + dB(x)"));
}

TEST(Printing, KeepsWhoseSignItIsBeforeATemperature) {
  for (wchar_t const * const text : {L"-5cel", L"-(5cel)", L"-(-5cel)", L"-(5cel)^2", L"(-5cel)^2", L"(5cel)^2",
                                     L"2^-5cel", L"2^-(5cel)", L"-5cel*2", L"1 - 5cel", L"1 - -5cel", L"!(-5cel)"})
    EXPECT_EQ(Printed(text), AString(text));
}

TEST(Printing, PrintedExpressionsReadBackAsTheSameTree) {
  for (unsigned seed = 0; seed < 3000; ++seed) {
    AString const text(Writer(seed).Any(1 + static_cast<int>(seed % 6)));
    expr::SyntaxTree tree;
    expr::SyntaxTree again;
    expr::Error error;
    ASSERT_TRUE(expr::ReadSyntax(text, tree, error)) << ::testing::PrintToString(text);
    AString const printed = tree.Print();
    ASSERT_TRUE(expr::ReadSyntax(printed, again, error)) << ::testing::PrintToString(printed);
    ASSERT_TRUE(IsSameTree(tree, again)) << ::testing::PrintToString(text) << ::testing::PrintToString(printed);
    ASSERT_EQ(again.Print(), printed);
    for (std::size_t const root : {tree.nodes.size() - 1, tree.nodes.size() / 2})
      ASSERT_TRUE(expr::ReadSyntax(tree.PrintFrom(root), again, error));
  }
}

TEST(Printing, NamesReadBackWhateverTheyHold) {
  for (wchar_t const * const name : {L"x", L"1st", L"a b", L"it's", L"''", L"S(2,1)", L"S(2", L"max", L"dB(x)",
                                     L"a.b:c", L"a.", L":", L"\u03a9m", L"-", L"a\nb", L"f[1](2).c"}) {
    std::wstring const written = expr::NameText(name);
    EXPECT_EQ(expr::NamesIn(AString(written)), std::vector<AString>{name}) << ::testing::PrintToString(AString(name));
    EXPECT_EQ(Printed(AString(written)), AString(written));
  }
}
