#pragma once

#include "basekit/io/ReadError.h"

namespace io {
class CBlock;
}

/// What a solution solved.
class ISolutionDefinition {
public:
  virtual bool operator==(ISolutionDefinition const & other) const = 0;
  /// reading true: from the block into this object.
  virtual io::ReadError DoDataExchange(io::CBlock & block, bool reading) = 0;
  virtual ~ISolutionDefinition() = default;
};
