// bench_model: what questions to a solution cost, by the number of its variations.

#include "bench/model/Operations.h"
#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"
#include "solutionmanager/model/BaseSolution.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <unistd.h>
#include <unordered_map>

namespace {

struct Settings {
  std::vector<std::size_t> sizes = {1000, 100000, 1000000};
  std::size_t calls = 20000;
  int repeats = 5;
  std::size_t libraryLimit = 100000;
  std::vector<std::string> operations;
  std::string out;
  std::string folder;
  bool isRandom = false;
  bool isCold = false;
  bool isSmoke = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--n", settings.sizes, "Numbers of variations")->delimiter(',')->check(CLI::PositiveNumber);
  app.add_option("--calls", settings.calls, "Calls of an operation in one measurement")->check(CLI::PositiveNumber);
  app.add_option("--repeat", settings.repeats, "Measurements of each operation; the one in the middle counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--library-limit", settings.libraryLimit, "Beyond this number no data goes into a library");
  app.add_option("--operation", settings.operations, "These operations only")->delimiter(',');
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_option("--dir", settings.folder, "The library goes into a folder in this one; else beside this program");
  app.add_flag("--random", settings.isRandom, "Variations are asked for at random, not as they follow each other");
  app.add_flag("--cold", settings.isCold,
               "No variation is asked for twice before other work took its place in the processor's caches");
  app.add_flag("--smoke", settings.isSmoke, "Few variations, once: does it work?");
}

/// Which variations are asked for: some that follow each other, as a sweep has them, or at random, where no cache
/// helps; the same in every run.
std::vector<std::size_t> Picks(std::size_t n, std::size_t count, bool isRandom) {
  std::mt19937_64 random(42);
  std::vector<std::size_t> picks(count);
  std::ranges::generate(picks, [&, next = n / 2]() mutable { return (isRandom ? random() : next++) % n; });
  return picks;
}

/// Other work: when it is done, the processor's caches hold nothing else.
class OtherWork {
public:
  void Do() {
    m_memory.resize(kMoreThanCaches);
    for (std::size_t at = 0; at < m_memory.size(); at += kLine)
      ++m_memory[at];
  }

private:
  static constexpr std::size_t kLine = 64;
  static constexpr std::size_t kMoreThanCaches = 192 << 20;
  std::vector<unsigned char> m_memory;
};

class Series {
public:
  Series(Settings const & settings, bench::ResultLines & lines) : m_settings(settings), m_lines(lines) {}

  void Run(std::string const & folder, std::size_t n, bench::DataPlace place) {
    std::filesystem::create_directories(folder);
    bench::Model model(folder, n, place);
    m_engine = place == bench::DataPlace::Memory ? "memory" : "library";
    m_n = n;
    m_bytes = model.BytesPerVariation();
    MeasureBaseline(model);
    auto operations = bench::AllOperations(model);
    MeasureAll(operations, "");
    model.Solution().Invalidate(nullptr, -1);
    MeasureAll(operations, "_stale");
  }

  void PrintTable() const;

private:
  using Key = std::pair<std::string, std::string>;

  // Equal work without a model: the text of a variation is looked up in the container that is made for it.
  void MeasureBaseline(bench::Model const & model) {
    std::unordered_map<std::wstring, std::size_t> plain;
    for (std::size_t i = 0; i < m_n; ++i)
      plain.emplace(model.Texts()[i].View(), i);
    std::size_t found = 0;
    Measure({"plain_hash_map", [&](std::size_t i) { found += plain.count(std::wstring(model.Texts()[i].View())); }},
            "");
    bench::Require(found > 0, "the baseline finds nothing");
  }

  void MeasureAll(std::vector<bench::Operation> const & operations, std::string const & suffix) {
    for (auto const & operation : operations)
      if (m_settings.operations.empty() || std::ranges::count(m_settings.operations, operation.name))
        Measure(operation, suffix);
  }

  void Measure(bench::Operation const & operation, std::string const & suffix) {
    std::size_t const calls = operation.items > 1 ? std::max<std::size_t>(1, m_settings.calls / operation.items)
                              : operation.isLong  ? std::max<std::size_t>(1, m_settings.calls / 20)
                                                  : m_settings.calls;
    auto const picks = Picks(m_n, calls, m_settings.isRandom);
    std::vector<double> seconds;
    for (int repeat = 0; repeat < m_settings.repeats; ++repeat)
      seconds.push_back(SecondsOf(operation, picks));
    std::ranges::sort(seconds);
    double const middle = seconds[seconds.size() / 2];
    double const perItem = middle * 1e6 / static_cast<double>(calls * operation.items);
    Note({m_engine, operation.name + suffix}, perItem);
    m_lines.Add({{"engine", m_engine},
                 {"workload", operation.name + suffix},
                 {"n", m_n},
                 {"order", m_settings.isRandom ? "random" : "sweep"},
                 {"caches", m_settings.isCold ? "cold" : "warm"},
                 {"operations", calls},
                 {"items_per_operation", operation.items},
                 {"seconds", middle},
                 {"per_op_us", perItem},
                 {"ratio_to_plain_hash_map", perItem / m_figures.at({m_engine, "plain_hash_map"}).at(m_n)},
                 {"memory_per_variation", m_bytes},
                 {"peak_rss", bench::PeakMemory()}});
  }

  double SecondsOf(bench::Operation const & operation, std::vector<std::size_t> const & picks) {
    std::size_t const round = m_settings.isCold ? std::min(m_n, picks.size()) : picks.size();
    double seconds = 0.0;
    for (std::size_t begin = 0; begin < picks.size(); begin += round) {
      if (m_settings.isCold)
        m_otherWork.Do();
      double const before = bench::ProcessorSeconds();
      for (std::size_t i = begin; i < std::min(begin + round, picks.size()); ++i)
        operation.call(picks[i]);
      seconds += bench::ProcessorSeconds() - before;
    }
    return seconds;
  }

  void Note(Key const & key, double perItem) {
    if (!m_figures.contains(key))
      m_order.push_back(key);
    m_figures[key][m_n] = perItem;
    m_bytesBySize[m_n] = m_bytes;
  }

  Settings const & m_settings;
  bench::ResultLines & m_lines;
  OtherWork m_otherWork;
  std::string m_engine;
  std::size_t m_n = 0;
  std::size_t m_bytes = 0;
  std::vector<Key> m_order;
  std::map<Key, std::map<std::size_t, double>> m_figures;
  std::map<std::size_t, std::size_t> m_bytesBySize;
};

void Series::PrintTable() const {
  std::cerr << fmt::format("{:<30}{:<9}", "operation", "data in");
  for (auto const & [n, bytes] : m_bytesBySize)
    std::cerr << fmt::format("{:>16}{:>9}", fmt::format("us, n={}", n), "growth");
  std::cerr << '\n';
  for (auto const & key : m_order) {
    auto const & figures = m_figures.at(key);
    std::cerr << fmt::format("{:<30}{:<9}", key.second, key.first);
    for (auto const & [n, perItem] : figures)
      std::cerr << fmt::format("{:>16.4f}{:>8.2f}x", perItem, perItem / figures.begin()->second);
    std::cerr << '\n';
  }
  std::cerr << "all_...: of one variation of the many that one call goes over\n";
  for (auto const & [n, bytes] : m_bytesBySize)
    std::cerr << fmt::format("{} bytes of heap per variation at n={}\n", bytes, n);
}

int Run(Settings settings) {
  if (settings.isSmoke) {
    settings.sizes = {100, 200};
    settings.repeats = 1;
    settings.calls = 100;
  }
  bench::DataFolder const folder(settings.folder);
  bench::ResultLines lines(settings.out);
  Series series(settings, lines);
  for (auto const place : {bench::DataPlace::Memory, bench::DataPlace::Library})
    for (auto const n : settings.sizes)
      if (place == bench::DataPlace::Memory || n <= settings.libraryLimit)
        series.Run(folder.Path() + "/" + std::to_string(n) + (place == bench::DataPlace::Memory ? "m" : "l"), n, place);
  series.PrintTable();
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What questions to a solution cost: a line of JSON for each measurement, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_model", app, count, words, [&] { return Run(settings); });
}
