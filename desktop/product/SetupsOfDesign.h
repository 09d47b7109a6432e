#pragma once

#include "basekit/id/Id.h"
#include "basekit/text/AString.h"

#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

/// What a design's block says of one solution or setup, before any object is made from it.
struct SolutionOfDesign {
  long id = id::invalidID;
  AString name;
  long version = id::invalidID; ///< invalid when the block tells none
};
struct SetupOfDesign {
  long id = id::invalidID;
  AString typeName;
  AString name;
  long version = id::invalidID;
  std::vector<SolutionOfDesign> solutions;
};

/// The setups of a design's block in its order.  A setup or solution without a valid ID is left out.
std::vector<SetupOfDesign> SetupsOfDesign(io::CBlock const & designBlock);

} // namespace desktop
