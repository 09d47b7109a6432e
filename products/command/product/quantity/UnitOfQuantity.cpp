#include "products/command/product/quantity/UnitOfQuantity.h"

#include "desktop/product/IQuantityProduct.h"

#include <cmath>

namespace command {
namespace {

bool FindUnit(AString const & text, Units::Scale & scale) {
  // A prefix alone is no unit, and is what somebody counts in.
  return !text.empty() && Units::FindScale(text.View(), scale) && scale.unit != Units::kNoUnits;
}

} // namespace

ValueState StateOf(desktop::QuantityValues const & quantity) {
  Units::Scale scale;
  if (!FindUnit(quantity.unit, scale))
    return {Units::kNoUnits, Units::kNoUnitType, 1, val::kReal};
  return {scale.unit, Units::GetUnitType(scale.unit), 1, val::kReal};
}

std::vector<double> ValuesInSI(desktop::QuantityValues const & quantity) {
  Units::Scale scale;
  std::vector<double> values = quantity.values;
  if (FindUnit(quantity.unit, scale))
    for (double & value : values)
      value = Units::ToSI(value, scale.unit);
  return values;
}

} // namespace command
