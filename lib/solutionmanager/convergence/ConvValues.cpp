#include "solutionmanager/convergence/ConvValues.h"

#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"

#include <algorithm>

namespace {

template <class Value> ConvValue * CopyAs(ConvValue const & value) {
  auto const * known = dynamic_cast<Value const *>(&value);
  return known ? new Value(*known) : nullptr;
}

/// A copy by the type of the value's column.  A value of a class that does not go with its column is copied as an
/// invalid one, so that the passes of all columns stay side by side.
ConvValue * Copy(ConvValue const & value) {
  ConvDef const & def = *value.GetDef();
  ConvValue * copy = nullptr;
  switch (def.GetType()) {
  case ConvDef::IntConvDef:
    copy = CopyAs<IntConvValue>(value);
    break;
  case ConvDef::DoubleConvDef:
    copy = CopyAs<DoubleConvValue>(value);
    break;
  case ConvDef::StringConvDef:
    copy = CopyAs<StringConvValue>(value);
    break;
  }
  return copy ? copy : def.CreateValue(&def);
}

} // namespace

ConvValues & ConvValues::operator=(ConvValues const & other) {
  if (this != &other) {
    ClearData(0);
    CopyFrom(other);
  }
  return *this;
}

ConvValue const * ConvValues::GetValue(int index) const {
  return index >= 0 && index < size() ? m_values[static_cast<std::size_t>(index)] : nullptr;
}

void ConvValues::ClearData(int start) {
  if (size() <= start)
    return;
  auto const from = m_values.begin() + std::max(start, 0);
  std::for_each(from, m_values.end(), [](ConvValue * value) { delete value; });
  m_values.erase(from, m_values.end());
}

bool ConvValues::GetValues(std::vector<double> & numbers) const {
  for (ConvValue const * value : m_values) {
    double number = 0.0;
    if (!value->GetValue(number))
      return false;
    numbers.push_back(number);
  }
  return true;
}

void ConvValues::CopyFrom(ConvValues const & other) {
  auto const count = other.m_values.size();
  m_values.reserve(m_values.size() + count);
  for (std::size_t i = 0; i < count; ++i)
    m_values.push_back(Copy(*other.m_values[i]));
}

void ConvValues::CopyFrom(ConvValues const & other, ConvDef const & column) {
  std::size_t const first = m_values.size();
  CopyFrom(other);
  for (std::size_t i = first; i < m_values.size(); ++i)
    if (m_values[i]->GetDef()->GetType() == column.GetType())
      m_values[i]->SetDef(&column);
}
