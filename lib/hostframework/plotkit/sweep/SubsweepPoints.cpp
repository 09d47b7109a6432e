#include "plotkit/sweep/SubsweepPoints.h"

#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/RangeSubsweep.h"

#include <algorithm>

SubsweepPoints::SubsweepPoints(Subsweep const & subsweep)
    : m_subsweep(subsweep), m_name(subsweep.GetVariableName()), m_count(subsweep.GetCount()) {
  SweepBase * const sweep = subsweep.GetSweep();
  m_isMinor = Value::GetIntrinsicVariable(m_name) || (sweep && sweep->GetPostprocessSweep());
  if (auto const * const indexed = dynamic_cast<IndexedSubsweep const *>(&subsweep)) {
    m_areAllSelected = indexed->AreAllPointsSelected();
    m_hasPlaces = !m_areAllSelected;
    unsigned const size = sweep ? sweep->GetCount() : 0;
    for (unsigned const place : indexed->GetSelection())
      if (place < size)
        m_places.push_back(place);
  } else if (auto const * const ranged = dynamic_cast<RangeSubsweep const *>(&subsweep)) {
    m_range = {ranged->GetRange().GetMin(), ranged->GetRange().GetMax()};
  }
  for (unsigned variable = 0; sweep && variable < sweep->GetSweepCount(); ++variable)
    if (Variable * const swept = sweep->GetVariable(variable))
      m_variables.push_back(swept);
}

void SubsweepPoints::AddVariables(std::vector<Variable *> & variables) const {
  variables.insert(variables.end(), m_variables.begin(), m_variables.end());
}

void SubsweepPoints::Set(unsigned point) const {
  if (!m_hasPlaces)
    m_subsweep.SetSweepValue(point);
  else if (point < m_places.size())
    m_subsweep.GetSweep()->SetSweepValue(m_places[point]);
}

void SubsweepPoints::SetNumber(double si) const {
  if (!m_variables.empty())
    m_variables.front()->SetValue(Value::Real(si, m_variables.front()->GetUnits()));
}

void SubsweepPoints::SetAndAdd(unsigned point, VariableValues & values) const {
  Set(point);
  for (Variable const * const variable : m_variables)
    values.Set(variable->GetName(), variable->GetValue());
  // Without a variable the numbers count.
  if (m_variables.empty() && point < Numbers().size())
    values.Set(m_name, Value::Real(Numbers()[point]));
}

double SubsweepPoints::GetPresentNumber(unsigned point) const {
  if (!m_variables.empty())
    return m_variables.front()->GetValue().GetSIValue();
  return point < Numbers().size() ? Numbers()[point] : 0.0;
}

std::vector<double> const & SubsweepPoints::Numbers() const {
  if (!m_numbers) {
    m_numbers = std::make_unique<std::vector<double>>();
    m_subsweep.GetRealValues(*m_numbers);
  }
  return *m_numbers;
}

std::vector<double> SubsweepPoints::GetChosenNumbers() const {
  std::vector<double> chosen;
  std::vector<double> sorted;
  for (double const number : Numbers()) {
    auto const place = std::lower_bound(sorted.begin(), sorted.end(), number);
    if (place != sorted.end() && *place == number)
      continue;
    sorted.insert(place, number);
    chosen.push_back(number);
  }
  return chosen;
}
