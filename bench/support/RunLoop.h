#pragma once

#include <fstream>
#include <functional>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace bench {

/// Results as they come, one JSON object a line: into the file of the name, or to standard output without one.
class ResultLines {
public:
  explicit ResultLines(std::string const & file);

  void Add(nlohmann::json line);
  std::vector<nlohmann::json> const & All() const { return m_lines; }
  /// How many times as much the number of the last line is as that of the first one.
  double GrowthOf(char const * number) const;
  /// 1 when a line could not be written.
  int ExitCode() const;

private:
  std::ofstream m_file;
  std::ostream & m_out;
  std::vector<nlohmann::json> m_lines;
};

/// A folder for the data of a run, inside the given one or beside this program; gone at the end.
class DataFolder {
public:
  explicit DataFolder(std::string const & parent);
  ~DataFolder();
  DataFolder(DataFolder const &) = delete;
  DataFolder & operator=(DataFolder const &) = delete;

  std::string const & Path() const { return m_path; }

private:
  std::string m_path;
};

/// The run whose number is in the middle.
nlohmann::json MiddleOf(std::vector<nlohmann::json> runs, char const * number);

/// Reads the words of the command line and runs; what fails is told with the program's name.
int RunProgram(char const * name, CLI::App & app, int count, char ** words, std::function<int()> const & run);

} // namespace bench
