// bench_update: many reports over the same variations updated at once, as a ratio to one report after another, where
// solved data lies in memory and where it is loaded from a library; loads of variations are counted.

#include "bench/support/Measure.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"
#include "bench/update/Worlds.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"

#include <CLI/CLI.hpp>

namespace {

struct Settings {
  bench::RunWords run;
  std::vector<std::size_t> reports = {1, 10, 50};
  std::size_t variations = 100;
  std::size_t frequencies = 201;
  std::string only;
};

std::size_t SamplesOf(ISolutionPointSet * set) {
  std::list<Trace *> traces;
  dynamic_cast<SolutionPointSet &>(*set).GetAvailableTraces(traces);
  return traces.front()->GetValueCount();
}

/// Seconds of one update of all reports, or of an update for each.
double Update(Settings const & settings, bench::ISolvedData const & data, std::size_t count, bool atOnce,
              std::size_t & loads) {
  auto const reports = data.Open();
  std::vector<ISolutionPointSet *> sets;
  for (std::size_t i = 0; i < count; ++i)
    sets.push_back(&reports->Add(i));
  std::size_t const before = reports->Loads();
  double const seconds = bench::SecondsOf([&] {
    if (atOnce)
      reports->Update(sets);
    else
      for (ISolutionPointSet * const set : sets)
        reports->Update({set});
  });
  loads = reports->Loads() - before;
  for (ISolutionPointSet * const set : sets)
    bench::Require(SamplesOf(set) == settings.variations * settings.frequencies, "a report is not whole");
  return seconds;
}

void Measure(Settings const & settings, char const * what, bench::ISolvedData const & data,
             bench::ResultTable & table) {
  for (std::size_t const reports : settings.reports) {
    std::size_t atOnce = 0;
    std::size_t oneByOne = 0;
    auto const seconds = bench::ShortestInTurns(settings.run.repeats,
                                                {[&] { return Update(settings, data, reports, true, atOnce); },
                                                 [&] { return Update(settings, data, reports, false, oneByOne); }});
    bench::Require(atOnce == settings.variations, "a variation was not loaded exactly once");
    bench::Require(oneByOne == reports * settings.variations, "a report loads other variations than its own");
    table.Add({{"data", what},
               {"reports", reports},
               {"variations", settings.variations},
               {"samples", settings.frequencies},
               {"at_once_ms", seconds[0] * 1e3},
               {"at_once_loads", atOnce},
               {"one_by_one_ms", seconds[1] * 1e3},
               {"one_by_one_loads", oneByOne},
               {"ratio", seconds[0] / seconds[1]}});
  }
}

int Run(Settings const & settings) {
  bench::ResultTable table({{"data", "data", -8},
                            {"reports", "reports", 8},
                            {"variations", "variations"},
                            {"samples", "samples", 8},
                            {"at once ms", "at_once_ms", 14, 3},
                            {"loads", "at_once_loads", 12},
                            {"one by one ms", "one_by_one_ms", 16, 3},
                            {"loads", "one_by_one_loads", 12},
                            {"ratio", "ratio", 8, 2}},
                           settings.run.isJson);
  bench::WorldSize const size{settings.run.folder, settings.variations, settings.frequencies};
  if (settings.only != "library")
    Measure(settings, "memory", *bench::DataInMemory(size), table);
  if (settings.only != "memory")
    Measure(settings, "library", *bench::DataInLibrary(size), table);
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
  app.add_option("--data", settings.only, "memory or library; else both")->check(CLI::IsMember({"memory", "library"}));
  return bench::RunProgram("bench_update", app, argc, argv, [&] {
    if (settings.run.isSmoke) {
      settings.reports = {1, 50};
      settings.frequencies = 11;
      settings.run.repeats = 1;
    }
    return Run(settings);
  });
}
