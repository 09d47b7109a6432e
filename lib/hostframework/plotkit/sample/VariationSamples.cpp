#include "plotkit/sample/VariationSamples.h"

#include "CoreInterfaces/IValueParser.h"
#include "basekit/value/Variable.h"
#include "plotkit/simvalue/ISolvedColumns.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/SubsweepPoints.h"

#include <limits>

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
static_assert(sizeof(AComplex<double>) == 2 * sizeof(double));

template <class Number> void FillWithMissing(std::vector<Number> & numbers, std::size_t count) {
  if constexpr (std::is_same_v<Number, double>)
    numbers.assign(count, kMissing);
  else
    numbers.assign(count, Number(kMissing, kMissing));
}

void Widen(NumberColumn & column) {
  column.complexes.assign(column.reals.begin(), column.reals.end());
  column.isComplex = true;
}

} // namespace

VariationSamples::VariationSamples(ISolvedColumns const & columns, SampleSelection const & selection,
                                   IValueParser * parser)
    : m_columns(columns), m_selection(selection), m_parser(parser) {
  if (!selection.GetAxes().empty())
    return;
  for (wchar_t const * const name : {val::kIntrinsicFrequency, val::kIntrinsicTime, val::kIntrinsicPass})
    if (columns.GetVariableColumn(name, m_ownAxis) && m_ownAxis.size() == selection.GetPlaces().size())
      return;
  m_ownAxis.clear();
}

void VariationSamples::GoTo(SampleSelection::Run const & run) {
  m_run = run;
  m_selected.clear();
  std::vector<double> const & axis = m_selection.GetAxes().empty() ? m_ownAxis : m_selection.GetAxes().back().selected;
  m_axis = axis.empty() ? std::span<double const>() : std::span<double const>(axis).subspan(run.first, run.count);
}

void VariationSamples::SetVariables(std::size_t sample) const {
  for (SampleSelection::Axis const & axis : m_selection.GetAxes())
    axis.points->SetNumber(axis.selected[m_run.first + sample]);
}

bool VariationSamples::IsWholeVariation() const {
  return m_selection.IsWhole() && m_run.count == m_selection.GetPlaces().size();
}

bool VariationSamples::GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const {
  if (!quantity.base)
    return false;
  bool const isComplex = postp::GetBasicParamType(quantity.state.parameterType) == val::kComplex;
  auto const * const simValue = dynamic_cast<SimValue const *>(quantity.base);
  if (simValue && IsWholeVariation() && Solved(*simValue, isComplex).GetCount() == m_run.count) {
    samples = {m_solved[simValue].GetData(), m_run.count, false};
    return m_solved[simValue].isComplex == isComplex;
  }
  auto const [entry, isNew] = m_selected.try_emplace(quantity.base);
  NumberColumn & column = entry->second;
  if (isNew) {
    auto const * const variable = dynamic_cast<Variable const *>(quantity.base);
    if (variable && !GetVariableSamples(*variable, isComplex, column)) {
      m_selected.erase(entry);
      return false;
    }
    if (simValue)
      Select(Solved(*simValue, isComplex), column);
    else if (!variable)
      AskOneByOne(*quantity.base, isComplex, column);
  }
  samples = {column.GetData(), column.GetCount(), false};
  return column.isComplex == isComplex;
}

template <class Number>
void VariationSamples::SelectNumbers(std::vector<Number> const & all, std::vector<Number> & selected) const {
  FillWithMissing(selected, m_run.count);
  for (std::size_t i = 0; i < m_run.count; ++i)
    if (std::size_t const place = m_selection.GetPlaces()[m_run.first + i]; place < all.size())
      selected[i] = all[place];
}

void VariationSamples::Select(NumberColumn const & all, NumberColumn & column) const {
  column.isComplex = all.isComplex;
  if (all.isComplex)
    SelectNumbers(all.complexes, column.complexes);
  else
    SelectNumbers(all.reals, column.reals);
}

bool VariationSamples::GetVariableSamples(Variable const & variable, bool isComplex, NumberColumn & column) const {
  auto const first = static_cast<std::ptrdiff_t>(m_run.first);
  auto const last = first + static_cast<std::ptrdiff_t>(m_run.count);
  bool isAxis = false;
  for (SampleSelection::Axis const & axis : m_selection.GetAxes())
    if (AString::MatchNoCase(axis.points->GetName(), variable.GetName())) {
      column.reals.assign(axis.selected.begin() + first, axis.selected.begin() + last);
      isAxis = true;
    }
  for (SubsweepPoints const * const points : m_selection.GetFree())
    if (AString::MatchNoCase(points->GetName(), variable.GetName()))
      return false;
  if (!isAxis) {
    std::vector<double> all;
    if (!Value::GetIntrinsicVariable(variable.GetName()) || !m_columns.GetVariableColumn(variable.GetName(), all))
      return false;
    SelectNumbers(all, column.reals);
  }
  if (isComplex)
    Widen(column);
  return true;
}

NumberColumn const & VariationSamples::Solved(SimValue const & value, bool isComplex) const {
  auto const [entry, isNew] = m_solved.try_emplace(&value);
  NumberColumn & column = entry->second;
  if (!isNew)
    return column;
  column.isComplex = isComplex;
  bool const isThere = isComplex ? m_columns.GetSimValueColumn(value, column.complexes)
                                 : m_columns.GetSimValueColumn(value, column.reals);
  if (!isThere || column.GetCount() != m_columns.GetSampleCount()) {
    column.reals.clear();
    column.complexes.clear();
  }
  return column;
}

void VariationSamples::AskOneByOne(ValueBase const & value, bool isComplex, NumberColumn & column) const {
  column.isComplex = isComplex;
  for (std::size_t sample = 0; sample < m_run.count; ++sample) {
    SetVariables(sample);
    if (isComplex)
      column.complexes.push_back(m_parser ? m_parser->GetComplexValue(value) : AComplex<double>(kMissing, kMissing));
    else
      column.reals.push_back(m_parser ? m_parser->GetValue(value) : kMissing);
  }
}
