// The axes of what is solved: of the samples, and of the design's variables.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/Variable.h"
#include "desktop/product/quantity/LoadedQuantities.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "plotkit/sweep/Sweep.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace desktop {
namespace {

constexpr unsigned kAllReportTypes = 0xFFFFFFFFu;

void SetValues(SweepColumn & column, SolvedVariations::Values const & values) {
  auto const isReal = [](Value const & value) { return value.IsNumber() && value.GetComplexSIValue().imag() == 0.0; };
  if (std::all_of(values.begin(), values.end(), isReal)) {
    std::vector<double> numbers;
    for (Value const & value : values)
      numbers.push_back(value.GetSIValue());
    column.SetValues(std::move(numbers));
  } else if (std::all_of(values.begin(), values.end(), [](Value const & value) { return value.IsNumber(); })) {
    std::vector<AComplex<double>> numbers;
    for (Value const & value : values)
      numbers.push_back(value.GetComplexSIValue());
    column.SetValues(std::move(numbers));
  } else {
    std::vector<AString> texts;
    for (Value const & value : values)
      texts.push_back(value.GetText());
    column.SetValues(std::move(texts));
  }
}

} // namespace

bool QuantityExtractor::IsAxisOf(QuantityReportType const & type, AString const & name) {
  return !name.empty() && (AString::MatchNoCase(type.axis, name) || AString::MatchNoCase(type.intrinsic, name));
}

bool QuantityExtractor::HasAxis(AString const & name, unsigned reportType) const {
  auto const & types = GetCatalogue().GetReportTypes();
  return std::any_of(types.begin(), types.end(), [&](QuantityReportType const & type) {
    return (reportType == kAllReportTypes || type.number == reportType) && IsAxisOf(type, name);
  });
}

bool QuantityExtractor::IsAxis(AString const & variable) const { return HasAxis(variable, kAllReportTypes); }

// Of all report types together, as one sweep serves them.
std::vector<double> QuantityExtractor::AxisValues(AString const & axis) const {
  std::vector<double> values;
  for (QuantityReportType const & type : GetCatalogue().GetReportTypes()) {
    if (!IsAxisOf(type, axis))
      continue;
    bool const isFirst = values.empty();
    values.insert(values.end(), type.axisValues.begin(), type.axisValues.end());
    if (isFirst || type.axisValues.empty())
      continue;
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
  }
  return values;
}

Variable * QuantityExtractor::AxisVariable(QuantityReportType const & reportType) {
  if (Variable * const intrinsic = Value::GetIntrinsicVariable(reportType.axis))
    return intrinsic;
  auto & variable = m_axisVariables[reportType.axis];
  if (!variable)
    variable = std::make_unique<Variable>(reportType.axis, Value(reportType.axisState.fullUnit));
  return variable.get();
}

// Null when the name belongs to a sweep of another kind, which then serves in its place.
Sweep * QuantityExtractor::SweepOver(Variable & variable, Units::FullUnitType units) {
  SweepBase * const present = BaseSimDataExtractor::GetSweep(variable.GetName());
  if (!present) {
    auto * const sweep = new Sweep(val::kReal, units, &variable);
    AddSweep(sweep);
    return sweep;
  }
  Sweep * const sweep = present->GetSweep();
  if (sweep && !sweep->Column().GetVariable())
    sweep->Column() = SweepColumn(val::kReal, units, &variable);
  return sweep;
}

void QuantityExtractor::SetAxisSweeps() {
  for (QuantityReportType const & type : GetCatalogue().GetReportTypes()) {
    if (type.axis.empty())
      continue;
    if (Sweep * const sweep = SweepOver(*AxisVariable(type), type.axisState.fullUnit))
      sweep->Column().SetValues(AxisValues(type.axis));
  }
  m_axisSweepsAreCurrent = true;
}

void QuantityExtractor::CreateDefaultSweeps(bool) {
  SetAxisSweeps();
  auto const & solved = m_variations.GetValues();
  for (Variable * const variable : DesignVariables()) {
    auto const values = solved.find(variable->GetName());
    if (values == solved.end())
      continue;
    if (Sweep * const sweep = SweepOver(*variable, variable->GetValue().GetUnits()))
      SetValues(sweep->Column(), values->second);
  }
  m_sweepsAreCurrent = true;
}

void QuantityExtractor::RefreshSweeps() const {
  // What is asked for follows from what is solved, so that asking brings it up to date.
  auto & self = const_cast<QuantityExtractor &>(*this);
  RefreshVariations();
  if (!m_sweepsAreCurrent)
    self.CreateDefaultSweeps(true);
  else if (!m_axisSweepsAreCurrent)
    self.SetAxisSweeps();
}

int QuantityExtractor::GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType,
                                 SimValueContext const * context, rep::DisplayType displayType, bool flag) const {
  RefreshSweeps();
  std::vector<SweepBase *> all;
  BaseSimDataExtractor::GetSweeps(all, reportType, context, displayType, flag);
  for (SweepBase * const sweep : all) {
    bool const isAxis = IsAxis(sweep->GetName());
    if (isAxis ? HasAxis(sweep->GetName(), reportType) : sweep->GetVariable(0) != nullptr)
      sweeps.push_back(sweep);
  }
  return static_cast<int>(sweeps.size());
}

SweepBase * QuantityExtractor::GetSweep(AString const & name) const {
  RefreshSweeps();
  for (QuantityReportType const & type : GetCatalogue().GetReportTypes())
    if (IsAxisOf(type, name))
      return BaseSimDataExtractor::GetSweep(type.axis);
  return BaseSimDataExtractor::GetSweep(name);
}

Sweep * QuantityExtractor::CreateSpecialSweep(AString const & name, val::ParameterType type,
                                              Units::FullUnitType units) const {
  Sweep * const sweep = BaseSimDataExtractor::CreateSpecialSweep(name, type, units);
  if (sweep && IsAxis(name))
    sweep->Column().SetValues(AxisValues(name));
  return sweep;
}

bool QuantityExtractor::ClearSweepsOnDesignFileRead() {
  m_sweepsAreCurrent = false;
  return BaseSimDataExtractor::ClearSweepsOnDesignFileRead();
}

void QuantityExtractor::DoGarbageCollection(std::set<Trace *> const & tracesInUse) {
  BaseSimDataExtractor::DoGarbageCollection(tracesInUse);
  m_sweepsAreCurrent = false;
}

} // namespace desktop
