#include "solutionmanager/functions/RangedFunctionCatalogue.h"

namespace ranged {

namespace {

struct Parameter {
  wchar_t const * name;
  wchar_t const * text;
  wchar_t const * description;
};

constexpr Parameter kFindX[] = {{L"Y Value", L"0.0", L"Y value at which we need to find X"}};
constexpr Parameter kFindY[] = {{L"X Value", L"0.0", L"X value at which we need to find Y"}};
constexpr Parameter kFindWidth[] = {{L"Y Value", L"0.0", L"Y Value at which we need to find X Width"}};
constexpr Parameter kFrequency[] = {{L"Frequency", L"0.0", L"Freq in Hz at which to calculate the RMS of the qty"}};
constexpr Parameter kBand[] = {{L"Target", L"0.0", L"The target value for input"},
                               {L"Tolerance", L"0.0", L"The +/- bandwidth around 0"}};
constexpr Parameter kDeviation[] = {{L"Target", L"0.0", L"Target value"}};
constexpr Parameter kPulse[] = {{L"Threshold", L"0.0", L"Y transition value which determines the pulse width"},
                                {L"Number of Points", L"0", L"Number of evenly spaced time points"}};
constexpr Parameter kShoot[] = {
    {L"Threshold", L"0.0", L"The reference value from where the overshoot/undershoot is calculated"},
    {L"Number of Points", L"0", L"Number of evenly spaced time points"}};
constexpr Parameter kPeriod[] = {{L"Threshold", L"0.0", L"Y transition value which determines the period"},
                                 {L"Number of Points", L"0", L"Number of evenly spaced time points"}};
constexpr Parameter kAC[] = {{L"Base Gain", L"1.0", L"Ref AC magnitude"}, {L"Base Phase", L"0.0", L"Ref phase angle"}};
constexpr Parameter kBeam[] = {{L"x", L"3.0", L""}};
constexpr Parameter kEyePoint[] = {
    {L"Unit Interval", L"0.0ns", L"Unit Interval of signal"},
    {L"Start Offset", L"0.0ns", L"Offset at beginning of signal"},
    {L"End Offset", L"0.0ns", L"Offset at end of signal"},
    {L"Auto Crossing Amplitude", L"1", L"Nonzero number means that crossing amplitude is computed automatically."},
    {L"Crossing Amplitude", L"0.0mv", L"Specify crossing amplitude used for eye measurement data computation."},
    {L"Auto Compute Eye Measurement Point", L"1",
     L"Nonzero number means that eye measurement point is computed automatically."},
    {L"Eye Measurement Point", L"0.0ns",
     L"Specify eye measurement point used for minimum eye height and width computation."}};

std::span<Parameter const> List(Parameters parameters) {
  std::span<Parameter const> const band(kBand);
  std::span<Parameter const> const eyePoint(kEyePoint);
  switch (parameters) {
  case Parameters::kNone:
    return {};
  case Parameters::kFindX:
    return kFindX;
  case Parameters::kFindY:
    return kFindY;
  case Parameters::kFindWidth:
    return kFindWidth;
  case Parameters::kFrequency:
    return kFrequency;
  case Parameters::kTarget:
    return band.first(1);
  case Parameters::kTolerance:
    return band.last(1);
  case Parameters::kBand:
    return band;
  case Parameters::kDeviation:
    return kDeviation;
  case Parameters::kPulse:
    return kPulse;
  case Parameters::kShoot:
    return kShoot;
  case Parameters::kPeriod:
    return kPeriod;
  case Parameters::kAC:
    return kAC;
  case Parameters::kBeam:
    return kBeam;
  case Parameters::kEye:
    return eyePoint.first(5);
  case Parameters::kEyePoint:
    return eyePoint;
  }
  return {};
}

} // namespace

PropList ParameterList(Parameters parameters) {
  PropList list;
  for (Parameter const & parameter : List(parameters))
    list.AddProp(ValueProp(parameter.name, parameter.text, Units::kNoUnits, parameter.description));
  return list;
}

} // namespace ranged
