#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

/// Point sets and traces of a solution as the parametric add-on makes them; see ISimDataExtractor.
class ISimDataExtractorForSweepwise {
public:
  virtual SolutionPointSet * CreateSolutionPointSet(SubsweepVector const & subsweeps, SimValueContext const * context,
                                                    IDesignInstance * instance, bool share) = 0;
  virtual Trace * CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y, bool share) = 0;
  virtual TraceComponent * CreateTraceComponent(AString const & text, SimValueContext const * context) = 0;
  virtual void RemoveSolutionPointSet(SolutionPointSet * pointSet) = 0;

protected:
  ~ISimDataExtractorForSweepwise() = default;
};
