#pragma once

#include "desktop/reportsetup/SetupTable.h"

class IProgressMonitor;

namespace desktop {

class Session;
struct ReportDefinition;

/// The report setup module of the reporter rewrite.
///
/// Under the rewrite an extractor holds no point sets, traces and sim values: who shows a report asks the manager's
/// facet for reports which solutions there are, their views which quantities and sweeps, and the view of derived data
/// for solved instances, one of which is in memory at a time.  Numbers come by column from the extractor, which is an
/// ISolvedColumns while an instance is loaded.  Nothing is kept between two calls.
///
/// For a session whose design has no old report structures; its product implements
/// IProductSolutionMgrForReportSetupUI, and its extractors ISimDataExtractor2 and ISimDataExtractor3.  Anything else is
/// an Error of kind kUsage.
class ReportSetup {
public:
  explicit ReportSetup(Session & session) : m_session(session) {}

  /// Adds the definition to the project, an edit with undo.  Refused when there is no such solution, quantity or
  /// variable now.
  void Add(ReportDefinition const & report);
  /// Refused like Add; design variables hold the same values afterwards, whatever happens.
  SetupTable Show(ReportDefinition const & report, IProgressMonitor * progress = nullptr) const;

private:
  Session & m_session;
};

} // namespace desktop
