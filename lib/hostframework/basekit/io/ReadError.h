#pragma once

namespace io {

/// Result of a read.  Zero is success; which of the others a caller may ignore is told where it reads.
enum ReadError : int {
  kNoDefinition = -1, ///< what should be read into does not exist
  kNoError = 0,
  kWarning = 1, ///< read, with something amiss
  kNotFound = 2,
  kBadContent = 3 ///< found, but of a form that does not fit
};

/// Accumulates results: the first that is not kNoError stays.
class CReadError {
public:
  CReadError(ReadError first = kNoError) : m_result(first) {}
  CReadError & operator+=(ReadError const & further) {
    if (m_result == kNoError)
      m_result = further;
    return *this;
  }
  operator ReadError() const { return m_result; }

private:
  ReadError m_result;
};

} // namespace io
