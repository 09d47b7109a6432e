#pragma once

#include "desktop/report/LiveReports.h"

#include <complex>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desktop::pageview {

/// The rows of a report, parted into the curves that they mean: those of one combination of all variables but the one
/// that the abscissa is of.  It looks at the table, so it stands as long as that.
class CurveFamilies {
public:
  explicit CurveFamilies(LiveReports::Shown const & shown);

  struct Curve {
    AString variation;             ///< "C1=1pF; L1=4nH", of the variables that tell curves apart
    std::vector<std::size_t> rows; ///< in the order of the table, without those of gaps
    std::vector<double> x;         ///< one for each row; not a number where there is none
  };
  /// Those without a row are left out.
  std::vector<Curve> const & Curves() const { return m_curves; }
  /// Whether there is anything that curves run over.
  bool HasAbscissa() const { return m_xColumn.has_value(); }
  /// The place of the abscissa among the table's columns.
  std::size_t XColumn() const { return *m_xColumn; }
  /// Whether it tells one number all along each of several samples.
  bool IsConstant(std::size_t column) const;
  /// Whether it has no value anywhere.
  bool IsEmpty(std::size_t column) const;
  /// The numbers of a column along a curve; a gap is not a number.
  std::vector<std::complex<double>> Values(Curve const & curve, std::size_t column) const;

private:
  bool TellsCurvesApart(std::size_t column) const;
  void AddRows(ReportTable::Variation const & variation);
  AString NameOf(std::size_t row) const;

  ReportTable const & m_table;
  AString m_x;
  std::optional<std::size_t> m_xColumn;
  std::vector<std::size_t> m_naming;            ///< columns of variables whose values name a curve
  std::map<std::wstring, std::size_t> m_places; ///< of curves, by their names
  std::vector<Curve> m_curves;
};

} // namespace desktop::pageview
