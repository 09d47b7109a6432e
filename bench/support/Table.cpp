#include "bench/support/Table.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

namespace bench {

namespace {

using Key = std::tuple<std::string, std::string, std::size_t>;

struct Results {
  std::map<Key, nlohmann::json> byKey;
  std::vector<std::string> engines;
  std::vector<std::string> workloads;
  std::set<std::size_t> sizes;

  explicit Results(std::vector<nlohmann::json> const & lines) {
    for (auto const & line : lines) {
      auto const engine = line["engine"].get<std::string>();
      auto const workload = line["workload"].get<std::string>();
      auto const n = line["n"].get<std::size_t>();
      byKey[{engine, workload, n}] = line;
      sizes.insert(n);
      Note(engines, engine);
      Note(workloads, workload);
    }
  }
  static void Note(std::vector<std::string> & names, std::string const & name) {
    if (std::ranges::find(names, name) == names.end())
      names.push_back(name);
  }
  /// Microseconds of one operation; negative when there is no result.
  double PerOp(std::string const & engine, std::string const & workload, std::size_t n) const {
    auto const at = byKey.find({engine, workload, n});
    return at == byKey.end() ? -1 : at->second.value("per_op_us", -1.0);
  }
  // Not every engine does everything.
  bool Has(std::string const & engine, std::string const & workload) const {
    return std::ranges::any_of(sizes, [&](auto n) { return byKey.contains({engine, workload, n}); });
  }
  bool Stopped(std::string const & engine, std::string const & workload, std::size_t n) const {
    auto const at = byKey.find({engine, workload, n});
    return at != byKey.end() && at->second.contains("stopped");
  }
};

std::string Ratio(double value, double base) {
  return value < 0 || base <= 0 ? std::string("-") : fmt::format("{:.2f}x", value / base);
}

} // namespace

std::string TableOf(std::vector<nlohmann::json> const & lines, std::string const & baseline) {
  Results const results(lines);
  std::string out = fmt::format("{:<15}{:<16}", "workload", "engine");
  for (auto const n : results.sizes)
    out += fmt::format("{:>18}{:>9}", fmt::format("us/op, n={}", n), "ratio");
  out += fmt::format("{:>9}\n", "growth");
  for (auto const & workload : results.workloads)
    for (auto const & engine : results.engines) {
      if (!results.Has(engine, workload))
        continue;
      out += fmt::format("{:<15}{:<16}", workload, engine);
      for (auto const n : results.sizes) {
        double const us = results.PerOp(engine, workload, n);
        auto const * const mark = results.Stopped(engine, workload, n) ? "*" : "";
        out += fmt::format("{:>18}{:>9}", us < 0 ? std::string("failed") : fmt::format("{:.3f}{}", us, mark),
                           Ratio(us, results.PerOp(baseline, workload, n)));
      }
      out += fmt::format("{:>9}\n", Ratio(results.PerOp(engine, workload, *results.sizes.rbegin()),
                                          results.PerOp(engine, workload, *results.sizes.begin())));
    }
  if (std::ranges::any_of(lines, [](auto const & line) { return line.contains("stopped"); }))
    out += "* stopped at the time limit; the figure is that of what was done until then\n";
  return out;
}

} // namespace bench
