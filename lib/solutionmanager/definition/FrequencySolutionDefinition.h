#pragma once

#include "CoreInterfaces/solution/ISolutionDefinition.h"
#include "plotkit/sweep/SweepDefinition.h"

#include <vector>

/// Kinds of solutions; products number their own.
enum SolutionType : int {
  kDefaultSolutionType = 1,
  kAnySolutionType = 2 ///< on the right of a comparison it fits any type
};

/// The frequencies that a solution solved, in hertz: a list, or, for a sweep whose samples are generated, the sweep.
class FrequencySolutionDefinition : public ISolutionDefinition {
public:
  FrequencySolutionDefinition() = default;
  FrequencySolutionDefinition(std::vector<double> const & frequencies, SolutionType type)
      : m_Frequencies(frequencies), m_type(type) {}

  /// Not symmetric on purpose: only the other's type may be kAnySolutionType.
  bool operator==(ISolutionDefinition const & other) const override;
  /// The result is that of the last item alone.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  void GetFrequencies(std::vector<double> & frequencies) const { frequencies = m_Frequencies; }
  /// The list is then no longer generated; the sweep's fields stay.
  void SetFrequencies(std::vector<double> const & frequencies);
  double GetCenterFreq() const { return m_centerFreq; }
  SolutionType GetType() const { return m_type; }
  void SetType(SolutionType type) { m_type = type; }
  bool AreFrequenciesGenerated() const { return m_InterpolatingSamplingFreqs; }

  void SetSamplingInfo(double start, double stop, double step, double center);
  void SetSamplingInfo(double start, double stop, unsigned int count, double center, SweepDefinition::SweepType type);
  /// Both replace the list; see core::GetSteppedValues, core::GetLogScaleValues.
  void GenerateSamplingFreqs(double start, double stop, double step);
  void GenerateSamplingFreqs(double start, double stop, unsigned int count, SweepDefinition::SweepType type);

  io::ReadError DoDataExchangeFreqs(io::CBlock & block, bool reading);
  io::ReadError DoDataExchangeInterpolatingFreqs(io::CBlock & block, bool reading);

private:
  static bool IsSweepDefTypeBasedUponNumSamplingPoints(SweepDefinition::SweepType type);
  io::ReadError ExchangeFrequencyLine(io::CBlock & block, bool reading);
  io::ReadError ReadOneFrequency(io::CBlock & block);
  io::ReadError ReadSampling(io::CBlock & block);
  void RebuildFrequencies(bool byCount);
  io::ReadError WriteSampling(io::CBlock & block);

  std::vector<double> m_Frequencies;
  double m_centerFreq = 0.0;
  SolutionType m_type = kDefaultSolutionType;
  bool m_InterpolatingSamplingFreqs = false;
  double m_startFreq = 0.0;
  double m_stopFreq = 0.0;
  double m_stepFreq = 0.0;
  unsigned int m_numSamplingPoints = 0;
  SweepDefinition::SweepType m_sweepDefType = SweepDefinition::kNumOfSweepType;
};
