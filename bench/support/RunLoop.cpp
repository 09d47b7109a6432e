#include "bench/support/RunLoop.h"

#include "bench/support/Measure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <unistd.h>

namespace bench {

ResultLines::ResultLines(std::string const & file) : m_out(file.empty() ? std::cout : m_file) {
  if (!file.empty())
    m_file.open(file);
}

void ResultLines::Add(nlohmann::json line) {
  m_lines.push_back(std::move(line));
  m_out << m_lines.back().dump() << std::endl;
}

double ResultLines::GrowthOf(char const * number) const {
  return m_lines.back().at(number).get<double>() / m_lines.front().at(number).get<double>();
}

int ResultLines::ExitCode() const { return m_out ? 0 : 1; }

DataFolder::DataFolder(std::string const & parent) {
  std::filesystem::path const where =
      parent.empty() ? std::filesystem::canonical("/proc/self/exe").parent_path() : std::filesystem::path(parent);
  m_path = (where / "bench-data-XXXXXX").string();
  Require(::mkdtemp(m_path.data()) != nullptr, "cannot make the folder " + m_path);
}

DataFolder::~DataFolder() {
  std::error_code ignored; // whoever finds it may remove it
  std::filesystem::remove_all(m_path, ignored);
}

nlohmann::json MiddleOf(std::vector<nlohmann::json> runs, char const * number) {
  std::ranges::sort(runs, {}, [number](nlohmann::json const & run) { return run.at(number).get<double>(); });
  return runs[runs.size() / 2];
}

int RunProgram(char const * name, CLI::App & app, int count, char ** words, std::function<int()> const & run) {
  CLI11_PARSE(app, count, words);
  try {
    return run();
  } catch (std::exception const & failure) {
    std::cerr << name << ": " << failure.what() << '\n';
    return 1;
  }
}

} // namespace bench
