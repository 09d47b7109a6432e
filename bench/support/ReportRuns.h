#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace bench {

/// What every benchmark of reports is told on its command line.
struct RunWords {
  int repeats = 5;
  bool isSmoke = false;
  bool isJson = false;
  std::string folder;

  void Declare(CLI::App & app);
};

/// Seconds of processor that the work takes: what other programs do meanwhile doesn't count, nor does waiting for a
/// disk.
double SecondsOf(std::function<void()> const & work);

/// Seconds of the shortest of so many runs of each.  The runs are taken in turns, so that all meet the same machine:
/// what it does besides in one minute it does to all of them.
std::vector<double> ShortestInTurns(int repeats, std::vector<std::function<double()>> const & runs);

/// Results as they come: one JSON object a line, or columns that people read.
class ResultTable {
public:
  struct Column {
    char const * title;
    char const * key;
    int width = 10;    ///< below 0: of texts, which stand on the left
    int precision = 0; ///< of numbers that are not whole
  };

  ResultTable(std::vector<Column> columns, bool isJson);
  /// A member without a column is for programs alone.
  void Add(nlohmann::json const & line);

private:
  std::vector<Column> m_columns;
  bool m_isJson;
};

} // namespace bench
