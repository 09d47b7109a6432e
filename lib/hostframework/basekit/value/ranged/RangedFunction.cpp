#include "basekit/value/ranged/RangedFunction.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/ranged/RangedTables.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace val {

namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

std::vector<RangedFunction> AllCategories() {
  std::vector<RangedFunction> all;
  for (auto const category :
       {ranged::MathFunctions(), ranged::PulseFunctions(), ranged::PulseStreamFunctions(), ranged::ShootFunctions(),
        ranged::ResponseFunctions(), ranged::ErrorFunctions(), ranged::PeriodFunctions(), ranged::GainFunctions(),
        ranged::LobeFunctions(), ranged::EyeFunctions()})
    all.insert(all.end(), category.begin(), category.end());
  return all;
}

bool NameLess(RangedFunction const * function, std::wstring_view name) {
  return text::CompareNoCase(function->name, name) < 0;
}

std::vector<RangedFunction const *> ByName() {
  std::vector<RangedFunction const *> order;
  for (RangedFunction const & function : RangedFunctions())
    order.push_back(&function);
  std::sort(order.begin(), order.end(),
            [](RangedFunction const * a, RangedFunction const * b) { return NameLess(a, b->name); });
  return order;
}

} // namespace

std::span<RangedFunction const> RangedFunctions() {
  static std::vector<RangedFunction> const all = AllCategories();
  return all;
}

RangedFunction const * FindRangedFunction(std::wstring_view name) {
  static std::vector<RangedFunction const *> const order = ByName();
  auto const place = std::lower_bound(order.begin(), order.end(), name, NameLess);
  return place != order.end() && text::CompareNoCase((*place)->name, name) == 0 ? *place : nullptr;
}

int FindRangedParameter(RangedFunction const & function, std::wstring_view parameter) {
  for (std::size_t i = 0; i < function.parameters.size(); ++i) {
    if (text::CompareNoCase(function.parameters[i].name, parameter) == 0)
      return static_cast<int>(i);
  }
  return -1;
}

double Measure(RangedFunction const & function, RangedTrace const & trace, std::span<double const> parameters) {
  if (!trace.IsInOrder() || parameters.size() > function.parameters.size())
    return kNoValue;
  if (function.needsSpan && !(trace.Span() > 0.0 && std::isfinite(trace.Span())))
    return kNoValue;
  std::vector<double> values(parameters.begin(), parameters.end());
  for (std::size_t i = values.size(); i < function.parameters.size(); ++i)
    values.push_back(function.parameters[i].defaultValue);
  if (std::any_of(values.begin(), values.end(), [](double value) { return std::isnan(value); }))
    return kNoValue;
  double const result = function.formula(trace, values.data());
  return std::isfinite(result) ? result : kNoValue;
}

} // namespace val
