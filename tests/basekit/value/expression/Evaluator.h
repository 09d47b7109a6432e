#pragma once

#include "basekit/value/expression/NamedScope.h"

#include <complex>
#include <string>
#include <vector>

namespace support {

/// Reads, compiles and evaluates texts over a small world that a test fills.
class Evaluator {
public:
  expr::NamedScope scope;
  expr::Result result;
  expr::Error error;

  bool Evaluate(AString const & text) { return scope.Evaluate(text, result, error); }
  /// The one number of a text; a failed evaluation fails the test.
  double Number(AString const & text);
  std::complex<double> Complex(AString const & text);
  /// The samples of a real column.
  std::vector<double> Column(AString const & text);
  /// The error of a text that must be refused.
  std::string Refusal(AString const & text);
};

} // namespace support
