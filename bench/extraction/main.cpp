// bench_extraction: what the update of a trace over many variations costs, as a ratio to copying the same numbers:
// solved data that lies in memory, and data that a product reads from its library.  Then what synchronising many traces
// costs after an edit, as a ratio to analysing each of their texts once.

#include "bench/extraction/Sources.h"
#include "bench/extraction/Synchronisation.h"
#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace {

using bench::ISource;

struct Settings {
  bench::RunWords run;
  std::vector<std::size_t> variations = {100, 300, 1000};
  std::size_t frequencies = 1001;
  std::vector<std::size_t> traces = {100, 1000, 10000};
  std::string only;
  bool isMemory = false; ///< one update, and what it held at most
};

struct Case {
  char const * data;
  bool isComplex; ///< else in decibels
};
Case const cases[] = {{"memory", true}, {"memory", false}, {"library", true}, {"library", false}};

std::unique_ptr<ISource> MakeSource(Settings const & settings, Case const & each, std::size_t variations) {
  bench::SourceSize const size{settings.run.folder, variations, settings.frequencies};
  return each.data == std::string("memory") ? bench::DataInMemory(size) : bench::DataInLibrary(size);
}

/// Bytes of the numbers that a trace of the complex quantity holds: the axis and two doubles for each sample.
double BytesOfNumbers(Settings const & settings, std::size_t variations) {
  return 3.0 * sizeof(double) * static_cast<double>(variations * settings.frequencies);
}

int TellMemory(Settings const & settings, Case const & each) {
  std::size_t const variations = settings.variations.back();
  auto const source = MakeSource(settings, each, variations);
  source->Prepare(each.isComplex);
  double const before = static_cast<double>(bench::PeakMemory());
  source->Update();
  source->Check();
  std::cout << (static_cast<double>(bench::PeakMemory()) - before) / BytesOfNumbers(settings, variations) << "\n";
  return 0;
}

double PeakRatio(Settings const & settings, Case const & each, std::size_t variations) {
  std::vector<std::string> words{
      "--memory", "--variations", std::to_string(variations), "--frequencies", std::to_string(settings.frequencies),
      "--data",   each.data};
  if (!settings.run.folder.empty())
    words.insert(words.end(), {"--folder", settings.run.folder});
  bench::Ended const ended = bench::RunSelf(words);
  bench::Require(ended.exitCode == 0 && ended.signal == 0, "the process that measures memory failed");
  return std::stod(ended.output);
}

nlohmann::json Measure(Settings const & settings, Case const & each, std::size_t variations) {
  auto const source = MakeSource(settings, each, variations);
  auto const shortest = bench::ShortestInTurns(settings.run.repeats, {[&] { return source->SecondsOfCopy(); },
                                                                      [&] {
                                                                        source->Prepare(each.isComplex);
                                                                        double const seconds = source->Update();
                                                                        source->Check();
                                                                        return seconds;
                                                                      }});
  double const again = source->Update(); // of a set that is clean
  return {{"data", each.data},
          {"y", each.isComplex ? "S" : "dB(S)"},
          {"variations", variations},
          {"samples", settings.frequencies},
          {"update_ms", shortest[1] * 1e3},
          {"us_per_variation", shortest[1] * 1e6 / static_cast<double>(variations)},
          {"copy_ms", shortest[0] * 1e3},
          {"copy_us_per_variation", shortest[0] * 1e6 / static_cast<double>(variations)},
          {"ratio_to_copy", shortest[1] / shortest[0]},
          {"clean_update_us", again * 1e6},
          {"peak_to_numbers", PeakRatio(settings, each, variations)}};
}

void RunUpdates(Settings const & settings) {
  bench::ResultTable table({{"data", "data", -8},
                            {"y", "y", -8},
                            {"variations", "variations"},
                            {"samples", "samples", 8},
                            {"update ms", "update_ms", 12, 3},
                            {"us a variation", "us_per_variation", 16, 2},
                            {"copy ms", "copy_ms", 10, 3},
                            {"ratio", "ratio_to_copy", 8, 2},
                            {"growth", "growth", 8, 2},
                            {"clean again us", "clean_update_us", 14, 1},
                            {"peak ratio", "peak_to_numbers", 12, 2}},
                           settings.run.isJson);
  for (Case const & each : cases) {
    if (!settings.only.empty() && settings.only != each.data)
      continue;
    double first = 0.0;
    for (std::size_t const variations : settings.variations) {
      nlohmann::json line = Measure(settings, each, variations);
      double const cost = line["us_per_variation"];
      first = first == 0.0 ? cost : first;
      line["growth"] = cost / first;
      table.Add(line);
    }
  }
}

void RunSynchronisations(Settings const & settings) {
  bench::ResultTable table({{"traces", "traces", 8},
                            {"texts", "texts", 8},
                            {"analyses", "analyses"},
                            {"synchronise ms", "synchronise_ms", 16, 3},
                            {"us a trace", "us_per_trace", 12, 2},
                            {"analyses ms", "analyses_ms", 12, 3},
                            {"ratio", "ratio_to_analyses", 8, 2},
                            {"growth", "growth", 8, 2}},
                           settings.run.isJson);
  double first = 0.0;
  for (std::size_t const traces : settings.traces) {
    auto const cost = bench::MeasureSynchronisation(settings.run.folder, traces, settings.run.repeats);
    bench::Require(cost.analyses == cost.texts, "a text was not analysed exactly once");
    double const each = cost.seconds * 1e6 / static_cast<double>(traces);
    first = first == 0.0 ? each : first;
    table.Add({{"traces", traces},
               {"texts", cost.texts},
               {"analyses", cost.analyses},
               {"synchronise_ms", cost.seconds * 1e3},
               {"us_per_trace", each},
               {"analyses_ms", cost.secondsOfAnalyses * 1e3},
               {"ratio_to_analyses", cost.seconds / cost.secondsOfAnalyses},
               {"growth", each / first}});
  }
}

int Run(Settings const & settings) {
  if (settings.isMemory)
    return TellMemory(settings, settings.only == "library" ? cases[2] : cases[0]);
  if (settings.only != "synchronise")
    RunUpdates(settings);
  if (settings.only.empty() || settings.only == "synchronise")
    RunSynchronisations(settings);
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  Settings settings;
  CLI::App app("What the update of a trace over many variations costs, as a ratio to copying the same numbers, and "
               "synchronising many traces, as a ratio to analysing their texts.");
  settings.run.Declare(app);
  app.add_option("--variations", settings.variations, "variations of the solution")->delimiter(',');
  app.add_option("--frequencies", settings.frequencies, "samples of each variation");
  app.add_option("--data", settings.only, "memory or library: updates of that alone; synchronise: no updates")
      ->check(CLI::IsMember({"memory", "library", "synchronise"}));
  app.add_option("--traces", settings.traces, "traces that are synchronised")->delimiter(',');
  app.add_flag("--memory", settings.isMemory, "one update; how much it held at most, as a ratio to its numbers");
  return bench::RunProgram("bench_extraction", app, argc, argv, [&] {
    if (settings.run.isSmoke) {
      settings.variations = {2, 5};
      settings.traces = {15, 1000};
      settings.frequencies = 11;
      settings.run.repeats = 1;
    }
    return Run(settings);
  });
}
