#pragma once

#include "apps/qsol/Rewriting.h"

namespace qsol {

struct Streams;

/// The options tell the form.
int Convert(RewriteOptions const & options, Streams const & streams);

} // namespace qsol
