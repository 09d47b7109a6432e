#include "desktop/pageview/CurveFamilies.h"

#include "desktop/report/ExpressionWords.h"

#include <algorithm>
#include <limits>

namespace desktop::pageview {

namespace {

using Role = ReportTable::Column::Role;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

} // namespace

CurveFamilies::CurveFamilies(LiveReports::Shown const & shown) : m_table(shown.table), m_x(shown.x) {
  auto const & columns = m_table.Columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].role == Role::kX)
      m_xColumn = i;
    if (TellsCurvesApart(i))
      m_naming.push_back(i);
  }
  for (ReportTable::Variation const & variation : m_table.Variations())
    if (!variation.isGap)
      AddRows(variation);
}

// A variable that the abscissa is computed from runs along the curve, where each variation is one number.
bool CurveFamilies::TellsCurvesApart(std::size_t column) const {
  if (column >= m_table.VariableCount())
    return false;
  if (m_table.LongestCurve() > 1)
    return true;
  ReportTable::Column const & variable = m_table.Columns()[column];
  auto const words = ExpressionWords(m_x);
  return std::none_of(words.begin(), words.end(),
                      [&](AString const & word) { return AString::MatchNoCase(word, variable.title); });
}

AString CurveFamilies::NameOf(std::size_t row) const {
  AString name;
  for (std::size_t const column : m_naming)
    name += (name.empty() ? L"" : L"; ") + m_table.Columns()[column].title + L"=" + m_table.TextAt(row, column);
  return name;
}

// Variations of one curve need not follow each other: the abscissa's variable may run outside of others.
void CurveFamilies::AddRows(ReportTable::Variation const & variation) {
  AString const name = NameOf(variation.firstRow);
  auto const [place, isNew] = m_places.try_emplace(std::wstring(name.View()), m_curves.size());
  if (isNew)
    m_curves.push_back({name, {}, {}});
  Curve & curve = m_curves[place->second];
  for (std::size_t row = variation.firstRow; row < variation.firstRow + variation.rows; ++row) {
    auto const x = m_xColumn ? m_table.At(row, *m_xColumn) : std::nullopt;
    curve.rows.push_back(row);
    curve.x.push_back(x ? x->real() : kMissing);
  }
}

bool CurveFamilies::IsConstant(std::size_t column) const {
  for (Curve const & curve : m_curves) {
    auto const first = m_table.At(curve.rows.front(), column);
    if (std::any_of(curve.rows.begin(), curve.rows.end(),
                    [&](std::size_t row) { return m_table.At(row, column) != first; }))
      return false;
  }
  return m_table.LongestCurve() > 1;
}

bool CurveFamilies::IsEmpty(std::size_t column) const {
  for (std::size_t row = 0; row < m_table.RowCount(); ++row)
    if (m_table.At(row, column))
      return false;
  return true;
}

std::vector<std::complex<double>> CurveFamilies::Values(Curve const & curve, std::size_t column) const {
  std::vector<std::complex<double>> values;
  values.reserve(curve.rows.size());
  for (std::size_t const row : curve.rows)
    values.push_back(m_table.At(row, column).value_or(std::complex<double>(kMissing, kMissing)));
  return values;
}

} // namespace desktop::pageview
