#include "basekit/value/expression/ColumnOperations.h"

#include "basekit/value/expression/Kernels.h"

namespace expr {

namespace {

// Each step lies in (-pi, pi]: half a turn goes up, as in the measurements of gain and phase.
void Unwrap(std::span<double> angles) {
  constexpr double turn = 2.0 * std::numbers::pi;
  double turns = 0.0;
  double before = math::missing;
  for (double & angle : angles) {
    if (!std::isfinite(angle)) {
      angle = math::missing;
      continue;
    }
    double const step = std::isnan(before) ? 0.0 : angle - before;
    turns += step > std::numbers::pi ? -1.0 : step <= -std::numbers::pi ? 1.0 : 0.0;
    before = angle;
    angle += turn * turns;
  }
}

double Slope(double x0, double y0, double x1, double y1) { return x1 == x0 ? math::missing : (y1 - y0) / (x1 - x0); }

// In place; values that are still needed are carried along.
void Differentiate(std::span<double const> axis, std::span<double> values) {
  std::size_t previous = 0;
  std::size_t here = 0;
  double previousY = math::missing;
  double hereY = math::missing;
  auto const finish = [&](double slopeBefore, double slopeAfter, double before, double after) {
    if (std::isnan(slopeBefore) || std::isnan(slopeAfter))
      values[here] = std::isnan(slopeBefore) ? slopeAfter : slopeBefore;
    else
      values[here] = (slopeBefore * after + slopeAfter * before) / (before + after);
  };
  for (std::size_t next = 0; next < values.size(); ++next) {
    double const nextY = values[next];
    if (!std::isfinite(nextY) || !std::isfinite(axis[next])) {
      values[next] = math::missing;
      continue;
    }
    if (!std::isnan(hereY)) {
      double const slopeAfter = Slope(axis[here], hereY, axis[next], nextY);
      double const slopeBefore =
          std::isnan(previousY) ? math::missing : Slope(axis[previous], previousY, axis[here], hereY);
      finish(slopeBefore, slopeAfter, axis[here] - axis[previous], axis[next] - axis[here]);
    }
    previous = here;
    previousY = hereY;
    here = next;
    hereY = nextY;
  }
  if (std::isnan(hereY))
    return;
  values[here] = std::isnan(previousY) ? math::missing : Slope(axis[previous], previousY, axis[here], hereY);
}

void Finish(ColumnOperation operation, std::span<double const> axis, std::span<double> out) {
  if (operation != ColumnOperation::kDerivative)
    Unwrap(out);
  if (operation == ColumnOperation::kUnwrapDegrees)
    for (double & value : out)
      value *= math::degreesPerRadian;
  if (!NeedsAxis(operation))
    return;
  Differentiate(axis, out);
  if (operation == ColumnOperation::kGroupDelay)
    for (double & value : out)
      value *= -1.0 / (2.0 * std::numbers::pi);
}

} // namespace

bool NeedsAxis(ColumnOperation operation) {
  return operation == ColumnOperation::kGroupDelay || operation == ColumnOperation::kDerivative;
}

void RunColumnOperation(ColumnOperation operation, std::span<double const> axis,
                        std::span<std::complex<double> const> samples, std::span<double> out) {
  for (std::size_t i = 0; i < samples.size(); ++i)
    out[i] = math::Angle(samples[i]);
  Finish(operation, axis, out);
}

void RunColumnOperation(ColumnOperation operation, std::span<double const> axis, std::span<double const> samples,
                        std::span<double> out) {
  for (std::size_t i = 0; i < samples.size(); ++i)
    out[i] = operation == ColumnOperation::kDerivative ? samples[i] : math::Angle(samples[i]);
  Finish(operation, axis, out);
}

} // namespace expr
