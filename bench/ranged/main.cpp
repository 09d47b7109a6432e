// bench_ranged: nanoseconds a sample of every ranged function at growing lengths, beside adding up the same column.

#include "bench/ranged/Trials.h"
#include "bench/support/Measure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <iostream>
#include <numeric>

namespace {

struct Settings {
  std::vector<std::size_t> sizes = {10000, 1000000};
  std::vector<std::string> functions;
  int repeats = 5;
  bool isSmoke = false;
};

/// Keeps the result of what is measured from being left out.
volatile double s_sink = 0.0;

/// The run in the middle, in nanoseconds a sample; short runs are repeated until they last.
template <class Work> double NanosecondsEach(std::size_t samples, int repeats, Work work) {
  std::size_t const rounds = std::max<std::size_t>(1, 1000000 / samples);
  std::vector<double> seconds;
  for (int i = 0; i < repeats; ++i) {
    double const before = bench::ProcessorSeconds();
    for (std::size_t round = 0; round < rounds; ++round)
      s_sink = work();
    seconds.push_back(bench::ProcessorSeconds() - before);
  }
  std::ranges::sort(seconds);
  return seconds[seconds.size() / 2] * 1e9 / static_cast<double>(samples * rounds);
}

double Measured(val::RangedFunction const & function, std::size_t samples, int repeats) {
  bench::RangedTrial const trial = bench::TrialOf(function, samples);
  return NanosecondsEach(samples, repeats, [&] {
    return trial.complex.empty() ? val::Measure(function, val::RangedTrace(trial.x, trial.y), trial.parameters)
                                 : val::Measure(function, val::RangedTrace(trial.x, trial.complex), trial.parameters);
  });
}

double Baseline(std::size_t samples, int repeats) {
  std::vector<double> const column(samples, 1.5);
  return NanosecondsEach(samples, repeats, [&] { return std::accumulate(column.begin(), column.end(), 0.0); });
}

void Run(Settings const & settings) {
  std::vector<double> baselines;
  fmt::print("{:<16}", "ns a sample");
  for (std::size_t const size : settings.sizes) {
    baselines.push_back(Baseline(size, settings.repeats));
    fmt::print("{:>12}{:>9}", size, "ratio");
  }
  fmt::print("{:>9}\n{:<16}", "growth", "add up");
  for (double const baseline : baselines)
    fmt::print("{:>12.2f}{:>9.2f}", baseline, 1.0);
  fmt::print("\n");
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    std::string const name(function.name.begin(), function.name.end());
    if (!settings.functions.empty() && std::ranges::find(settings.functions, name) == settings.functions.end())
      continue;
    fmt::print("{:<16}", name);
    std::vector<double> costs;
    for (std::size_t i = 0; i < settings.sizes.size(); ++i) {
      costs.push_back(Measured(function, settings.sizes[i], settings.repeats));
      fmt::print("{:>12.2f}{:>9.2f}", costs.back(), costs.back() / baselines[i]);
    }
    fmt::print("{:>9.2f}\n", costs.back() / costs.front());
  }
}

} // namespace

int main(int count, char ** words) {
  Settings settings;
  CLI::App app("What ranged functions cost a sample; growth is the cost at the last length against the first.");
  app.add_option("--n", settings.sizes, "Lengths of the traces")->delimiter(',')->check(CLI::Range(100, 100000000));
  app.add_option("--function", settings.functions, "These alone")->delimiter(',');
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_flag("--smoke", settings.isSmoke, "Short traces, once: does it work?");
  CLI11_PARSE(app, count, words);
  if (settings.isSmoke) {
    settings.sizes = {100, 1000};
    settings.repeats = 1;
  }
  Run(settings);
  return 0;
}
