#pragma once

#include "basekit/text/AString.h"

namespace file {

/// The result of a file operation: success, or the system's error number with a text that names the operation and
/// the path ("cannot write /a/b.qsol: No space left on device").
class [[nodiscard]] FileStatus {
public:
  FileStatus() = default;
  FileStatus(int error, AString const & text) : m_error(error), m_text(text) {}

  bool Ok() const { return m_error == 0; }
  explicit operator bool() const { return Ok(); }
  /// An errno value; 0 is success.
  int Error() const { return m_error; }
  AString const & Text() const { return m_text; }

private:
  int m_error = 0;
  AString m_text;
};

} // namespace file
