// bench_recovery: what the manager needs to take over the private file of a crash, as a ratio to reading, writing and
// syncing the same bytes.

#include "bench/recovery/Crash.h"
#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"
#include "bench/support/RunLoop.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <filesystem>
#include <fmt/format.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

struct Settings {
  std::vector<std::size_t> sizes = {1000, 10000, 100000};
  /// A two-port at 201 frequencies.
  std::size_t payload = 1608;
  int repeats = 3;
  std::string out;
  std::string folder;
  std::string phase;
  bool isText = false;
  bool isSmoke = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--n", settings.sizes, "Numbers of blocks")->delimiter(',')->check(CLI::PositiveNumber);
  app.add_option("--payload", settings.payload, "Doubles in each block; a two-port at 201 frequencies has 1608")
      ->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--dir", settings.folder, "The data goes into a folder in this one; else beside this program");
  app.add_flag("--text", settings.isText, "Files in text form");
  app.add_flag("--smoke", settings.isSmoke, "Few blocks, once: does it work?");
  app.add_option("--phase", settings.phase, "Runs one phase in this process")->group("");
}

int RunHere(Settings const & settings) {
  bench::CrashedDesign const design{settings.folder, settings.sizes.at(0), settings.payload, !settings.isText};
  if (settings.phase == "crash")
    bench::SolveAndDie(design);
  nlohmann::json line;
  if (settings.phase == "copy") {
    line["seconds"] = bench::CopyAndSync(design);
  } else {
    auto const recovered = bench::Recover(design);
    line = {{"seconds", recovered.seconds}, {"blocks", recovered.blocks}, {"peak_rss", bench::PeakMemory()}};
  }
  std::cout << line.dump() << '\n';
  return 0;
}

/// Runs phases in processes of their own, on copies of the files that one crash left.
class Runner {
public:
  Runner(Settings const & settings, fs::path const & root) : m_settings(settings), m_root(root) {}

  nlohmann::json Measure(std::size_t n) {
    fs::path const crashed = m_root / "crashed";
    fs::create_directories(crashed);
    bench::Require(Run("crash", n, crashed).signal == SIGKILL, "the files could not be made");
    std::vector<nlohmann::json> copies;
    std::vector<nlohmann::json> recoveries;
    auto const bytes = fs::file_size(crashed / "bench.qsol_priv");
    for (int i = 0; i < m_settings.repeats; ++i) {
      copies.push_back(RunOnCopy("copy", n, crashed));
      recoveries.push_back(RunOnCopy("recover", n, crashed));
    }
    fs::remove_all(crashed);
    double const copying = bench::MiddleOf(copies, "seconds")["seconds"];
    nlohmann::json line = bench::MiddleOf(recoveries, "seconds");
    double const seconds = line["seconds"];
    line.update({{"n", n},
                 {"bytes", bytes},
                 {"copy_seconds", copying},
                 {"ratio_to_copy", seconds / copying},
                 {"per_block_us", seconds * 1e6 / static_cast<double>(n)}});
    return line;
  }

private:
  bench::Ended Run(std::string const & phase, std::size_t n, fs::path const & folder) const {
    std::vector<std::string> arguments = {"--phase",         phase,          "--n",
                                          std::to_string(n), "--payload",    std::to_string(m_settings.payload),
                                          "--dir",           folder.string()};
    if (m_settings.isText)
      arguments.push_back("--text");
    return bench::RunSelf(arguments);
  }
  nlohmann::json RunOnCopy(std::string const & phase, std::size_t n, fs::path const & crashed) const {
    fs::path const folder = m_root / "scratch";
    fs::copy(crashed, folder);
    // What the copy left to be written must not count for the phase.
    ::sync();
    auto const ended = Run(phase, n, folder);
    fs::remove_all(folder);
    bench::Require(ended.exitCode == 0 && ended.signal == 0, "the phase " + phase + " failed");
    return nlohmann::json::parse(ended.output);
  }

  Settings const & m_settings;
  fs::path m_root;
};

void PrintTable(bench::ResultLines const & lines) {
  std::cerr << fmt::format("{:>10}{:>14}{:>12}{:>12}{:>10}{:>12}\n", "blocks", "bytes", "seconds", "us/block", "copy s",
                           "to copying");
  for (auto const & line : lines.All())
    std::cerr << fmt::format("{:>10}{:>14}{:>12.4f}{:>12.2f}{:>10.4f}{:>11.2f}x\n", line["n"].get<std::size_t>(),
                             line["bytes"].get<std::size_t>(), line["seconds"].get<double>(),
                             line["per_block_us"].get<double>(), line["copy_seconds"].get<double>(),
                             line["ratio_to_copy"].get<double>());
  std::cerr << fmt::format("a block costs {:.2f} times as much at the largest size as at the smallest\n",
                           lines.GrowthOf("per_block_us"));
}

int RunAll(Settings settings) {
  if (settings.isSmoke) {
    settings.sizes = {200, 400};
    settings.repeats = 1;
  }
  bench::DataFolder const folder(settings.folder);
  bench::ResultLines lines(settings.out);
  Runner runner(settings, folder.Path());
  for (auto const n : settings.sizes)
    lines.Add(runner.Measure(n));
  PrintTable(lines);
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What a recovery costs: a line of JSON for each size, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_recovery", app, count, words,
                           [&] { return settings.phase.empty() ? RunAll(settings) : RunHere(settings); });
}
