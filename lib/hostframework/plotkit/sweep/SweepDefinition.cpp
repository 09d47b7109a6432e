#include "plotkit/sweep/SweepDefinition.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/DoDataExchange.h"
#include "basekit/value/Variable.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SweepValues.h"

#include <algorithm>
#include <array>
#include <new>
#include <set>

namespace {

std::array<wchar_t const *, SweepDefinition::kNumOfSweepType> const kTypeNames{L"",    L"LIN",  L"DEC",
                                                                               L"OCT", L"ESTP", L"LINC"};

/// The one text object of these characters; the pool only grows, by as many names as a program ever uses.
AString const * Interned(AString const & text) {
  static std::set<AString> s_texts;
  return &*s_texts.insert(text).first;
}

} // namespace

SweepDefinition::SweepDefinition() : m_variableName(Interned(AString())) {}

SweepDefinition::SweepDefinition(AString const & variable, SweepType type, double start, double stop)
    : m_variableName(Interned(variable)), m_type(type), m_start(start), m_stop(stop) {}

void SweepDefinition::SetVariableName(AString const & name) { m_variableName = Interned(name); }

AString SweepDefinition::GetDataKeyword() { return L"SweepDefinition"; }

AString SweepDefinition::GetSweepTypeName(SweepType type) {
  return type >= 0 && type < kNumOfSweepType ? kTypeNames[static_cast<std::size_t>(type)] : L"";
}

SweepDefinition::SweepType SweepDefinition::GetSweepType(AString const & name) {
  for (int type = 0; type < kNumOfSweepType; ++type)
    if (AString::MatchNoCase(name, GetSweepTypeName(static_cast<SweepType>(type))))
      return static_cast<SweepType>(type);
  return kNumOfSweepType;
}

void SweepDefinition::GetLinearCountDoubles(double start, double stop, unsigned count, int flags,
                                            std::vector<double> & values) {
  KVRO_ASSERT(flags == 0);
  core::GetLinearCountValues(values, start, stop, count);
}

void SweepDefinition::GetValues(std::vector<double> & values) const {
  switch (m_type) {
  case kLinearStep:
    return core::GetSteppedValues(values, m_start, m_stop, m_step);
  case kDecadeCount:
    return core::GetLogScaleValues(values, 10.0, m_start, m_stop, m_count, 0);
  case kOctaveCount:
    return core::GetLogScaleValues(values, 2.0, m_start, m_stop, m_count, 0);
  case kExponentialCount:
    return core::GetLogScaleValues(values, kExponentialBase, m_start, m_stop, m_count, 0);
  case kLinearCount:
    return core::GetLinearCountValues(values, m_start, m_stop, m_count);
  default:
    return;
  }
}

Sweep * SweepDefinition::CreateSweep(IDesign const & design, bool rising) const {
  Variable * const variable = SweptVariable::Find(*m_variableName, design.GetDesignEditor());
  auto * const sweep = new Sweep(val::kReal, variable ? variable->GetUnits() : Units::kNoUnits, variable);
  sweep->Column().SetName(*m_variableName);
  ParseSweepData(*sweep, rising);
  return sweep;
}

void SweepDefinition::ParseSweepData(Sweep & sweep, bool rising) const {
  std::vector<double> values;
  GetValues(values);
  if (rising) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
  }
  sweep.Column().SetValues(std::move(values));
}

io::ReadError SweepDefinition::DoDataExchange(io::CBlock & block, bool reading) {
  AString variable = *m_variableName;
  if (io::DoDataExchange(block, reading, L"Variable", variable) != io::kNoError)
    return io::kNotFound;
  AString typeName = GetSweepTypeName(m_type);
  io::DoDataExchange(block, reading, L"Type", typeName);
  if (GetSweepType(typeName) == kNumOfSweepType)
    return io::kBadContent;
  SetVariableName(variable);
  m_type = GetSweepType(typeName);
  io::DoDataExchange(block, reading, L"Start", m_start);
  io::DoDataExchange(block, reading, L"Stop", m_stop);
  io::DoDataExchange(block, reading, L"Step", m_step);
  io::DoDataExchange(block, reading, L"Count", m_count);
  io::DoDataExchange(block, reading, L"Synchronize", m_synchronizeNumber);
  ExchangeOffsetF1(block, reading);
  return io::kNoError;
}

void SweepDefinition::ExchangeOffsetF1(io::CBlock & block, bool reading) {
  if (reading)
    block >> io::named(L"OffsetF1", m_offsetF1Flag);
  else
    block << io::named(L"OffsetF1", m_offsetF1Flag);
}

bool SweepDefinition::operator==(SweepDefinition const & other) const {
  return m_variableName == other.m_variableName && m_type == other.m_type && m_start == other.m_start &&
         m_stop == other.m_stop && m_step == other.m_step && m_count == other.m_count &&
         m_synchronizeNumber == other.m_synchronizeNumber && m_offsetF1Flag == other.m_offsetF1Flag;
}

void SweepDefinition::FreeStorage(SweepDefinition * definition) {
  if (definition && --definition->m_holders.count == 0)
    ::operator delete(static_cast<void *>(definition));
}
