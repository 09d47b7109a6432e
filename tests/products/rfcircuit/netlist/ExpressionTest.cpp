#include "tests/products/rfcircuit/RfSupport.h"

#include "products/rfcircuit/engine/netlist/Expression.h"

#include <cmath>
#include <numbers>

namespace {

using namespace rftest;

class OnlyX : public rf::Expression::Names {
public:
  double ValueOf(std::string const & name, rf::SourcePosition const & where, std::string const & thing) override {
    if (name != "x")
      throw rf::NetlistError(where, thing, "parameter '" + name + "' is not defined", "");
    return 3;
  }
};

double Value(std::string const & text) {
  OnlyX names;
  return rf::Expression::ParseWhole(text, {}, "test").Evaluate(names, "test");
}

std::string Error(std::string const & text) {
  return ErrorOf([&] { Value(text); });
}

TEST(Expression, BindsAsInArithmetic) {
  EXPECT_EQ(Value("1+2*3"), 7);
  EXPECT_EQ(Value("(1+2)*3"), 9);
  EXPECT_EQ(Value("8-2-1"), 5);
  EXPECT_EQ(Value("8/2/2"), 2);
  EXPECT_EQ(Value("- -2"), 2);
  EXPECT_EQ(Value("2*-3"), -6);
  EXPECT_EQ(Value("+5"), 5);
}

TEST(Expression, PowersBindTighterThanASignAndGroupToTheLeft) {
  EXPECT_EQ(Value("2^3^2"), 64);
  EXPECT_EQ(Value("2**3**2"), 64);
  EXPECT_EQ(Value("-2^2"), -4);
  EXPECT_EQ(Value("2^-1"), 0.5);
}

TEST(Expression, FunctionsAndPi) {
  EXPECT_EQ(Value("sqrt(16)"), 4);
  EXPECT_EQ(Value("exp(1)"), std::exp(1.0));
  EXPECT_EQ(Value("log(10)"), std::log(10.0));
  EXPECT_EQ(Value("ln(10)"), std::log(10.0));
  EXPECT_EQ(Value("log10(1000)"), 3);
  EXPECT_EQ(Value("sin(pi/2)"), 1);
  EXPECT_EQ(Value("COS(0)"), 1);
  EXPECT_EQ(Value("tan(1)"), std::tan(1.0));
  EXPECT_EQ(Value("4*atan(1)"), std::numbers::pi);
  EXPECT_EQ(Value("abs(-2)"), 2);
  EXPECT_EQ(Value("min(2,3)"), 2);
  EXPECT_EQ(Value("max(2, 3)"), 3);
  EXPECT_EQ(Value("pow(2,10)"), 1024);
}

TEST(Expression, NamesAndSuffixesMix) {
  EXPECT_EQ(Value("X*2k"), 6000);
  EXPECT_EQ(Value("{x*'1+1'}"), 6);
}

TEST(Expression, AVeryLongSumNeedsNoStack) {
  std::string text = "1";
  for (int i = 1; i < 200000; ++i)
    text += "+1";
  EXPECT_EQ(Value(text), 200000);
}

TEST(Expression, DeepNestingIsRefused) {
  EXPECT_NE(Error(std::string(100000, '(')).find("nested more than 200 deep"), std::string::npos);
  EXPECT_NE(Error(std::string(100000, '-')).find("nested more than 200 deep"), std::string::npos);
  EXPECT_NE(Error("2^" + std::string(100000, '-')).find("nested more than 200 deep"), std::string::npos);
}

TEST(Expression, DivisionByZeroIsRefused) {
  EXPECT_EQ(Error("1/(x-3)"), "test: division by zero in '1/(x-3)'; check the values it is made of");
}

TEST(Expression, ResultsThatAreNotFiniteAreRefused) {
  for (char const * text : {"sqrt(-1)", "log(0)", "exp(1000)", "(-8)^0.5", "1e300*1e300", "0^-1", "pow(0,-1)"})
    EXPECT_NE(Error(text).find("is not a finite number"), std::string::npos) << text;
}

TEST(Expression, SyntaxErrorsSayWhatIsMissing) {
  EXPECT_EQ(Error("1+"), "test: the expression ends where a number or name should stand; check '1+'");
  EXPECT_EQ(Error("(1"), "test: ')' is missing; close what was opened in '(1'");
  EXPECT_EQ(Error("*2"), "test: '*' stands where a number or name should stand; check '*2'");
  EXPECT_NE(Error("1 2").find("goes on after a whole expression"), std::string::npos);
  EXPECT_NE(Error("min(1)").find("function 'min' needs two arguments"), std::string::npos);
  EXPECT_NE(Error("sqrt(1,2)").find("')' is missing after the arguments of 'sqrt'"), std::string::npos);
  EXPECT_NE(Error("sinh(1)").find("unknown function 'sinh'"), std::string::npos);
  EXPECT_NE(Error("5k5").find("'5k5' is not a number"), std::string::npos);
  EXPECT_NE(Error("1e999").find("'1e999' is outside the range of a double"), std::string::npos);
}

} // namespace
