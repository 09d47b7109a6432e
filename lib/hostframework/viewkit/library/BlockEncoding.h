#pragma once

#include "viewkit/library/LibraryState.h"

namespace library {

/// How blocks become bytes.
struct Encoding {
  bool isBinary = false;
  int precision = 16;
};

LibIOReturn EncodeOne(io::CBlock const & block, Encoding const & encoding, std::vector<EncodedBlock> & blocks,
                      AString & error);
/// Every child block; other children are reported by an assertion and left out.
LibIOReturn EncodeChildren(io::CBlock const & parent, Encoding const & encoding, std::vector<EncodedBlock> & blocks,
                           AString & error);

} // namespace library
