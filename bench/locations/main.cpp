// bench_locations: what the mirrored stores cost, by the number of variations, beside plain containers and system
// calls.

#include "bench/locations/Stores.h"
#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"
#include "bench/support/Table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace {

struct Settings {
  std::vector<std::size_t> sizes = {1000, 10000, 100000};
  bench::Queries queries;
  int repeats = 3;
  std::string out;
  std::string folder;
  bool isSmoke = false;
};

using MakeFamily = bench::Family (*)(std::string const & folder, std::size_t n, bench::Queries const & queries);

/// The seconds of each span; of several runs the one in the middle counts.
void Measure(MakeFamily make, std::string const & folder, std::size_t n, Settings const & settings,
             bench::ResultLines & lines) {
  std::map<std::string, std::vector<double>> seconds;
  bench::Family family;
  for (int repeat = 0; repeat < settings.repeats; ++repeat) {
    family = make(folder, n, settings.queries);
    for (auto const & span : family.spans) {
      span.prepare();
      bench::Stopwatch watch;
      watch.Start();
      span.run();
      watch.Stop();
      seconds[span.workload].push_back(watch.Seconds());
    }
    std::filesystem::remove_all(folder);
  }
  for (auto const & span : family.spans) {
    auto & all = seconds[span.workload];
    std::ranges::sort(all);
    double const middle = all[all.size() / 2];
    lines.Add({{"engine", family.engine},
               {"workload", span.workload},
               {"n", n},
               {"order", settings.queries.isRandom ? "random" : "sweep"},
               {"operations", span.operations},
               {"seconds", middle},
               {"per_op_us", middle * 1e6 / static_cast<double>(span.operations)},
               {"peak_rss", bench::PeakMemory()}});
  }
}

int Run(Settings settings) {
  if (settings.isSmoke) {
    settings.sizes = {50, 100};
    settings.repeats = 1;
    settings.queries.count = 200;
  }
  bench::DataFolder const folder(settings.folder);
  bench::ResultLines lines(settings.out);
  for (auto const make : {bench::PlainWork, bench::Values, bench::Locations, bench::Numbers, bench::Versions})
    for (auto const n : settings.sizes)
      Measure(make, folder.Path() + "/data", n, settings, lines);
  std::cerr << bench::TableOf(lines.All(), "plain");
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What the mirrored stores cost: a line of JSON for each measurement, a table on standard error");
  Settings settings;
  app.add_option("--n", settings.sizes, "Numbers of variations")->delimiter(',')->check(CLI::PositiveNumber);
  app.add_option("--queries", settings.queries.count, "Keyed questions in one measurement")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "Measurements; the one in the middle counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--dir", settings.folder, "The files go into a folder in this one; else beside this program");
  app.add_flag("--random", settings.queries.isRandom, "Keys are asked for at random, not as they follow each other");
  app.add_flag("--smoke", settings.isSmoke, "Few variations, once: does it work?");
  return bench::RunProgram("bench_locations", app, count, words, [&] { return Run(settings); });
}
