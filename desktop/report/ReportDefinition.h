#pragma once

#include "basekit/text/AString.h"

#include <optional>
#include <vector>

namespace desktop {

/// How a report is drawn.  The numbers are those that products are asked with.
enum class ReportDisplay : int { kTable = 0, kRectangular = 1, kPolar = 2, kSmith = 5 };

AString WordOf(ReportDisplay display);
std::optional<ReportDisplay> DisplayOf(AString const & word);
/// "table, rectangular, ...".
AString DisplayWords();

/// What a user asked to see: expressions over the solved data of one setup, by texts, so that it outlives whatever it
/// names.
struct ReportDefinition {
  AString name;
  AString setup;    ///< empty: the project's first one
  AString solution; ///< empty: the setup's first one
  AString x;        ///< empty: what the solution's samples run over
  std::vector<AString> y;
  /// At which values of the design's variables: those that are not named stand as they do.  May also name one sample.
  AString variation;
  /// Design variables over whose solved values the curves run, the slowest first.
  std::vector<AString> over;
  ReportDisplay display = ReportDisplay::kTable;

  friend bool operator==(ReportDefinition const &, ReportDefinition const &) = default;
};

/// "y, y over x, for each C1, L1, of setup S": for people.
AString DescribeReport(ReportDefinition const & definition);

} // namespace desktop
