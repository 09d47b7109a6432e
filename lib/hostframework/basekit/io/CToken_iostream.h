#pragma once

#include "basekit/io/CToken_istream.h"

namespace io {

/// Reads a file that is in use as a store: the same reading, of the state at the opening.
class CToken_iostream : public CToken_istream {
public:
  using CToken_istream::CToken_istream;
};

} // namespace io
