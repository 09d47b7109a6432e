#include "products/rfcircuit/product/RfJobRunner.h"

#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "tests/products/rfcircuit_product/ProductSupport.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace rftest;
using rfcircuit::NetworkData;

namespace {

std::string const kPorts = "V1 in 0 dc 0 ac 1 portnum 1 z0 50\nV2 out 0 dc 0 ac 0 portnum 2 z0 50\n";
std::string const kSweep = ".sp lin 3 1g 2g\n";

NetworkData Solved(rfcircuit::RfJobRunner & runner, desktop::SolveJob const & job) {
  io::CBlock result;
  AString error;
  Progress progress;
  EXPECT_TRUE(runner.Run(job, result, error, progress)) << text::ToUtf8(error);
  NetworkData data;
  EXPECT_TRUE(data.Read(result));
  return data;
}

std::string ErrorOf(desktop::SolveJob const & job) {
  io::CBlock result;
  AString error;
  Progress progress;
  EXPECT_FALSE(rfcircuit::RfJobRunner().Run(job, result, error, progress));
  EXPECT_TRUE(result.Empty());
  EXPECT_EQ(error.find(L'\n'), AString::npos);
  return text::ToUtf8(error);
}

NetworkData Directly(std::filesystem::path const & file, rf::Overrides const & overrides) {
  auto const netlist = rf::ReadNetlist(file);
  rf::SParameterSolver solver(rf::Elaborate(netlist, overrides));
  std::vector<rfcircuit::NetworkPort> ports;
  for (rf::Port const & port : solver.Ports())
    ports.push_back({port.number, text::FromUtf8(port.name), port.z0});
  NetworkData data(netlist.Sweeps()[0].sweep.Frequencies(), ports);
  for (std::size_t i = 0; i < data.Frequencies().size(); ++i) {
    rf::SMatrix const s = solver.At(data.Frequencies()[i]);
    for (std::size_t row = 0; row < ports.size(); ++row)
      for (std::size_t column = 0; column < ports.size(); ++column)
        data.SetS(i, row, column, s(row, column));
  }
  return data;
}

class RfJobRunner : public testing::Test {
protected:
  std::filesystem::path Write(std::string const & lines) {
    return WriteFile(m_folder / "test.cir", "title\n" + lines + kPorts + kSweep);
  }

  support::TemporaryFolder m_folder;
  rfcircuit::RfJobRunner m_runner;
};

} // namespace

TEST_F(RfJobRunner, GivesWhatTheSolverGivesBitForBitForEveryExample) {
  for (char const * name : {"attenuator/attenuator.cir", "branchline/branchline.cir", "lowpass/lowpass.cir",
                            "sallenkey/sallenkey.cir", "transformer/transformer.cir"}) {
    SCOPED_TRACE(name);
    ExpectSame(Solved(m_runner, JobFor(ExampleFile(name), L"")), Directly(ExampleFile(name), {}));
  }
}

TEST_F(RfJobRunner, PutsTheValuesOfTheVariationInPlaceOfThoseOfTheNetlist) {
  auto const file = ExampleFile("lowpass/lowpass.cir");
  ExpectSame(Solved(m_runner, JobFor(file, L"CSCALE=1.25; lscale=0.8")),
             Directly(file, {{"cscale", 1.25}, {"lscale", 0.8}}));
}

TEST_F(RfJobRunner, TakesUnitsInValues) {
  auto const file = Write(".param c=1p\nC1 in out {c}\n");
  ExpectSame(Solved(m_runner, JobFor(file, L"c=2.2pF")), Directly(file, {{"c", 2.2e-12}}));
}

TEST_F(RfJobRunner, SolvesTheSweepOfTheSettingsNotThatOfTheNetlist) {
  auto job = JobFor(ExampleFile("lowpass/lowpass.cir"), L"");
  ASSERT_TRUE(job.settings.Unpack(L"Settings { Kind = \"list\" Frequencies(1e9, 2e9) }"));
  EXPECT_EQ(Solved(m_runner, job).Frequencies(), (std::vector<double>{1e9, 2e9}));
}

TEST_F(RfJobRunner, ReadsTheNetlistAgainWhenItChanges) {
  auto const file = Write("R1 in out 100\n");
  EXPECT_NEAR(Solved(m_runner, JobFor(file, L"")).S(0, 1, 0).real(), 0.5, 1e-12);
  Write("R1 in out 300.0\n");
  EXPECT_NEAR(Solved(m_runner, JobFor(file, L"")).S(0, 1, 0).real(), 0.25, 1e-12);
}

TEST_F(RfJobRunner, ReadsTheNetlistAgainWhenAnIncludedFileChangesItsTimeAlone) {
  auto const part = WriteFile(m_folder / "part.inc", "R1 in out 100\n");
  auto const file = Write(".include part.inc\n");
  auto const job = JobFor(file, L"");
  EXPECT_NEAR(Solved(m_runner, job).S(0, 1, 0).real(), 0.5, 1e-12);
  auto const before = std::filesystem::last_write_time(part);
  WriteFile(part, "R1 in out 300\n");
  std::filesystem::last_write_time(part, before + std::chrono::seconds(2));
  EXPECT_NEAR(Solved(m_runner, job).S(0, 1, 0).real(), 0.25, 1e-12);
}

TEST_F(RfJobRunner, KeepsTheNetlistWhileItsFilesStayAsTheyAre) {
  auto const file = Write("R1 in out 100\n");
  auto const job = JobFor(file, L"");
  Solved(m_runner, job);
  auto const before = std::filesystem::last_write_time(file);
  Write("R1 in out 300\n"); // same size
  std::filesystem::last_write_time(file, before);
  EXPECT_NEAR(Solved(m_runner, job).S(0, 1, 0).real(), 0.5, 1e-12);
}

TEST_F(RfJobRunner, GoesOnAfterAJobThatFailed) {
  auto const file = Write("R1 in out 100\n");
  auto job = JobFor(file, L"unknown=1");
  io::CBlock result;
  AString error;
  Progress progress;
  EXPECT_FALSE(m_runner.Run(job, result, error, progress));
  job.variation = L"";
  EXPECT_FALSE(Solved(m_runner, job).IsEmpty());
}

TEST_F(RfJobRunner, ReportsProgressUpToTheEnd) {
  io::CBlock result;
  AString error;
  Progress progress;
  ASSERT_TRUE(m_runner.Run(JobFor(ExampleFile("lowpass/lowpass.cir"), L""), result, error, progress));
  ASSERT_FALSE(progress.fractions.empty());
  EXPECT_LE(progress.fractions.size(), 60u);
  EXPECT_TRUE(std::is_sorted(progress.fractions.begin(), progress.fractions.end()));
  EXPECT_EQ(progress.fractions.back(), 1.0);
  EXPECT_EQ(progress.texts.back(), L"201 of 201 frequencies");
}

TEST_F(RfJobRunner, RefusesAVariableThatTheNetlistDoesNotHave) {
  auto const file = Write(".param c=1p\nC1 in out {c}\n");
  EXPECT_EQ(ErrorOf(JobFor(file, L"d=1p")),
            file.string() + ": design variable 'd': it is not known; the netlist has: c");
}

TEST_F(RfJobRunner, RefusesAValueThatIsNoRealNumber) {
  auto const file = Write(".param c=1p\nC1 in out {c}\n");
  EXPECT_EQ(ErrorOf(JobFor(file, L"c=two")),
            "design variable 'c': its value 'two' is not a real number; give a number");
  EXPECT_EQ(ErrorOf(JobFor(file, L"c=1+2i")),
            "design variable 'c': its value '1+2i' is not a real number; give a number");
}

TEST_F(RfJobRunner, RefusesATextThatIsNoVariation) {
  EXPECT_EQ(ErrorOf(JobFor(Write("R1 in out 100\n"), L"nonsense")),
            "variation: 'nonsense' can't be read; write name=value pairs, joined by ';'");
}

TEST_F(RfJobRunner, RefusesSettingsWithoutASweep) {
  auto job = JobFor(Write("R1 in out 100\n"), L"");
  job.settings.Clear();
  EXPECT_EQ(ErrorOf(job), "setup 'SParameters1': sweep: the settings hold none; define the sweep of the setup anew");
}

TEST_F(RfJobRunner, RefusesASetupOfAnotherType) {
  auto job = JobFor(Write("R1 in out 100\n"), L"");
  job.setupType = L"Transient";
  EXPECT_EQ(ErrorOf(job), "setup 'SParameters1': its type 'Transient' is not known here; use SParameters");
}

TEST_F(RfJobRunner, TellsWhereTheEquationsAreSingular) {
  auto const file = Write(".param r=50\nR1 in 0 {r}\nR2 out 0 50\n");
  std::string const error = ErrorOf(JobFor(file, L"r=-50"));
  EXPECT_NE(error.find("circuit at 1000000000 Hz"), std::string::npos) << error;
}

namespace {

/// An adaptive sweep of an example or of lines, with all that it told.
struct AdaptiveRun {
  NetworkData data;
  Progress progress;

  explicit AdaptiveRun(desktop::SolveJob const & job) {
    io::CBlock result;
    AString error;
    EXPECT_TRUE(rfcircuit::RfJobRunner().Run(job, result, error, progress)) << text::ToUtf8(error);
    EXPECT_TRUE(data.Read(result));
  }
  std::vector<AString> Tasks() const {
    std::vector<AString> names;
    for (CProfileUpdate const & update : progress.updates)
      names.push_back(update.GetTask().GetName());
    return names;
  }
};

} // namespace

TEST_F(RfJobRunner, SolvesAnAdaptiveSweepAtFewOfItsPointsAndStoresThemAll) {
  AdaptiveRun const run(JobFor(ExampleFile("bandpass/bandpass.cir"), L""));
  ASSERT_TRUE(run.data.Origin().has_value());
  EXPECT_TRUE(run.data.Origin()->isConverged);
  EXPECT_EQ(run.data.Frequencies().size(), 10001u);
  EXPECT_LT(run.data.Origin()->solved.size(), 100u);
  auto const exact = Directly(ExampleFile("bandpass/bandpass.cir"), {});
  double largest = 0.0;
  for (std::size_t i = 0; i < exact.Frequencies().size(); ++i)
    largest = std::max(largest, std::abs(run.data.S(i, 1, 0) - exact.S(i, 1, 0)));
  EXPECT_LT(largest, 1e-7);
}

TEST_F(RfJobRunner, ReportsThePassesOfAnAdaptiveSweepByTheTokensOfTheColumns) {
  AdaptiveRun const run(JobFor(ExampleFile("crystal/crystal.cir"), L"q=50000"));
  ASSERT_GE(run.progress.passes.size(), 2u);
  EXPECT_EQ(run.progress.passes.size(), static_cast<std::size_t>(run.data.Origin()->passes));
  EXPECT_EQ(run.progress.passes.front()->Name(), L"c");
  double change = 0.0;
  *run.progress.passes.front() >> io::named(L"Change", change);
  EXPECT_FALSE(run.progress.passes.front()->Found());
  int number = 0;
  int solved = 0;
  int points = 0;
  AString passive;
  *run.progress.passes.back() >> io::named(L"Pass", number) >> io::named(L"Solved", solved) >>
      io::named(L"Points", points) >> io::named(L"Change", change) >> io::named(L"Passive", passive);
  EXPECT_EQ(number, run.data.Origin()->passes);
  EXPECT_EQ(solved, static_cast<int>(run.data.Origin()->solved.size()));
  EXPECT_EQ(points, 10001);
  EXPECT_EQ(change, run.data.Origin()->change);
  EXPECT_EQ(passive, L"yes");
  EXPECT_TRUE(run.progress.isConverged);
  EXPECT_EQ(run.progress.fractions.back(), 1.0);
}

TEST_F(RfJobRunner, SaysThatABoundedSweepDidNotConvergeAndKeepsItsBest) {
  auto job = JobFor(Write("T1 in 0 a 0 z0=75 td=200n\nR1 a out 10\n"), L"");
  ASSERT_TRUE(job.settings.Unpack(L"Settings { Kind = \"lin\" Points = 2001 Start = 1e6 Stop = 3e9 "
                                  L"Method = \"adaptive\" MostPoints = 40 }"));
  AdaptiveRun const run(job);
  EXPECT_FALSE(run.data.Origin()->isConverged);
  EXPECT_EQ(run.data.Origin()->solved.size(), 40u);
  EXPECT_FALSE(run.progress.isConverged);
  EXPECT_EQ(run.progress.texts.back(), L"not converged: 40 of 2001 frequencies solved");
}

TEST_F(RfJobRunner, ReportsWhatTheTasksOfASolveCost) {
  AdaptiveRun const adaptive(JobFor(ExampleFile("bandpass/bandpass.cir"), L""));
  EXPECT_EQ(adaptive.Tasks(),
            (std::vector<AString>{L"Solve", L"Read netlist", L"Analyse", L"Solve", L"Fit", L"Total"}));
  AdaptiveRun const direct(JobFor(ExampleFile("lowpass/lowpass.cir"), L""));
  EXPECT_EQ(direct.Tasks(), (std::vector<AString>{L"Solve", L"Read netlist", L"Analyse", L"Solve", L"Total"}));
  EXPECT_TRUE(direct.progress.passes.empty());
  EXPECT_FALSE(direct.data.Origin().has_value());
  for (CProfileUpdate const & update : direct.progress.updates) {
    EXPECT_GE(update.GetTask().GetRealTime(), 0.0);
    EXPECT_GE(update.GetTask().GetCpuTime(), 0.0);
    EXPECT_EQ(update.GetTask().GetMemory() > 0.0, update.GetKind() != CProfileUpdate::kStartGroup);
  }
  EXPECT_EQ(direct.progress.updates.front().GetKind(), CProfileUpdate::kStartGroup);
  EXPECT_EQ(direct.progress.updates.back().GetKind(), CProfileUpdate::kStopGroup);
  EXPECT_GT(direct.progress.updates.back().GetTask().GetCpuTime(), 0.0);
}

TEST_F(RfJobRunner, ClosesTheProfileGroupOfAJobThatIsRefused) {
  io::CBlock result;
  AString error;
  Progress progress;
  EXPECT_FALSE(m_runner.Run(JobFor(Write("R1 in out 100\n"), L"unknown=1"), result, error, progress));
  ASSERT_EQ(progress.updates.size(), 2u);
  EXPECT_EQ(progress.updates.back().GetKind(), CProfileUpdate::kStopGroup);
  EXPECT_EQ(progress.updates.back().GetInfo(), L"refused");
}

TEST_F(RfJobRunner, RefusesSettingsOfAnAdaptiveSweepThatMakeNoSense) {
  auto job = JobFor(Write("R1 in out 100\n"), L"");
  ASSERT_TRUE(job.settings.Unpack(L"Settings { Kind = \"list\" Frequencies(1, 2) Method = \"adaptive\" Target = -1 }"));
  EXPECT_EQ(ErrorOf(job), "setup 'SParameters1': sweep: target=-1 makes no sense; give the largest change of an "
                          "S-parameter, between 0 and 1, such as 1e-5");
}
