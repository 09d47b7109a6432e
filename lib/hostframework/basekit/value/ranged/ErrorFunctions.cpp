// The error integrals of control engineering over e = y - Target, not divided by time.  The weight of an error is x
// itself, counted from x = 0, so that it doesn't depend on where the range starts.

#include "basekit/value/ranged/Levels.h"
#include "basekit/value/ranged/RangedTables.h"

namespace val::ranged {

namespace {

template <class Weigh> double ErrorIntegral(RangedTrace const & trace, double target, Weigh weigh) {
  return Integral(trace.X(), [&](std::size_t i) { return weigh(trace.X()[i], trace.Y()[i] - target); });
}

/// I(|e|)
double Iae(RangedTrace const & trace, double const * parameters) {
  return ErrorIntegral(trace, parameters[0], [](double, double e) { return std::fabs(e); });
}

/// I(e^2)
double Ise(RangedTrace const & trace, double const * parameters) {
  return ErrorIntegral(trace, parameters[0], [](double, double e) { return e * e; });
}

/// I(x |e|)
double Itae(RangedTrace const & trace, double const * parameters) {
  return ErrorIntegral(trace, parameters[0], [](double x, double e) { return x * std::fabs(e); });
}

/// I(x e^2)
double Itse(RangedTrace const & trace, double const * parameters) {
  return ErrorIntegral(trace, parameters[0], [](double x, double e) { return x * (e * e); });
}

constexpr RangedParameter kTarget[] = {{L"Target", 0.0}};

constexpr RangedFunction kErrors[] = {
    {L"iae", RangedInput::kRealTrace, kTarget, true, Iae},
    {L"ise", RangedInput::kRealTrace, kTarget, true, Ise},
    {L"itae", RangedInput::kRealTrace, kTarget, true, Itae},
    {L"itse", RangedInput::kRealTrace, kTarget, true, Itse},
};

} // namespace

std::span<RangedFunction const> ErrorFunctions() { return kErrors; }

} // namespace val::ranged
