#include "plotkit/PointSetPoints.h"

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/Variable.h"
#include "plotkit/ISolvedColumns.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/SweepValues.h"

namespace {

double CountOf(std::vector<SubsweepPoints const *> const & subsweeps) {
  double count = 1.0;
  for (SubsweepPoints const * const points : subsweeps)
    count *= points->GetCount();
  return count;
}

} // namespace

PointSetPoints::PointSetPoints(SolutionPointSet const & pointSet, IVariableServer const * server) : m_server(server) {
  auto const * const columns = dynamic_cast<ISolvedColumns const *>(pointSet.GetISimDataExtractor());
  for (Subsweep const * const subsweep : pointSet.GetSubsweeps()) {
    m_subsweeps.push_back(std::make_unique<SubsweepPoints>(*subsweep));
    SubsweepPoints const & points = *m_subsweeps.back();
    bool const isMinor = points.IsMinor() || (columns && columns->IsAxis(points.GetName()));
    (isMinor ? m_minors : m_majors).push_back(&points);
  }
  if (IDesignInstance const * const instance = pointSet.GetIDesignInstance())
    VariableValues::ResolveVariationKey(instance->GetVariationKey(), nullptr, m_instanceValues, nullptr, true);
  double const majors = CountOf(m_majors);
  double const minors = CountOf(m_minors);
  m_isMajorCountInRange = majors <= core::kMaxSweepValues;
  m_isWholeCountInRange = m_isMajorCountInRange && majors * minors <= core::kMaxSweepValues;
  m_majorCount = m_isMajorCountInRange ? static_cast<std::size_t>(majors) : 0;
  m_minorCount = m_isWholeCountInRange ? static_cast<std::size_t>(minors) : 0;
}

bool PointSetPoints::IsCountInRange(bool areMinorsCounted) const {
  bool const isCountInRange = areMinorsCounted ? m_isWholeCountInRange : m_isMajorCountInRange;
  KVRO_ASSERT(isCountInRange);
  return isCountInRange;
}

std::vector<Variable *> PointSetPoints::GetVariables() const {
  std::vector<Variable *> variables;
  for (auto const & points : m_subsweeps)
    points->AddVariables(variables);
  for (VariableValues::Entry const & entry : m_instanceValues)
    if (Variable * const variable = FindVariable(entry.name))
      variables.push_back(variable);
  return variables;
}

VariableValues PointSetPoints::GetMajorValues(std::size_t point) const {
  VariableValues values = m_instanceValues;
  for (auto points = m_majors.rbegin(); points != m_majors.rend(); ++points) {
    (*points)->SetAndAdd(static_cast<unsigned>(point % (*points)->GetCount()), values);
    point /= (*points)->GetCount();
  }
  return values;
}

PointSetPoints::Places const * PointSetPoints::FindPoints(VariableValues const & values) const {
  if (m_places.empty()) {
    for (std::size_t point = 0; point < m_majorCount; ++point)
      m_places[GetMajorValues(point)].push_back(point);
    m_next = m_places.begin();
  }
  // An update of many sets goes through the values in their order, and has forgotten this set's places meanwhile: a
  // descent is dear then.
  if (m_next == m_places.end() || !(m_next->first == values))
    m_next = m_places.find(values);
  return m_next != m_places.end() ? &(m_next++)->second : nullptr;
}

Variable * PointSetPoints::FindVariable(AString const & name) const {
  auto const [entry, isNew] = m_variables.try_emplace(name, nullptr);
  if (!isNew)
    return entry->second;
  std::vector<Variable *> swept;
  for (auto const & points : m_subsweeps)
    points->AddVariables(swept);
  for (Variable * const variable : swept)
    if (!entry->second && AString::MatchNoCase(variable->GetName(), name))
      entry->second = variable;
  if (!entry->second && m_server)
    entry->second = m_server->ResolveVariable(name);
  return entry->second;
}

void PointSetPoints::SetVariables(VariableValues const & values) const {
  for (VariableValues::Entry const & entry : values)
    if (Variable * const variable = FindVariable(entry.name))
      variable->SetValue(entry.value);
}
