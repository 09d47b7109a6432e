#pragma once

#include "basekit/value/AComplex.h"

#include <string_view>

namespace val {

/// Numbers that are not finite are equal when a == b.  Otherwise they are equal within the absolute or the relative
/// tolerance, the latter of the larger magnitude.
bool EqualWithin(double a, double b, double relative, double absolute);

/// 0 when equal, 1 when a is less, 2 when it is greater.  A nan is equal to a nan and greater than all else, so
/// that values with it have a place in an order.
int CompareWithin(double a, double b, double relative, double absolute);

/// What a comparison of values looks at: a number or a text.
struct ComparedValue {
  bool isNumber = false;
  AComplex<double> number;
  std::wstring_view text;
};

/// 0, 1, 2 as above.  Numbers come before texts; numbers are compared by real part, then imaginary part, each with its
/// part of the tolerances; texts without case.
int CompareWithin(ComparedValue const & a, ComparedValue const & b, AComplex<double> const & relative,
                  AComplex<double> const & absolute);

} // namespace val
