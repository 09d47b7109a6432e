#include "tests/basekit/value/expression/Evaluator.h"

#include "basekit/text/Utf8.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace support {

double Evaluator::Number(AString const & expression) {
  bool const isDone = Evaluate(expression);
  EXPECT_TRUE(isDone && result.isScalar && !result.isComplex)
      << text::ToUtf8(expression) << ": " << text::ToUtf8(error.Text());
  return isDone && !result.isComplex && !result.reals.empty() ? result.reals.front() : 0.0;
}

std::complex<double> Evaluator::Complex(AString const & expression) {
  bool const isDone = Evaluate(expression);
  EXPECT_TRUE(isDone && result.isScalar && result.isComplex)
      << text::ToUtf8(expression) << ": " << text::ToUtf8(error.Text());
  return isDone && result.isComplex && !result.complexes.empty() ? result.complexes.front() : 0.0;
}

std::vector<double> Evaluator::Column(AString const & expression) {
  bool const isDone = Evaluate(expression);
  EXPECT_TRUE(isDone && !result.isScalar && !result.isComplex)
      << text::ToUtf8(expression) << ": " << text::ToUtf8(error.Text());
  return result.reals;
}

std::string Evaluator::Refusal(AString const & expression) {
  bool const isDone = Evaluate(expression);
  EXPECT_FALSE(isDone) << text::ToUtf8(expression);
  return isDone ? std::string() : text::ToUtf8(error.Text().View());
}

} // namespace support
