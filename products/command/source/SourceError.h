#pragma once

#include <stdexcept>
#include <string>

namespace command {

/// What is wrong with a solver file, a template or a run: one line that names place, thing and remedy.
class SourceError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
  /// "FILE:LINE: problem"; without a line for 0.
  SourceError(std::string const & file, int line, std::string const & problem)
      : std::runtime_error(file + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + problem) {}
};

} // namespace command
