#pragma once

#include "basekit/text/AString.h"
#include "basekit/text/Utf8.h"

#include <stdexcept>

namespace desktop {

/// Why a request of a user can't be met.  Programs turn it into one line on stderr and an exit code; the numbers are
/// the exit codes.
enum class ErrorKind : int {
  kFailed = 1,         ///< anything without a kind of its own
  kUsage = 2,          ///< the words of the request make no sense: unknown names, bad numbers
  kProject = 3,        ///< the project is missing, unreadable, damaged, of another version, or there already
  kSource = 4,         ///< the netlist or template can't be read or makes no sense
  kSolve = 5,          ///< at least one point could not be solved
  kLocked = 6,         ///< another process has the project
  kStorage = 7,        ///< results could not be stored: full disk, no permission
  kInterrupted = 8     ///< stopped by the user; what was solved is kept
};

/// The text names the thing, says what is wrong with it and what to do about it, in one line.
class Error : public std::runtime_error {
public:
  Error(ErrorKind kind, AString const & text) : std::runtime_error(text::ToUtf8(text)), m_kind(kind) {}
  ErrorKind Kind() const { return m_kind; }

private:
  ErrorKind m_kind;
};

} // namespace desktop
