#pragma once

#include <optional>

namespace io {
class CBlock_value;
} // namespace io

namespace qsol {

/// When two numbers count as the same one.  Without a rule their exact texts must be; with one, numbers a and b differ
/// when |a - b| > absolute + relative * max(|a|, |b|), which is the same whichever of them comes first.  Then nan is as
/// good as nan, 0 as -0, and an infinity is near to itself alone.  Whole numbers are never near: they count and name.
struct NumberRule {
  double absolute = 0.0;
  double relative = 0.0;
};

/// Two numbers that are unlike to the last bit.
struct NumberPair {
  bool isNear = false;
  /// b - a; infinite or nan where one of them is.
  double difference = 0.0;
  /// |a - b| / max(|a|, |b|): at most 2 of finite numbers, infinite where a number has no distance from the other.
  double relative = 0.0;
};

bool IsNumber(io::CBlock_value const & value);
/// Nothing when both numbers have one exact text.
std::optional<NumberPair> Unlike(io::CBlock_value const & a, io::CBlock_value const & b,
                                 std::optional<NumberRule> const & rule);

} // namespace qsol
