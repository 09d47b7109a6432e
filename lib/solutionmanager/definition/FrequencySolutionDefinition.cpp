#include "solutionmanager/definition/FrequencySolutionDefinition.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/DoDataExchange.h"
#include "plotkit/sweep/SweepValues.h"

bool FrequencySolutionDefinition::operator==(ISolutionDefinition const & other) const {
  auto const * theirs = dynamic_cast<FrequencySolutionDefinition const *>(&other);
  if (!theirs)
    return false;
  if (theirs->m_type != kAnySolutionType && theirs->m_type != m_type)
    return false;
  return m_Frequencies == theirs->m_Frequencies &&
         m_InterpolatingSamplingFreqs == theirs->m_InterpolatingSamplingFreqs && m_centerFreq == theirs->m_centerFreq &&
         m_startFreq == theirs->m_startFreq && m_stopFreq == theirs->m_stopFreq && m_stepFreq == theirs->m_stepFreq &&
         m_numSamplingPoints == theirs->m_numSamplingPoints && m_sweepDefType == theirs->m_sweepDefType;
}

void FrequencySolutionDefinition::SetFrequencies(std::vector<double> const & frequencies) {
  m_Frequencies = frequencies;
  m_InterpolatingSamplingFreqs = false;
}

void FrequencySolutionDefinition::SetSamplingInfo(double start, double stop, double step, double center) {
  m_startFreq = start;
  m_stopFreq = stop;
  m_stepFreq = step;
  m_numSamplingPoints = 0;
  m_sweepDefType = SweepDefinition::kLinearStep;
  m_InterpolatingSamplingFreqs = true;
  GenerateSamplingFreqs(start, stop, step);
  m_centerFreq = center;
}

void FrequencySolutionDefinition::SetSamplingInfo(double start, double stop, unsigned int count, double center,
                                                  SweepDefinition::SweepType type) {
  m_startFreq = start;
  m_stopFreq = stop;
  m_stepFreq = 0.0;
  m_numSamplingPoints = count;
  m_sweepDefType = type;
  m_InterpolatingSamplingFreqs = true;
  GenerateSamplingFreqs(start, stop, count, type);
  m_centerFreq = center;
}

void FrequencySolutionDefinition::GenerateSamplingFreqs(double start, double stop, double step) {
  m_Frequencies.clear();
  core::GetSteppedValues(m_Frequencies, start, stop, step);
}

void FrequencySolutionDefinition::GenerateSamplingFreqs(double start, double stop, unsigned int count,
                                                        SweepDefinition::SweepType type) {
  m_Frequencies.clear();
  switch (type) {
  case SweepDefinition::kLinearCount:
    return SweepDefinition::GetLinearCountDoubles(start, stop, count, 0, m_Frequencies);
  case SweepDefinition::kDecadeCount:
    return core::GetLogScaleValues(m_Frequencies, 10.0, start, stop, count, 0);
  case SweepDefinition::kOctaveCount:
    return core::GetLogScaleValues(m_Frequencies, 2.0, start, stop, count, 0);
  case SweepDefinition::kExponentialCount:
    return core::GetLogScaleValues(m_Frequencies, SweepDefinition::kExponentialBase, start, stop, count, 0);
  default:
    KVRO_ASSERT(0);
  }
}

bool FrequencySolutionDefinition::IsSweepDefTypeBasedUponNumSamplingPoints(SweepDefinition::SweepType type) {
  return type >= SweepDefinition::kDecadeCount && type <= SweepDefinition::kLinearCount;
}

io::ReadError FrequencySolutionDefinition::DoDataExchange(io::CBlock & block, bool reading) {
  io::DoDataExchange(block, reading, L"SamplingInterpolation", m_InterpolatingSamplingFreqs);
  DoDataExchangeFreqs(block, reading);
  auto type = static_cast<unsigned int>(m_type);
  io::DoDataExchange(block, reading, L"SolutionType", type);
  m_type = static_cast<SolutionType>(type);
  return io::DoDataExchange(block, reading, L"CenterFreq", m_centerFreq);
}

io::ReadError FrequencySolutionDefinition::DoDataExchangeFreqs(io::CBlock & block, bool reading) {
  return m_InterpolatingSamplingFreqs ? DoDataExchangeInterpolatingFreqs(block, reading)
                                      : ExchangeFrequencyLine(block, reading);
}

io::ReadError FrequencySolutionDefinition::ExchangeFrequencyLine(io::CBlock & block, bool reading) {
  io::CBlockFuncPtr line(L"Frequencies");
  if (!reading) {
    line->AppendReals(m_Frequencies);
    block << line;
    return io::kNoError;
  }
  block >> line;
  if (!block.Found())
    return io::kNotFound;
  m_Frequencies.clear();
  auto place = line->begin();
  line->QueryUnamedValues(place, m_Frequencies);
  return io::kNoError;
}

io::ReadError FrequencySolutionDefinition::DoDataExchangeInterpolatingFreqs(io::CBlock & block, bool reading) {
  KVRO_ASSERT(m_InterpolatingSamplingFreqs);
  if (!reading)
    return WriteSampling(block);
  bool const isOneFrequency = io::DoDataExchange(block, true, L"StartFreq", m_startFreq) == io::kNotFound;
  return isOneFrequency ? ReadOneFrequency(block) : ReadSampling(block);
}

io::ReadError FrequencySolutionDefinition::ReadOneFrequency(io::CBlock & block) {
  io::ReadError const ret = ExchangeFrequencyLine(block, true);
  KVRO_ASSERT(ret == io::kNoError);
  KVRO_ASSERT(m_Frequencies.size() == 1);
  m_sweepDefType = SweepDefinition::kLinearStep;
  m_numSamplingPoints = 0;
  if (!m_Frequencies.empty())
    m_startFreq = m_stopFreq = m_stepFreq = m_Frequencies.front();
  return ret;
}

io::ReadError FrequencySolutionDefinition::ReadSampling(io::CBlock & block) {
  // Older files have stepped sweeps alone, and no type.
  AString typeName = SweepDefinition::GetSweepTypeName(SweepDefinition::kLinearStep);
  io::DoDataExchange(block, true, L"SweepDefType", typeName);
  m_sweepDefType = SweepDefinition::GetSweepType(typeName);
  KVRO_ASSERT(m_sweepDefType != SweepDefinition::kNumOfSweepType);
  io::ReadError ret = io::DoDataExchange(block, true, L"StopFreq", m_stopFreq);
  KVRO_ASSERT(ret != io::kNotFound);
  bool const byCount = IsSweepDefTypeBasedUponNumSamplingPoints(m_sweepDefType);
  if (byCount) {
    ret = io::DoDataExchange(block, true, L"NumSamplingPoints", m_numSamplingPoints);
    m_stepFreq = 0.0;
  } else {
    ret = io::DoDataExchange(block, true, L"StepSize", m_stepFreq);
    m_numSamplingPoints = 0;
  }
  KVRO_ASSERT(ret != io::kNotFound);
  RebuildFrequencies(byCount);
  return ret;
}

void FrequencySolutionDefinition::RebuildFrequencies(bool byCount) {
  m_Frequencies.clear();
  if (byCount) {
    KVRO_ASSERT(m_numSamplingPoints > 0);
    GenerateSamplingFreqs(m_startFreq, m_stopFreq, m_numSamplingPoints, m_sweepDefType);
    return;
  }
  KVRO_ASSERT(m_stepFreq != 0.0);
  if (m_stepFreq != 0.0)
    GenerateSamplingFreqs(m_startFreq, m_stopFreq, m_stepFreq);
}

io::ReadError FrequencySolutionDefinition::WriteSampling(io::CBlock & block) {
  AString sweepDefTypeName = SweepDefinition::GetSweepTypeName(m_sweepDefType);
  KVRO_ASSERT(!sweepDefTypeName.empty());
  io::DoDataExchange(block, false, L"SweepDefType", sweepDefTypeName);
  io::DoDataExchange(block, false, L"StartFreq", m_startFreq);
  io::DoDataExchange(block, false, L"StopFreq", m_stopFreq);
  return IsSweepDefTypeBasedUponNumSamplingPoints(m_sweepDefType)
             ? io::DoDataExchange(block, false, L"NumSamplingPoints", m_numSamplingPoints)
             : io::DoDataExchange(block, false, L"StepSize", m_stepFreq);
}
