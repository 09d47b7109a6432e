#pragma once

#include "basekit/file/LongFileName.h"

#include <cstdint>

namespace desktop {

/// The files of a solution library as they are before a takeover.  One that fails leaves the private file closed in
/// order, as if somebody had looked at its work; PutBack makes it again what the crash left.
class LibraryLengths {
public:
  explicit LibraryLengths(AString const & libraryPath);
  /// Does nothing when the library's public file changed, as the work is part of it by then.
  void PutBack() const;

private:
  LongFileName m_public;
  LongFileName m_private;
  std::uint64_t m_publicLength;
  std::uint64_t m_privateLength;
};

} // namespace desktop
