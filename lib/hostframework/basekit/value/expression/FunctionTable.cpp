#include "basekit/value/expression/FunctionTable.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/expression/Kernels.h"

#include <algorithm>

namespace expr {

namespace {

using val::kComplex;
using val::kReal;

template <double (*function)(double)> constexpr Overload ofReal{&Map<function>, kReal, 1, {kReal}};
template <double (*function)(Complex)> constexpr Overload toReal{&MapToReal<function>, kReal, 1, {kComplex}};
template <Complex (*function)(Complex)> constexpr Overload ofComplex{&MapComplex<function>, kComplex, 1, {kComplex}};
template <double (*function)(double, double)> constexpr Overload ofTwo{&MapTwo<function>, kReal, 2, {kReal, kReal}};

template <double (*real)(double), double (*complex)(Complex)>
constexpr Overload partOf[] = {ofReal<real>, toReal<complex>};
template <double (*real)(double), Complex (*complex)(Complex)>
constexpr Overload analytic[] = {ofReal<real>, ofComplex<complex>};
template <double (*real)(double)> constexpr Overload realOnly[] = {ofReal<real>};
template <double (*real)(double, double)> constexpr Overload realPair[] = {ofTwo<real>};
constexpr Overload conjugate[] = {{&Map<math::Same>, kReal, 1, {kReal}}, ofComplex<math::Conjugate>};
constexpr Overload makeComplex[] = {{&MakeComplex, kComplex, 2, {kReal, kReal}}};
constexpr Overload makePolar[] = {{&MakePolar, kComplex, 2, {kReal, kReal}}};
constexpr Overload power[] = {ofTwo<math::Power>, {&MapTwoComplex<math::Power>, kComplex, 2, {kComplex, kComplex}}};
constexpr Overload choice[] = {{&Choose<1>, kReal, 3, {kReal, kReal, kReal}},
                               {&Choose<2>, kComplex, 3, {kReal, kComplex, kComplex}}};
constexpr Overload limit[] = {{&MapThree<math::Limit>, kReal, 3, {kReal, kReal, kReal}}};
constexpr Overload magnitudeDegrees[] = {{&CopyComplex, val::kMagnitudeDegrees, 1, {kComplex}}};
constexpr Overload magnitudeRadians[] = {{&CopyComplex, val::kMagnitudeRadians, 1, {kComplex}}};
constexpr Overload decibelDegrees[] = {{&CopyComplex, val::kDecibelDegrees, 1, {kComplex}}};

constexpr ElementFunction elementFunctions[] = {
    {L"mag", UnitRule::kSame, partOf<math::Magnitude, math::Magnitude>, L"magnitude |x|"},
    {L"dB", UnitRule::kLevel, partOf<math::Decibel, math::Decibel>, L"20 log10 |x|"},
    {L"dB10", UnitRule::kLevel, partOf<math::Decibel10, math::Decibel10>, L"10 log10 |x|"},
    {L"dBm", UnitRule::kPowerLevel, partOf<math::DecibelMilliwatt, math::DecibelMilliwatt>,
     L"10 log10 (|x| / 1 mW), x in watts"},
    {L"ang_deg", UnitRule::kNone, partOf<math::AngleDegrees, math::AngleDegrees>, L"angle in degrees, -180 to 180"},
    {L"ang_rad", UnitRule::kRadians, partOf<math::Angle, math::Angle>, L"angle in radians, -pi to pi"},
    {L"re", UnitRule::kSame, partOf<math::Same, math::RealPart>, L"real part"},
    {L"im", UnitRule::kSame, partOf<math::Zero, math::ImaginaryPart>, L"imaginary part"},
    {L"conj", UnitRule::kSame, conjugate, L"conjugate"},
    {L"abs", UnitRule::kSame, partOf<math::Magnitude, math::Magnitude>, L"magnitude |x|"},
    {L"complex", UnitRule::kSame, makeComplex, L"complex(re, im)"},
    {L"polar", UnitRule::kPolar, makePolar, L"polar(magnitude, angle in degrees)"},
    {L"vswr", UnitRule::kNone, partOf<math::StandingWaveRatio, math::StandingWaveRatio>,
     L"(1 + |x|) / (1 - |x|) of a reflection; infinite from |x| = 1 on"},
    {L"sqrt", UnitRule::kSquareRoot, analytic<math::SquareRoot, math::SquareRoot>, L"square root"},
    {L"exp", UnitRule::kNone, analytic<math::Exponential, math::Exponential>, L"e^x"},
    {L"ln", UnitRule::kNone, analytic<math::Logarithm, math::Logarithm>, L"natural logarithm"},
    {L"log", UnitRule::kNone, analytic<math::Logarithm, math::Logarithm>, L"natural logarithm"},
    {L"log10", UnitRule::kNone, analytic<math::Logarithm10, math::Logarithm10>, L"logarithm to base 10"},
    {L"log2", UnitRule::kNone, realOnly<math::Logarithm2>, L"logarithm to base 2"},
    {L"pow", UnitRule::kNone, power, L"pow(x, y) = x^y"},
    {L"sin", UnitRule::kNone, analytic<math::Sine, math::Sine>, L"sine of an angle in radians"},
    {L"cos", UnitRule::kNone, analytic<math::Cosine, math::Cosine>, L"cosine"},
    {L"tan", UnitRule::kNone, analytic<math::Tangent, math::Tangent>, L"tangent"},
    {L"asin", UnitRule::kRadians, realOnly<math::ArcSine>, L"arc sine in radians"},
    {L"acos", UnitRule::kRadians, realOnly<math::ArcCosine>, L"arc cosine in radians"},
    {L"atan", UnitRule::kRadians, realOnly<math::ArcTangent>, L"arc tangent in radians"},
    {L"atan2", UnitRule::kRadians, realPair<math::ArcTangent2>, L"atan2(y, x): angle of the point (x, y) in radians"},
    {L"sinh", UnitRule::kNone, analytic<math::HyperbolicSine, math::HyperbolicSine>, L"hyperbolic sine"},
    {L"cosh", UnitRule::kNone, analytic<math::HyperbolicCosine, math::HyperbolicCosine>, L"hyperbolic cosine"},
    {L"tanh", UnitRule::kNone, analytic<math::HyperbolicTangent, math::HyperbolicTangent>, L"hyperbolic tangent"},
    {L"min", UnitRule::kSame, realPair<math::Lesser>, L"min(x, y): the lesser of two"},
    {L"max", UnitRule::kSame, realPair<math::Greater>, L"max(x, y): the greater of two"},
    {L"limit", UnitRule::kSame, limit, L"limit(x, low, high): x, not below low, not above high"},
    {L"hypot", UnitRule::kSame, realPair<math::Hypotenuse>, L"hypot(x, y) = sqrt(x^2 + y^2)"},
    {L"mod", UnitRule::kSame, realPair<math::Remainder>, L"mod(x, y) = x - y floor(x / y)"},
    {L"floor", UnitRule::kSame, realOnly<math::Floor>, L"greatest whole number not above x"},
    {L"ceil", UnitRule::kSame, realOnly<math::Ceiling>, L"least whole number not below x"},
    {L"round", UnitRule::kSame, realOnly<math::Rounded>, L"nearest whole number, halves away from zero"},
    {L"sgn", UnitRule::kNone, realOnly<math::Sign>, L"-1, 0 or 1"},
    {L"if", UnitRule::kChosen, choice, L"if(condition, x, y): x where the condition is not 0, else y"},
    {L"isnan", UnitRule::kNone, partOf<math::IsMissing, math::IsMissing>, L"1 where there is no value, else 0"},
    {L"mag_ang_deg", UnitRule::kSame, magnitudeDegrees, L"x, shown as magnitude and angle in degrees"},
    {L"mag_ang_rad", UnitRule::kSame, magnitudeRadians, L"x, shown as magnitude and angle in radians"},
    {L"dB_ang_deg", UnitRule::kNone, decibelDegrees, L"x, shown as dB and angle in degrees"},
};

constexpr ColumnFunction columnFunctions[] = {
    {L"cang_deg", ColumnOperation::kUnwrapDegrees, true, L"angle in degrees without jumps"},
    {L"cang_rad", ColumnOperation::kUnwrapRadians, true, L"angle in radians without jumps"},
    {L"group_delay", ColumnOperation::kGroupDelay, true, L"-d(angle)/d(2 pi x), x the frequency in hertz"},
    {L"deriv", ColumnOperation::kDerivative, false, L"dy/dx along the trace"},
};

template <class Row> Row const * Find(std::span<Row const> rows, std::wstring_view name) {
  auto const found =
      std::find_if(rows.begin(), rows.end(), [&](Row const & row) { return text::CompareNoCase(row.name, name) == 0; });
  return found != rows.end() ? &*found : nullptr;
}

} // namespace

std::span<ElementFunction const> ElementFunctions() { return elementFunctions; }

std::span<ColumnFunction const> ColumnFunctions() { return columnFunctions; }

ElementFunction const * FindElementFunction(std::wstring_view name) { return Find(ElementFunctions(), name); }

ColumnFunction const * FindColumnFunction(std::wstring_view name) { return Find(ColumnFunctions(), name); }

Overload const * FindOverload(ElementFunction const & function, std::span<val::ParameterType const> basicTypes) {
  for (Overload const & overload : function.overloads) {
    bool fits = overload.argumentCount == basicTypes.size();
    for (std::size_t i = 0; fits && i < basicTypes.size(); ++i)
      fits = basicTypes[i] == kReal || overload.arguments[i] == kComplex;
    if (fits)
      return &overload;
  }
  return nullptr;
}

} // namespace expr
