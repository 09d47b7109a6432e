#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

#include <string_view>

namespace val {

/// A number as it stands in a text, in SI units.
struct Quantity {
  double real = 0.0;
  double imaginary = 0.0;
  bool isComplex = false;
  Units::FullUnitType unit = Units::kNoUnits;
};

/// Reads "12", "-1e-12", "1.2pF", "2.4 GHz", "50+10i", with blanks round it.  The decimal exponent of a prefix is
/// joined with that of the number before it becomes binary, so that 1.2pF is 1.2e-12 bit for bit.  A number without a
/// unit is taken in the given one.  Texts that are no finite number are refused: expressions, words, nan, infinities.
bool ParseQuantity(std::wstring_view text, Quantity & quantity, Units::FullUnitType assumed = Units::kNoUnits);

/// True for a text such as 900m: it reads as metres, and thousandths may be meant.  Whoever asks for a number of a unit
/// that it doesn't know refuses it.
bool IsMetreOrThousandth(std::wstring_view text);

/// The shortest text that reads back as the same number and unit, whatever unit is assumed.  A number that has no
/// digits in its unit is written in the plain one (rad, m, kelvin); where there is none (%), the nearest digits are
/// written.
AString QuantityText(Quantity const & quantity);

/// The text of a number that means the same in any case, for texts that are compared without case: 100MHz becomes
/// 100MegHz, since 100mhz would be a tenth of a hertz.  Other texts come back as they are.
AString CaseProofText(AString const & text);

} // namespace val
