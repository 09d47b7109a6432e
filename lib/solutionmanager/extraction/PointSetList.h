#pragma once

#include "basekit/text/AString.h"

#include <set>
#include <vector>

class BaseSimDataExtractor;
class BaseSolution;
class IDesignInstance;
class SimValue;
class SimValueContext;
class SolutionPointSet;
class Subsweep;
class SubsweepVector;
class SweepBase;
class Trace;

/// The solution point sets of an extractor, over the list that holds them.
class PointSetList {
public:
  using PointSets = std::vector<SolutionPointSet *>;

  explicit PointSetList(PointSets & pointSets) : m_pointSets(pointSets) {}

  void DeleteAll();
  /// The first shared set of that version over the same points, in the same context and instance; null when none is.
  SolutionPointSet * FindShared(SubsweepVector const & subsweeps, SimValueContext const * context,
                                IDesignInstance const * instance, long version) const;
  /// The first of "<solution>:SolutionPointSet 1", 2, ... that no set bears, without case.
  AString FreeName(AString const & solutionName) const;
  /// A set that is not in the list is ignored.
  void Remove(SolutionPointSet * pointSet);
  /// Takes the data of the sets anew, null meaning all; those of other extractors are skipped.
  void Update(BaseSimDataExtractor const & extractor, PointSets const * chosen, long const * versionToStamp) const;
  void Validate(BaseSolution const & solution) const;
  /// Drops traces that are not in use, and the sets that may go then.
  void Collect(std::set<Trace *> const & tracesInUse);
  std::set<SweepBase const *> SweepsInUse() const;
  void ForgetSimValue(SimValue const & value) const;

  /// True when the variation lies on the points of the set; numbers are compared within 1e-9, whatever their unit.
  static bool IsOnPoints(SolutionPointSet const & pointSet, AString const & variation);

private:
  PointSets & m_pointSets;
};
