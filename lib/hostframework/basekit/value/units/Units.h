#pragma once

#include "basekit/text/AString.h"

#include <string_view>

/// The one source of units: engineering prefixes and the field's units, each with its way to SI.
namespace Units {

/// What a unit measures.
enum UnitType : int {
  kFrequency = 0,
  kTime = 1,
  kLength = 2,
  kResistance = 3,
  kCapacitance = 4,
  kInductance = 5,
  kVoltage = 6,
  kCurrent = 7,
  kPower = 8,
  kAngle = 9,
  kLevel = 10,
  kPowerLevel = 11,
  kCharge = 12,
  kTemperature = 13,
  kConductance = 14,
  kNoUnitType = 15,
  kRatio = 16,
};

/// A unit together with its prefix: 32 times the unit's row in the table plus the prefix's place; no unit is 90.
/// Rows and places are only ever appended, as the numbers are written into files.
enum FullUnitType : int {
  kHertz = 0,
  kGigahertz = 8,
  kSecond = 32,
  kNanosecond = 35,
  kMetre = 64,
  kMillimetre = 69,
  kNoUnits = 90,
  kOhm = 96,
  kFarad = 128,
  kPicofarad = 130,
  kHenry = 160,
  kNanohenry = 163,
  kVolt = 192,
  kMillivolt = 197,
  kAmpere = 224,
  kWatt = 256,
  kDegree = 288,
  kRadian = 320,
  kDecibel = 352,
  kDecibelMilliwatt = 384,
  kCoulomb = 416,
  kCelsius = 448,
  kSiemens = 480,
  kPercent = 512,
};

FullUnitType GetDefaultUnits(UnitType type);
UnitType GetUnitType(FullUnitType unit);
AString GetSymbol(FullUnitType unit);

/// SI = value * factor + offset.  Levels (dB, dBm) stay as they are.
double ToSI(double value, FullUnitType unit);
double FromSI(double si, FullUnitType unit);
inline double ConvertToSI(double value, FullUnitType unit) { return ToSI(value, unit); }
inline double ConvertFromSI(double si, FullUnitType unit) { return FromSI(si, unit); }

/// How a suffix such as "GHz", "p" or "mm" scales the number before it.
struct Scale {
  FullUnitType unit = kNoUnits;
  int exponent = 0; ///< power of ten of the prefix
  double factor = 1.0;
  double offset = 0.0;
};

/// A unit wins over a prefix ("m" is the metre, "p" is 1e-12) and the exact case over another one ("M" is 1e6, "k"
/// and "K" are 1000); "Meg" is 1e6 in any case.  False for a suffix that means nothing.
bool FindScale(std::wstring_view suffix, Scale & scale);
/// False, and the scale unchanged, for no unit and for numbers that are none.
bool GetScale(FullUnitType unit, Scale & scale);

} // namespace Units
