#include "products/rfcircuit/engine/closedform/Chebyshev.h"
#include "products/rfcircuit/engine/sweep/FrequencySweep.h"
#include "tests/products/rfcircuit/sweep/SweepSupport.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

namespace {

using namespace rftest;
using rf::FrequencySweep;
using rf::SweepMethod;

std::vector<double> Linear(double points, double start, double stop) {
  return FrequencySweep::Linear(points, start, stop).Frequencies();
}

SweepMethod AtMost(std::size_t points) {
  SweepMethod method = SweepMethod::Adaptive();
  method.mostPoints = points;
  return method;
}

void ExpectFewPoints(SweepRun const & run, std::size_t most, double error) {
  EXPECT_TRUE(run.result.isConverged);
  EXPECT_LT(run.result.SolvedPoints(), most);
  EXPECT_LE(run.error, error);
  EXPECT_EQ(static_cast<std::size_t>(std::count(run.result.isSolved.begin(), run.result.isSolved.end(), 1)),
            run.result.SolvedPoints());
}

TEST(AdaptiveSweep, GivesANarrowBandPassFromFewPoints) {
  ExpectFewPoints(RunSweep(BandPass(0.002), Linear(10001, 0.995e9, 1.005e9)), 60, 1e-8);
}

TEST(AdaptiveSweep, FindsAPassBandAThousandTimesNarrowerThanTheSweep) {
  ExpectFewPoints(RunSweep(BandPass(0.002), Linear(10001, 0, 2e9)), 100, 1e-8);
  ExpectFewPoints(RunSweep(BandPass(0.002), Linear(10001, 0.137e9, 2.137e9)), 100, 1e-8);
  ExpectFewPoints(RunSweep(BandPass(0.002), Linear(10001, 0.9713e9, 2.9713e9)), 100, 1e-8);
}

TEST(AdaptiveSweep, AgreesWithTheClosedFormOfTheBandPass) {
  auto const frequencies = Linear(10001, 0.9e9, 1.1e9);
  auto const run = RunSweep(BandPass(0.002), frequencies);
  for (std::size_t i = 0; i < frequencies.size(); ++i)
    ASSERT_NEAR(std::abs(run.result.At(i)[2]), rf::ChebyshevBandPassS21(5, 0.1, 1e9, 0.002, frequencies[i]), 1e-8)
        << frequencies[i];
}

TEST(AdaptiveSweep, FindsACrystalWithAQOfAHundredThousand) {
  std::string const lines = WithPorts(Crystal("1", 10e6, 1e5, "in out"));
  ExpectFewPoints(RunSweep(lines, Linear(10001, 9.95e6, 10.05e6)), 60, 1e-8);
  ExpectFewPoints(RunSweep(lines, Linear(10001, 1e6, 31e6)), 60, 1e-8);
  ExpectFewPoints(RunSweep(WithPorts(Crystal("1", 10e6, 1e5, "in 0") + "R9 in out 1"), Linear(10001, 1e6, 31e6)), 60,
                  1e-8);
}

TEST(AdaptiveSweep, FindsEachOfEightCrystals) {
  std::string lines;
  for (int i = 0; i < 8; ++i)
    lines += Crystal(Text(i), 8.1e6 + i * 0.5137e6, 1e5, "in out");
  ExpectFewPoints(RunSweep(WithPorts(lines), Linear(20001, 1e6, 31e6)), 150, 1e-6);
}

TEST(AdaptiveSweep, WorksOnLogarithmicSweepsOverManyDecades) {
  ExpectFewPoints(
      RunSweep(WithPorts("R1 in out 50\nC1 out 0 5p\n"), FrequencySweep::Decade(500, 1e3, 1e12).Frequencies()), 60,
      1e-8);
  ExpectFewPoints(RunSweep(BandPass(0.002), FrequencySweep::Decade(2500, 1e7, 1e11).Frequencies()), 100, 1e-8);
  ExpectFewPoints(RunSweep(BandPass(0.002), FrequencySweep::Octave(1000, 1e8, 8e9).Frequencies()), 100, 1e-8);
}

TEST(AdaptiveSweep, SolvesOnlyFrequenciesOfTheSweepAndEachOnce) {
  std::mt19937 random(7);
  std::vector<double> list;
  for (int i = 0; i < 3000; ++i)
    list.push_back(0.9e9 + 0.2e9 * random() / 4294967296.0);
  auto const frequencies = FrequencySweep::List(list).Frequencies();
  rf::SParameterSolver solver(Build(BandPass(0.01)));
  std::multiset<double> solved;
  rf::AdaptiveSweep sweep(frequencies, SweepMethod::Adaptive(), [&](double frequency) {
    solved.insert(frequency);
    return solver.At(frequency);
  });
  auto const result = sweep.Run();
  EXPECT_TRUE(result.isConverged);
  EXPECT_EQ(solved.size(), result.SolvedPoints());
  EXPECT_LT(solved.size(), 100u);
  for (double const frequency : solved) {
    EXPECT_EQ(solved.count(frequency), 1u);
    EXPECT_TRUE(std::binary_search(frequencies.begin(), frequencies.end(), frequency));
  }
}

TEST(AdaptiveSweep, GivesTheSolvedValueWhereItSolved) {
  auto const frequencies = Linear(1001, 0.9e9, 1.1e9);
  auto const run = RunSweep(BandPass(0.01), frequencies);
  rf::SParameterSolver solver(Build(BandPass(0.01)));
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    if (run.result.isSolved[i])
      ExpectNear(run.result.At(i)[2], solver.At(frequencies[i])(1, 0), 1e-13); // pivots depend on what was before
  }
}

TEST(AdaptiveSweep, TellsEachPass) {
  auto const run = RunSweep(BandPass(0.002), Linear(10001, 0.9e9, 1.1e9));
  ASSERT_GE(run.passes.size(), 3u);
  EXPECT_FALSE(run.passes[0].largestChange.has_value());
  for (std::size_t i = 0; i < run.passes.size(); ++i) {
    EXPECT_EQ(run.passes[i].number, static_cast<int>(i) + 1);
    EXPECT_EQ(run.passes[i].total, 10001u);
    EXPECT_TRUE(i == 0 || run.passes[i].solved > run.passes[i - 1].solved);
    EXPECT_TRUE(i == 0 || run.passes[i].largestChange.has_value());
  }
  EXPECT_LE(run.passes.back().largestChange.value_or(1), SweepMethod::DEFAULT_TARGET);
  EXPECT_EQ(run.passes.back().inARow, SweepMethod::DEFAULT_PASSES);
  EXPECT_TRUE(run.passes.back().isPassive);
}

TEST(AdaptiveSweep, MeetsTheTargetInAsManyPassesInARowAsAskedFor) {
  SweepMethod method = SweepMethod::Adaptive();
  method.passes = 5;
  auto const run = RunSweep(BandPass(0.002), Linear(10001, 0.9e9, 1.1e9), method);
  EXPECT_TRUE(run.result.isConverged);
  for (std::size_t i = run.passes.size() - 5; i < run.passes.size(); ++i)
    EXPECT_LE(run.passes[i].largestChange.value_or(1), method.target);
}

TEST(AdaptiveSweep, TellsThatAnActiveNetworkIsNotPassive) {
  auto const run = RunSweep(WithPorts("G1 out 0 in 0 1\nR1 out 0 50\nR2 in 0 50\nC1 out 0 1p\n"), Linear(1001, 0, 1e9));
  EXPECT_TRUE(run.result.isConverged);
  EXPECT_FALSE(run.passes.back().isPassive);
}

TEST(AdaptiveSweep, SolvesAllOfASmallSweep) {
  for (double points : {1.0, 2.0, 5.0, 17.0, 30.0}) {
    auto const run = RunSweep(BandPass(0.002), Linear(points, 0.9e9, 1.1e9));
    EXPECT_TRUE(run.result.isConverged);
    EXPECT_LE(run.error, 1e-8) << points;
    EXPECT_LE(run.result.SolvedPoints(), static_cast<std::size_t>(points));
  }
}

TEST(AdaptiveSweep, SolvesZeroHertzWhereThatIsAPointOfItsOwn) {
  // A loop of inductors round a port: the limit of low frequencies and the value at 0 Hz are got in different ways.
  auto const run = RunSweep(WithPorts("L1 in out 1n\nL2 in out 2n\nR1 in 0 1k\n"), Linear(2001, 0, 10e9));
  EXPECT_TRUE(run.result.isSolved.front());
  ExpectFewPoints(run, 60, 1e-9);
}

TEST(AdaptiveSweep, FallsBackToSolvingAllWhereNothingFits) {
  std::mt19937 random(3);
  std::map<double, Complex> values;
  auto const noise = [&](double frequency) {
    auto const [place, isNew] = values.emplace(frequency, 0);
    if (isNew)
      place->second = {random() / 4294967296.0, random() / 4294967296.0};
    return place->second;
  };
  auto const run = RunSweepOf(noise, Linear(1001, 1, 2));
  EXPECT_TRUE(run.result.isConverged);
  EXPECT_EQ(run.result.SolvedPoints(), 1001u);
  EXPECT_EQ(run.error, 0);
}

TEST(AdaptiveSweep, ThatIsBoundedSaysThatItDidNotConvergeAndKeepsItsBest) {
  std::string const line = WithPorts("T1 in 0 a 0 z0=75 td=200n\nR1 a b 10\nT2 b 0 out 0 z0=30 td=130n\n");
  auto const run = RunSweep(line, Linear(10001, 1e6, 3e9), AtMost(100));
  EXPECT_FALSE(run.result.isConverged);
  EXPECT_EQ(run.result.SolvedPoints(), 100u);
  EXPECT_EQ(run.passes.back().solved, 100u);
  EXPECT_GT(run.passes.back().largestChange.value_or(0), SweepMethod::DEFAULT_TARGET);
  EXPECT_TRUE(IsFinite(run.result));
}

TEST(AdaptiveSweep, StaysFiniteWhateverItMeets) {
  using Function = std::function<Complex(double)>;
  std::vector<std::pair<char const *, Function>> const functions{
      {"step", [](double f) { return Complex(f < 1.5 ? 0 : 1); }},
      {"spike at one point", [](double f) { return Complex(std::abs(f - 1.5) < 1e-9 ? 1 : 0); }},
      {"pole between points", [](double f) { return 1e-3 / Complex(f - 1.50037, 0); }},
      {"huge", [](double f) { return Complex(1e150 * f, 1e150); }},
      {"too large to be squared", [](double f) { return Complex(1e200 * f, std::sin(9 * f) * 1e200); }},
      {"tiny", [](double f) { return Complex(1e-200 * f, 1e-200); }},
      {"zero", [](double) { return Complex(); }},
      {"kink", [](double f) { return Complex(std::abs(f - 1.4)); }},
      {"alternating", [](double f) { return Complex(static_cast<long>(std::lround(f * 1000)) % 2); }}};
  for (auto const & [name, function] : functions)
    for (std::size_t most : {std::size_t{0}, std::size_t{4}, std::size_t{20}, std::size_t{60}}) {
      auto const run = RunSweepOf(function, Linear(1001, 1, 2), AtMost(most));
      EXPECT_TRUE(IsFinite(run.result)) << name << ", at most " << most;
      EXPECT_TRUE(most == 0 || run.result.SolvedPoints() <= most) << name << ", at most " << most;
    }
}

TEST(AdaptiveSweep, RefusesAMatrixThatIsNotFinite) {
  auto const bad = [](double f) { return Complex(f > 1.3 ? std::nan("") : 1); };
  EXPECT_EQ(ErrorOf([&] { RunSweepOf(bad, Linear(101, 1, 2)); }),
            "circuit at 1.31 Hz: an S-parameter is not finite; look for values of elements beyond all measure");
}

TEST(AdaptiveSweep, PassesOnThatACircuitIsSingular) {
  // Coils that are coupled wholly leave their currents open.
  std::string const lines = WithPorts("R1 in out 50\nK1 L1 L2 1\nL1 a 0 1u\nL2 a 0 1u\nR2 in 0 100\n");
  EXPECT_NE(ErrorOf([&] { RunSweep(lines, Linear(101, 1e6, 2e6)); }).find("its equations are singular"),
            std::string::npos);
}

TEST(AdaptiveSweep, LivesWithNoiseBelowItsTarget) {
  std::mt19937 random(11);
  auto const noisy = [&](double f) {
    return 1.0 / Complex(1, 200 * (f - 1.37)) + 1e-8 * (random() / 4294967296.0 - 0.5);
  };
  auto const run = RunSweepOf(noisy, Linear(10001, 1, 2));
  EXPECT_TRUE(run.result.isConverged);
  EXPECT_LT(run.result.SolvedPoints(), 400u);
  EXPECT_LT(run.error, 1e-5);
}

} // namespace
