#pragma once

#include "basekit/io/CBlock_ptr.h"

#include <string>
#include <vector>

namespace io {
class CBlock;
class CBlock_item;
} // namespace io

namespace qsol {

/// One place where two trees differ.  An item stands in one of them alone, a value in both, unlike; null is nothing
/// there.
struct Difference {
  /// "Ports/Port[2]/Z0": names from the top; numbers count from 1, among items of the same name and kind or among
  /// the arguments without a name.
  std::string path;
  io::CBlock_ptr<io::CBlock_item> a;
  io::CBlock_ptr<io::CBlock_item> b;
  /// The same children stand in another order; neither item is given.
  bool isOrder = false;

  /// A line without its end; a long item is shortened.
  std::string Text() const;
};

/// In the order of the trees; empty when both have the same text form.
std::vector<Difference> DifferencesOf(io::CBlock const & a, io::CBlock const & b);

} // namespace qsol
