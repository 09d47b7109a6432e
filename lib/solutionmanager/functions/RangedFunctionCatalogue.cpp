#include "solutionmanager/functions/RangedFunctionCatalogue.h"

namespace ranged {

namespace {

constexpr CatalogueRow kMathRows[] = {
    {L"max", Scale::kY, Parameters::kNone, L"Maximum (of magnitudes)."},
    {L"min", Scale::kY, Parameters::kNone, L"Minimum (of magnitudes)."},
    {L"pk2pk", Scale::kY, Parameters::kNone,
     L"Difference between max and min of the first param over the second param. returns the peak-to-peak value for the "
     L"selected simulation quantity."},
    {L"rms", Scale::kY, Parameters::kNone, L"Returns total RMS of the selected quantity."},
    {L"avg", Scale::kY, Parameters::kNone, L"Average of first param over the second param."},
    {L"integ", Scale::kXY, Parameters::kNone, L"Integral of the selected quantity. Uses trapezoidal area."},
    {L"sum", Scale::kY, Parameters::kNone, L"Return sum of given values."},
    {L"mean", Scale::kY, Parameters::kNone, L"Return mean of given values."},
    {L"variance", Scale::kYY, Parameters::kNone, L"Return variance of given values."},
    {L"stddev", Scale::kY, Parameters::kNone, L"Return standard deviation of given values."},
    {L"integabs", Scale::kXY, Parameters::kNone, L"Returns the integral of the absolute value of the selected qty."},
    {L"avgabs", Scale::kY, Parameters::kNone, L"Returns the mean of the absolute value of the selected  quantity."},
    {L"rmsAC", Scale::kY, Parameters::kNone, L"Returns the AC RMS for the selected  quantity"},
    {L"ripple", Scale::kNone, Parameters::kNone, L"Returns the ripple factor (AC RMS/Mean) for the selected quantity."},
    {L"pkavg", Scale::kNone, Parameters::kNone,
     L"Returns the ratio of the peak to peak-to-average for the selected quantity."},
    {L"XAtYMin", Scale::kX, Parameters::kNone, L"Returns the X value at minimum Y."},
    {L"XAtYMax", Scale::kX, Parameters::kNone, L"Returns the X value at maximum Y."},
    {L"YAtXMin", Scale::kY, Parameters::kNone, L"Returns the Y value at minimum X."},
    {L"YAtXMax", Scale::kY, Parameters::kNone, L"Returns the Y value at maximum X."},
    {L"XAtYVal", Scale::kX, Parameters::kFindX, L"Returns the X value at the first occurrence of Y value."},
    {L"YAtXVal", Scale::kY, Parameters::kFindY, L"Returns the Y value at the first occurrence of X value."},
    {L"XWidthAtYVal", Scale::kX, Parameters::kFindWidth,
     L"Returns the X width between the first 2 occurrence of Y value."},
};

constexpr CatalogueRow kPulseRows[] = {
    {L"pulsemin", Scale::kY, Parameters::kNone,
     L"Returns the pulse minimum from the front and tail estimates for the selected quantity."},
    {L"pulsemax", Scale::kY, Parameters::kNone,
     L"Returns the pulse maximum from the front and tail estimates for the selected quantity."},
    {L"pulsemintime", Scale::kX, Parameters::kNone,
     L"Returns the time at which the minimum pulse value of the selected quantity is reached."},
    {L"pulsemaxtime", Scale::kX, Parameters::kNone,
     L"Returns the time at which the maximum pulse value of the selected quantity is reached."},
    {L"pulsefall9010", Scale::kX, Parameters::kNone,
     L"Returns the pulse fall time of the selected quantity according to the 90%-10% estimate."},
    {L"pulsefront1090", Scale::kX, Parameters::kNone,
     L"Returns the pulse front time of the selected quantity according to the 10%-90% estimate."},
    {L"pulsefront3090", Scale::kX, Parameters::kNone,
     L"Returns the pulse front time of the selected quantity according to the 30%-90% estimate."},
    {L"pulsetail50", Scale::kX, Parameters::kNone,
     L"Returns the pulse tail time of the selected quantity from the virtual peak to 50%."},
    {L"pulsewidth5050", Scale::kX, Parameters::kNone,
     L"Returns the pulse width of the selected quantity as measured from the 50% points on the pulse front and pulse "
     L"tail."},
};

constexpr CatalogueRow kPulseStreamRows[] = {
    {L"pw_plus", Scale::kX, Parameters::kPulse, L"Pulse width of first positive pulse."},
    {L"pw_minus", Scale::kX, Parameters::kPulse, L"Pulse width of the first negative pulse."},
    {L"pw_plus_avg", Scale::kX, Parameters::kPulse, L"Average of the positive pulse width input stream."},
    {L"pw_minus_avg", Scale::kX, Parameters::kPulse, L"Average of the negative pulse width input stream."},
    {L"pw_plus_max", Scale::kX, Parameters::kPulse, L"Max. Pulse width of the positive pulse of input stream."},
    {L"pw_minus_max", Scale::kX, Parameters::kPulse, L"Max. Pulse width of the negative pulse of input stream."},
    {L"pw_plus_min", Scale::kX, Parameters::kPulse, L"Min. Pulse width of the positive pulse of input stream."},
    {L"pw_minus_min", Scale::kX, Parameters::kPulse, L"Min. Pulse width of the negative pulse of input stream."},
    {L"pw_plus_rms", Scale::kX, Parameters::kPulse, L"RMS of the positive pulse width input stream."},
    {L"pw_minus_rms", Scale::kX, Parameters::kPulse, L"RMS of the negative pulse width input stream."},
};

constexpr CatalogueRow kShootRows[] = {
    {L"overshoot", Scale::kNone, Parameters::kShoot,
     L"Calculates peak overshoot given a threshold value and number of evenly spaced points over entire time range."},
    {L"undershoot", Scale::kNone, Parameters::kShoot,
     L"Calculates peak undershoot given a threshold value and number of evenly spaced points over entire time range."},
};

constexpr CatalogueRow kResponseRows[] = {
    {L"crestfactor", Scale::kNone, Parameters::kNone,
     L"Returns the crest factor (peak/RMS) for the selected quantity."},
    {L"formfactor", Scale::kNone, Parameters::kNone,
     L"Returns the form factor (RMS/Mean Absolute Value) for the selected quantity."},
    {L"distortion", Scale::kNone, Parameters::kFrequency,
     L"Returns the total distortion for the selected simulation quantity and an additional argument frequency, which "
     L"is the frequency in Hz at which to calculate the fundamental RMS of the simulation quantity."},
    {L"fundamentalmag", Scale::kY, Parameters::kFrequency,
     L"Returns the RMS value of the fundamental frequency for the selected quantity and an additional argument "
     L"frequency, which specifies the fundamental frequency."},
    {L"delaytime", Scale::kX, Parameters::kTarget, L"Obtains the time from zero to 50% of the target point."},
    {L"risetime", Scale::kX, Parameters::kTarget, L"Obtains the time taken to go from 10% to 90% of target point."},
    {L"deadtime", Scale::kX, Parameters::kTolerance,
     L"Obtains the latest time when the qtyl is within a tolerance of zero."},
    {L"settlingtime", Scale::kX, Parameters::kBand,
     L"Returns the latest time at which the value of the selected simulation quantity fell outside its tolerance band. "
     L"The target value of the quantity and the +/- bandwidth of the tolerance band are the additional args."},
};

constexpr CatalogueRow kErrorRows[] = {
    {L"iae", Scale::kXY, Parameters::kDeviation,
     L"Returns the integral of the absolute deviation of the selected quantity from a target value that is entered via "
     L"the additional argument."},
    {L"ise", Scale::kXYY, Parameters::kDeviation,
     L"Returns the integral of the squared deviation of the selected quantity from a target value that is entered via "
     L"an additional argument."},
    {L"itae", Scale::kXY, Parameters::kDeviation,
     L"Returns the time-weighted absolute deviation of the selected quantity from a target value that is entered via "
     L"an additional argument."},
    {L"itse", Scale::kXYY, Parameters::kDeviation,
     L"Returns the time-weighted squared deviation of the selected qty from a target value that is entered via an "
     L"additional argument."},
};

constexpr CatalogueRow kPeriodRows[] = {
    {L"per", Scale::kX, Parameters::kPeriod, L"Calculates period."},
    {L"pmax", Scale::kX, Parameters::kPeriod, L"Maximum period of input stream."},
    {L"pmin", Scale::kX, Parameters::kPeriod, L"Minimum period of input stream."},
    {L"prms", Scale::kX, Parameters::kPeriod, L"Rms of period of input stream."},
};

constexpr CatalogueRow kGainRows[] = {
    {L"gainmargin", Scale::kNone, Parameters::kAC,
     L"Returns the gain margin in dB at the phase crossover frequency of the selected simulation quantity."},
    {L"phasemargin", Scale::kNone, Parameters::kAC,
     L"Returns the phase angle in degrees at the gain crossover frequency of the selected simulation quantity."},
    {L"gaincrossover", Scale::kX, Parameters::kAC,
     L"Returns the gain crossover frequency (where the gain is 0 dB) of the selected simulation quantity in Hz."},
    {L"phasecrossover", Scale::kX, Parameters::kAC,
     L"Returns the phase crossover freq, at which the phase is -180 degrees, in Hz for the selected simulation "
     L"quantity."},
    {L"lowercutoff", Scale::kX, Parameters::kAC,
     L"Returns the lower 3dB frequency of the selected simulation channel in Hz."},
    {L"uppercutoff", Scale::kX, Parameters::kAC,
     L"Returns the upper 3dB frequency of the selected simulation channel in Hz."},
    {L"bandwidth", Scale::kX, Parameters::kAC, L"Returns the bandwidth of the selected simulation quantity in Hz."},
    {L"peakgain", Scale::kNone, Parameters::kAC, L"Returns the peak gain of the selected simulation quantity in dB."},
    {L"peakgainfreq", Scale::kX, Parameters::kAC,
     L"Returns the frequency in Hz at which the peak gain of the selected simulation quantity occurs."},
};

constexpr CatalogueRow kRadiationRows[] = {
    {L"lSidelobeY", Scale::kY, Parameters::kNone, L"Value of left side-lobe."},
    {L"rSidelobeY", Scale::kY, Parameters::kNone, L"Value of right side-lobe"},
    {L"lSidelobeX", Scale::kX, Parameters::kNone, L"X value of left side-lobe occurrence."},
    {L"rSidelobeX", Scale::kX, Parameters::kNone, L"X value of right side-lobe occurrence."},
    {L"xdb10Beamwidth", Scale::kX, Parameters::kBeam,
     L"Width between left and right occurrences of values ‘x’ db10 from max."},
    {L"xdb20Beamwidth", Scale::kX, Parameters::kBeam,
     L"Width between left and right occurrences of values ‘x’ db20 from max."},
};

constexpr CatalogueRow kEyeRows[] = {
    {L"EyeLevelZero", Scale::kY, Parameters::kEye, L"Calculates level zero of Eye"},
    {L"EyeLevelOne", Scale::kY, Parameters::kEye, L"Calculates level one of Eye"},
    {L"EyeAmplitude", Scale::kY, Parameters::kEye, L"Calculates amplitude of Eye"},
    {L"EyeHeight", Scale::kY, Parameters::kEye, L"Calculates height of Eye"},
    {L"EyeSignalToNoise", Scale::kNone, Parameters::kEye, L"Calculates signal to noise ratio of Eye"},
    {L"EyeOpeningFactor", Scale::kNone, Parameters::kEye, L"Calculates opening factor of Eye"},
    {L"EyeWidth", Scale::kX, Parameters::kEye, L"Calculates width of Eye"},
    {L"EyeJitterP2P", Scale::kX, Parameters::kEye, L"Calculates peak to peak jitter of Eye"},
    {L"EyeJitterRMS", Scale::kX, Parameters::kEye, L"Calculates rms jitter of Eye"},
    {L"EyeRiseTime", Scale::kX, Parameters::kEye, L"Calculates rise time of Eye"},
    {L"EyeFallTime", Scale::kX, Parameters::kEye, L"Calculates fall time of Eye"},
    {L"MinEyeWidth", Scale::kX, Parameters::kEyePoint, L"Calculates minimum eye width"},
    {L"MinEyeHeight", Scale::kY, Parameters::kEyePoint, L"Calculates minimum eye height"},
};

constexpr CatalogueGroup kGroups[] = {
    {L"Math", kMathRows},
    {L"Pulse Width", kPulseRows},
    {L"Pulse Width", kPulseStreamRows},
    {L"Overshoot/Undershoot", kShootRows},
    {L"TR & DC", kResponseRows},
    {L"Error", kErrorRows},
    {L"Period", kPeriodRows},
    {L"AC", kGainRows},
    {L"Radiation", kRadiationRows},
    {L"Eye Measurements", kEyeRows},
};

} // namespace

std::span<CatalogueGroup const> CatalogueGroups() { return kGroups; }

} // namespace ranged
