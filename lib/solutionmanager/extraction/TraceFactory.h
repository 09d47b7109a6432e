#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class BaseSimDataExtractor;
class IReporter;
class IReporterTab;
namespace Units {
enum FullUnitType : int;
}

/// Makes traces and their components for one extractor, under old report structures.  The caller owns components, a
/// point set its traces.  Texts are read in the extractor's name space, foreign words by the extractor, in the
/// context that holds there.
class TraceFactory {
public:
  explicit TraceFactory(BaseSimDataExtractor & extractor) : m_extractor(extractor) {}

  /// The page of the dialog that gives the abscissa, the ordinate, the third component; null when there is none.
  static IReporterTab * XTab(IReporter const & reporter);
  static IReporterTab * YTab(IReporter const & reporter);
  static IReporterTab * ZTab(IReporter const & reporter);

  /// Null for a text that is no number or expression.
  TraceComponent * MakeComponent(AString const & text) const;
  TraceComponent * MakeComponent(IReporterTab const & tab, AString const & text, int functionID) const;
  /// An equal trace that is there already, or a new one of clones of the components.
  Trace * Make2D(SolutionPointSet & pointSet, TraceComponent const * x, TraceComponent const * y, bool share) const;
  Trace * Make3D(SolutionPointSet & pointSet, TraceComponent const * x, TraceComponent const * y,
                 TraceComponent const * z, bool share) const;
  /// All traces that the pages of the dialog ask for, over the set; each is marked clean or dirty.  The extractor is
  /// left in the context of the last page that was read.
  void MakeTraces(IReporter const & reporter, SolutionPointSet & pointSet, bool areClean,
                  std::vector<Trace *> & traces) const;

private:
  struct Analysis;
  void AnalyzeFunction(Value const & value, Analysis & analysis) const;
  TraceComponent * Clone(TraceComponent const * component) const;
  Trace * Enter(Trace * trace, SolutionPointSet & pointSet, bool isShared) const;

  BaseSimDataExtractor & m_extractor;
};
