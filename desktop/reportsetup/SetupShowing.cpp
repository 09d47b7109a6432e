#include "desktop/reportsetup/SetupShowing.h"

#include "CoreInterfaces/IVariableNameSpaceSetupper.h"
#include "CoreInterfaces/reportkern/ISimDataExtractorForReports.h"
#include "CoreInterfaces/reportkern/ISolutionManagerForReports.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/message/IProgressMonitor.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValuesRestorer.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/reportsetup/ReportLoadInfo.h"
#include "desktop/reportsetup/ReportTypeSolutionDefinition.h"
#include "desktop/reportsetup/SolvedInstances.h"
#include "plotkit/sample/SampleSelection.h"
#include "plotkit/sample/VariationSamples.h"
#include "plotkit/simvalue/ISolvedColumns.h"
#include "plotkit/sweep/SweepBase.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace desktop {

namespace {

using Role = ReportTable::Column::Role;

/// What people call the frequency, whose variable has a shorter name.
wchar_t const * const kFrequency = L"Freq";

ISolvedColumns const & ColumnsOf(Session & session, ReportDefinition const & report, long solutionID) {
  ISolution const * const solution = session.GetManager().GetISolutionByID(solutionID, false, false);
  auto const * const columns =
      solution ? dynamic_cast<ISolvedColumns const *>(solution->GetISimDataExtractor()) : nullptr;
  if (!columns)
    throw Error(ErrorKind::kUsage, L"report " + report.name +
                                       L": the product gives its data by no column, so that no report shows it; choose "
                                       L"another solution");
  return *columns;
}

SetupTable::Cell CellOf(std::complex<double> const & si, ReportTable::Column const & column) {
  if (std::isnan(si.real()) || std::isnan(si.imag()))
    return {};
  if (column.units == Units::kNoUnits)
    return {si, {}};
  double const imaginary = column.isComplex ? Units::FromSI(si.imag(), column.units) : 0.0;
  return {std::complex<double>(Units::FromSI(si.real(), column.units), imaginary), {}};
}

// A single number stands in all rows.
SetupTable::Cell CellAt(std::optional<expr::Result> const & result, std::size_t row,
                        ReportTable::Column const & column) {
  if (!result)
    return {};
  if (result->isScalar)
    return CellOf(result->Number(), column);
  return CellOf(result->isComplex ? result->complexes[row] : std::complex<double>(result->reals[row]), column);
}

std::size_t CountOf(std::optional<expr::Result> const & result) {
  if (!result || result->isScalar)
    return 1;
  return result->isComplex ? result->complexes.size() : result->reals.size();
}

} // namespace

SetupShowing::SetupShowing(Session & session, ReportDefinition const & report)
    : m_session(session), m_design(session.GetDesign()), m_report(report), m_source(FindSetupSource(session, report)),
      m_columns(ColumnsOf(session, report, m_source.solutionID)), m_names(true, false),
      m_parser(m_source.view, m_source.context, m_source.reportType), m_span(&m_parser) {
  session.GetManager()
      .GetISolutionManagerForReports()
      ->GetIVariableNameSpaceSetupper(m_source.solutionID)
      ->SetupVariableNameSpace(m_names);
  AddVariables();
  GoToVariation();
  AString const x = report.x.empty() ? DefaultAxis() : report.x;
  if (!x.empty() && !IsXVariable())
    AddCurve(Role::kX, x,
             m_design.FindVariable(kFrequency) ? x : WithRenamedWord(x, kFrequency, val::kIntrinsicFrequency));
  for (AString const & y : report.y)
    AddCurve(Role::kY, y, y);
}

void SetupShowing::Refuse(AString const & why) const {
  throw Error(ErrorKind::kUsage, L"report " + m_report.name + L": " + why);
}

void SetupShowing::AddVariable(AString const & name) {
  SweepBase const * const sweep = m_source.view.GetSweep(name, m_source.context, m_source.reportType);
  if (!sweep || !m_design.FindVariable(name)) {
    std::vector<SweepBase const *> sweeps;
    m_source.view.GetSweeps(sweeps, m_source.context, m_source.reportType);
    AString known;
    for (SweepBase const * const other : sweeps)
      if (m_design.FindVariable(other->GetRepVarName()))
        known += (known.empty() ? AString() : AString(L", ")) + other->GetRepVarName();
    Refuse(L"'" + name + L"' is no design variable that anything is solved over; there are: " +
           (known.empty() ? AString(L"none; solve first") : known));
  }
  if (std::find(m_over.begin(), m_over.end(), sweep) == m_over.end())
    m_over.push_back(sweep);
}

void SetupShowing::AddVariables() {
  for (AString const & name : m_report.over)
    AddVariable(name);
  for (AString const & word : ExpressionWords(m_report.x))
    if (m_design.FindVariable(word))
      AddVariable(word);
}

void SetupShowing::GoToVariation() {
  DesignInstance const * instance = &m_design.NominalInstance();
  if (!m_report.variation.empty()) {
    std::vector<std::pair<AString, AString>> given;
    VariationText const variation(m_report.variation);
    for (VariationText::Pair const & pair : variation.Pairs()) {
      if (!m_design.FindVariable(AString(pair.name)))
        Refuse(L"'" + AString(pair.name) + L"' is no design variable; the variation names those alone");
      given.emplace_back(AString(pair.name), AString(pair.text));
    }
    if (given.empty())
      Refuse(L"'" + m_report.variation + L"' is no variation; write it as in \"C1=1.2pF; L1=4nH\"");
    instance = &m_design.InstanceFor(m_design.GetVariation(given));
  }
  m_session.GetManager().GetISolutionManagerForReports()->GetNominalVariableValues(
      m_values, m_design.GetDesignID(), instance->GetID(),
      ReportTypeSolutionDefinition(m_source.reportType, m_source.solutionID));
}

AString SetupShowing::DefaultAxis() const {
  std::vector<SweepBase const *> sweeps;
  m_source.view.GetSweeps(sweeps, m_source.context, m_source.reportType);
  for (SweepBase const * const sweep : sweeps)
    if (AString const name = sweep->GetRepVarName(); !m_design.FindVariable(name))
      return AString::MatchNoCase(name, val::kIntrinsicFrequency) ? AString(kFrequency) : name;
  return AString();
}

bool SetupShowing::IsXVariable() const { return m_design.FindVariable(m_report.x) != nullptr; }

void SetupShowing::AddCurve(Role role, AString const & title, AString const & text) {
  expr::Error error;
  auto const expression = ExpressionValue::Bind(text, &m_parser, error);
  if (!expression)
    Refuse(L"'" + title + L"' can't be evaluated: " + error.Text());
  ValueState const state = expression->GetValueState();
  m_curves.push_back({title,
                      expression,
                      {role, title, state.fullUnit, postp::GetBasicParamType(state.parameterType) == val::kComplex}});
}

template <class Visit>
bool SetupShowing::ForEachPoint(std::size_t variable, VariableValues & values, Visit const & visit) const {
  if (variable == m_over.size())
    return visit();
  SweepBase const & sweep = *m_over[variable];
  for (unsigned place = 0; place < sweep.GetCount(); ++place) {
    Value value(sweep.GetUnits(0));
    value.SetConstantText(sweep.GetSingleValueText(place), sweep.GetUnits(0));
    values.Set(sweep.GetName(), value);
    if (!ForEachPoint(variable + 1, values, visit))
      return false;
  }
  return true;
}

SetupTable SetupShowing::Run(IProgressMonitor * progress) {
  SetupTable table;
  for (SweepBase const * const sweep : m_over)
    table.columns.push_back(
        {AString::MatchNoCase(sweep->GetName(), m_report.x) ? Role::kX : Role::kVariable, sweep->GetName()});
  for (Curve const & curve : m_curves)
    table.columns.push_back(curve.column);
  SolvedInstances const instances(*m_session.GetManager().GetSolutionInstanceManager(), m_design.GetDesignID(),
                                  m_source.solutionID, progress);
  AutoVectorOfClonablePtrs<IExtendedLoadInfo> infos;
  infos.push_back(new ReportLoadInfo(m_source.reportType, m_parser.GetQuantities()));
  VariableValuesRestorer const restorer(m_design.GetVariables());
  table.isCancelled = !ForEachPoint(0, m_values, [&] {
    if (progress && progress->IsCancelled())
      return false;
    for (VariableValues::Entry const & entry : m_values)
      if (Variable * const variable = m_design.FindVariable(entry.name))
        variable->SetValue(entry.value);
    IContextedDerivedDataInstance * const instance = instances.Find(m_values);
    std::optional<LoadedInstance> loaded;
    if (instance)
      loaded.emplace(*instance, infos, progress);
    AddPoint(table, m_values, loaded && loaded->IsLoaded());
    return true;
  });
  table.problems.assign(m_told.begin(), m_told.end());
  return table;
}

std::vector<SetupTable::Cell> SetupShowing::VariableCells(VariableValues const & values) const {
  std::vector<SetupTable::Cell> cells;
  for (SweepBase const * const sweep : m_over) {
    Value const & value = *values.Find(sweep->GetName());
    cells.push_back(value.IsNumber() ? SetupTable::Cell{value.GetComplexSIValue(), {}}
                                     : SetupTable::Cell{{}, value.GetText()});
  }
  return cells;
}

void SetupShowing::AddPoint(SetupTable & table, VariableValues const & values, bool isThere) {
  if (isThere)
    return AddRows(table, values);
  ++table.gaps;
  table.rows.push_back(VariableCells(values));
  table.rows.back().resize(table.columns.size());
}

void SetupShowing::AddRows(SetupTable & table, VariableValues const & values) {
  SampleSelection const selection(m_columns, {}, true);
  VariationSamples samples(m_columns, selection, &m_parser);
  samples.GoTo({0, selection.GetPlaces().size()});
  std::vector<std::optional<expr::Result>> results;
  std::size_t count = 1;
  for (Curve const & curve : m_curves) {
    expr::Error error;
    auto & result = results.emplace_back(std::in_place);
    if (!curve.expression->Evaluate(samples, samples.GetAxis(), *result, error)) {
      m_told.insert(L"report " + m_report.name + L": '" + curve.title + L"' can't be evaluated: " + error.Text());
      result.reset();
    }
    count = std::max(count, CountOf(result));
  }
  for (std::size_t row = 0; row < count; ++row) {
    auto & cells = table.rows.emplace_back(VariableCells(values));
    for (std::size_t i = 0; i < m_curves.size(); ++i)
      cells.push_back(CellAt(results[i], row, m_curves[i].column));
  }
}

} // namespace desktop
