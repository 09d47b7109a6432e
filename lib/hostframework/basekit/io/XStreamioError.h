#pragma once

#include <stdexcept>

namespace io {

/// Malformed input met by the stream operations that say they throw; manipulators catch it.
class XStreamioError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace io
