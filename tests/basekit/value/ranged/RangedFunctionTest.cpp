#include "tests/basekit/value/ranged/RangedSupport.h"

#include <map>
#include <random>
#include <set>
#include <string>

using namespace support;

namespace {

using Name = std::wstring;

struct Trial {
  Numbers x;
  Numbers y;
  Numbers parameters;
};

// A trace and parameters of which the function has something to say.
Trial TrialOf(val::RangedFunction const & function) {
  Name const name(function.name);
  Trial const pulses = {{0, 2, 3, 7, 8, 10, 11, 14, 15, 19, 20, 21}, {0, 0, 1, 1, 0, 0, 1, 1, 0, 0, 1, 0.9}, {}};
  auto const with = [&](Trial trial, Numbers const & parameters) {
    trial.parameters = parameters;
    return trial;
  };
  if (name.starts_with(L"Eye") || name.starts_with(L"MinEye"))
    return {{0, 0.9, 1.1, 1.9, 2.1, 2.9, 3.1, 3.9, 4.1, 5}, {0, 0.1, 1, 1.1, 0, 0.1, 1, 1.2, 0, 0}, {1}};
  if (function.input == val::RangedInput::kGain) {
    // Gain falls through 1 and, going round, the real axis is cut.
    return {{1, 2, 3, 4, 5, 6}, {0.5, 4, 2, 1.5, 0.5, 0.1}, {}};
  }
  if (function.parameters.size() == 2 && function.parameters[0].name == L"Threshold")
    return with(pulses, {0.5, 0});
  if (name == L"XAtYVal" || name == L"XWidthAtYVal" || name == L"delaytime" || name == L"risetime" ||
      name == L"deadtime" || name == L"YAtXVal")
    return with(pulses, {0.75});
  if (name == L"settlingtime")
    return with(pulses, {1, 0.25});
  if (name == L"distortion" || name == L"fundamentalmag")
    return with(pulses, {0.125});
  if (name.find(L"idelobe") != Name::npos)
    return {{0, 1, 2, 3, 4, 5, 6}, {0, 2, 1, 9, 0, 3, 1}, {}};
  if (name.starts_with(L"xdb"))
    return {{0, 1, 2}, {0, 9, 1}, {}};
  if (name.starts_with(L"pulse"))
    return {{0, 1, 3, 5, 9, 10}, {0, 0, 10, 10, 0, 0}, {}};
  return pulses;
}

// A response that turns round, for the functions that need phases.
ComplexNumbers Turning(Numbers const & y) {
  ComplexNumbers turning;
  for (std::size_t i = 0; i < y.size(); ++i)
    turning.push_back(std::polar(y[i], -0.9 * static_cast<double>(i)));
  return turning;
}

double Measured(val::RangedFunction const & function, Trial const & trial) {
  if (function.input == val::RangedInput::kGain)
    return Of(function.name, trial.x, Turning(trial.y), trial.parameters);
  return Of(function.name, trial.x, trial.y, trial.parameters);
}

// Functions that need two samples and a span.
std::set<Name> const kSpan = {L"rms",
                              L"avg",
                              L"integ",
                              L"integabs",
                              L"avgabs",
                              L"rmsAC",
                              L"ripple",
                              L"pkavg",
                              L"pulsemin",
                              L"pulsemax",
                              L"pulsemintime",
                              L"pulsemaxtime",
                              L"pulsefall9010",
                              L"pulsefront1090",
                              L"pulsefront3090",
                              L"pulsetail50",
                              L"pulsewidth5050",
                              L"overshoot",
                              L"undershoot",
                              L"crestfactor",
                              L"formfactor",
                              L"distortion",
                              L"fundamentalmag",
                              L"delaytime",
                              L"risetime",
                              L"deadtime",
                              L"settlingtime",
                              L"iae",
                              L"ise",
                              L"itae",
                              L"itse",
                              L"xdb10Beamwidth",
                              L"xdb20Beamwidth",
                              L"EyeLevelZero",
                              L"EyeLevelOne",
                              L"EyeAmplitude",
                              L"EyeHeight",
                              L"EyeSignalToNoise",
                              L"EyeOpeningFactor",
                              L"EyeWidth",
                              L"EyeJitterP2P",
                              L"EyeJitterRMS",
                              L"EyeRiseTime",
                              L"EyeFallTime",
                              L"MinEyeWidth",
                              L"MinEyeHeight"};

// The power of a scale of y, and of one of x, that a function's result bears; 0 where it isn't listed.
std::map<Name, int> const kPowerOfY = {
    {L"max", 1},       {L"min", 1},         {L"pk2pk", 1},        {L"rms", 1},          {L"avg", 1},
    {L"integ", 1},     {L"sum", 1},         {L"mean", 1},         {L"variance", 2},     {L"stddev", 1},
    {L"integabs", 1},  {L"avgabs", 1},      {L"rmsAC", 1},        {L"YAtXMin", 1},      {L"YAtXMax", 1},
    {L"YAtXVal", 1},   {L"pulsemin", 1},    {L"pulsemax", 1},     {L"iae", 1},          {L"ise", 2},
    {L"itae", 1},      {L"itse", 2},        {L"lSidelobeY", 1},   {L"rSidelobeY", 1},   {L"fundamentalmag", 1},
    {L"EyeHeight", 1}, {L"EyeLevelOne", 1}, {L"EyeLevelZero", 1}, {L"EyeAmplitude", 1}, {L"MinEyeHeight", 1}};
std::set<Name> const kNoPowerOfX = {L"max",
                                    L"min",
                                    L"pk2pk",
                                    L"rms",
                                    L"avg",
                                    L"sum",
                                    L"mean",
                                    L"variance",
                                    L"stddev",
                                    L"avgabs",
                                    L"rmsAC",
                                    L"ripple",
                                    L"pkavg",
                                    L"YAtXMin",
                                    L"YAtXMax",
                                    L"YAtXVal",
                                    L"pulsemin",
                                    L"pulsemax",
                                    L"overshoot",
                                    L"undershoot",
                                    L"crestfactor",
                                    L"formfactor",
                                    L"distortion",
                                    L"fundamentalmag",
                                    L"gainmargin",
                                    L"phasemargin",
                                    L"peakgain",
                                    L"lSidelobeY",
                                    L"rSidelobeY",
                                    L"EyeLevelZero",
                                    L"EyeLevelOne",
                                    L"EyeAmplitude",
                                    L"EyeHeight",
                                    L"EyeSignalToNoise",
                                    L"EyeOpeningFactor",
                                    L"MinEyeHeight"};
std::map<Name, int> const kPowerOfYInParameter = {{L"Y Value", 1},   {L"Threshold", 1},          {L"Target", 1},
                                                  {L"Tolerance", 1}, {L"Crossing Amplitude", 1}, {L"Base Gain", 1}};
std::map<Name, int> const kPowerOfXInParameter = {
    {L"X Value", 1},    {L"Unit Interval", 1},         {L"Start Offset", 1},
    {L"End Offset", 1}, {L"Eye Measurement Point", 1}, {L"Frequency", -1}};

int PowerIn(std::map<Name, int> const & powers, std::wstring_view name) {
  auto const found = powers.find(Name(name));
  return found == powers.end() ? 0 : found->second;
}

int PowerOfX(std::wstring_view name) {
  if (kNoPowerOfX.contains(Name(name)))
    return 0;
  return name == L"itae" || name == L"itse" ? 2 : 1;
}

// The same trial with y and x multiplied by powers of two, which costs no digit.
Trial Scaled(val::RangedFunction const & function, Trial trial, int ofY, int ofX) {
  for (double & y : trial.y)
    y = std::ldexp(y, ofY);
  for (double & x : trial.x)
    x = std::ldexp(x, ofX);
  for (std::size_t k = trial.parameters.size(); k < function.parameters.size(); ++k)
    trial.parameters.push_back(function.parameters[k].defaultValue);
  for (std::size_t k = 0; k < trial.parameters.size(); ++k) {
    std::wstring_view const name = function.parameters[k].name;
    trial.parameters[k] = std::ldexp(trial.parameters[k], ofY * PowerIn(kPowerOfYInParameter, name) +
                                                              ofX * PowerIn(kPowerOfXInParameter, name));
  }
  return trial;
}

std::string Told(val::RangedFunction const & function) { return {function.name.begin(), function.name.end()}; }

} // namespace

TEST(RangedFunctions, AreEightySevenFoundByNameWithoutCase) {
  std::set<Name> names;
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    names.insert(Name(function.name));
    EXPECT_EQ(val::FindRangedFunction(function.name), &function) << Told(function);
    Name loud(function.name);
    for (wchar_t & c : loud)
      c = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
    EXPECT_EQ(val::FindRangedFunction(loud), &function) << Told(function);
  }
  EXPECT_EQ(val::RangedFunctions().size(), 87u);
  EXPECT_EQ(names.size(), 87u);
  EXPECT_EQ(val::FindRangedFunction(L"maxi"), nullptr);
  EXPECT_EQ(val::FindRangedFunction(L""), nullptr);
}

TEST(RangedFunctions, ParametersAreFoundByNameWithoutCase) {
  val::RangedFunction const & settling = *val::FindRangedFunction(L"settlingtime");
  EXPECT_EQ(val::FindRangedParameter(settling, L"target"), 0);
  EXPECT_EQ(val::FindRangedParameter(settling, L"TOLERANCE"), 1);
  EXPECT_EQ(val::FindRangedParameter(settling, L"Frequency"), -1);
}

TEST(RangedFunctions, EachHasSomethingToSayOfATraceMadeForIt) {
  for (val::RangedFunction const & function : val::RangedFunctions())
    EXPECT_TRUE(std::isfinite(Measured(function, TrialOf(function)))) << Told(function);
}

TEST(RangedFunctions, NothingIsSaidOfNoSamplesOrOfHolesAlone) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Numbers const parameters = TrialOf(function).parameters;
    EXPECT_NO_VALUE(Of(function.name, {}, Numbers{}, parameters)) << Told(function);
    EXPECT_NO_VALUE(Of(function.name, {}, ComplexNumbers{}, parameters)) << Told(function);
    EXPECT_NO_VALUE(Of(function.name, {0, 1, kNan}, Numbers{kNan, kInfinity, 3}, parameters)) << Told(function);
    EXPECT_NO_VALUE(Of(function.name, {0, 1}, ComplexNumbers{{kNan, 1}, {1, -kInfinity}}, parameters))
        << Told(function);
  }
}

TEST(RangedFunctions, NothingIsSaidOfColumnsOfDifferentLength) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Trial trial = TrialOf(function);
    trial.x.pop_back();
    EXPECT_NO_VALUE(Measured(function, trial)) << Told(function);
  }
}

TEST(RangedFunctions, NothingIsSaidWhereXStepsBackwardsAnywhere) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Trial trial = TrialOf(function);
    std::swap(trial.x[trial.x.size() - 2], trial.x.back());
    EXPECT_NO_VALUE(Measured(function, trial)) << Told(function);
  }
}

TEST(RangedFunctions, AStepBackwardsInAHoleIsNone) {
  EXPECT_EQ(Of(L"max", {0, 5, 1}, {1, kNan, 2}), 2);
  EXPECT_EQ(Of(L"max", {0, -kInfinity, 1}, {1, 9, 2}), 2);
}

TEST(RangedFunctions, HolesAreLeftOutAndTheirNeighboursJoined) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Trial const whole = TrialOf(function);
    double const expected = Measured(function, whole);
    for (std::size_t at = 0; at <= whole.x.size(); ++at) {
      auto const place = static_cast<std::ptrdiff_t>(at);
      Trial holed = whole;
      holed.x.insert(holed.x.begin() + place, {at == 0 ? -3.0 : whole.x[at - 1], kNan});
      holed.y.insert(holed.y.begin() + place, {at % 2 == 0 ? kNan : -kInfinity, 1.0});
      if (function.input != val::RangedInput::kGain) {
        EXPECT_EQ(Measured(function, holed), expected) << Told(function) << " " << at;
        continue;
      }
      ComplexNumbers turning = Turning(whole.y);
      turning.insert(turning.begin() + place, {std::complex<double>(1, kNan), std::complex<double>(1, 1)});
      EXPECT_EQ(Of(function.name, holed.x, turning, holed.parameters), expected) << Told(function) << " " << at;
    }
  }
}

TEST(RangedFunctions, ThoseOfASpanSayNothingOfOneSampleOrOfOneX) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    EXPECT_EQ(function.needsSpan, kSpan.contains(Name(function.name))) << Told(function);
    if (!function.needsSpan)
      continue;
    Numbers const parameters = TrialOf(function).parameters;
    EXPECT_NO_VALUE(Of(function.name, {1}, Numbers{2}, parameters)) << Told(function);
    EXPECT_NO_VALUE(Of(function.name, {1, 1, 1}, Numbers{0, 2, 0}, parameters)) << Told(function);
  }
}

TEST(RangedFunctions, AParameterThatIsNanIsNoValueEvenWhereItIsNotUsed) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Trial const trial = TrialOf(function);
    for (std::size_t i = 0; i < function.parameters.size(); ++i) {
      Trial bad = trial;
      for (std::size_t k = bad.parameters.size(); k <= i; ++k)
        bad.parameters.push_back(function.parameters[k].defaultValue);
      bad.parameters[i] = kNan;
      EXPECT_NO_VALUE(Measured(function, bad)) << Told(function) << " " << i;
    }
  }
}

TEST(RangedFunctions, AParameterNotGivenHasItsDefault) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    Trial given = TrialOf(function);
    double const expected = Measured(function, given);
    for (std::size_t k = given.parameters.size(); k < function.parameters.size(); ++k)
      given.parameters.push_back(function.parameters[k].defaultValue);
    EXPECT_EQ(Measured(function, given), expected) << Told(function);
    given.parameters.push_back(0);
    EXPECT_NO_VALUE(Measured(function, given)) << Told(function) << ": one too many";
  }
}

TEST(RangedFunctions, AComplexTraceCountsByItsMagnitudeButForTheGains) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    if (function.input == val::RangedInput::kGain)
      continue;
    Trial trial = TrialOf(function);
    ComplexNumbers turned;
    for (double & y : trial.y) {
      turned.push_back({0, -y}); // of exactly this magnitude
      y = std::fabs(y);
    }
    double const expected = Measured(function, trial);
    EXPECT_EQ(Of(function.name, trial.x, turned, trial.parameters), expected) << Told(function);
  }
}

TEST(RangedFunctions, OneTraceServesManyFunctions) {
  Numbers const x = {0, kNan, 1, 3};
  Numbers const y = {0, 5, 2, -1};
  val::RangedTrace const trace(x, y);
  EXPECT_EQ(trace.Count(), 3u);
  EXPECT_EQ(trace.Span(), 3);
  EXPECT_EQ(val::Measure(*val::FindRangedFunction(L"max"), trace), 2);
  EXPECT_EQ(val::Measure(*val::FindRangedFunction(L"XAtYMin"), trace), 3);
}

TEST(RangedFunctions, AWholeColumnIsLookedAtWhereItIs) {
  Numbers const x = {0, 1, 3};
  Numbers const y = {0, 2, -1};
  val::RangedTrace const trace(x, y);
  EXPECT_EQ(trace.X().data(), x.data());
  EXPECT_EQ(trace.Y().data(), y.data());
}

TEST(RangedFunctions, AScaleOfYScalesTheResultOrKeepsIt) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    double const plain = Measured(function, Scaled(function, TrialOf(function), 0, 0));
    for (int const power : {-600, -500, 500, 600}) {
      double const expected = std::ldexp(plain, power * PowerIn(kPowerOfY, function.name));
      double const measured = Measured(function, Scaled(function, TrialOf(function), power, 0));
      if (std::isinf(expected)) {
        EXPECT_NO_VALUE(measured) << Told(function) << " " << power;
      } else {
        EXPECT_DOUBLE_EQ(measured, expected) << Told(function) << " " << power;
      }
    }
  }
}

TEST(RangedFunctions, AScaleOfXScalesTheResultOrKeepsIt) {
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    double const plain = Measured(function, Scaled(function, TrialOf(function), 0, 0));
    for (int const power : {-500, -40, 40, 500}) {
      double const expected = std::ldexp(plain, power * PowerOfX(function.name));
      EXPECT_DOUBLE_EQ(Measured(function, Scaled(function, TrialOf(function), 0, power)), expected)
          << Told(function) << " " << power;
    }
  }
}

TEST(RangedFunctions, AnAverageThatIsANumberIsFoundWhereItsSumIsNone) {
  Numbers const x = {0, 1, 2};
  Numbers const huge = {1.5e308, 1.7e308, 1.6e308};
  EXPECT_DOUBLE_EQ(Of(L"avg", x, huge), 1.625e308);
  EXPECT_DOUBLE_EQ(Of(L"mean", x, huge), 1.6e308);
  EXPECT_DOUBLE_EQ(Of(L"pkavg", x, huge), 2e307 / 1.625e308);
  EXPECT_DOUBLE_EQ(Of(L"crestfactor", x, {1e200, 1e200, 3e200}), 3 / std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(Of(L"rms", x, {1e-170, 1e-170, 3e-170}), std::sqrt(3.0) * 1e-170);
}

TEST(RangedFunctions, ASpanThatIsNoNumberIsNone) {
  Numbers const x = {-1.5e308, 0, 1.5e308};
  for (val::RangedFunction const & function : val::RangedFunctions()) {
    if (function.needsSpan) {
      EXPECT_NO_VALUE(Of(function.name, x, Numbers{0, 1, 0}, TrialOf(function).parameters)) << Told(function);
    }
  }
  EXPECT_NO_VALUE(Of(L"overshoot", x, {0, 1, 0}, {0.5, 5}));
  EXPECT_NO_VALUE(Of(L"per", x, {0, 1, 0}, {0.5, 5}));
}

TEST(RangedFunctions, ALevelIsMetInAPieceWhoseStepIsNoNumber) {
  EXPECT_EQ(Of(L"XAtYVal", {0, 1}, {-1.5e308, 1.5e308}, {0}), 0.5);
  EXPECT_EQ(Of(L"YAtXVal", {0, 1}, {-1.5e308, 1.5e308}, {0.5}), 0);
  EXPECT_EQ(Of(L"YAtXVal", {-1.5e308, 1.5e308}, {0, 1}, {0}), 0.5);
}

TEST(RangedFunctions, WhateverTheNumbersAResultIsFiniteOrNone) {
  std::mt19937 random(7);
  Numbers const odd = {0,    -0.0, 1,     -1,   0.5, 1e-300, 5e-324,     1e300, -1e300, kInfinity,
                       kNan, 1e-9, 1e308, 1e16, 1e7, 3,      -kInfinity, 180,   1e-15};
  auto const pick = [&] { return odd[random() % odd.size()]; };
  for (int round = 0; round < 300; ++round) {
    Trial trial;
    double at = -1;
    for (unsigned n = random() % 9; n > 0; --n) {
      trial.x.push_back(random() % 4 ? at : pick());
      trial.y.push_back(pick());
      at += random() % 3 * 0.5;
    }
    for (val::RangedFunction const & function : val::RangedFunctions()) {
      trial.parameters.clear();
      for (std::size_t k = random() % (function.parameters.size() + 1); k > 0; --k) {
        double const parameter = pick();
        trial.parameters.push_back(std::fabs(parameter) == 1e7 ? 100 : parameter); // ten million points take a while
      }
      EXPECT_FALSE(std::isinf(Of(function.name, trial.x, trial.y, trial.parameters))) << Told(function);
      EXPECT_FALSE(std::isinf(Of(function.name, trial.x, Turning(trial.y), trial.parameters))) << Told(function);
    }
  }
}
