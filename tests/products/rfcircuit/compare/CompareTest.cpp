#include "products/rfcircuit/engine/compare/Compare.h"

#include "tests/products/rfcircuit/RfSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using namespace rftest;
using rf::SParameterTable;

/** A two-port whose S11 is the given function of frequency and S21 the same times j. */
SParameterTable Table(std::vector<double> const & frequencies, std::function<Complex(double)> const & value,
                      std::vector<double> const & z0 = {50, 50}) {
  SParameterTable table{frequencies, {}, z0};
  for (double const f : frequencies) {
    table.matrices.emplace_back(2);
    table.matrices.back()(0, 0) = value(f);
    table.matrices.back()(1, 0) = value(f) * Complex(0, 1);
  }
  return table;
}

std::string ErrorOfComparing(SParameterTable const & first, SParameterTable const & second) {
  try {
    rf::Compare(first, second);
  } catch (rf::CompareError const & error) {
    return error.what();
  }
  ADD_FAILURE() << "no error was raised";
  return "";
}

TEST(Compare, ANetworkDoesNotDifferFromItself) {
  auto const table = Table({1, 2, 5}, [](double f) { return Complex(1 / f, f / 7); });
  auto const result = rf::Compare(table, table);
  EXPECT_EQ(result.differences.frequencies, table.frequencies);
  EXPECT_EQ(result.all.largest, 0);
  EXPECT_EQ(result.all.rms, 0);
  EXPECT_EQ(result.interpolated, 0u);
  EXPECT_EQ(result.outsideRange, 0u);
  EXPECT_FALSE(result.isRenormalized);
}

TEST(Compare, StraightLinesAreInterpolatedToRounding) {
  auto const line = [](double f) { return Complex(0.1 + 0.02 * f, 0.5 - 0.03 * f); };
  auto const result = rf::Compare(Table({1, 1.5, 2.25, 3.5, 4}, line), Table({1, 4}, line));
  EXPECT_EQ(result.differences.frequencies.size(), 5u);
  EXPECT_EQ(result.interpolated, 3u);
  EXPECT_LT(result.all.largest, 1e-15);
}

TEST(Compare, TheErrorOfInterpolatingAParabolaIsThatOfItsChord) {
  auto const result =
      rf::Compare(Table({2}, [](double f) { return f * f; }), Table({1, 4}, [](double f) { return f * f; }));
  ExpectNear(result.differences.matrices[0](0, 0), 4.0 - (1.0 + 15.0 / 3.0), 1e-15);
}

TEST(Compare, DifferencesAreFirstMinusSecondAndSummarizedForEachParameter) {
  auto first = Table({1, 2, 3}, [](double) { return Complex(0.5, 0); });
  auto second = first;
  second.matrices[1](0, 0) += Complex(0.3, 0.4);
  second.matrices[2](1, 0) -= Complex(0, 0.2);
  auto const result = rf::Compare(first, second);
  ExpectNear(result.differences.matrices[1](0, 0), Complex(-0.3, -0.4), 1e-15);
  ExpectNear(result.differences.matrices[2](1, 0), Complex(0, 0.2), 1e-15);
  ASSERT_EQ(result.parameters.size(), 4u);
  EXPECT_NEAR(result.parameters[0].largest, 0.5, 1e-15);
  EXPECT_EQ(result.parameters[0].frequency, 2);
  EXPECT_NEAR(result.parameters[0].rms, 0.5 / std::sqrt(3), 1e-15);
  EXPECT_NEAR(result.parameters[2].largest, 0.2, 1e-15);
  EXPECT_EQ(result.parameters[2].frequency, 3);
  EXPECT_EQ(result.parameters[2].row, 1u);
  EXPECT_EQ(result.parameters[2].column, 0u);
  EXPECT_NEAR(result.all.largest, 0.5, 1e-15);
  EXPECT_EQ(result.all.frequency, 2);
  EXPECT_EQ(result.all.row, 0u);
  EXPECT_NEAR(result.all.rms, std::sqrt((0.25 + 0.04) / 12), 1e-15);
}

TEST(Compare, OnlyTheCommonRangeIsComparedAndTheRestIsCounted) {
  auto const constant = [](double) { return Complex(0.5, 0); };
  auto const result = rf::Compare(Table({0, 1, 2, 3, 4, 5}, constant), Table({1.5, 4}, constant));
  EXPECT_EQ(result.differences.frequencies, (std::vector<double>{2, 3, 4}));
  EXPECT_EQ(result.outsideRange, 3u);
  EXPECT_EQ(result.interpolated, 2u);
}

TEST(Compare, EdgesThatDifferByRoundingAreWithinTheRange) {
  auto const constant = [](double) { return Complex(0.5, 0); };
  double const f = 2.3e9;
  auto const result =
      rf::Compare(Table({f, 2 * f}, constant), Table({std::nextafter(f, 1e10), std::nextafter(2 * f, 0)}, constant));
  EXPECT_EQ(result.differences.frequencies.size(), 2u);
  EXPECT_EQ(result.interpolated, 0u);
}

TEST(Compare, ASinglePointOfTheSecondIsComparedWhereTheFirstHasIt) {
  auto const constant = [](double) { return Complex(0.5, 0); };
  auto const result = rf::Compare(Table({1, 2, 3}, constant), Table({2}, constant));
  EXPECT_EQ(result.differences.frequencies, (std::vector<double>{2}));
}

// A resistor to ground: S11 = (R - z) / (R + z).
TEST(Compare, TheSecondIsSeenFromTheImpedancesOfTheFirst) {
  double const resistance = 100;
  auto const reflection = [&](double z) {
    SParameterTable table{{1, 2}, {rf::SMatrix(1), rf::SMatrix(1)}, {z}};
    for (auto & matrix : table.matrices)
      matrix(0, 0) = (resistance - z) / (resistance + z);
    return table;
  };
  auto const result = rf::Compare(reflection(50), reflection(75));
  EXPECT_TRUE(result.isRenormalized);
  EXPECT_EQ(result.differences.z0, (std::vector<double>{50}));
  EXPECT_LT(result.all.largest, 1e-15);
}

TEST(Compare, EachPortIsRenormalizedByItsOwnImpedance) {
  auto const divider = [](char const * z1, char const * z2) {
    std::string const ports =
        std::string("V1 in 0 dc 0 ac 1 portnum 1 z0 ") + z1 + "\nV2 out 0 dc 0 ac 0 portnum 2 z0 " + z2 + "\n";
    std::string const lines = ports + "R1 in out 30\nC1 out 0 1p\nL1 in 0 3n\n";
    SParameterTable table{{1e9, 2e9, 3e9}, {}, {std::stod(z1), std::stod(z2)}};
    for (double const f : table.frequencies)
      table.matrices.push_back(Solve(lines, f));
    return table;
  };
  auto const result = rf::Compare(divider("50", "50"), divider("75", "20"));
  EXPECT_TRUE(result.isRenormalized);
  EXPECT_LT(result.all.largest, 1e-14);
}

TEST(Compare, WhatCannotBeComparedIsRefusedWithAReason) {
  auto const constant = [](double) { return Complex(0.5, 0); };
  auto const good = Table({1, 2}, constant);
  SParameterTable const one{{1, 2}, {rf::SMatrix(1), rf::SMatrix(1)}, {50}};
  EXPECT_EQ(ErrorOfComparing(good, one), "one network has 2 ports, the other 1; compare networks of as many ports");
  EXPECT_EQ(
      ErrorOfComparing(good, Table({3, 4}, constant)),
      "no frequency of the first network, 1 to 2 Hz, lies in the range of the second, 3 to 4 Hz; compare networks "
      "whose ranges meet");
  EXPECT_EQ(ErrorOfComparing({}, good), "the first network has no points; give solved or measured data");
  EXPECT_EQ(ErrorOfComparing(good, Table({2, 1}, constant)),
            "the second network has the frequency 1 Hz out of order; give frequencies that ascend from zero");
  EXPECT_EQ(ErrorOfComparing(good, Table({1, 2}, constant, {50, 0})),
            "the second network has a reference impedance of 0 ohm; give impedances above zero");
  EXPECT_EQ(ErrorOfComparing(good, Table({1, 2}, constant, {50})),
            "the second network has 2 ports at 1 Hz and 1 impedances; give one impedance for each port");
  auto damaged = good;
  damaged.matrices[1](1, 1) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ErrorOfComparing(damaged, good),
            "the first network has a value at 2 Hz that is not finite; give finite values");
  damaged = good;
  damaged.matrices.pop_back();
  EXPECT_EQ(ErrorOfComparing(damaged, good),
            "the first network has 2 frequencies and 1 matrices; give one matrix for each frequency");
}

TEST(Compare, ANetworkThatOtherImpedancesDoNotAllowIsRefused) {
  SParameterTable const first{{1}, {rf::SMatrix(1)}, {1e-10}};
  SParameterTable second{{1}, {rf::SMatrix(1)}, {1}};
  second.matrices[0](0, 0) = 1e308;
  EXPECT_EQ(ErrorOfComparing(first, second),
            "the second network has no S-parameters for the first's impedances at 1 Hz; "
            "give both for the same ones");
}

} // namespace
