#pragma once

#include "apps/qsol/Catalogue.h"

#include <utility>
#include <vector>

namespace qsol {

/// Which blocks of two libraries stand for the same thing.  Names that a library generates mean nothing in another
/// one, so blocks are paired by their real names where they have one; packed keys may be spelled in another way.  The
/// name map itself is left out: it is how the blocks got their real names.  Where one side has no map that can be read,
/// as a private file by itself may, the names in the libraries must do.
struct BlockPairs {
  BlockPairs(Catalogue const & a, Catalogue const & b);

  std::vector<std::pair<Block const *, Block const *>> both;
  std::vector<Block const *> onlyInA;
  std::vector<Block const *> onlyInB;
};

} // namespace qsol
