#pragma once

#include "plotkit/simvalue/SimValueContext.h"

class ISimDataExtractorForReports;

namespace desktop {

class Session;
struct ReportDefinition;

/// What a report reads: one solution, by its view for reports, and one report type that this serves.
struct SetupSource {
  long solutionID;
  ISimDataExtractorForReports const & view;
  unsigned reportType;
  SimValueContext context;
};

/// The solution that the definition names, and of the report types that it can serve the first that knows the words of
/// all y.  An Error of kind kUsage tells what there is none of.
SetupSource FindSetupSource(Session & session, ReportDefinition const & report);

} // namespace desktop
