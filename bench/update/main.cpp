// bench_update: many reports over the same variations updated at once, as a ratio to one report after another; loads of
// variations are counted.

#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <iostream>

namespace {

struct Settings {
  std::vector<std::size_t> reports = {1, 10, 50};
  std::size_t variations = 100;
  std::size_t frequencies = 201;
  int repeats = 5;
  bool isSmoke = false;
  bool isJson = false;
  std::string folder;
};

struct Measured {
  double seconds = HUGE_VAL;
  std::size_t reads = 0;
};

std::vector<ISolutionPointSet *> AddReports(bench::SolvedWorld & world, std::size_t count) {
  wchar_t const * const expressions[] = {L"S", L"dB(S)", L"re(S)", L"mag(S)"};
  std::vector<ISolutionPointSet *> sets;
  for (std::size_t i = 0; i < count; ++i)
    sets.push_back(&world.AddReport(expressions[i % std::size(expressions)]));
  return sets;
}

/// atOnce: all reports in one update; otherwise an update for each.
Measured Measure(Settings const & settings, std::size_t reports, bool atOnce) {
  Measured measured;
  for (int i = 0; i < settings.repeats; ++i) {
    bench::DataFolder const folder(settings.folder);
    bench::SolvedWorld world(folder.Path(), settings.variations, settings.frequencies);
    std::vector<ISolutionPointSet *> const sets = AddReports(world, reports);
    bench::Stopwatch watch;
    watch.Start();
    if (atOnce)
      world.Update(sets);
    else
      for (ISolutionPointSet * const set : sets)
        world.Update({set});
    watch.Stop();
    measured.seconds = std::min(measured.seconds, watch.Seconds());
    measured.reads = world.Reads();
    for (ISolutionPointSet * const set : sets)
      bench::Require(world.TraceOf(dynamic_cast<SolutionPointSet &>(*set)).GetValueCount() ==
                         settings.variations * settings.frequencies,
                     "a report is not whole");
  }
  return measured;
}

int Run(Settings const & settings) {
  if (!settings.isJson)
    std::cout << fmt::format("{:>8} {:>10} {:>8} {:>14} {:>12} {:>16} {:>12} {:>8}\n", "reports", "variations",
                             "samples", "at once ms", "loads", "one by one ms", "loads", "ratio");
  for (std::size_t const reports : settings.reports) {
    Measured const atOnce = Measure(settings, reports, true);
    Measured const oneByOne = Measure(settings, reports, false);
    bench::Require(atOnce.reads == settings.variations, "a variation was not loaded exactly once");
    nlohmann::json const line = {{"reports", reports},
                                 {"variations", settings.variations},
                                 {"samples", settings.frequencies},
                                 {"at_once_ms", atOnce.seconds * 1e3},
                                 {"at_once_loads", atOnce.reads},
                                 {"one_by_one_ms", oneByOne.seconds * 1e3},
                                 {"one_by_one_loads", oneByOne.reads},
                                 {"ratio", atOnce.seconds / oneByOne.seconds}};
    if (settings.isJson)
      std::cout << line.dump() << "\n";
    else
      std::cout << fmt::format("{:>8} {:>10} {:>8} {:>14.3f} {:>12} {:>16.3f} {:>12} {:>8.2f}\n", reports,
                               settings.variations, settings.frequencies, atOnce.seconds * 1e3, atOnce.reads,
                               oneByOne.seconds * 1e3, oneByOne.reads, atOnce.seconds / oneByOne.seconds)
                << std::flush;
  }
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What many reports over the same variations cost at once, as a ratio to one after another.");
  app.add_option("--reports", settings.reports, "reports of one trace each")->delimiter(',');
  app.add_option("--variations", settings.variations, "variations of the solution");
  app.add_option("--frequencies", settings.frequencies, "samples of each variation");
  app.add_option("--repeats", settings.repeats, "runs of which the shortest counts");
  app.add_option("--folder", settings.folder, "where the data of the run goes");
  app.add_flag("--json", settings.isJson, "one JSON object a line");
  app.add_flag("--smoke", settings.isSmoke, "small sizes: shows that the program works");
  return bench::RunProgram("bench_update", app, argc, argv, [&] {
    if (settings.isSmoke) {
      settings.reports = {1, 3};
      settings.variations = 4;
      settings.frequencies = 11;
      settings.repeats = 1;
    }
    return Run(settings);
  });
}
