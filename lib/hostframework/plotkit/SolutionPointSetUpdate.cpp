// How a point set gets its data.

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/VariableValuesRestorer.h"
#include "plotkit/PointSetUpdate.h"
#include "plotkit/SimValue.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/valueutils.h"

namespace {

/// The numbers of the extractor options that name spaces ask for.
constexpr int kSearchesIntrinsicVariables = 4;
constexpr int kLeavesOutProjectVariables = 5;
/// Stands for a report type where the expressions refer to none.
constexpr unsigned kAllReportTypes = 0xFFFFFFFFu;

/// The names and the parser by which a set's expressions are bound and evaluated, for the span of its life.
class EvaluationSpan {
public:
  EvaluationSpan(ISimDataExtractor & extractor, SimValueContext const & context)
      : m_nameSpace(dynamic_cast<IVariableServer const *>(&extractor),
                    extractor.HasExtractorOption(kSearchesIntrinsicVariables), true),
        m_formerParser(Value::SetValueParser(extractor.GetIValueParser())) {
    extractor.SetSimValueContext(&context);
    ISolutionMgr const * const manager = extractor.GetISolutionMgr();
    if (!extractor.HasExtractorOption(kLeavesOutProjectVariables))
      m_nameSpace.AddVariableServer(valueutils::GetProjectVariableServer(manager));
    IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
    if (IDesignEditor const * const editor = design ? design->GetDesignEditor() : nullptr)
      m_nameSpace.AddVariableServer(editor->GetVariableServer());
  }
  ~EvaluationSpan() { Value::SetValueParser(m_formerParser); }
  EvaluationSpan(EvaluationSpan const &) = delete;
  EvaluationSpan & operator=(EvaluationSpan const &) = delete;

private:
  VariableNameSpace m_nameSpace;
  IValueParser * m_formerParser;
};

void AddQuantities(PointSetUpdate const & update, unsigned reportType,
                   std::map<unsigned, std::vector<AString>> & quantities) {
  std::set<AString> texts;
  for (SimValue const * const value : update.GetSimValues())
    texts.insert(value->GetText());
  if (!texts.empty())
    quantities[reportType].insert(quantities[reportType].end(), texts.begin(), texts.end());
}

} // namespace

void SolutionPointSet::DropUpdate() { m_update.reset(); }

std::vector<Trace *> SolutionPointSet::TracesToUpdate() const {
  // The update stamps the whole set, so what is of an older version is updated with it.
  ISolution const * const solution = m_extractor.GetISolution();
  bool const isStale = m_isDirty || (solution && m_solutionVersionID != solution->GetVersionID());
  std::vector<Trace *> traces;
  for (Trace * const trace : m_traces)
    if (isStale || trace->IsDirty() || trace->GetSegments().empty())
      traces.push_back(trace);
  return traces;
}

std::vector<unsigned> SolutionPointSet::ReportTypes(PointSetUpdate const & update) const {
  ISolutionMgr const * const manager = m_extractor.GetISolutionMgr();
  if (!manager || update.GetSimValues().empty())
    return {kAllReportTypes};
  return {manager->GetReportTypeOfSolutionPointSet(this)};
}

void SolutionPointSet::RegisterForUpdate(ISolutionPointSetUpdateRegistry * registry, IProgressMonitor *) {
  DropUpdate();
  std::vector<Trace *> const traces = TracesToUpdate();
  if (!registry || traces.empty())
    return;
  EvaluationSpan const span(m_extractor, m_context);
  ISolution const * const solution = m_extractor.GetISolution();
  m_update = std::make_unique<PointSetUpdate>(*this, traces, solution ? solution->GetVersionID() : id::invalidID);
  if (!m_update->IsCountInRange())
    return m_update.reset();
  PointSetPoints const & points = m_update->GetPoints();
  VariableValuesRestorer const restorer(points.GetVariables());
  m_reportTypes = ReportTypes(*m_update);
  for (std::size_t point = 0; point < points.GetMajorCount(); ++point) {
    VariableValues const values = points.GetMajorValues(point);
    if (!m_update->IsCached(values))
      registry->RegisterPointSet(this, values, VariableValues(), m_reportTypes);
  }
}

void SolutionPointSet::GetLoadQuantities(std::map<unsigned, std::vector<AString>> & quantities) {
  if (m_update)
    return AddQuantities(*m_update, m_reportTypes.front(), quantities);
  EvaluationSpan const span(m_extractor, m_context);
  PointSetUpdate const update(*this, {m_traces.begin(), m_traces.end()}, m_solutionVersionID);
  AddQuantities(update, ReportTypes(update).front(), quantities);
}

bool SolutionPointSet::UpdateFromLoadedData(VariableValues const & first, VariableValues const &, IProgressMonitor *) {
  if (!m_update || !m_extractor.BeginPostprocessingUpdate(*this))
    return false;
  bool isTaken = false;
  {
    EvaluationSpan const span(m_extractor, m_context);
    VariableValuesRestorer const restorer(m_update->GetPoints().GetVariables());
    isTaken = m_update->TakeLoaded(first);
  }
  m_extractor.EndPostprocessingUpdate();
  if (m_update->IsWhole())
    FinishUpdate(true);
  return isTaken;
}

void SolutionPointSet::FinishUpdate(bool wasEverythingReached) {
  std::unique_ptr<PointSetUpdate> const update = std::move(m_update);
  if (!update)
    return;
  if (!update->IsWhole()) {
    if (!wasEverythingReached || !m_extractor.BeginPostprocessingUpdate(*this))
      return;
    {
      EvaluationSpan const span(m_extractor, m_context);
      VariableValuesRestorer const restorer(update->GetPoints().GetVariables());
      update->TakeUnloadedRest();
    }
    m_extractor.EndPostprocessingUpdate();
  }
  update->Finish();
  m_solutionVersionID = update->GetVersion();
  if (m_instance)
    m_designVariation = m_instance->GetVariationKey();
  m_isDirty = false;
}

bool SolutionPointSet::UpdateData() {
  DropUpdate();
  EvaluationSpan const span(m_extractor, m_context);
  PointSetUpdate update(*this, {m_traces.begin(), m_traces.end()}, m_solutionVersionID);
  if (!update.IsCountInRange() || !m_extractor.BeginPostprocessingUpdate(*this))
    return false;
  if (m_instance)
    m_designVariation = m_instance->GetVariationKey();
  PointSetPoints const & points = update.GetPoints();
  VariableValuesRestorer const restorer(points.GetVariables());
  std::vector<unsigned> const reportTypes = ReportTypes(update);
  std::map<unsigned, std::vector<AString>> quantities;
  AddQuantities(update, reportTypes.front(), quantities);
  for (std::size_t point = 0; !m_traces.empty() && point < points.GetMajorCount(); ++point) {
    if (update.IsTaken(point))
      continue;
    VariableValues const values = points.GetMajorValues(point);
    if (m_extractor.LoadSolvedData(values, VariableValues(), reportTypes, quantities, nullptr))
      update.TakeLoaded(values);
    else
      update.TakeUnloaded(values);
    m_extractor.FinishLoadingSolvedData();
  }
  m_extractor.EndPostprocessingUpdate();
  update.Finish();
  return true;
}
