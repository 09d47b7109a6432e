#pragma once

#include "basekit/value/VariableValues.h"
#include "plotkit/SubsweepPoints.h"

#include <map>

class IVariableServer;
class SolutionPointSet;

/// The points of a point set, for the span of one update.
///
/// The subsweeps over major variables span the major points, the last running fastest; each is one variation of the
/// solved data, told by the swept variables and by those that the set's instance adds.
class PointSetPoints {
public:
  using Places = std::vector<std::size_t>;

  PointSetPoints(SolutionPointSet const & pointSet, IVariableServer const * server);

  /// False, with an assertion, for too many points; minor ones count where each of them is asked for by itself.
  bool IsCountInRange(bool areMinorsCounted) const;
  std::size_t GetMajorCount() const { return m_majorCount; }
  std::size_t GetMinorCount() const { return m_minorCount; }
  std::vector<SubsweepPoints const *> const & GetMinors() const { return m_minors; }
  /// All variables that may be set here.
  std::vector<Variable *> GetVariables() const;

  /// At a major point; the swept variables stand there then.
  VariableValues GetMajorValues(std::size_t point) const;
  /// The major points of these values, null when there are none.
  Places const * FindPoints(VariableValues const & values) const;
  void SetVariables(VariableValues const & values) const;

private:
  Variable * FindVariable(AString const & name) const;

  IVariableServer const * m_server;
  std::vector<std::unique_ptr<SubsweepPoints>> m_subsweeps;
  std::vector<SubsweepPoints const *> m_majors;
  std::vector<SubsweepPoints const *> m_minors;
  VariableValues m_instanceValues;
  std::size_t m_majorCount = 0;
  std::size_t m_minorCount = 0;
  bool m_isMajorCountInRange = false;
  bool m_isWholeCountInRange = false;
  mutable std::map<VariableValues, Places> m_places;                 ///< filled by the first question
  mutable std::map<VariableValues, Places>::const_iterator m_next{}; ///< what is probably asked for next
  mutable std::map<AString, Variable *, AString::NoCaseLess> m_variables;
};
