#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

namespace rf {

/** Solves X A = B by elimination of columns, with the largest pivot of the row; B becomes X, A is used up.  False when
   A is singular: a pivot is not above the given part of the largest element of A. */
bool DivideFromTheRight(SMatrix & a, SMatrix & b, double smallestPivot = 0.0);

bool IsFinite(SMatrix const & matrix);

} // namespace rf
