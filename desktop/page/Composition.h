#pragma once

#include "desktop/page/Document.h"

namespace desktop::page {

/// What items that are no plots, tables or trees themselves are shown as.
std::vector<Item> Composed(Convergence const & convergence);
Table Composed(Profile const & profile);
Table Composed(Numbers const & numbers);

} // namespace desktop::page
