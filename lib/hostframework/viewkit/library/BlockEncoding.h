#pragma once

#include "viewkit/library/CStreamioLibrary.h"

#include <string>
#include <vector>

namespace library {

/// How blocks become bytes.
struct Encoding {
  bool isBinary = false;
  int precision = 16;
};

/// Appends the block's bytes; a failure is told in `error` and leaves the payload as it was.
CStreamioLibrary::LibIOReturn EncodeBlock(io::CBlock const & block, Encoding const & encoding, std::string & payload,
                                          AString & error);
/// The child blocks; other children are reported by an assertion and left out.
std::vector<io::CBlock const *> ChildBlocks(io::CBlock const & parent);

} // namespace library
