#pragma once

#include "basekit/value/ParameterType.h"
#include "basekit/value/units/Units.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace expr {

/// Computes count samples.  Reals are doubles, complex numbers pairs of them; the output is none of the arguments.
using Kernel = void (*)(double const * const * arguments, double * out, std::size_t count);

inline constexpr std::size_t maxElementArguments = 3;

/// One overload: the types of the arguments, real or complex, and what it gives.
struct Overload {
  Kernel kernel = nullptr;
  val::ParameterType result = val::kReal;
  std::size_t argumentCount = 1;
  val::ParameterType arguments[maxElementArguments] = {val::kReal, val::kReal, val::kReal};
};

/// How the units of a result come from those of the arguments.
enum class UnitRule {
  kNone,       ///< a plain number
  kSame,       ///< those of the first argument that has any
  kChosen,     ///< the same without the first argument, which is a condition
  kPolar,      ///< those of the first argument; the second is an angle in degrees, or in an angle's unit
  kLevel,      ///< dB
  kPowerLevel, ///< dBm
  kRadians,
  kSquareRoot
};

/// A function that works sample by sample.  A real argument fits where a complex one is taken.
struct ElementFunction {
  std::wstring_view name;
  UnitRule units = UnitRule::kNone;
  std::span<Overload const> overloads;
  std::wstring_view meaning; ///< what it gives, for lists of functions
};

/// A function of a whole column that gives a column of the same length.
enum class ColumnOperation { kUnwrapRadians, kUnwrapDegrees, kGroupDelay, kDerivative };

struct ColumnFunction {
  std::wstring_view name;
  ColumnOperation operation = ColumnOperation::kDerivative;
  bool isComplex = false; ///< takes a complex column
  std::wstring_view meaning;
};

/// interp("dataset", x): the value of a dataset at x on the straight line between its points; outside, no value.
inline constexpr std::wstring_view interpolationName = L"interp";

/// Entries are only ever appended: their places are written into files as function numbers.
std::span<ElementFunction const> ElementFunctions();
std::span<ColumnFunction const> ColumnFunctions();

/// By name without case; null when there is none.
ElementFunction const * FindElementFunction(std::wstring_view name);
ColumnFunction const * FindColumnFunction(std::wstring_view name);

/// The first overload of so many arguments that takes them, reals before complex numbers; null when none fits.
Overload const * FindOverload(ElementFunction const & function, std::span<val::ParameterType const> basicTypes);

} // namespace expr
