// Expressions over traces.

#include "tests/basekit/value/expression/Evaluator.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>

#include <sys/resource.h>

namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

long PeakMegabytes() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

class Columns : public testing::Test, public support::Evaluator {
protected:
  void SetUp() override {
    scope.SetAxis(x);
    scope.AddColumn(L"y", y);
    scope.AddColumn(L"S(2,1)", s);
    scope.AddColumn(L"F", x, Units::kHertz);
    scope.AddNumber(L"k", 3.0);
  }

  std::vector<double> x = {0, 1, 2, 3};
  std::vector<double> y = {1, 3, 2, 5};
  std::vector<std::complex<double>> s = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
};

} // namespace

TEST_F(Columns, NumbersSpreadOverTheTrace) {
  EXPECT_EQ(Column(L"2*y + k"), (std::vector<double>{5, 9, 7, 13}));
  EXPECT_EQ(Column(L"if(y > 2, 1, 0)"), (std::vector<double>{0, 1, 0, 1}));
  EXPECT_EQ(Column(L"k - 2*(1 + y)"), (std::vector<double>{-1, -5, -3, -9}));
  EXPECT_EQ(Number(L"k^2 - 1"), 8.0);
}

TEST_F(Columns, LabelsWithGroupsAreOneName) {
  EXPECT_EQ(Column(L"mag(S(2,1))"), (std::vector<double>{1, 1, 1, 1}));
  EXPECT_EQ(Column(L"re('S(2,1)')"), (std::vector<double>{1, 0, -1, 0}));
}

TEST_F(Columns, ComplexTracesStayComplex) {
  ASSERT_TRUE(Evaluate(L"S(2,1)*2 + 1"));
  ASSERT_TRUE(result.isComplex);
  EXPECT_EQ(result.complexes[1], std::complex<double>(1, 2));
  EXPECT_EQ(result.state.parameterType, val::kComplexArray);
  ASSERT_TRUE(Evaluate(L"S(2,1)"));
  EXPECT_EQ(result.complexes, s);
}

TEST_F(Columns, RangedFunctionsTurnATraceIntoANumber) {
  EXPECT_EQ(Number(L"max(y)"), 5.0);
  EXPECT_EQ(Number(L"XAtYVal(y, 2)"), 0.5);
  EXPECT_EQ(Number(L"xatymax(y)"), 3.0);
  EXPECT_EQ(Number(L"YAtXVal(2*y, k/2)"), 5.0);
  EXPECT_EQ(Number(L"max(dB(S(2,1)))"), 0.0);
  EXPECT_EQ(result.state.parameterType, val::kReal);
}

TEST_F(Columns, NumbersOfATraceTakePartInExpressionsOfIt) {
  EXPECT_EQ(Column(L"y/max(y)"), (std::vector<double>{0.2, 0.6, 0.4, 1.0}));
  EXPECT_EQ(Column(L"y - max(y - min(y))*2"), (std::vector<double>{-7, -5, -6, -3}));
  EXPECT_EQ(Number(L"max(max(y) - y)"), 4.0);
}

TEST_F(Columns, ParametersOfRangedFunctionsMustBeNumbers) {
  EXPECT_EQ(Refusal(L"XAtYVal(y, y)"),
            "at character 1: the parameters of 'XAtYVal' are single numbers, and one is a trace");
  EXPECT_EQ(Refusal(L"XAtYVal(y, 1i)"), "at character 12: a parameter of 'XAtYVal' is complex, expected a real number");
  EXPECT_EQ(Refusal(L"max(y, 1, 2)"), "at character 1: 'max' takes a trace, or two numbers, not 3");
  EXPECT_EQ(Refusal(L"XAtYVal(y, 1, 2)"), "at character 1: 'XAtYVal' takes a trace, 'Y Value' and no more, not 3");
}

TEST_F(Columns, ColumnsOfDifferentLengthAreRefused) {
  std::vector<double> const five(5, 0.0);
  scope.AddColumn(L"z", five);
  EXPECT_EQ(Refusal(L"y + z"),
            "at character 5: 'z' has 5 samples where the trace has 4 places; choose one sweep for all quantities");
}

TEST_F(Columns, EmptyColumnsGiveEmptyOnes) {
  std::vector<double> const none;
  scope.SetAxis(none);
  scope.AddColumn(L"e", none);
  EXPECT_EQ(Column(L"2*e + 1"), none);
  EXPECT_TRUE(std::isnan(Number(L"max(e)")));
  EXPECT_EQ(Column(L"deriv(e)"), none);
}

TEST_F(Columns, WithoutAnAxisOnlyWhatNeedsItIsRefused) {
  scope.SetAxis({});
  EXPECT_EQ(Column(L"2*y"), (std::vector<double>{2, 6, 4, 10}));
  EXPECT_EQ(Refusal(L"max(y)"), "at character 1: 'max' needs the axis of its trace");
  EXPECT_EQ(Refusal(L"deriv(y)"), "at character 1: 'deriv' needs the axis of its trace");
  EXPECT_EQ(Column(L"cang_deg(S(2,1))"), (std::vector<double>{0, 90, 180, 270}));
}

TEST_F(Columns, HolesStayHoles) {
  std::vector<double> const holed = {1, missing, 3, 4};
  scope.AddColumn(L"h", holed);
  std::vector<double> const sum = Column(L"h + y");
  EXPECT_EQ(sum[0], 2.0);
  EXPECT_TRUE(std::isnan(sum[1]));
  EXPECT_EQ(Number(L"max(h)"), 4.0);
}

TEST_F(Columns, UnwrappedAnglesGoOnWhereAnglesJump) {
  std::vector<std::complex<double>> turning;
  for (int i = 0; i < 4; ++i)
    turning.push_back(std::polar(2.0, -2.0 * i));
  scope.AddColumn(L"t", turning);
  std::vector<double> const angles = Column(L"cang_rad(t)");
  for (int i = 0; i < 4; ++i)
    EXPECT_NEAR(angles[static_cast<std::size_t>(i)], -2.0 * i, 1e-14);
  turning[1] = missing;
  std::vector<double> const holed = Column(L"cang_rad(t)");
  EXPECT_TRUE(std::isnan(holed[1]));
  EXPECT_NEAR(holed[2], 2.0 * std::numbers::pi - 4.0, 1e-14);
}

TEST_F(Columns, AStepOfHalfATurnGoesUpWhateverItsSign) {
  std::vector<double> const signs = {1, -1, 1, -1};
  std::vector<std::complex<double>> const turning = {{1, 0}, {-1, -0.0}, {1, -0.0}, {-1, 0.0}};
  scope.AddColumn(L"s", signs);
  scope.AddColumn(L"t", turning);
  EXPECT_EQ(Column(L"cang_deg(s)"), (std::vector<double>{0, 180, 360, 540}));
  EXPECT_EQ(Column(L"cang_deg(t)"), (std::vector<double>{0, 180, 360, 540}));
}

TEST_F(Columns, MeasurementsOfALowPassThroughAnExpressionAreThoseOfItsFormula) {
  // 1 / (1 + jf): its half power lies at 1, 3 dB below it at sqrt(10^0.3 - 1).
  std::vector<double> f;
  std::vector<std::complex<double>> low;
  for (int i = 0; i <= 4000; ++i) {
    f.push_back(std::pow(10.0, -2 + i / 1000.0));
    low.push_back(1.0 / std::complex<double>(1, f.back()));
  }
  support::Evaluator world;
  world.scope.SetAxis(f);
  world.scope.AddColumn(L"S21", low);
  EXPECT_NEAR(world.Number(L"bandwidth(S21)"), 1.0, 1e-3);
  EXPECT_NEAR(world.Number(L"uppercutoff(S21)"), 1.0, 1e-3);
  EXPECT_NEAR(world.Number(L"XAtYVal(dB(S21), -3)"), std::sqrt(std::pow(10.0, 0.3) - 1), 1e-5);
  EXPECT_NEAR(world.Number(L"XAtYVal(dB(S21), -3dB)"), std::sqrt(std::pow(10.0, 0.3) - 1), 1e-5);
  EXPECT_NEAR(world.Number(L"phasemargin(10*S21)"), 180 - std::atan(std::sqrt(99.0)) * 180 / std::numbers::pi, 1e-5);
  EXPECT_NEAR(world.Number(L"phasemargin(S21, 0.1, 10deg)"), 170 - std::atan(std::sqrt(99.0)) * 180 / std::numbers::pi,
              1e-5);
}

TEST_F(Columns, TheExamplesThatOpenTheGuideMeanWhatItSays) {
  std::vector<double> const f = {1, 2, 3, 4};
  std::vector<std::complex<double>> const forward = {0.8, 0.4, 0.2, 0.1};
  std::vector<std::complex<double>> const back = {0.05, 0.2, 0.05, 0.3};
  support::Evaluator world;
  world.scope.SetAxis(f);
  world.scope.AddColumn(L"F", f);
  world.scope.AddColumn(L"S(2,1)", forward);
  world.scope.AddColumn(L"S21", forward);
  world.scope.AddColumn(L"S11", back);
  world.scope.AddDefinition(L"w", L"2*h + 1mm");
  world.scope.AddDefinition(L"h", L"0.5mm");
  std::vector<double> const relative = world.Column(L"dB(S(2,1)) - max(dB(S(2,1)))");
  EXPECT_EQ(relative.front(), 0.0);
  EXPECT_NEAR(relative.back(), 20 * std::log10(0.125), 1e-12);
  EXPECT_EQ(world.Column(L"2*pi*F*group_delay(S21)"), (std::vector<double>(4, 0.0)));
  double const level = 20 * std::log10(0.8);
  EXPECT_NEAR(world.Number(L"XAtYVal(dB(S21), -3)"), 1 + (level + 3) / (20 * std::log10(2.0)), 1e-12);
  EXPECT_EQ(world.Column(L"if(mag(S11) < 0.1, 1, 0)"), (std::vector<double>{1, 0, 1, 0}));
  EXPECT_DOUBLE_EQ(world.Number(L"w + 2*(h - 0.1mm)"), 2.8e-3);
}

TEST_F(Columns, GroupDelayOfADelayLineIsItsDelay) {
  std::vector<double> const frequencies = {1e9, 1.1e9, 1.3e9, 1.35e9, 1.6e9};
  std::vector<std::complex<double>> line;
  for (double const f : frequencies)
    line.push_back(std::polar(0.5, -2.0 * std::numbers::pi * f * 0.8e-9));
  scope.SetAxis(frequencies);
  support::Evaluator world;
  world.scope.SetAxis(frequencies);
  world.scope.AddColumn(L"line", line);
  for (double const delay : world.Column(L"group_delay(line)"))
    EXPECT_NEAR(delay, 0.8e-9, 1e-22);
  EXPECT_EQ(world.result.state.fullUnit, Units::kSecond);
}

TEST_F(Columns, DerivativeIsExactForParabolasInside) {
  std::vector<double> const places = {0, 1, 3, 4, 4, 6};
  std::vector<double> parabola;
  for (double const place : places)
    parabola.push_back(place * place);
  support::Evaluator world;
  world.scope.SetAxis(places);
  world.scope.AddColumn(L"p", parabola);
  std::vector<double> const slopes = world.Column(L"deriv(p)");
  EXPECT_EQ(slopes[0], 1.0);
  EXPECT_DOUBLE_EQ(slopes[1], 2.0);
  EXPECT_DOUBLE_EQ(slopes[2], 6.0);
  EXPECT_EQ(slopes[5], 10.0);
}

TEST_F(Columns, OnePlaceAloneHasNoDerivative) {
  support::Evaluator world;
  std::vector<double> const one = {1.0};
  world.scope.SetAxis(one);
  world.scope.AddColumn(L"p", one);
  EXPECT_TRUE(std::isnan(world.Column(L"deriv(p)")[0]));
}

TEST_F(Columns, DatasetsAreReadBetweenTheirPoints) {
  std::vector<double> const at = {1, 2, 4};
  std::vector<double> const values = {10, 20, 0};
  scope.AddDataset(L"er", {at, values});
  EXPECT_EQ(Number(L"interp(\"ER\", 3)"), 10.0);
  EXPECT_EQ(Number(L"interp(\"er\", 4)"), 0.0);
  EXPECT_TRUE(std::isnan(Number(L"interp(\"er\", 5)")));
  std::vector<double> const column = Column(L"interp(\"er\", F + 0.5)");
  EXPECT_TRUE(std::isnan(column[0]));
  EXPECT_EQ(column[1], 15.0);
}

TEST_F(Columns, ChunksMeetWithoutASeam) {
  std::vector<double> places;
  std::vector<std::complex<double>> samples;
  for (int i = 0; i < 2000; ++i) {
    places.push_back(i);
    samples.emplace_back(std::cos(0.01 * i), 0.3 * i);
  }
  support::Evaluator world;
  world.scope.SetAxis(places);
  world.scope.AddColumn(L"S21", samples);
  std::vector<double> const column = world.Column(L"dB(S21) - 3*re(S21)^2 + re(2i*S21)/(1 + mag(S21 - S21))");
  for (std::size_t i = 0; i < samples.size(); ++i) {
    double const real = samples[i].real();
    EXPECT_DOUBLE_EQ(column[i],
                     20.0 * std::log10(std::abs(samples[i])) - 3.0 * (real * real) + -2.0 * samples[i].imag());
  }
}

TEST_F(Columns, AProgramIsCompiledOnceAndRunsOverManyTraces) {
  expr::Program program;
  ASSERT_TRUE(expr::Program::Compile(L"2*y", scope, program, error));
  ASSERT_EQ(program.GetQuantities().size(), 1u);
  EXPECT_EQ(program.GetQuantities()[0].name, AString(L"y"));
  for (double const value : {1.0, 2.0}) {
    std::vector<double> const other(7, value);
    expr::TraceData const data{{}, {{other.data(), other.size(), false}}};
    ASSERT_TRUE(program.Evaluate(data, result, error));
    EXPECT_EQ(result.reals, std::vector<double>(7, 2.0 * value));
  }
  EXPECT_FALSE(program.Evaluate({}, result, error));
  EXPECT_FALSE(expr::Program().Evaluate({}, result, error));
}

TEST_F(Columns, CallsThatAreEqualCountOnceAndOthersDoNot) {
  EXPECT_EQ(Number(L"max(y) + max(y) + YAtXVal(y, 1) - YAtXVal(y, 2) + YAtXVal(y, 1)"), 14.0);
  EXPECT_EQ(Column(L"deriv(y) - deriv(2*y) + deriv(y)"), (std::vector<double>{0, 0, 0, 0}));
}

TEST_F(Columns, ASumOfManyFunctionsOfTheTraceIsComplete) {
  std::wstring sum = L"0";
  std::wstring nested = L"0";
  for (int i = 1; i <= 150; ++i) {
    std::wstring const term = L"deriv(" + std::to_wstring(i) + L"*F)";
    sum += L" + " + term;
    if (i > 90)
      continue; // parentheses are bounded
    nested = L"if(F > 1, " + term + L" + (" + nested + L"), " + std::to_wstring(i) + L" + " + term + L")";
  }
  EXPECT_EQ(Column(AString(sum)), std::vector<double>(4, 11325.0));
  EXPECT_EQ(Column(AString(nested)), (std::vector<double>{180, 180, 4095, 4095}));
  EXPECT_EQ(Number(AString(L"max(" + sum + L") + max(F)")), 11328.0);
}

TEST_F(Columns, ColumnsAreLetGoBehindTheirLastReader) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer keeps what is freed";
#endif
  // Kept to the end, the columns of these 400 terms would take 128 MB.
  std::vector<double> axis(20000);
  std::iota(axis.begin(), axis.end(), 0.0);
  scope.SetAxis(axis);
  scope.AddColumn(L"y", axis);
  std::wstring sum = L"0";
  for (int i = 1; i <= 400; ++i)
    sum += L" + deriv(" + std::to_wstring(i) + L"*y)";
  long const before = PeakMegabytes();
  ASSERT_TRUE(Evaluate(AString(sum)));
  EXPECT_EQ(result.reals[7], 400.0 * 401.0 / 2.0);
  EXPECT_LT(PeakMegabytes() - before, 64);
}
