#include "products/rfcircuit/engine/netlist/ExpressionFunctions.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace rf {
namespace {

// `log` is the natural logarithm, as `ln` is.
constexpr ExpressionFunction FUNCTIONS[] = {
    {"sqrt", [](double x) { return std::sqrt(x); }, nullptr},
    {"exp", [](double x) { return std::exp(x); }, nullptr},
    {"log", [](double x) { return std::log(x); }, nullptr},
    {"ln", [](double x) { return std::log(x); }, nullptr},
    {"log10", [](double x) { return std::log10(x); }, nullptr},
    {"sin", [](double x) { return std::sin(x); }, nullptr},
    {"cos", [](double x) { return std::cos(x); }, nullptr},
    {"tan", [](double x) { return std::tan(x); }, nullptr},
    {"atan", [](double x) { return std::atan(x); }, nullptr},
    {"abs", [](double x) { return std::fabs(x); }, nullptr},
    {"min", nullptr, [](double x, double y) { return std::min(x, y); }},
    {"max", nullptr, [](double x, double y) { return std::max(x, y); }},
    {"pow", nullptr, [](double x, double y) { return std::pow(x, y); }},
};

} // namespace

ExpressionFunction const & ExpressionFunctionAt(std::size_t index) { return FUNCTIONS[index]; }

std::optional<std::size_t> FindExpressionFunction(std::string_view foldedName) {
  auto const found = std::find_if(std::begin(FUNCTIONS), std::end(FUNCTIONS),
                                  [&](ExpressionFunction const & function) { return function.name == foldedName; });
  if (found == std::end(FUNCTIONS))
    return std::nullopt;
  return static_cast<std::size_t>(found - std::begin(FUNCTIONS));
}

} // namespace rf
