#pragma once

#include "basekit/text/AString.h"

namespace io {

/// The order of a block's name index: by name, case ignored, character by character and whatever the locale.
struct ACharNoCaseLess {
  bool operator()(AString const & a, AString const & b) const noexcept { return a.CompareNoCase(b) < 0; }
};

} // namespace io
