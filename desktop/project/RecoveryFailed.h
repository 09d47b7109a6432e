#pragma once

#include "desktop/Error.h"

namespace desktop {

/// The work that a crash left can't be taken over.  The files stay as they were, and so does the saved state, which can
/// still be read; to go on for writing needs the user's word on what becomes of the work (Session::LeftWork).
class RecoveryFailed : public Error {
public:
  using Error::Error;
};

} // namespace desktop
