#include "tests/products/rfcircuit/RfSupport.h"

#include "products/rfcircuit/engine/closedform/Chebyshev.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"

#include <cmath>
#include <cstdlib>
#include <sstream>

namespace {

using namespace rftest;

TEST(Examples, EachIsReadAndSolvedOverItsSweeps) {
  for (char const * file :
       {"lowpass/lowpass.cir", "attenuator/attenuator.cir", "branchline/branchline.cir", "sallenkey/sallenkey.cir",
        "transformer/transformer.cir", "bandpass/bandpass.cir", "crystal/crystal.cir"}) {
    auto const netlist = rf::ReadNetlist(ExampleFile(file));
    EXPECT_FALSE(netlist.DesignVariables().empty()) << file;
    ASSERT_EQ(netlist.Sweeps().size(), 1u) << file;
    rf::SParameterSolver solver(rf::Elaborate(netlist));
    for (double frequency : netlist.Sweeps()[0].sweep.Frequencies())
      EXPECT_TRUE(std::isfinite(std::abs(solver.At(frequency)(1, 0)))) << file;
  }
}

TEST(Examples, TheLowPassHasTheChebyshevResponse) {
  auto const netlist = rf::ReadNetlist(ExampleFile("lowpass/lowpass.cir"));
  rf::SParameterSolver solver(rf::Elaborate(netlist));
  auto const frequencies = netlist.Sweeps()[0].sweep.Frequencies();
  EXPECT_EQ(frequencies.size(), 201u);
  for (double frequency : frequencies) {
    auto const s = solver.At(frequency);
    EXPECT_NEAR(std::abs(s(1, 0)), rf::ChebyshevLowPassS21(7, 0.1, 1e9, frequency), 1e-10);
    ExpectNear(s(1, 0), rf::LadderS21(rf::ChebyshevLowPassLadder(7, 0.1, 1e9, 50), 50, 50, frequency));
    EXPECT_NEAR(std::norm(s(0, 0)) + std::norm(s(1, 0)), 1, 1e-12);
  }
}

TEST(Examples, TheBandPassHasTheChebyshevResponse) {
  auto const netlist = rf::ReadNetlist(ExampleFile("bandpass/bandpass.cir"));
  rf::SParameterSolver solver(rf::Elaborate(netlist));
  for (double frequency : {0.9e9, 0.998e9, 0.9992e9, 1e9, 1.00071e9, 1.01e9})
    EXPECT_NEAR(std::abs(solver.At(frequency)(1, 0)), rf::ChebyshevBandPassS21(5, 0.1, 1e9, 0.002, frequency), 1e-9);
}

TEST(Examples, TheLowPassScalesAsItsLadderDoes) {
  auto const netlist = rf::ReadNetlist(ExampleFile("lowpass/lowpass.cir"));
  for (double c : {0.8, 0.9, 1.0, 1.1, 1.2}) {
    for (double l : {0.8, 0.9, 1.0, 1.1, 1.2}) {
      rf::SParameterSolver solver(rf::Elaborate(netlist, {{"cscale", c}, {"lscale", l}}));
      auto const ladder = rf::ChebyshevLowPassLadder(7, 0.1, 1e9, 50, c, l);
      for (double frequency : {10e6, 500e6, 1e9, 2e9})
        ExpectNear(solver.At(frequency)(1, 0), rf::LadderS21(ladder, 50, 50, frequency));
    }
  }
}

TEST(Examples, TheAttenuatorIsMatchedAtAnySetting) {
  auto const netlist = rf::ReadNetlist(ExampleFile("attenuator/attenuator.cir"));
  for (double decibels : {0.5, 3.0, 10.0, 40.0}) {
    auto const s = rf::SParameterSolver(rf::Elaborate(netlist, {{"attenuation", decibels}})).At(1e6);
    ExpectNear(s(1, 0), std::pow(10, -decibels / 10)); // two sections
    ExpectNear(s(0, 0), 0);
  }
}

/** What the independent simulator prints for S_2_1 and S_1_1 of a two-port netlist: index, frequency, real and
 * imaginary parts. */
struct SimulatorRow {
  double frequency, re21, im21, re11, im11;
};

std::vector<SimulatorRow> RunSimulator(std::filesystem::path const & netlist) {
  FolderOfFiles const folder;
  auto const script = folder.Write("run.cir", "* runs the netlist and writes its S-parameters\n"
                                              ".control\nset noaskquit\nset numdgt=17\nset wr_singlescale\n"
                                              "source " +
                                                  netlist.string() +
                                                  "\nrun\nlet hertz=real(frequency)\n"
                                                  "let re21=real(S_2_1)\nlet im21=imag(S_2_1)\n"
                                                  "let re11=real(S_1_1)\nlet im11=imag(S_1_1)\n"
                                                  "wrdata result.txt hertz re21 im21 re11 im11\nquit 0\n.endc\n.end\n");
  std::string const command = "cd '" + folder.Path().string() + "' && timeout 60 /usr/bin/ngspice -b '" +
                              script.string() + "' > log.txt 2>&1 < /dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0) << Content(folder.Path() / "log.txt");
  std::vector<SimulatorRow> rows;
  std::istringstream text(Content(folder.Path() / "result.txt"));
  double scale = 0;
  for (SimulatorRow row{}; text >> scale >> row.frequency >> row.re21 >> row.im21 >> row.re11 >> row.im11;)
    rows.push_back(row);
  return rows;
}

void ExpectSimulatorAgrees(char const * file, double tolerance) {
  auto const netlist = rf::ReadNetlist(ExampleFile(file));
  auto const frequencies = netlist.Sweeps()[0].sweep.Frequencies();
  auto const rows = RunSimulator(ExampleFile(file));
  ASSERT_EQ(rows.size(), frequencies.size()) << file;
  rf::SParameterSolver solver(rf::Elaborate(netlist));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_NEAR(rows[i].frequency, frequencies[i], 1e-12 * frequencies[i]);
    auto const s = solver.At(rows[i].frequency);
    ExpectNear(s(1, 0), {rows[i].re21, rows[i].im21}, tolerance);
    ExpectNear(s(0, 0), {rows[i].re11, rows[i].im11}, tolerance);
  }
}

TEST(Examples, AnIndependentSimulatorAgrees) {
  if (!std::filesystem::exists("/usr/bin/ngspice"))
    GTEST_SKIP() << "ngspice is not installed";
  for (char const * file : {"lowpass/lowpass.cir", "attenuator/attenuator.cir", "branchline/branchline.cir",
                            "sallenkey/sallenkey.cir", "transformer/transformer.cir"})
    ExpectSimulatorAgrees(file, 1e-11);
  // Narrow resonances multiply rounding by their quality.
  for (char const * file : {"bandpass/bandpass.cir", "crystal/crystal.cir"})
    ExpectSimulatorAgrees(file, 1e-9);
}

TEST(Examples, AnIndependentSimulatorAgreesWithAdaptiveSweeps) {
  if (!std::filesystem::exists("/usr/bin/ngspice"))
    GTEST_SKIP() << "ngspice is not installed";
  for (char const * file : {"bandpass/bandpass.cir", "crystal/crystal.cir"}) {
    auto const netlist = rf::ReadNetlist(ExampleFile(file));
    auto const line = netlist.Sweeps()[0];
    auto const frequencies = line.sweep.Frequencies();
    ASSERT_TRUE(line.method.isAdaptive) << file;
    rf::SParameterSolver solver(rf::Elaborate(netlist));
    auto const result =
        rf::AdaptiveSweep(frequencies, line.method, [&solver](double frequency) { return solver.At(frequency); }).Run();
    EXPECT_LT(result.SolvedPoints(), 100u) << file;
    auto const rows = RunSimulator(ExampleFile(file));
    ASSERT_EQ(rows.size(), frequencies.size()) << file;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      ExpectNear(result.At(i)[2], {rows[i].re21, rows[i].im21}, 1e-8);
      ExpectNear(result.At(i)[0], {rows[i].re11, rows[i].im11}, 1e-8);
    }
  }
}

} // namespace
