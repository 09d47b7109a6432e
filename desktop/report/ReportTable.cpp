#include "desktop/report/ReportTable.h"

#include "basekit/value/ExpressionValue.h"
#include "basekit/value/variation/VariationText.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"

#include <algorithm>
#include <map>

namespace desktop {

namespace {

using Role = ReportTable::Column::Role;

// Those of the expression where the component has none of its own.
Units::FullUnitType UnitsOf(TraceComponent const & component) {
  ExpressionValue const * const expression = component.GetExpression();
  return component.GetUnits() == Units::kNoUnits && expression ? expression->GetValueState().fullUnit
                                                               : component.GetUnits();
}

std::complex<double> InUnits(std::complex<double> const & si, ReportTable::Column const & column) {
  if (column.units == Units::kNoUnits)
    return si;
  double const imaginary = column.isComplex ? Units::FromSI(si.imag(), column.units) : 0.0;
  return {Units::FromSI(si.real(), column.units), imaginary};
}

} // namespace

ReportTable::ReportTable(std::vector<AString> const & over, AString const & x, std::vector<AString> const & y,
                         std::vector<Trace const *> const & traces, std::vector<Units::FullUnitType> const & units)
    : m_traces(traces), m_variables(over.size()) {
  auto const first = std::find_if(traces.begin(), traces.end(), [](Trace const * trace) { return trace != nullptr; });
  bool isXThere = false;
  for (AString const & variable : over) {
    bool const isX = AString::MatchNoCase(variable, x);
    isXThere = isXThere || isX;
    m_columns.push_back({isX ? Role::kX : Role::kVariable, variable});
  }
  if (!x.empty() && !isXThere)
    AddColumn(Role::kX, x, first == traces.end() ? nullptr : *first, Units::kNoUnits);
  m_traces.resize(y.size(), nullptr);
  for (std::size_t i = 0; i < y.size(); ++i)
    AddColumn(Role::kY, y[i], m_traces[i], i < units.size() ? units[i] : Units::kNoUnits);
  TakeParts(over, m_traces);
}

void ReportTable::AddColumn(Role role, AString const & title, Trace const * trace, Units::FullUnitType units) {
  TraceComponent const * const component = !trace             ? nullptr
                                           : role == Role::kX ? trace->GetAbscissa()
                                                              : trace->GetOrdinate();
  Column column{role, title};
  if (component) {
    column.units = UnitsOf(*component);
    column.units = column.units == Units::kNoUnits ? units : column.units;
    column.isComplex = component->GetValues().IsComplex();
  }
  m_columns.push_back(column);
}

void ReportTable::TakeParts(std::vector<AString> const & over, std::vector<Trace const *> const & traces) {
  std::map<std::size_t, Part> parts; // By the point.
  for (std::size_t i = 0; i < traces.size(); ++i) {
    if (!traces[i])
      continue;
    for (SampleSegments::Segment const & segment : traces[i]->GetSegments().Get()) {
      auto const [at, isNew] = parts.try_emplace(segment.point);
      Part & part = at->second;
      if (isNew) {
        part.spans.resize(traces.size());
        VariationText const variation(segment.variation);
        for (AString const & name : over) {
          VariationText::Pair const * const pair = variation.Find(name.View());
          part.texts.push_back(pair ? AString(pair->text) : AString());
          part.numbers.push_back(pair && pair->isNumber ? std::optional<double>(pair->number.real()) : std::nullopt);
        }
      }
      if (segment.isMissing)
        continue;
      part.spans[i] = {segment.first, segment.count};
      if (part.isMissing || segment.count > part.rows) {
        part.rows = segment.count;
        part.longest = i;
      }
      part.isMissing = false;
    }
  }
  for (auto & [point, part] : parts) {
    if (part.rows == 0)
      continue;
    part.firstRow = m_rows;
    m_rows += part.rows;
    m_parts.push_back(std::move(part));
  }
}

std::size_t ReportTable::GapCount() const {
  return static_cast<std::size_t>(
      std::count_if(m_parts.begin(), m_parts.end(), [](Part const & part) { return part.isMissing; }));
}

std::vector<std::pair<AString, AString>> ReportTable::FirstGap() const {
  std::vector<std::pair<AString, AString>> values;
  auto const gap = std::find_if(m_parts.begin(), m_parts.end(), [](Part const & part) { return part.isMissing; });
  for (std::size_t i = 0; gap != m_parts.end() && i < m_variables; ++i)
    values.emplace_back(m_columns[i].title, gap->texts[i]);
  return values;
}

std::vector<ReportTable::Variation> ReportTable::Variations() const {
  std::vector<Variation> variations;
  variations.reserve(m_parts.size());
  for (Part const & part : m_parts)
    variations.push_back({part.firstRow, part.rows, part.isMissing});
  return variations;
}

std::size_t ReportTable::LongestCurve() const {
  std::size_t longest = 0;
  for (Part const & part : m_parts)
    longest = std::max(longest, part.rows);
  return longest;
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
  bool const isX = m_columns[column].role == Role::kX;
  std::size_t const firstY = m_columns.size() - m_traces.size();
  std::size_t const index = isX ? part.longest : column - firstY;
  if (part.isMissing || !m_traces[index])
    return {};
  Span const & span = part.spans[index];
  std::size_t const offset = span.count == 1 ? 0 : row - part.firstRow;
  TraceComponent const * const component = isX ? m_traces[index]->GetAbscissa() : m_traces[index]->GetOrdinate();
  if (offset >= span.count || !component || !component->GetValues().IsValid(span.first + offset))
    return {};
  return InUnits(component->GetValues().GetNumber(span.first + offset), m_columns[column]);
}

AString ReportTable::TextAt(std::size_t row, std::size_t column) const {
  return column < m_variables ? PartOf(row).texts[column] : AString();
}

} // namespace desktop
