// Expressions that are refused: where, why, and what would help.

#include "basekit/value/expression/SyntaxParser.h"
#include "tests/basekit/value/expression/Evaluator.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Errors : public testing::Test, public support::Evaluator {};

} // namespace

TEST_F(Errors, TellPlaceExpectationAndHint) {
  EXPECT_EQ(Refusal(L"1 + * 2"), "at character 5: found '*', expected a number, a name or '('");
  EXPECT_EQ(Refusal(L"(1 + 2"), "at character 7: the text ends, expected ')'");
  EXPECT_EQ(Refusal(L""), "at character 1: the text ends, expected a number, a name or '('");
  EXPECT_EQ(Refusal(L"1)"), "at character 2: ')' closes nothing");
  EXPECT_EQ(Refusal(L"2(3)"),
            "at character 2: found '(', expected an operator or the end; a product is written with *, "
            "a call without blanks before '('");
  EXPECT_EQ(Refusal(L"1 < 2 < 3"), "at character 7: found '<', expected no second comparison; write a < b && b < c");
  EXPECT_EQ(Refusal(L"a = 1"), "at character 3: '=' has no meaning here; write == to compare");
  EXPECT_EQ(Refusal(L"max(1, 2"), "at character 9: the text ends, expected ',' or ')'");
  EXPECT_EQ(Refusal(L"S(2,1"), "at character 1: the group behind 'S' is not closed");
  EXPECT_EQ(Refusal(L"'S21"), "at character 1: the quote is not closed");
  EXPECT_EQ(Refusal(L"''"), "at character 1: the name in quotes is empty");
}

TEST_F(Errors, UnknownUnitsAndNumbersTooGreatAreTold) {
  EXPECT_EQ(Refusal(L"1 + 3quux"), "at character 6: 'quux' is no unit; units are such as GHz, ns, mm, pF, nH, k, Meg");
  EXPECT_EQ(Refusal(L"1e999"), "at character 1: the number is too great");
  EXPECT_EQ(Refusal(L"1e308k"), "at character 1: the number is too great");
  EXPECT_EQ(Refusal(L"2*1e-400"), "at character 3: the number is too small");
  EXPECT_EQ(Refusal(L"1e-310f"), "at character 1: the number is too small");
  EXPECT_EQ(Refusal(L"0." + AString(std::wstring(400, L'0')) + L"1"), "at character 1: the number is too small");
  EXPECT_EQ(Refusal(AString(std::wstring(400, L'1'))), "at character 1: the number is too great");
}

TEST_F(Errors, UnknownNamesComeWithTheNearestKnownOne) {
  scope.AddNumber(L"S21", 1.0);
  EXPECT_EQ(Refusal(L"1 + S12x"), "at character 5: 'S12x' is not known");
  EXPECT_EQ(Refusal(L"2*S2"), "at character 3: 'S2' is not known; did you mean 'S21'?");
  EXPECT_EQ(Refusal(L"dBB(S21)"), "at character 1: 'dBB(S21)' is not known; did you mean the function 'dB'?");
}

TEST_F(Errors, CallsAreChecked) {
  EXPECT_EQ(Refusal(L"atan2(1)"), "at character 1: 'atan2' takes 2 arguments, not 1; atan2(y, x): angle of the "
                                  "point (x, y) in radians");
  EXPECT_EQ(Refusal(L"sin()"), "at character 1: 'sin' takes 1 argument, not 0");
  EXPECT_EQ(Refusal(L"asin(1i)"), "at character 1: 'asin' is not defined for these complex numbers, expected real "
                                  "numbers; mag(x), re(x) and the like are real");
  EXPECT_EQ(Refusal(L"1i < 2"), "at character 4: complex numbers are not ordered and neither true nor false, expected "
                                "real numbers; mag(x), re(x) and the like are real");
  EXPECT_EQ(Refusal(L"!1i"), "at character 1: a complex number is neither true nor false, expected a real number");
  EXPECT_EQ(Refusal(L"1 + \"a\""), "at character 5: a text has no number, expected a number or a name; names stand in "
                                   "single quotes, texts in double ones");
  EXPECT_EQ(Refusal(L"interp(1, 2)"), "at character 8: no dataset stands here, expected its name in double quotes");
  EXPECT_EQ(Refusal(L"interp(\"er\", 2)"), "at character 8: there is no dataset 'er'");
  EXPECT_EQ(Refusal(L"max(3)"), "at character 1: 'max' needs a trace, not a single number");
}

TEST_F(Errors, CirclesOfDefinitionsAreToldWithTheirPath) {
  scope.AddDefinition(L"a", L"b + 1");
  scope.AddDefinition(L"b", L"2*c");
  scope.AddDefinition(L"c", L"A");
  EXPECT_EQ(Refusal(L"a"),
            "at character 1: in the definition of 'a' -> 'b' -> 'c', which character 1 leads to: the definitions go "
            "round in a circle: a -> b -> c -> A; "
            "change one of these definitions");
  EXPECT_EQ(error.source, AString(L"A"));
}

TEST_F(Errors, InDefinitionsCountInTheDefinition) {
  scope.AddDefinition(L"w", L"1 + substrat");
  EXPECT_EQ(Refusal(L"1000*w"),
            "at character 5: in the definition of 'w', which character 6 leads to: 'substrat' is not known");
  EXPECT_EQ(error.source, AString(L"1 + substrat"));
  EXPECT_EQ(error.MarkedText(), AString(L"1 + substrat\n    ^^^^^^^^\n") + error.Text());
  scope.AddDefinition(L"Substrate", L"FR 4");
  EXPECT_EQ(Refusal(L"Substrate*2").substr(0, 48), "at character 4: in the definition of 'Substrate'");
}

TEST_F(Errors, InDefinitionsTellTheWayToThemFromTheText) {
  scope.AddDefinition(L"outer", L"2*inner");
  scope.AddDefinition(L"inner", L"(1");
  EXPECT_EQ(Refusal(L"1 + outer").substr(0, 83),
            "at character 3: in the definition of 'outer' -> 'inner', which character 5 leads to");
  EXPECT_EQ(error.source, AString(L"(1"));
}

TEST_F(Errors, ANumberBeyondAnyDoubleIsToldWhereItsVariableIsUsed) {
  scope.AddDefinition(L"tiny", L"1e-400");
  EXPECT_NE(Refusal(L"2*tiny").find("in the definition of 'tiny', which character 3 leads to: the number is too small"),
            std::string::npos);
}

TEST_F(Errors, MarksOfLongTextsStayNearTheirPlace) {
  AString const text(std::wstring(5000, L' ') + L"?");
  Refusal(text);
  EXPECT_LT(error.MarkedText().size(), 400u);
  EXPECT_NE(error.MarkedText().find(L'^'), AString::npos);
}

TEST_F(Errors, NestingIsBounded) {
  auto const nested = [](std::size_t depth) {
    return AString(std::wstring(depth, L'(') + L"1" + std::wstring(depth, L')'));
  };
  EXPECT_EQ(Number(nested(150)), 1.0);
  EXPECT_NE(Refusal(nested(100000)).find("nested too deeply"), std::string::npos);
  EXPECT_NE(Refusal(AString(std::wstring(100000, L'-') + L"1")).find("nested too deeply"), std::string::npos);
  std::wstring powers = L"1";
  for (int i = 0; i < 1000; ++i)
    powers += L"^1";
  EXPECT_NE(Refusal(AString(powers)).find("nested too deeply"), std::string::npos);
  std::wstring calls;
  for (int i = 0; i < 1000; ++i)
    calls += L"sin(";
  EXPECT_NE(Refusal(AString(calls)).find("nested too deeply"), std::string::npos);
}

TEST_F(Errors, LongChainsOfDefinitionsAreBoundedToo) {
  for (int i = 0; i < 5000; ++i)
    scope.AddDefinition(AString::Format(L"v%d", i), AString::Format(L"v%d + 1", i + 1));
  scope.AddDefinition(L"v5000", L"1");
  EXPECT_EQ(Number(L"v4900"), 101.0);
  EXPECT_NE(Refusal(L"v0").find("lead too deep"), std::string::npos);
}

TEST_F(Errors, MegabyteTextsAreReadInOneWalk) {
  std::wstring sum = L"1";
  for (int i = 0; i < 500000; ++i)
    sum += L"+1";
  EXPECT_EQ(Number(AString(sum)), 500001.0);
  std::vector<double> const ones(3, 1.0);
  scope.AddColumn(L"y", ones);
  EXPECT_EQ(Column(AString(L"y+" + sum)), std::vector<double>(3, 500002.0));
  EXPECT_FALSE(Evaluate(AString(sum + L"+")));
  EXPECT_FALSE(Evaluate(AString(std::wstring(1 << 20, L'S'))));
  EXPECT_FALSE(Evaluate(AString(std::wstring(1 << 20, L'9'))));
}

TEST_F(Errors, DoublingDefinitionsCostNoDoubling) {
  std::vector<double> const ones(3, 1.0);
  scope.AddColumn(L"y", ones);
  scope.AddDefinition(L"d0", L"y");
  for (int i = 0; i < 60; ++i)
    scope.AddDefinition(AString::Format(L"d%d", i + 1), AString::Format(L"d%d + d%d", i, i));
  EXPECT_EQ(Column(L"d60"), std::vector<double>(3, std::ldexp(1.0, 60)));
}
