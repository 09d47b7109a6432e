#pragma once

#include "apps/qsol/Catalogue.h"
#include "apps/qsol/OpenLibrary.h"

#include <string>
#include <vector>

namespace qsol {

/// What a thorough look at a library found.  Every record is checked against its checksums, every block that is shown
/// is read whole, the name map is compared with the blocks.
struct Verification {
  struct Problem {
    AString file;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    std::string what;
    /// The name that the damaged record bears, where that can be told.
    AString name;
    /// Shown blocks that can't be read for it.
    std::vector<Block const *> lost;
    /// Shown blocks whose content is whole all the same: the index tells their places and checksums.
    std::vector<Block const *> good;
  };
  std::vector<Problem> problems;
  /// No damage, but worth to know.
  std::vector<std::string> remarks;
  std::vector<Block const *> unmapped;
  std::size_t wholeRecords = 0;
  std::size_t goodBlocks = 0;
  std::size_t lostBlocks = 0;
  /// Bytes behind what counts, of either file.
  std::uint64_t publicTail = 0;
  std::uint64_t privateTail = 0;

  bool IsFine() const { return problems.empty(); }
};

/// The blocks belong to the catalogue.  A private file that belongs elsewhere is checked too, unless the committed
/// state alone is asked for.
Verification Verify(OpenedLibrary & opened, Catalogue const & catalogue, bool committedOnly);

} // namespace qsol
