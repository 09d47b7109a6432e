#include "bench/ranged/Trials.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace bench {

namespace {

constexpr double kPi = std::numbers::pi;

bool Begins(val::RangedFunction const & function, std::wstring_view head) { return function.name.starts_with(head); }

template <class F> RangedTrial OverTime(std::size_t samples, double end, F f) {
  RangedTrial trial;
  for (std::size_t i = 0; i < samples; ++i) {
    double const at = end * static_cast<double>(i) / static_cast<double>(samples - 1);
    trial.x.push_back(at);
    trial.y.push_back(f(at));
  }
  return trial;
}

/// Random bits of 50 samples each, with edges of a fifth of a bit.
RangedTrial Bits(std::size_t samples) {
  unsigned state = 1;
  double from = 0;
  double to = 0;
  double bit = -1;
  RangedTrial trial = OverTime(samples, static_cast<double>(samples) / 50, [&](double at) {
    if (std::floor(at) != bit) {
      bit = std::floor(at);
      state = state * 1664525u + 1013904223u;
      from = to;
      to = state >> 31 ? 1 : 0;
    }
    return from + (to - from) * std::min(1.0, (at - bit) * 5);
  });
  trial.parameters.push_back(1);
  return trial;
}

/// A resonance in the middle of six decades, behind a delay of many turns.
RangedTrial Resonance(std::size_t samples) {
  RangedTrial trial;
  for (std::size_t i = 0; i < samples; ++i) {
    double const part = static_cast<double>(i) / static_cast<double>(samples - 1);
    double const at = std::pow(10, 6 * part - 3);
    trial.x.push_back(at);
    trial.complex.push_back(std::polar(2.0, -1000 * part) / std::complex<double>(1, 10 * (at - 1 / at)));
  }
  return trial;
}

} // namespace

RangedTrial TrialOf(val::RangedFunction const & function, std::size_t samples) {
  if (function.input == val::RangedInput::kGain)
    return Resonance(samples);
  if (Begins(function, L"Eye") || Begins(function, L"MinEye"))
    return Bits(samples);
  if (Begins(function, L"xdb") || function.name.find(L"idelobe") != std::wstring_view::npos)
    return OverTime(samples, 40, [](double at) { return at == 20 ? 1 : std::fabs(std::sin(at - 20) / (at - 20)); });
  if (Begins(function, L"pulse"))
    return OverTime(samples, 16, [](double at) { return std::exp(-(at - 8) * (at - 8) / 2); });
  double const periods = 100;
  RangedTrial trial =
      OverTime(samples, periods, [](double at) { return 1 + std::sin(2 * kPi * at) * std::exp(-at / 50); });
  bool const isRise = function.name == L"risetime" || function.name == L"delaytime";
  if (!function.parameters.empty())
    trial.parameters.push_back(isRise ? 100 : 1); // 100 is never reached: all of the trace is looked at
  if (function.name == L"settlingtime")
    trial.parameters.push_back(0.2);
  return trial;
}

} // namespace bench
