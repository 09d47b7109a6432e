#pragma once

#include <vector>

namespace core {

/// More samples than this are refused: such a count is an error in a file, and would only fill memory.
inline constexpr double kMaxSweepValues = 1e7;

/// Appends start * base^(k / count) for k = 0, 1, ... up to the stop: count is the number of samples to a factor of
/// base.  A sample within 1e-12 of the stop is the stop itself; a first sample past it by less than half a step (half
/// a step being a factor of base^(0.5 / count)) is pulled back onto it.  No samples for a count of zero; limits that
/// are not positive, a base of 1 or less and too many samples are refused with an assertion.  flags must be 0.
void GetLogScaleValues(std::vector<double> & values, double base, double start, double stop, double count, int flags);

/// Appends count values at equal distances, the first being start and the last stop; one value alone is start.  Too
/// many are refused with an assertion.
void GetLinearCountValues(std::vector<double> & values, double start, double stop, unsigned count);

/// Appends start, start + step, ... up to the stop, by multiplication; a first sample past it by less than half a step
/// is pulled back onto it.  A step that never reaches the stop, and too many samples, are refused with an assertion.
void GetSteppedValues(std::vector<double> & values, double start, double stop, double step);

} // namespace core
