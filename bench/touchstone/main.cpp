// bench_touchstone: what importing a Touchstone file costs beside scikit-rf's reading of the same file, a plain loop of
// std::from_chars over the same text, and reading its bytes.

#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"
#include "bench/support/RunLoop.h"
#include "bench/touchstone/Files.h"
#include "bench/touchstone/Reference.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

constexpr int kMostReferenceReadings = 3; // each takes seconds

struct Settings {
  std::vector<std::string> cases;
  double megabytes = 200;
  int repeats = 5;
  std::string folder;
  std::string out;
  std::string importAlone;
  bool isSmoke = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--case", settings.cases, "These files only")->delimiter(',');
  app.add_option("--megabytes", settings.megabytes, "Size of each file, in 1e6 bytes")->check(CLI::Range(0.01, 10000.));
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--dir", settings.folder, "Where the files are made for the time of the run; else beside the program");
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--import-alone", settings.importAlone, "Imports a file and prints the peak of memory")->group("");
  app.add_flag("--smoke", settings.isSmoke, "Small files, once: does it work?");
}

double Middle(std::vector<double> & values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

template <class Action> void Time(std::vector<double> & seconds, Action const & action) {
  double const before = bench::ProcessorSeconds();
  action();
  seconds.push_back(bench::ProcessorSeconds() - before);
}

std::size_t NumbersOf(rf::TouchstoneData const & data) {
  std::size_t const ports = data.network.Ports();
  return data.network.frequencies.size() * (1 + 2 * ports * ports);
}

/// What the points need, however they are read.
std::uint64_t BytesOfResult(rf::TouchstoneData const & data) {
  std::size_t const ports = data.network.Ports();
  return data.network.frequencies.size() * (8 + sizeof(rf::SMatrix) + 16 * ports * ports);
}

int ImportAlone(std::string const & path) {
  std::uint64_t const before = bench::PeakMemory();
  auto const data = rf::ReadTouchstone(path);
  nlohmann::json const line{{"bytes_of_result", BytesOfResult(data)}, {"peak", bench::PeakMemory() - before}};
  std::cout << line.dump() << '\n';
  return 0;
}

nlohmann::json Measure(bench::FileCase const & fileCase, std::string const & path, int repeats) {
  std::vector<double> imports;
  std::vector<double> loops;
  std::vector<double> readings;
  std::uint64_t bytes = 0;
  std::size_t numbers = 0;
  for (int repeat = 0; repeat < repeats; ++repeat) {
    Time(readings, [&] { bytes = bench::BytesRead(path, 256 * 1024); });
    {
      std::string const text = bench::TextOf(path);
      Time(loops, [&] {
        auto const sum = bench::SumOfNumbers(text);
        bench::Require(std::isfinite(sum.sum), "the numbers are not finite");
        numbers = sum.numbers;
      });
    }
    Time(imports, [&] {
      auto const data = rf::ReadTouchstone(path);
      bench::Require(data.facts.bytes == bytes, "not all bytes were read");
      bench::Require(NumbersOf(data) == numbers || repeat == 0, "not all numbers were read");
    });
  }
  double const seconds = Middle(imports);
  double const loop = Middle(loops);
  double const reading = Middle(readings);
  return {{"workload", fileCase.name},
          {"bytes", bytes},
          {"numbers", numbers},
          {"seconds", seconds},
          {"from_chars_seconds", loop},
          {"bytes_seconds", reading},
          {"ratio_to_from_chars", seconds / loop},
          {"ratio_to_bytes", seconds / reading},
          {"megabytes_a_second", static_cast<double>(bytes) / seconds * 1e-6}};
}

bool IsNear(double a, double b) { return std::abs(a - b) <= 1e-9 * std::abs(b); }

/// How many times as fast an import is as the referee's reading, which has to give the same; nothing without a referee.
void AddReference(nlohmann::json & line, bench::Reference const * reference, std::string const & path, int repeats) {
  line["reference_seconds"] = nullptr;
  line["times_as_fast"] = nullptr;
  if (!reference)
    return;
  auto const data = rf::ReadTouchstone(path);
  auto const & network = data.network;
  std::size_t const last = network.Ports() - 1;
  std::vector<double> readings;
  for (int repeat = 0; repeat < std::min(repeats, kMostReferenceReadings); ++repeat) {
    auto const reading = reference->Read(path);
    bench::Require(reading.points == network.frequencies.size() &&
                       IsNear(reading.lastFrequency, network.frequencies.back()) &&
                       IsNear(reading.lastValue, network.matrices.back()(last, last).real()),
                   "scikit-rf read something else");
    readings.push_back(reading.seconds);
  }
  double const seconds = Middle(readings);
  line["reference_seconds"] = seconds;
  line["times_as_fast"] = seconds / line["seconds"].get<double>();
}

std::string ReferenceText(nlohmann::json const & line) {
  if (line["reference_seconds"].is_null())
    return fmt::format("{:>10}{:>10}", "-", "-");
  return fmt::format("{:>10.3f}{:>9.1f}x", line["reference_seconds"].get<double>(),
                     line["times_as_fast"].get<double>());
}

void AddMemory(nlohmann::json & line, std::string const & path) {
  auto const ended = bench::RunSelf({"--import-alone", path});
  bench::Require(ended.exitCode == 0 && ended.signal == 0, "the import in a process of its own failed");
  auto const memory = nlohmann::json::parse(ended.output);
  line["bytes_of_result"] = memory["bytes_of_result"];
  line["peak_memory"] = memory["peak"];
}

int Run(Settings settings) {
  if (!settings.importAlone.empty())
    return ImportAlone(settings.importAlone);
  if (settings.isSmoke) {
    settings.repeats = 1;
    settings.megabytes = 0.2;
  }
  bench::ResultLines lines(settings.out);
  bench::DataFolder const folder(settings.folder);
  bench::Reference const reference;
  std::cerr << fmt::format("{:<24}{:>8}{:>10}{:>10}{:>10}{:>10}{:>14}{:>12}{:>12}{:>12}\n", "file", "MB", "import s",
                           "MB/s", "skrf s", "as fast", "to from_chars", "to bytes", "result MB", "peak MB");
  for (auto const & fileCase : bench::FileCases()) {
    if (!settings.cases.empty() && std::ranges::count(settings.cases, fileCase.name) == 0)
      continue;
    auto const path = bench::MakeFile(folder.Path(), fileCase, static_cast<std::uint64_t>(settings.megabytes * 1e6));
    auto line = Measure(fileCase, path, settings.repeats);
    // Starting Python takes longer than all else of a smoke test, so once is enough there.
    bool const isCompared = reference.IsThere() && (!settings.isSmoke || lines.All().empty());
    AddReference(line, isCompared ? &reference : nullptr, path, settings.repeats);
    AddMemory(line, path);
    lines.Add(line);
    std::cerr << fmt::format("{:<24}{:>8.1f}{:>10.3f}{:>10.0f}{}{:>13.2f}x{:>11.1f}x{:>12.1f}{:>12.1f}\n",
                             fileCase.name, line["bytes"].get<double>() * 1e-6, line["seconds"].get<double>(),
                             line["megabytes_a_second"].get<double>(), ReferenceText(line),
                             line["ratio_to_from_chars"].get<double>(), line["ratio_to_bytes"].get<double>(),
                             line["bytes_of_result"].get<double>() * 1e-6, line["peak_memory"].get<double>() * 1e-6);
    std::filesystem::remove(path);
  }
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What importing Touchstone files costs: a line of JSON for each file, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_touchstone", app, count, words, [&] { return Run(settings); });
}
