#pragma once

#include <stdexcept>
#include <string>

namespace command {

/// What is wrong with a solver file, a template or a run: one line that names place, thing and remedy.  A NUL byte,
/// which would end the text, stands in it as \0.
class SourceError : public std::runtime_error {
public:
  explicit SourceError(std::string const & problem) : std::runtime_error(WithoutNul(problem)) {}
  /// "FILE:LINE: problem"; without a line for 0.
  SourceError(std::string const & file, int line, std::string const & problem)
      : SourceError(file + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + problem) {}

private:
  static std::string WithoutNul(std::string text) {
    for (std::size_t at = text.find('\0'); at != std::string::npos; at = text.find('\0', at))
      text.replace(at, 1, "\\0");
    return text;
  }
};

} // namespace command
