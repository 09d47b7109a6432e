// bench_store: what storing blocks costs, beside a baseline with equal duties.

#include "bench/store/IEngine.h"
#include "bench/store/Series.h"
#include "bench/support/RunLoop.h"
#include "bench/support/Table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <unistd.h>

namespace {

struct Settings {
  std::vector<std::size_t> sizes = {1000, 100000};
  std::size_t payload = 200;
  int repeats = 5;
  double limit = 60;
  std::vector<std::string> engines;
  std::vector<std::string> workloads;
  std::string out;
  std::string folder;
  std::string phase;
  bool isSmoke = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--n", settings.sizes, "Numbers of blocks")->delimiter(',')->check(CLI::PositiveNumber);
  app.add_option("--payload", settings.payload, "Doubles in each block")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "Runs of each phase; the one in the middle counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--limit", settings.limit, "Seconds of work after which a phase stops");
  app.add_option("--engine", settings.engines, "These engines only")->delimiter(',');
  app.add_option("--workload", settings.workloads, "These workloads only")->delimiter(',');
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--dir", settings.folder, "The data goes into a folder in this one; else beside this program");
  app.add_flag("--smoke", settings.isSmoke, "Few blocks, once: does it work?");
  app.add_option("--phase", settings.phase, "Runs one phase in this process")->group("");
}

bool IsWanted(std::vector<std::string> const & filter, std::string const & name) {
  return filter.empty() || std::ranges::find(filter, name) != filter.end();
}

int RunHere(Settings const & settings) {
  bench::Job const job{settings.engines.at(0), settings.phase,  settings.sizes.at(0),
                       settings.payload,       settings.folder, settings.limit};
  // A step that ends late, or never, ends here.
  ::alarm(static_cast<unsigned>(settings.limit * 5) + 10);
  if (settings.phase == "make_committed" || settings.phase == "make_killed")
    bench::MakeFiles(job, settings.phase == "make_killed" ? bench::Before::Killed : bench::Before::Committed);
  else
    std::cout << bench::RunPhase(job).dump() << '\n';
  return 0;
}

int RunAll(Settings settings) {
  if (settings.isSmoke) {
    settings.sizes = {200};
    settings.repeats = 1;
  }
  bench::DataFolder const folder(settings.folder);
  bench::ResultLines lines(settings.out);
  for (auto const n : settings.sizes)
    for (auto const & engine : bench::EngineNames()) {
      if (!IsWanted(settings.engines, engine))
        continue;
      bench::Series series({engine, "", n, settings.payload, "", settings.limit}, settings.repeats, folder.Path());
      for (auto const & workload : bench::AllWorkloads()) {
        if (!IsWanted(settings.workloads, workload.name))
          continue;
        lines.Add(series.Run(workload));
      }
    }
  std::cerr << bench::TableOf(lines.All(), "raw");
  bool const failed = std::ranges::any_of(lines.All(), [](auto const & line) { return line.contains("failed"); });
  return lines.All().empty() || failed ? 1 : lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What storing blocks costs: a line of JSON for each measurement, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_store", app, count, words,
                           [&] { return settings.phase.empty() ? RunAll(settings) : RunHere(settings); });
}
