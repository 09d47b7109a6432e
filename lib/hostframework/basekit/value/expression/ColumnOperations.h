#pragma once

#include "basekit/value/expression/FunctionTable.h"

#include <complex>
#include <span>

namespace expr {

/// Functions of a whole trace that give a value at each of its places.  Places without a value (nan) have none in the
/// result and are stepped over; the axis is not looked at by the unwrapped angles.
///
/// Angles: each differs from the one before by at most half a turn, which goes up; the first lies in -pi to pi.
/// Derivatives: that of the parabola through a place and its two neighbours, at the ends that of the straight line to
/// the one neighbour; one place alone has none, nor have places of one x.
void RunColumnOperation(ColumnOperation operation, std::span<double const> axis,
                        std::span<std::complex<double> const> samples, std::span<double> out);
void RunColumnOperation(ColumnOperation operation, std::span<double const> axis, std::span<double const> samples,
                        std::span<double> out);

/// True for operations that need the places of the trace.
bool NeedsAxis(ColumnOperation operation);

} // namespace expr
