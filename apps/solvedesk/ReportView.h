#pragma once

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/ReportText.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace desktop {
class Session;
struct ReportDefinition;
} // namespace desktop

namespace solvedesk {

/// How a report is to be told.
struct ViewOptions {
  std::string csv;            ///< a file for the rows; standard output without
  std::string form = "re-im"; ///< of complex numbers: "re-im" or "mag-deg"
  OutputOptions output;
};

void AddViewOptions(CLI::App & verb, ViewOptions & options);
ComplexForm FormOf(ViewOptions const & options);

/// Brings the report up to date and tells its rows; what could not be had is told on standard error.  A report of which
/// nothing at all can be evaluated is refused.
void ShowReport(desktop::Session & session, desktop::ReportDefinition const & report, std::string const & project,
                ViewOptions const & options);

} // namespace solvedesk
