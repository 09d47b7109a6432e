#include "basekit/value/expression/NamedScope.h"

namespace expr {

void NamedScope::AddNumber(AString const & name, double value, Units::FullUnitType units) {
  m_quantities[name] = {{units, Units::GetUnitType(units), 1, val::kReal}, {nullptr, 1, true}, value};
}

void NamedScope::AddColumn(AString const & name, std::span<double const> samples, Units::FullUnitType units) {
  m_quantities[name] = {{units, Units::GetUnitType(units), 1, val::kRealArray}, {samples.data(), samples.size()}};
}

void NamedScope::AddColumn(AString const & name, std::span<std::complex<double> const> samples,
                           Units::FullUnitType units) {
  m_quantities[name] = {{units, Units::GetUnitType(units), 1, val::kComplexArray},
                        {reinterpret_cast<double const *>(samples.data()), samples.size()}};
}

Meaning NamedScope::Find(AString const & name) const {
  if (auto const found = m_quantities.find(name); found != m_quantities.end())
    return {Meaning::Kind::kQuantity, found->second.state, AString(), nullptr};
  if (auto const found = m_definitions.find(name); found != m_definitions.end())
    return {Meaning::Kind::kDefinition, ValueState(), found->second, nullptr};
  return {};
}

Dataset const * NamedScope::FindDataset(AString const & name) const {
  auto const found = m_datasets.find(name);
  return found != m_datasets.end() ? &found->second : nullptr;
}

std::vector<AString> NamedScope::KnownNames() const {
  std::vector<AString> names;
  for (auto const & [name, quantity] : m_quantities)
    names.push_back(name);
  for (auto const & [name, text] : m_definitions)
    names.push_back(name);
  return names;
}

TraceData NamedScope::DataFor(Program const & program) const {
  TraceData data;
  data.axis = m_axis;
  for (ProgramQuantity const & wanted : program.GetQuantities()) {
    auto const found = m_quantities.find(wanted.name);
    Samples samples = found != m_quantities.end() ? found->second.samples : Samples();
    if (samples.isScalar)
      samples.data = &found->second.number;
    data.quantities.push_back(samples);
  }
  return data;
}

bool NamedScope::Evaluate(AString const & text, Result & result, Error & error) const {
  Program program;
  return Program::Compile(text, *this, program, error) && program.Evaluate(DataFor(program), result, error);
}

} // namespace expr
