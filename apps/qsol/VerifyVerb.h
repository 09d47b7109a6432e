#pragma once

#include "apps/qsol/OpenLibrary.h"

namespace qsol {

struct Streams;

struct VerifyOptions {
  /// The private file is checked too unless the committed state alone is asked for.
  ViewOptions view;
  bool json = false;
};

int VerifyLibrary(VerifyOptions const & options, Streams const & streams);

} // namespace qsol
