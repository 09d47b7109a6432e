#pragma once

#include "basekit/io/CBlock_func.h"
#include "basekit/text/AString.h"

class SetupConvDef;
namespace rf {
struct SweepPass;
}

namespace rfcircuit {

/// The convergence columns of an adaptive sweep: pass, points solved so far, points of the sweep, largest change of any
/// S-parameter (a gap in the first pass), whether all matrices are passive.
struct SweepColumns {
  static AString const kPass;
  static AString const kChange;

  /// New, for a manager, which owns it.
  static SetupConvDef const * MakeDefinitions();
  /// The values of a pass under the tokens of the columns.
  static io::CBlock_ptr<io::CBlock_func> RowOf(rf::SweepPass const & pass);
};

} // namespace rfcircuit
