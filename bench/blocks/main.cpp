// bench_blocks: what writing blocks to bytes and reading them costs, as a ratio to copying the same bytes.

#include "bench/blocks/Cases.h"
#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

struct Settings {
  std::size_t n = 20000;
  int repeats = 5;
  double seconds = 0.1;
  std::string out;
  bool isSmoke = false;
};

/// Seconds of one call, over as many as fit the time.
double Once(std::function<void()> const & step, double atLeast) {
  bench::Stopwatch watch;
  std::size_t calls = 0;
  for (std::size_t round = 1; watch.Seconds() < atLeast || calls == 0; round *= 2) {
    watch.Start();
    for (std::size_t i = 0; i < round; ++i)
      step();
    watch.Stop();
    calls += round;
  }
  return watch.Seconds() / static_cast<double>(calls);
}

double Median(Settings const & settings, std::function<void()> const & step) {
  step();
  std::vector<double> times;
  for (int i = 0; i < settings.repeats; ++i)
    times.push_back(Once(step, settings.seconds));
  std::ranges::sort(times);
  return times[times.size() / 2];
}

/// Keeps the compiler from leaving out a copy that nobody reads.
void Use(void const * bytes) { asm volatile("" : : "r"(bytes) : "memory"); }

std::vector<nlohmann::json> Measure(bench::Case const & each, Settings const & settings) {
  std::string bytes;
  each.write(bytes);
  std::string target;
  std::vector<char> copy(bytes.size());
  double const copying = Median(settings, [&] {
    std::memcpy(copy.data(), bytes.data(), bytes.size());
    Use(copy.data());
  });
  double const writing = Median(settings, [&] {
    target.clear();
    each.write(target);
    Use(target.data());
  });
  double const reading = Median(settings, [&] { each.read(bytes); });
  double const memory = static_cast<double>(each.memory(bytes)) / static_cast<double>(each.items);
  std::vector<nlohmann::json> lines;
  for (auto const & [what, seconds] : {std::pair("write", writing), std::pair("read", reading)})
    lines.push_back({{"engine", each.form},
                     {"workload", each.content + "_" + what},
                     {"n", each.items},
                     {"payload", bytes.size()},
                     {"seconds", seconds},
                     {"per_op_us", seconds * 1e6 / static_cast<double>(each.items)},
                     {"copy_seconds", copying},
                     {"ratio_to_copy", seconds / copying},
                     {"memory_per_item", memory},
                     {"peak_rss", bench::PeakMemory()}});
  return lines;
}

void Print(nlohmann::json const & line) {
  double const seconds = line["seconds"];
  double const bytes = line["payload"];
  std::cerr << fmt::format("{:<22}{:<9}{:>10}{:>12.1f}{:>11.4f}{:>10.2f}{:>11.2f}x{:>12.1f}\n",
                           line["workload"].get<std::string>(), line["engine"].get<std::string>(), bytes, seconds * 1e6,
                           line["per_op_us"].get<double>(), bytes / seconds * 1e-9, line["ratio_to_copy"].get<double>(),
                           line["memory_per_item"].get<double>());
}

int Run(Settings settings) {
  if (settings.isSmoke)
    settings = {200, 1, 0, settings.out, true};
  bench::ResultLines lines(settings.out);
  std::cerr << fmt::format("{:<22}{:<9}{:>10}{:>12}{:>11}{:>10}{:>12}{:>12}\n", "workload", "form", "bytes", "us",
                           "us/item", "GB/s", "to copying", "heap/item");
  for (auto const & each : bench::AllCases(settings.n))
    for (auto const & line : Measure(each, settings)) {
      lines.Add(line);
      Print(line);
    }
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What blocks cost as bytes: a line of JSON for each measurement, a table on standard error");
  Settings settings;
  app.add_option("--n", settings.n, "Values, items or texts in each block")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--seconds", settings.seconds, "How long each measurement goes on, at least");
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_flag("--smoke", settings.isSmoke, "Few items, once: does it work?");
  return bench::RunProgram("bench_blocks", app, count, words, [&] { return Run(settings); });
}
