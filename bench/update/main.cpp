// bench_update: many reports over the same variations updated at once, as a ratio to one report after another; loads of
// variations are counted.

#include "bench/support/Measure.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"

#include <CLI/CLI.hpp>

namespace {

struct Settings {
  bench::RunWords run;
  std::vector<std::size_t> reports = {1, 10, 50};
  std::size_t variations = 100;
  std::size_t frequencies = 201;
};

std::vector<ISolutionPointSet *> AddReports(bench::SolvedWorld & world, std::size_t count) {
  wchar_t const * const expressions[] = {L"S", L"dB(S)", L"re(S)", L"mag(S)"};
  std::vector<ISolutionPointSet *> sets;
  for (std::size_t i = 0; i < count; ++i)
    sets.push_back(&world.AddReport(expressions[i % std::size(expressions)]));
  return sets;
}

/// Seconds of one update of all reports, or of an update for each, in a world of its own.
double Update(Settings const & settings, std::size_t reports, bool atOnce, std::size_t & reads) {
  bench::DataFolder const folder(settings.run.folder);
  bench::SolvedWorld world(folder.Path(), settings.variations, settings.frequencies);
  std::vector<ISolutionPointSet *> const sets = AddReports(world, reports);
  double const seconds = bench::SecondsOf([&] {
    if (atOnce)
      world.Update(sets);
    else
      for (ISolutionPointSet * const set : sets)
        world.Update({set});
  });
  reads = world.Reads();
  for (ISolutionPointSet * const set : sets)
    bench::Require(world.TraceOf(dynamic_cast<SolutionPointSet &>(*set)).GetValueCount() ==
                       settings.variations * settings.frequencies,
                   "a report is not whole");
  return seconds;
}

int Run(Settings const & settings) {
  bench::ResultTable table({{"reports", "reports", 8},
                            {"variations", "variations"},
                            {"samples", "samples", 8},
                            {"at once ms", "at_once_ms", 14, 3},
                            {"loads", "at_once_loads", 12},
                            {"one by one ms", "one_by_one_ms", 16, 3},
                            {"loads", "one_by_one_loads", 12},
                            {"ratio", "ratio", 8, 2}},
                           settings.run.isJson);
  for (std::size_t const reports : settings.reports) {
    std::size_t atOnceReads = 0;
    std::size_t oneByOneReads = 0;
    auto const seconds =
        bench::ShortestInTurns(settings.run.repeats, {[&] { return Update(settings, reports, true, atOnceReads); },
                                                      [&] { return Update(settings, reports, false, oneByOneReads); }});
    bench::Require(atOnceReads == settings.variations, "a variation was not loaded exactly once");
    table.Add({{"reports", reports},
               {"variations", settings.variations},
               {"samples", settings.frequencies},
               {"at_once_ms", seconds[0] * 1e3},
               {"at_once_loads", atOnceReads},
               {"one_by_one_ms", seconds[1] * 1e3},
               {"one_by_one_loads", oneByOneReads},
               {"ratio", seconds[0] / seconds[1]}});
  }
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What many reports over the same variations cost at once, as a ratio to one after another.");
  settings.run.Declare(app);
  app.add_option("--reports", settings.reports, "reports of one trace each")->delimiter(',');
  app.add_option("--variations", settings.variations, "variations of the solution");
  app.add_option("--frequencies", settings.frequencies, "samples of each variation");
  return bench::RunProgram("bench_update", app, argc, argv, [&] {
    if (settings.run.isSmoke) {
      settings.reports = {1, 3};
      settings.variations = 4;
      settings.frequencies = 11;
      settings.run.repeats = 1;
    }
    return Run(settings);
  });
}
