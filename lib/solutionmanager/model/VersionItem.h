#pragma once

#include "basekit/diag/Assert.h"
#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

/// Reads item "VersionID" of a definition block; without it the version stays.  A negative number, which no ID server
/// gives out and which would mean any version, is reported and left out.
inline void ReadVersionItem(io::CBlock const & block, long & current) {
  long version = current;
  block >> io::named(L"VersionID", version);
  bool const isVersion = version >= 0 || version == current;
  KVRO_ASSERT(isVersion);
  if (isVersion)
    current = version;
}
