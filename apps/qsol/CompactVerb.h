#pragma once

#include "apps/qsol/Rewriting.h"

namespace qsol {

struct Streams;

int Compact(RewriteOptions const & options, Streams const & streams);

} // namespace qsol
