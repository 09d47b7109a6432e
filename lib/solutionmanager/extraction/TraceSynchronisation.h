#pragma once

#include "CoreInterfaces/ReportForward.h"

#include <list>
#include <map>
#include <vector>

class BaseSimDataExtractor;
class BaseSolutionManager;
class CParsedExpressionCacheContainer;

/// Finds out, after an edit, which traces of an extractor still reflect the solution, and which of the sim values
/// behind them.  Doubt means dirty.  The command may be null: then properties are not asked about, and no trace is
/// reached by a minor edit.
class TraceSynchronisation {
public:
  TraceSynchronisation(BaseSimDataExtractor & extractor, KelvroCommand * command);

  /// Every set; those that are affected are appended to the list, when there is one.
  void SynchroniseAll(std::vector<ISolutionPointSet *> * affected) const;
  /// True when the set is affected.
  bool Synchronise(SolutionPointSet & pointSet) const;
  /// True when the edit reaches the trace; false, and nothing done, when anything is null.
  bool SynchroniseOne(Trace * trace, SolutionPointSet * pointSet, CParsedExpressionCacheContainer & expressions) const;
  /// Gives up the kept numbers of the sim values whose report types the edit reaches.
  void CleanCaches(Trace * trace, SolutionPointSet * pointSet, CParsedExpressionCacheContainer & expressions) const;

private:
  using Expressions = std::map<Trace *, CParsedExpressionCacheContainer>;

  bool DoVariablesReach(SolutionPointSet const & pointSet) const;
  bool MarkAll(std::list<Trace *> & traces, SolutionPointSet & pointSet) const;
  /// Returns the report type of the set, the one for none when its expressions refer to none.
  unsigned FillExpressions(std::list<Trace *> const & traces, Expressions & expressions) const;

  BaseSimDataExtractor & m_extractor;
  BaseSolutionManager const * m_manager; ///< without one nothing is synchronised
  KelvroCommand * m_command;
};
