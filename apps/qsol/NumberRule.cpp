#include "apps/qsol/NumberRule.h"

#include "basekit/io/CBlock_value.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qsol {

namespace {

using Type = io::CBlock_value::Type;

double NumberOf(io::CBlock_value const & value) {
  double number = 0.0;
  value.Query(number);
  return number;
}

double RelativeDifference(double a, double b) {
  if (a == b || (std::isnan(a) && std::isnan(b)))
    return 0.0;
  if (!std::isfinite(a) || !std::isfinite(b))
    return std::numeric_limits<double>::infinity();
  double const larger = std::max(std::fabs(a), std::fabs(b));
  double const difference = std::fabs(a - b);
  return std::isfinite(difference) ? difference / larger : std::fabs(a / larger - b / larger);
}

bool IsNear(double a, double b, NumberRule const & rule) {
  if (a == b || (std::isnan(a) && std::isnan(b)))
    return true;
  if (!std::isfinite(a) || !std::isfinite(b))
    return false;
  return std::fabs(a - b) <= rule.absolute + rule.relative * std::max(std::fabs(a), std::fabs(b));
}

NumberPair WholePair(long a, long b) {
  // Exact below 2^53, and near enough above: both values are told too.
  double const difference = static_cast<double>(static_cast<long double>(b) - static_cast<long double>(a));
  double const larger = std::max(std::fabs(static_cast<double>(a)), std::fabs(static_cast<double>(b)));
  return {false, difference, std::fabs(difference) / larger};
}

} // namespace

bool IsNumber(io::CBlock_value const & value) {
  return value.ValueType() == Type::Integer || value.ValueType() == Type::Real;
}

std::optional<NumberPair> Unlike(io::CBlock_value const & a, io::CBlock_value const & b,
                                 std::optional<NumberRule> const & rule) {
  if (a.ValueType() == Type::Integer && b.ValueType() == Type::Integer) {
    long wholeA = 0;
    long wholeB = 0;
    a.Query(wholeA);
    b.Query(wholeB);
    return wholeA == wholeB ? std::nullopt : std::optional(WholePair(wholeA, wholeB));
  }
  double const realA = NumberOf(a);
  double const realB = NumberOf(b);
  bool const isSame = realA == realB || (std::isnan(realA) && std::isnan(realB));
  // Above 2^53 a whole number may be rounded to the floating one beside it.
  if (isSame && std::signbit(realA) == std::signbit(realB) && (a == b || std::isnan(realA)))
    return std::nullopt;
  // 0 and -0 differ by 0, not by -0.
  return NumberPair{rule && IsNear(realA, realB, *rule), realB - realA + 0.0, RelativeDifference(realA, realB)};
}

} // namespace qsol
