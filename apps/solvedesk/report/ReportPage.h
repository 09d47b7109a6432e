#pragma once

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/report/ProjectPage.h"

#include <optional>
#include <string>

namespace solvedesk {

/// How reports are to be drawn, and where to.
struct DrawOptions {
  std::string html;
  std::string svg;
  int plot = 0;   ///< which one of the plots that a report has, from 1; 0 where it has one
  std::string as; ///< a display in place of the reports' own
  bool isLive = false;
  bool waits = false; ///< live: for a process that solves

  bool IsAny() const { return !html.empty() || !svg.empty(); }
};

void AddDrawOptions(CLI::App & verb, DrawOptions & options);
/// Refuses what makes no sense together.
void CheckDrawOptions(DrawOptions const & options);

/// What a verb draws of a project.
struct DrawRequest {
  std::string project;
  std::vector<std::string> names; ///< of reports; all of them, and the project itself, without
  bool isPolar = false;           ///< complex numbers as magnitude and phase
  DrawOptions draw;
  OutputOptions output;
};

/// Writes a page of the project's reports, or a picture of one plot of one, and tells what stands in it.  Refused when
/// none of the reports that were named has anything to show.
int DrawReports(DrawRequest const & request);

/// The report of that name; throws desktop::Error (kUsage) with the known ones told.
desktop::ReportDefinition const & KnownReport(desktop::Session & session, std::string const & name);
/// What is to stand on the page, as the session knows it now.
PageContents ContentsOf(desktop::Session & session, DrawRequest const & request);
/// Writes the page and tells of it; how often it was written before, where it is a live one.
int DeliverPage(ProjectPage const & page, DrawRequest const & request, std::optional<int> rewrites = {});

} // namespace solvedesk
