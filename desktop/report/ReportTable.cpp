#include "desktop/report/ReportTable.h"

#include "basekit/value/variation/VariationText.h"
#include "plotkit/Trace.h"
#include "plotkit/TraceComponent.h"

#include <algorithm>

namespace desktop {

ReportTable::ReportTable(std::vector<AString> const & over, AString const & x, std::vector<AString> const & y,
                         std::vector<Trace const *> const & traces)
    : m_variables(over.size()) {
  auto const first = std::find_if(traces.begin(), traces.end(), [](Trace const * trace) { return trace != nullptr; });
  for (AString const & variable : over)
    m_columns.push_back({Column::Role::kVariable, variable});
  m_values.resize(m_columns.size(), nullptr);
  AddColumn(Column::Role::kX, x, first == traces.end() ? nullptr : (*first)->GetAbscissa());
  for (std::size_t i = 0; i < y.size(); ++i)
    AddColumn(Column::Role::kY, y[i], i < traces.size() && traces[i] ? traces[i]->GetOrdinate() : nullptr);
  if (first != traces.end())
    TakeParts(over, **first);
}

void ReportTable::AddColumn(Column::Role role, AString const & title, TraceComponent const * component) {
  Column column{role, title};
  if (component) {
    column.units = component->GetUnits();
    column.isComplex = component->GetValues().IsComplex();
  }
  m_columns.push_back(column);
  m_values.push_back(component ? &component->GetValues() : nullptr);
}

void ReportTable::TakeParts(std::vector<AString> const & over, Trace const & trace) {
  for (SampleSegments::Segment const & segment : trace.GetSegments().Get()) {
    Part part{m_rows, segment.first, segment.isMissing, segment.variation, {}, {}};
    VariationText const variation(segment.variation);
    for (AString const & name : over) {
      VariationText::Pair const * const pair = variation.Find(name.View());
      part.texts.push_back(pair ? AString(pair->text) : AString());
      part.numbers.push_back(pair && pair->isNumber ? std::optional<double>(pair->number.real()) : std::nullopt);
    }
    m_rows += segment.isMissing ? 1 : segment.count;
    if (segment.isMissing || segment.count > 0)
      m_parts.push_back(std::move(part));
  }
}

std::size_t ReportTable::GapCount() const {
  return static_cast<std::size_t>(
      std::count_if(m_parts.begin(), m_parts.end(), [](Part const & part) { return part.isMissing; }));
}

ReportTable::Part const & ReportTable::PartOf(std::size_t row) const {
  auto const behind = std::upper_bound(m_parts.begin(), m_parts.end(), row,
                                       [](std::size_t wanted, Part const & part) { return wanted < part.firstRow; });
  return *std::prev(behind);
}

std::optional<std::complex<double>> ReportTable::At(std::size_t row, std::size_t column) const {
  Part const & part = PartOf(row);
  if (column < m_variables)
    return part.numbers[column];
  ValueColumn const * const values = m_values[column];
  std::size_t const place = part.firstSample + (row - part.firstRow);
  if (part.isMissing || !values || place >= values->GetCount() || !values->IsValid(place))
    return {};
  std::complex<double> const number = values->GetNumber(place);
  Units::FullUnitType const units = m_columns[column].units;
  if (units == Units::kNoUnits)
    return number;
  if (!m_columns[column].isComplex)
    return Units::FromSI(number.real(), units);
  return std::complex<double>(Units::FromSI(number.real(), units), Units::FromSI(number.imag(), units));
}

AString ReportTable::TextAt(std::size_t row, std::size_t column) const {
  return column < m_variables ? PartOf(row).texts[column] : AString();
}

AString const & ReportTable::VariationAt(std::size_t row) const { return PartOf(row).variation; }

} // namespace desktop
