#include "plotkit/sweep/SweepValues.h"

#include "basekit/diag/Assert.h"

#include <cmath>
#include <cstdint>

namespace core {

namespace {

constexpr double kEqual = 1e-12;

bool IsPositive(double number) { return number > 0.0 && std::isfinite(number); }

} // namespace

void GetLogScaleValues(std::vector<double> & values, double base, double start, double stop, double count, int flags) {
  KVRO_ASSERT(flags == 0);
  if (count == 0.0)
    return;
  bool const areLimitsPositive = IsPositive(start) && IsPositive(stop);
  KVRO_ASSERT(areLimitsPositive);
  bool const isSpacingValid = IsPositive(count) && std::isfinite(base) && base > 1.0;
  KVRO_ASSERT(isSpacingValid);
  if (!areLimitsPositive || !isSpacingValid)
    return;
  bool const isCountInRange = std::log(stop / start) / std::log(base) * count < kMaxSweepValues;
  KVRO_ASSERT(isCountInRange);
  if (!isCountInRange)
    return;
  double value = start;
  for (double k = 1.0; value < stop * (1.0 - kEqual); k += 1.0) {
    values.push_back(value);
    value = start * std::pow(base, k / count);
  }
  if (value < stop * std::pow(base, 0.5 / count))
    values.push_back(stop);
}

void GetLinearCountValues(std::vector<double> & values, double start, double stop, unsigned count) {
  bool const isCountInRange = count <= kMaxSweepValues;
  KVRO_ASSERT(isCountInRange);
  if (count == 0 || !isCountInRange)
    return;
  values.reserve(values.size() + count);
  for (unsigned k = 0; k + 1 < count; ++k)
    values.push_back(start + (stop - start) * k / (count - 1));
  values.push_back(count == 1 ? start : stop);
}

void GetSteppedValues(std::vector<double> & values, double start, double stop, double step) {
  bool const isFinite = std::isfinite(start) && std::isfinite(stop) && std::isfinite(step);
  // A step that is lost beside the limits would repeat them for ever.
  bool const isStepFelt = start == stop || (start + step > start && stop + step > stop);
  bool const reachesTheStop =
      isFinite && (start > stop || (step > 0.0 && isStepFelt && (stop - start) / step < kMaxSweepValues));
  KVRO_ASSERT(reachesTheStop);
  if (!reachesTheStop)
    return;
  if (start == stop)
    return values.push_back(start);
  std::int32_t i = 0;
  double value = start;
  while (value <= stop) {
    values.push_back(value);
    ++i;
    value = i * step + start;
  }
  if (step * 0.5 + stop > value)
    values.push_back(stop);
}

} // namespace core
