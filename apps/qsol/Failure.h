#pragma once

#include <stdexcept>
#include <string>

namespace qsol {

enum class Exit : int {
  Done = 0,
  /// Something is damaged, or what was asked for is not there.
  Failed = 1,
  Usage = 2,
  /// Missing, or the system refuses to read it.
  Unreadable = 3,
  NoLibrary = 4,
  LaterFormat = 5,
};

/// Why a verb can't do its work: one line that names the thing and the remedy, and the exit code.
class Failure : public std::runtime_error {
public:
  Failure(Exit code, std::string const & text) : std::runtime_error(text), m_code(code) {}
  Exit Code() const { return m_code; }

private:
  Exit m_code;
};

} // namespace qsol
