#include "basekit/value/units/Units.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/units/UnitDefinition.h"

#include <cmath>
#include <iterator>
#include <string_view>

namespace Units {

namespace {

struct UnitRow {
  std::wstring_view symbol;
  UnitType type;
  double factor;
  double offset;
  bool takesPrefix;
};

// Only ever appended: the numbers of rows are written into files.
constexpr UnitRow unitRows[] = {
    {L"Hz", kFrequency, 1.0, 0.0, true},
    {L"s", kTime, 1.0, 0.0, true},
    {L"m", kLength, 1.0, 0.0, true},
    {L"Ohm", kResistance, 1.0, 0.0, true},
    {L"F", kCapacitance, 1.0, 0.0, true},
    {L"H", kInductance, 1.0, 0.0, true},
    {L"V", kVoltage, 1.0, 0.0, true},
    {L"A", kCurrent, 1.0, 0.0, true},
    {L"W", kPower, 1.0, 0.0, true},
    {L"deg", kAngle, 0.017453292519943295, 0.0, false},
    {L"rad", kAngle, 1.0, 0.0, true},
    {L"dB", kLevel, 1.0, 0.0, false},
    {L"dBm", kPowerLevel, 1.0, 0.0, false},
    {L"C", kCharge, 1.0, 0.0, true},
    {L"cel", kTemperature, 1.0, 273.15, false},
    {L"S", kConductance, 1.0, 0.0, true},
    {L"%", kRatio, 0.01, 0.0, false},
    {L"cm", kLength, 0.01, 0.0, false},
    {L"in", kLength, 0.0254, 0.0, false},
    {L"mil", kLength, 2.54e-5, 0.0, false},
    {L"kelvin", kTemperature, 1.0, 0.0, false},
};

struct Alias {
  std::wstring_view symbol;
  int row;
};
constexpr Alias aliases[] = {
    {L"sec", 1}, {L"meter", 2}, {L"\u03a9", 3}, {L"\u2126", 3}, {L"Ohms", 3}, {L"degC", 14},
};

struct PrefixPlace {
  std::wstring_view symbol;
  int place;
  int exponent;
};
// Places too are only ever appended; the first symbol of a place is the one that is written.
constexpr PrefixPlace prefixes[] = {
    {L"", 0, 0},  {L"f", 1, -15}, {L"p", 2, -12}, {L"n", 3, -9},  {L"u", 4, -6},      {L"m", 5, -3},      {L"k", 6, 3},
    {L"M", 7, 6}, {L"G", 8, 9},   {L"T", 9, 12},  {L"Meg", 7, 6}, {L"\u00b5", 4, -6}, {L"\u03bc", 4, -6},
};

constexpr int placesPerRow = 32;
constexpr std::size_t longestSuffix = 12;
static_assert(kNoUnits % placesPerRow > 9, "no unit must not be a unit with a prefix");

// -1 for symbols that are none; exact tells whether the case is right.
int FindRow(std::wstring_view symbol, bool & exact) {
  int found = -1;
  exact = false;
  auto const offer = [&](std::wstring_view candidate, int row) {
    if (exact || candidate.size() != symbol.size() || text::CompareNoCase(candidate, symbol) != 0)
      return;
    exact = candidate == symbol;
    if (exact || found < 0)
      found = row;
  };
  for (int row = 0; row < static_cast<int>(std::size(unitRows)); ++row)
    offer(unitRows[row].symbol, row);
  for (Alias const & alias : aliases)
    offer(alias.symbol, alias.row);
  return found;
}

// How good a reading is, the smallest best: a unit before a prefix, the exact case before another.
int Rank(bool hasPrefix, bool hasUnit, bool prefixExact, bool unitExact) {
  if (prefixExact && unitExact)
    return !hasPrefix ? 0 : !hasUnit ? 1 : 2;
  return !hasPrefix ? 3 : prefixExact ? 4 : unitExact ? 5 : 6;
}

UnitRow const * RowOf(FullUnitType unit) {
  int const row = unit / placesPerRow;
  bool const known = unit >= 0 && unit != kNoUnits && row < static_cast<int>(std::size(unitRows));
  return known ? &unitRows[row] : nullptr;
}

// Null where the unit takes no prefix, as no text says such a number.
PrefixPlace const * PlaceOf(FullUnitType unit) {
  UnitRow const * const row = RowOf(unit);
  for (PrefixPlace const & prefix : prefixes)
    if (row && prefix.place == unit % placesPerRow && (prefix.place == 0 || row->takesPrefix))
      return &prefix;
  return nullptr;
}

double TimesPowerOfTen(double value, int exponent) {
  // Negative powers divide: the positive ones up to 22 are exact.
  double const power = std::pow(10.0, std::abs(exponent));
  return exponent < 0 ? value / power : value * power;
}

} // namespace

FullUnitType GetDefaultUnits(UnitType type) {
  for (std::size_t row = 0; row < std::size(unitRows); ++row)
    if (bool const isPlain = unitRows[row].factor == 1.0 && unitRows[row].offset == 0.0;
        unitRows[row].type == type && (isPlain || type == kRatio))
      return static_cast<FullUnitType>(row * placesPerRow);
  return kNoUnits;
}

UnitType GetUnitType(FullUnitType unit) { return PlaceOf(unit) ? RowOf(unit)->type : kNoUnitType; }

UnitDefinition GetUnitDef(FullUnitType unit) {
  Scale scale;
  return GetScale(unit, scale) ? UnitDefinition(unit) : UnitDefinition();
}

AString GetSymbol(FullUnitType unit) {
  PrefixPlace const * const place = PlaceOf(unit);
  return place ? AString(place->symbol) + RowOf(unit)->symbol : AString();
}

bool GetScale(FullUnitType unit, Scale & scale) {
  PrefixPlace const * const place = PlaceOf(unit);
  if (!place)
    return false;
  UnitRow const * const row = RowOf(unit);
  scale = {unit, place->exponent, row->factor, row->offset};
  return true;
}

double ToSI(double value, FullUnitType unit) {
  Scale scale;
  GetScale(unit, scale);
  return TimesPowerOfTen(value, scale.exponent) * scale.factor + scale.offset;
}

double FromSI(double si, FullUnitType unit) {
  Scale scale;
  GetScale(unit, scale);
  return TimesPowerOfTen((si - scale.offset) / scale.factor, -scale.exponent);
}

namespace {

// -1 for what is no symbol in this case.
int FindExactRow(std::wstring_view symbol) {
  for (int row = 0; row < static_cast<int>(std::size(unitRows)); ++row)
    if (unitRows[row].symbol == symbol)
      return row;
  for (Alias const & alias : aliases)
    if (alias.symbol == symbol)
      return alias.row;
  return -1;
}

// As FindScale, for suffixes in the right case, which rank before all others.
bool FindExactScale(std::wstring_view suffix, Scale & scale) {
  int best = Rank(true, true, true, true) + 1;
  for (PrefixPlace const & prefix : prefixes) {
    std::wstring_view const head = prefix.symbol;
    if (!suffix.starts_with(head))
      continue;
    std::wstring_view const symbol = suffix.substr(head.size());
    int const row = symbol.empty() ? -1 : FindExactRow(symbol);
    bool const fits = symbol.empty() || (row >= 0 && (head.empty() || unitRows[row].takesPrefix));
    int const rank = Rank(!head.empty(), !symbol.empty(), true, true);
    if (!fits || rank >= best)
      continue;
    best = rank;
    scale = symbol.empty() ? Scale{kNoUnits, prefix.exponent, 1.0, 0.0}
                           : Scale{static_cast<FullUnitType>(row * placesPerRow + prefix.place), prefix.exponent,
                                   unitRows[row].factor, unitRows[row].offset};
    if (head.empty())
      return true;
  }
  return best <= Rank(true, true, true, true);
}

} // namespace

bool FindScale(std::wstring_view suffix, Scale & scale) {
  if (suffix.empty() || suffix.size() > longestSuffix)
    return false;
  if (FindExactScale(suffix, scale))
    return true;
  int best = 7;
  for (PrefixPlace const & prefix : prefixes) {
    std::wstring_view const head = prefix.symbol;
    if (suffix.size() < head.size() || text::CompareNoCase(suffix.substr(0, head.size()), head) != 0)
      continue;
    bool const prefixExact = suffix.substr(0, head.size()) == head;
    std::wstring_view const symbol = suffix.substr(head.size());
    bool unitExact = true;
    int const row = symbol.empty() ? -1 : FindRow(symbol, unitExact);
    bool const fits = symbol.empty() || (row >= 0 && (head.empty() || unitRows[row].takesPrefix));
    int const rank = Rank(!head.empty(), !symbol.empty(), prefixExact, unitExact);
    if (!fits || rank >= best)
      continue;
    best = rank;
    if (symbol.empty())
      scale = {kNoUnits, prefix.exponent, 1.0, 0.0};
    else
      scale = {static_cast<FullUnitType>(row * placesPerRow + prefix.place), prefix.exponent, unitRows[row].factor,
               unitRows[row].offset};
  }
  return best < 7;
}

} // namespace Units
