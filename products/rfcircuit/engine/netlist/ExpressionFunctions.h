#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace rf {

/** A function that expressions of netlists may call; `binary` is null for one of a single argument and vice versa. */
struct ExpressionFunction {
  std::string_view name;
  double (*unary)(double);
  double (*binary)(double, double);
};

ExpressionFunction const & ExpressionFunctionAt(std::size_t index);
std::optional<std::size_t> FindExpressionFunction(std::string_view foldedName);

} // namespace rf
