#pragma once

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/ReportText.h"
#include "desktop/report/LiveReports.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace solvedesk {

/// How a report is to be told.
struct ViewOptions {
  std::string csv;            ///< a file for the rows; standard output without
  std::string form = "re-im"; ///< of complex numbers: "re-im" or "mag-deg"
  OutputOptions output;
};

/// Help tells, as "show: ", which action of the verb they go with.
void AddViewOptions(CLI::App & verb, ViewOptions & options, std::string const & goesWith = {});
ComplexForm FormOf(ViewOptions const & options);

/// What could not be had of a report that was brought up to date, for people, one line each.
std::vector<std::string> NotesOf(desktop::LiveReports::Shown const & shown, std::string const & project);
/// Why nothing of it can be told; empty where something can.
std::string WhyNothing(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                       std::string const & project);
/// Throws what WhyNothing tells; the words of the definition may be at fault, or the data that aren't there.
void RefuseNothing(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                   std::string const & project);

/// Tells the rows of a report that was brought up to date; what could not be had is told on standard error.  One of
/// which nothing at all could be evaluated is refused.
void PrintReport(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                 std::string const & project, ViewOptions const & options);

} // namespace solvedesk
