#pragma once

namespace val {

/// Numbers that are not finite are equal when a == b.  Otherwise they are equal within the absolute or the relative
/// tolerance, the latter of the larger magnitude.
bool EqualWithin(double a, double b, double relative, double absolute);

/// 0 when equal, 1 when a is less, 2 when it is greater.  A nan is equal to a nan and greater than all else, so
/// that values with it have a place in an order.
int CompareWithin(double a, double b, double relative, double absolute);

} // namespace val
