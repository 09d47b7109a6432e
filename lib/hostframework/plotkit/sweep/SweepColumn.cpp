#include "plotkit/sweep/SweepColumn.h"

#include "basekit/value/Variable.h"

namespace {

enum class ColumnKind { None, Real, Complex, Text };

ColumnKind KindOf(val::ParameterType type) {
  switch (static_cast<int>(type)) {
  case val::kReal:
  case val::kInteger:
  case val::kRealArray:
    return ColumnKind::Real;
  case val::kComplex:
  case val::kComplexArray:
  case 3: // complex numbers that are shown in other ways
  case 4:
  case 5:
    return ColumnKind::Complex;
  case val::kText:
    return ColumnKind::Text;
  default:
    return ColumnKind::None;
  }
}

} // namespace

SweepColumn::SweepColumn(val::ParameterType type, Units::FullUnitType units, Variable * variable)
    : m_name(variable ? variable->GetName() : AString()), m_variable(variable), m_type(type), m_units(units) {
  if (KindOf(type) == ColumnKind::Complex)
    m_values = std::vector<AComplex<double>>();
  else if (KindOf(type) == ColumnKind::Text)
    m_values = std::vector<AString>();
}

unsigned SweepColumn::GetCount() const {
  return std::visit([](auto const & values) { return static_cast<unsigned>(values.size()); }, m_values);
}

void SweepColumn::SetValues(std::vector<double> values) {
  if (KindOf(m_type) != ColumnKind::Real)
    m_type = val::kReal;
  m_values = std::move(values);
}

void SweepColumn::SetValues(std::vector<AComplex<double>> values) {
  if (KindOf(m_type) != ColumnKind::Complex)
    m_type = val::kComplex;
  m_values = std::move(values);
}

void SweepColumn::SetValues(std::vector<AString> values) {
  m_type = val::kText;
  m_values = std::move(values);
}

Value SweepColumn::ValueAt(unsigned index) const {
  if (index >= GetCount())
    return Value(m_units);
  if (auto const * const reals = std::get_if<std::vector<double>>(&m_values))
    return m_type == val::kInteger ? Value::Integer(static_cast<long>((*reals)[index]))
                                   : Value::Real((*reals)[index], m_units);
  if (auto const * const numbers = std::get_if<std::vector<AComplex<double>>>(&m_values))
    return Value::Complex((*numbers)[index], m_units);
  return Value::Text(std::get<std::vector<AString>>(m_values)[index]);
}

AComplex<double> SweepColumn::ComplexAt(unsigned index) const {
  if (index >= GetCount())
    return {};
  if (auto const * const reals = std::get_if<std::vector<double>>(&m_values))
    return {(*reals)[index]};
  if (auto const * const numbers = std::get_if<std::vector<AComplex<double>>>(&m_values))
    return (*numbers)[index];
  return {};
}

bool SweepColumn::SetVariable(unsigned index) const {
  Variable * const variable = GetVariable();
  if (!variable || index >= GetCount())
    return false;
  variable->SetValue(ValueAt(index));
  return true;
}

void SweepColumn::SynchronizeWithVariable() {
  if (!GetVariable())
    m_variable = SweptVariable(SweptVariable::Find(m_name, nullptr));
  Variable const * const variable = GetVariable();
  if (!variable)
    return;
  m_name = variable->GetName();
  if (variable->GetUnits() != Units::kNoUnits)
    m_units = variable->GetUnits();
}

bool SweepColumn::IsKnownUnit(Units::FullUnitType units) {
  Units::Scale scale;
  return units == Units::kNoUnits || Units::GetScale(units, scale);
}
