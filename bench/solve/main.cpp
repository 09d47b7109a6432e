// bench_solve: what the desktop spends on each point of a study beside solving it, records of the solve included.

#include "bench/solve/IdleProduct.h"
#include "bench/solve/Study.h"
#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"
#include "bench/support/RunLoop.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/solve/SolveQueue.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fmt/format.h>
#include <iostream>

namespace {

namespace fs = std::filesystem;

struct Settings {
  std::vector<std::size_t> sizes = {1000, 10000, 100000};
  std::size_t waitingPoints = 2000;
  double milliseconds = 10;
  int workers = 2;
  int repeats = 3;
  std::string out;
  std::string folder;
  bool isSmoke = false;
  bool isWorker = false;
  bool isStudy = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--n", settings.sizes, "Numbers of points that cost nothing to solve")
      ->delimiter(',')
      ->check(CLI::PositiveNumber);
  app.add_option("--waiting", settings.waitingPoints, "Points that take their time; 0: none");
  app.add_option("--ms", settings.milliseconds, "How long each of those takes");
  app.add_option("--workers", settings.workers, "Worker processes")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "The study in the middle of so many counts")->check(CLI::PositiveNumber);
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--dir", settings.folder, "The data goes into a folder in this one; else beside this program");
  app.add_flag("--smoke", settings.isSmoke, "Few points, once: does it work?");
  app.add_flag("--worker", settings.isWorker, "Solves jobs")->group("");
  app.add_flag("--study", settings.isStudy, "Runs one study in this process")->group("");
}

/// A study in a process of its own; the one in the middle of several.
nlohmann::json Measure(Settings const & settings, std::string const & root, std::size_t points, double milliseconds) {
  std::vector<nlohmann::json> runs;
  for (int i = 0; i < settings.repeats; ++i) {
    std::string const folder = root + "/study";
    fs::create_directories(folder);
    auto const ended = bench::RunSelf({"--study", "--dir", folder, "--n", std::to_string(points), "--ms",
                                       fmt::format("{}", milliseconds), "--workers", std::to_string(settings.workers)});
    fs::remove_all(folder);
    bench::Require(ended.exitCode == 0 && ended.signal == 0, "the study failed");
    runs.push_back(nlohmann::json::parse(ended.output));
  }
  return bench::MiddleOf(std::move(runs), "overhead_us");
}

void PrintTable(bench::ResultLines const & lines) {
  std::cerr << fmt::format("{:>10}{:>8}{:>10}{:>10}{:>10}{:>13}{:>13}{:>9}{:>12}\n", "points", "ms", "queue us",
                           "solve us", "save us", "overhead us", "desktop CPU", "share", "peak MB");
  for (auto const & line : lines.All())
    std::cerr << fmt::format("{:>10}{:>8}{:>10.1f}{:>10.1f}{:>10.1f}{:>13.1f}{:>13.1f}{:>8.1f}%{:>12.1f}\n",
                             line["points"].get<std::size_t>(), line["ms_per_solve"].get<double>(),
                             line["queue_us"].get<double>(), line["solve_us"].get<double>(),
                             line["save_us"].get<double>(), line["overhead_us"].get<double>(),
                             line["desktop_cpu_us"].get<double>(), 100 * line["overhead_share"].get<double>(),
                             line["peak_rss"].get<double>() / 1e6);
}

int RunAll(Settings settings) {
  if (settings.isSmoke) {
    settings.sizes = {50, 100};
    settings.waitingPoints = 20;
    settings.repeats = 1;
  }
  bench::DataFolder const folder(settings.folder);
  bench::ResultLines lines(settings.out);
  for (auto const n : settings.sizes)
    lines.Add(Measure(settings, folder.Path(), n, 0));
  double const growth = lines.GrowthOf("overhead_us");
  if (settings.waitingPoints > 0)
    lines.Add(Measure(settings, folder.Path(), settings.waitingPoints, settings.milliseconds));
  PrintTable(lines);
  std::cerr << fmt::format("a point costs {:.2f} times as much at the largest size as at the smallest\n", growth);
  return lines.ExitCode();
}

int Run(Settings const & settings) {
  desktop::ProductRegistry::Instance().Register(std::make_unique<bench::IdleProduct>());
  if (settings.isWorker)
    return desktop::RunWorker(bench::IdleProduct::kName);
  if (!settings.isStudy)
    return RunAll(settings);
  std::cout << bench::RunStudy({settings.folder, settings.sizes.at(0), settings.workers, settings.milliseconds}).dump()
            << '\n';
  return 0;
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What a study costs beside solving: a line of JSON for each size, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_solve", app, count, words, [&] { return Run(settings); });
}
