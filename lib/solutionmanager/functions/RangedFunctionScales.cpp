#include "solutionmanager/functions/RangedFunctionScales.h"

#include "basekit/value/units/UnitDefinition.h"

namespace ranged {

namespace {

using Unit = Units::FullUnitType;

double Factor(Unit unit) { return Units::ConvertFromSI(1.0, unit); }
AString Text(Unit unit) { return Units::GetUnitDef(unit).GetUnitString(); }

void Unscaled(double & result, AString &, double value, Unit, Unit) { result = value; }

void WithX(double & result, AString & units, double value, Unit xUnits, Unit) {
  result = value * Factor(xUnits);
  units = Text(xUnits);
}

void WithY(double & result, AString & units, double value, Unit, Unit yUnits) {
  result = value * Factor(yUnits);
  units = Text(yUnits);
}

/// The text bears no mark of the square.
void WithYY(double & result, AString & units, double value, Unit, Unit yUnits) {
  result = value * Factor(yUnits) * Factor(yUnits);
  units = Text(yUnits);
}

void WithXY(double & result, AString & units, double value, Unit xUnits, Unit yUnits) {
  result = value * Factor(xUnits) * Factor(yUnits);
  units = Text(xUnits) + L"*" + Text(yUnits);
}

void WithXYY(double & result, AString & units, double value, Unit xUnits, Unit yUnits) {
  result = value * Factor(xUnits) * Factor(yUnits) * Factor(yUnits);
  units = Text(xUnits) + L"*" + Text(yUnits) + L"^2";
}

} // namespace

ScaleOperation ScaleOperationOf(Scale scale) {
  switch (scale) {
  case Scale::kX:
    return WithX;
  case Scale::kY:
    return WithY;
  case Scale::kYY:
    return WithYY;
  case Scale::kXY:
    return WithXY;
  case Scale::kXYY:
    return WithXYY;
  default:
    return Unscaled;
  }
}

} // namespace ranged
