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

/** What the independent simulator prints at one frequency: all entries, row by row. */
struct SimulatorRow {
  double frequency = 0;
  std::vector<std::complex<double>> s;
};

std::string EntryName(std::size_t entry, std::size_t ports) {
  return std::to_string(entry / ports + 1) + "_" + std::to_string(entry % ports + 1);
}

std::string SimulatorScript(std::filesystem::path const & netlist, std::size_t ports) {
  std::string lets;
  std::string names;
  for (std::size_t entry = 0; entry < ports * ports; ++entry) {
    std::string const name = EntryName(entry, ports);
    lets += "let re" + name + "=real(S_" + name + ")\nlet im" + name + "=imag(S_" + name + ")\n";
    names += " re" + name + " im" + name;
  }
  return "* runs the netlist and writes its S-parameters\n"
         ".control\nset noaskquit\nset numdgt=17\nset wr_singlescale\nsource " +
         netlist.string() + "\nrun\nlet hertz=real(frequency)\n" + lets + "wrdata result.txt hertz" + names +
         "\nquit 0\n.endc\n.end\n";
}

std::vector<SimulatorRow> RunSimulator(std::filesystem::path const & netlist, std::size_t ports) {
  FolderOfFiles const folder;
  auto const script = folder.Write("run.cir", SimulatorScript(netlist, ports));
  std::string const command = "cd '" + folder.Path().string() + "' && timeout 60 /usr/bin/ngspice -b '" +
                              script.string() + "' > log.txt 2>&1 < /dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0) << Content(folder.Path() / "log.txt");
  std::vector<SimulatorRow> rows;
  std::istringstream text(Content(folder.Path() / "result.txt"));
  double scale = 0;
  for (SimulatorRow row; text >> scale >> row.frequency; rows.push_back(row)) {
    row.s.clear();
    for (double re = 0, im = 0; row.s.size() < ports * ports && text >> re >> im;)
      row.s.emplace_back(re, im);
  }
  return rows;
}

void ExpectSimulatorAgrees(char const * file, double tolerance) {
  auto const netlist = rf::ReadNetlist(ExampleFile(file));
  auto const frequencies = netlist.Sweeps()[0].sweep.Frequencies();
  rf::SParameterSolver solver(rf::Elaborate(netlist));
  auto const rows = RunSimulator(ExampleFile(file), solver.Ports().size());
  ASSERT_EQ(rows.size(), frequencies.size()) << file;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_NEAR(rows[i].frequency, frequencies[i], 1e-12 * frequencies[i]);
    auto const s = solver.At(rows[i].frequency);
    ASSERT_EQ(rows[i].s.size(), s.Ports() * s.Ports()) << file;
    for (std::size_t entry = 0; entry < rows[i].s.size(); ++entry)
      ExpectNear(s(entry / s.Ports(), entry % s.Ports()), rows[i].s[entry], tolerance);
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
    std::size_t const ports = solver.Ports().size();
    auto const rows = RunSimulator(ExampleFile(file), ports);
    ASSERT_EQ(rows.size(), frequencies.size()) << file;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      ASSERT_EQ(rows[i].s.size(), ports * ports) << file;
      for (std::size_t entry = 0; entry < ports * ports; ++entry)
        ExpectNear(result.At(i)[entry], rows[i].s[entry], 1e-9);
    }
  }
}

} // namespace
