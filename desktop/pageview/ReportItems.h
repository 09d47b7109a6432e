#pragma once

#include "desktop/page/Document.h"
#include "desktop/report/LiveReports.h"

#include <optional>
#include <vector>

namespace desktop::pageview {

/// How a report is to be drawn.
struct Look {
  /// In place of what its definition says, and then to the letter: `table` is a table alone.
  std::optional<ReportDisplay> display;
  /// Complex numbers of rectangular plots and tables as magnitude and phase in degrees; else as their two parts.
  bool isPolar = false;
};

/// The plots of a report, as items that own their numbers: one for each unit, in which a curve stands for each
/// expression and variation.  What the innermost variable or the samples run over is the abscissa.
///
/// Without a word from definition or look, complex numbers are drawn in the complex plane: those of an S(p,p) on Smith
/// charts, one for each reference impedance, all others on polar plots.  Polar and Smith displays hold complex numbers
/// alone; real ones get rectangular plots beside them.  Expressions that are one number for a variation, while others
/// run over samples, are in no plot; see NumbersOf.
std::vector<page::Item> PlotsOf(Session & session, ReportDefinition const & report, LiveReports::Shown const & shown,
                                Look const & look);

/// What stands in no plot as it is one number for a variation: results of ranged functions; no entries without such.
page::Numbers NumbersOf(ReportDefinition const & report, LiveReports::Shown const & shown, Look const & look);

/// All rows, with the columns that the report is told with as text.
page::Table TableOf(ReportDefinition const & report, LiveReports::Shown const & shown, Look const & look);

} // namespace desktop::pageview
