// bench_extraction: what the update of a trace over many variations costs, as a ratio to copying the same numbers.

#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"
#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <complex>
#include <fmt/format.h>
#include <iostream>

namespace {

struct Settings {
  std::vector<std::size_t> variations = {10, 100, 1000};
  std::size_t frequencies = 1001;
  int repeats = 5;
  bool isSmoke = false;
  bool isJson = false;
  bool isMemory = false; ///< one update, and what it held at most
  std::string folder;
};

struct Case {
  wchar_t const * y;
  char const * shown;
};
Case const cases[] = {{L"S", "S"}, {L"dB(S)", "dB(S)"}};

/// Axis and complex numbers of all variations behind each other, as a trace has them.
double SecondsOfCopy(bench::SolvedWorld const & world) {
  bench::Stopwatch watch;
  watch.Start();
  std::vector<double> x;
  std::vector<std::complex<double>> y;
  std::size_t const count = world.Frequencies().size();
  x.reserve(world.Variations() * count);
  y.reserve(world.Variations() * count);
  for (std::size_t variation = 0; variation < world.Variations(); ++variation) {
    x.insert(x.end(), world.Frequencies().begin(), world.Frequencies().end());
    auto const * const first = reinterpret_cast<std::complex<double> const *>(world.NumbersOf(variation).data());
    y.insert(y.end(), first, first + count);
  }
  watch.Stop();
  bench::Require(x.size() == y.size(), "nothing was copied");
  asm volatile("" : : "r"(x.data()), "r"(y.data()) : "memory");
  return watch.Seconds();
}

double SecondsOfUpdate(bench::SolvedWorld & world, SolutionPointSet & set) {
  bench::Stopwatch watch;
  watch.Start();
  world.Update({&set});
  watch.Stop();
  return watch.Seconds();
}

void Check(bench::SolvedWorld const & world, Trace const & trace, Case const & each) {
  std::size_t const count = world.Frequencies().size();
  bench::Require(trace.GetValueCount() == world.Variations() * count, "the trace is not whole");
  std::size_t const last = world.Variations() - 1;
  auto const * const numbers = reinterpret_cast<std::complex<double> const *>(world.NumbersOf(last).data());
  std::complex<double> const expected =
      each.y[0] == L'S' ? numbers[count - 1] : 20.0 * std::log10(std::abs(numbers[count - 1]));
  std::complex<double> const got = trace.GetOrdinate()->GetValues().GetNumber(trace.GetValueCount() - 1);
  bench::Require(std::abs(got - expected) <= 1e-12 * std::abs(expected), "the numbers differ");
}

/// Bytes of the numbers that a trace of S holds: the axis and two doubles for each sample.
double BytesOfNumbers(Settings const & settings, std::size_t variations) {
  return 3.0 * sizeof(double) * static_cast<double>(variations * settings.frequencies);
}

int TellMemory(Settings const & settings) {
  bench::DataFolder const folder(settings.folder);
  std::size_t const variations = settings.variations.back();
  bench::SolvedWorld world(folder.Path(), variations, settings.frequencies);
  SolutionPointSet & set = world.AddReport(cases[0].y);
  double const before = static_cast<double>(bench::PeakMemory());
  world.Update({&set});
  Check(world, world.TraceOf(set), cases[0]);
  std::cout << (static_cast<double>(bench::PeakMemory()) - before) / BytesOfNumbers(settings, variations) << "\n";
  return 0;
}

double PeakRatio(Settings const & settings, std::size_t variations) {
  bench::Ended const ended = bench::RunSelf({"--memory", "--variations", std::to_string(variations), "--frequencies",
                                             std::to_string(settings.frequencies), "--folder", settings.folder});
  bench::Require(ended.exitCode == 0 && ended.signal == 0, "the process that measures memory failed");
  return std::stod(ended.output);
}

nlohmann::json Measure(Settings const & settings, Case const & each, std::size_t variations) {
  bench::DataFolder const folder(settings.folder);
  bench::SolvedWorld world(folder.Path(), variations, settings.frequencies);
  double copying = HUGE_VAL;
  double updating = HUGE_VAL;
  // Taken in turns, so that both meet the same machine; each update is that of a report of its own.
  for (int i = 0; i < settings.repeats; ++i) {
    copying = std::min(copying, SecondsOfCopy(world));
    SolutionPointSet & set = world.AddReport(each.y);
    updating = std::min(updating, SecondsOfUpdate(world, set));
    Check(world, world.TraceOf(set), each);
  }
  SolutionPointSet & set = world.AddReport(each.y);
  SecondsOfUpdate(world, set);
  double const again = SecondsOfUpdate(world, set);
  return {{"y", each.shown},
          {"variations", variations},
          {"samples", settings.frequencies},
          {"update_ms", updating * 1e3},
          {"us_per_variation", updating * 1e6 / static_cast<double>(variations)},
          {"copy_ms", copying * 1e3},
          {"ratio_to_copy", updating / copying},
          {"clean_update_us", again * 1e6},
          {"peak_to_numbers", PeakRatio(settings, variations)}};
}

int Run(Settings const & settings) {
  if (settings.isMemory)
    return TellMemory(settings);
  if (!settings.isJson)
    std::cout << fmt::format("{:<8} {:>10} {:>8} {:>12} {:>16} {:>10} {:>8} {:>14} {:>12}\n", "y", "variations",
                             "samples", "update ms", "us a variation", "copy ms", "ratio", "clean again us",
                             "peak ratio");
  for (Case const & each : cases)
    for (std::size_t const variations : settings.variations) {
      nlohmann::json const line = Measure(settings, each, variations);
      if (settings.isJson)
        std::cout << line.dump() << "\n";
      else
        std::cout << fmt::format("{:<8} {:>10} {:>8} {:>12.3f} {:>16.2f} {:>10.3f} {:>8.2f} {:>14.1f} {:>12.2f}\n",
                                 each.shown, variations, settings.frequencies, line["update_ms"].get<double>(),
                                 line["us_per_variation"].get<double>(), line["copy_ms"].get<double>(),
                                 line["ratio_to_copy"].get<double>(), line["clean_update_us"].get<double>(),
                                 line["peak_to_numbers"].get<double>())
                  << std::flush;
    }
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What the update of a trace over many variations costs, as a ratio to copying the same numbers.");
  app.add_option("--variations", settings.variations, "variations of the solution")->delimiter(',');
  app.add_option("--frequencies", settings.frequencies, "samples of each variation");
  app.add_option("--repeats", settings.repeats, "runs of which the shortest counts");
  app.add_option("--folder", settings.folder, "where the data of the run goes");
  app.add_flag("--memory", settings.isMemory, "one update; how much it held at most, as a ratio to its numbers");
  app.add_flag("--json", settings.isJson, "one JSON object a line");
  app.add_flag("--smoke", settings.isSmoke, "small sizes: shows that the program works");
  return bench::RunProgram("bench_extraction", app, argc, argv, [&] {
    if (settings.isSmoke) {
      settings.variations = {2, 5};
      settings.frequencies = 11;
      settings.repeats = 1;
    }
    return Run(settings);
  });
}
