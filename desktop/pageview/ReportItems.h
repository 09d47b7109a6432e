#pragma once

#include "desktop/page/Document.h"
#include "desktop/report/LiveReports.h"

#include <optional>
#include <vector>

namespace desktop::pageview {

class CurveFamilies;

/// How a report is to be drawn.
struct Look {
  /// In place of what its definition says, and then to the letter: `table` is a table alone.
  std::optional<ReportDisplay> display;
  /// Complex numbers of rectangular plots and tables as magnitude and phase in degrees; else as their two parts.
  bool isPolar = false;
};

/// What a report is drawn and told as: items of a page, which own their numbers.
///
/// It brings the report up to date, and stands until the next operation on the reports of the session.
class ReportItems {
public:
  ReportItems(Session & session, ReportDefinition const & report, Look const & look);

  LiveReports::Shown const & GetShown() const { return m_shown; }

  /// One for each unit, in which a curve stands for each expression and variation.  What the innermost variable or the
  /// samples run over is the abscissa.  Without a word from definition or look, complex numbers are drawn in the
  /// complex plane: those of an S(p,p) on Smith charts, one for each reference impedance, all others on polar plots.
  /// Polar and Smith displays hold complex numbers alone; real ones get rectangular plots beside them.
  std::vector<page::Item> Plots() const;
  /// Expressions that are one number for a variation, in no plot as nothing runs: results of ranged functions.  No
  /// entries without such.
  page::Numbers Numbers() const;
  /// All rows, with the columns that the report is told with as text.
  page::Table Table() const;

private:
  std::vector<std::size_t> FindSingles();
  bool IsSingle(std::size_t column) const;

  Session & m_session;
  ReportDefinition const & m_report;
  Look m_look;
  std::vector<std::size_t> m_singles; ///< by y
  LiveReports::Shown m_shown;
};

} // namespace desktop::pageview
