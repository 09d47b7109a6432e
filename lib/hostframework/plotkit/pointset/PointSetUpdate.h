#pragma once

#include "plotkit/cache/SolvedValueKeeper.h"
#include "plotkit/pointset/PointSetPoints.h"
#include "plotkit/trace/Trace.h"

#include <optional>
#include <set>

class CachedColumns;
class ISimDataExtractor;
class ISolvedColumns;
class TraceFiller;

/// One update of traces of a point set under way.
///
/// Major points may come in any order; at each a trace gets as many values as the variation has samples that the minor
/// subsweeps pick, one value where none of its expressions runs over samples, and one missing value where there is no
/// data.  Until Finish the former values are set aside; without it they come back.
class PointSetUpdate {
public:
  PointSetUpdate(SolutionPointSet & pointSet, std::vector<Trace *> const & traces, long version);
  ~PointSetUpdate();
  PointSetUpdate(PointSetUpdate const &) = delete;
  PointSetUpdate & operator=(PointSetUpdate const &) = delete;

  /// False, with an assertion, for too many points.
  bool IsCountInRange() const { return m_points.IsCountInRange(!m_loaded); }
  PointSetPoints const & GetPoints() const { return m_points; }
  bool IsTaken(std::size_t point) const { return m_isTaken[point]; }
  long GetVersion() const { return m_version; }
  /// The sim values that the expressions of the traces refer to, those of output variables among them.
  std::set<SimValue const *> const & GetSimValues() const { return m_simValues; }
  /// True when the set's cache has all that is wanted at the values, and the solution still has that variation.
  bool IsCached(VariableValues const & values);
  /// True when all points have come.
  bool IsWhole() const { return m_openCount == 0; }

  /// Takes the values at the major points of these variable values from the data that is loaded, or number by number
  /// where the extractor has no columns; false when there is no such point.
  bool TakeLoaded(VariableValues const & values);
  /// The same of what can be had without loading.
  bool TakeUnloaded(VariableValues const & values);
  /// All points that have not come.
  void TakeUnloadedRest();
  /// The traces are clean, and stand in the order of the points.
  void Finish();

private:
  void FindSimValues();
  void Begin();
  bool TakePoints(VariableValues const & values, ISolvedColumns const * columns);
  void TakeColumns(std::size_t point, VariableValues const & values, ISolvedColumns const & columns);
  void AppendTo(std::size_t trace, std::size_t point, AString const & variation, bool hasData);
  bool IsKnownToSolution(VariableValues const & values);
  bool IsVersionSolved();
  std::vector<AString> AxisNames() const;

  SolutionPointSet & m_pointSet;
  ISimDataExtractor & m_extractor;
  ISolvedColumns const * m_loaded; ///< null when the extractor's data has no columns
  std::vector<Trace *> m_traces;
  long m_version;
  PointSetPoints m_points;
  std::set<SimValue const *> m_simValues;
  std::vector<bool> m_isTaken; ///< by major point
  std::size_t m_openCount;
  bool m_isFinished = false;
  std::vector<Trace::Values> m_former; ///< empty until the first point comes, as are the fillers
  std::vector<TraceFiller> m_fillers;
  std::unique_ptr<CachedColumns> m_cached;
  std::unique_ptr<std::set<VariableValues>> m_known; ///< variations that the solution has at the version
  std::optional<bool> m_isVersionSolved;
  SolvedValueKeeper m_keeper;
};
