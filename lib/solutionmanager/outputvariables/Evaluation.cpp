#include "solutionmanager/outputvariables/Evaluation.h"

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IReportUpdateService.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/QuestionSpan.h"
#include "plotkit/simvalue/valueutils.h"
#include "plotkit/sweep/SweepBase.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/EvaluationTrace.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"
#include "solutionmanager/outputvariables/PointSelection.h"

namespace {

/// The names that variation texts may set: the design's and the project's variables.
class VariationNames : public IVariableServer {
public:
  explicit VariationNames(BaseSolutionManager const & manager) {
    IDesign const * const design = manager.GetIDesign();
    if (IDesignEditor const * const editor = design ? design->GetDesignEditor() : nullptr)
      m_nameSpace.AddVariableServer(editor->GetVariableServer());
    m_nameSpace.AddVariableServer(valueutils::GetProjectVariableServer(&manager));
  }
  Variable * ResolveVariable(AString const & name) const override { return m_nameSpace.FindVariable(name); }

private:
  VariableNameSpace m_nameSpace;
};

/// The extractor's special sweeps assume the variation while this object lives.
class SpecialSweepSpan {
public:
  SpecialSweepSpan(BaseSimDataExtractor & extractor, VariableValues const & variation) : m_extractor(extractor) {
    m_extractor.SetSpecialSweepVariation(variation);
  }
  ~SpecialSweepSpan() { m_extractor.SetSpecialSweepVariation(VariableValues()); }
  SpecialSweepSpan(SpecialSweepSpan const &) = delete;
  SpecialSweepSpan & operator=(SpecialSweepSpan const &) = delete;

private:
  BaseSimDataExtractor & m_extractor;
};

} // namespace

using namespace outputvariables;

bool Evaluation::Run(Value & result) {
  if (!FindSolution())
    return false;
  // The update of the set and the extraction behind it both take the data.
  QuestionSpan const span(m_solution->GetISimDataExtractor(), ResolveVariation());
  return HasSolvedData() && FindVariable() && ChooseContext() && IsVariableUsable() && Evaluate(result);
}

bool Evaluation::FindSolution() {
  if (m_question.variable.empty() || m_question.solution.empty()) {
    Tell(kNameIsMissing, {}, KelvroMessage::kError);
    return false;
  }
  m_solution = m_manager.GetISolution(m_question.solution, false, true);
  if (!m_solution)
    Tell(kNoSuchSolution, m_question.solution);
  return m_solution;
}

VariableValues Evaluation::ResolveVariation() const {
  VariationNames const names(m_manager);
  VariableValues values;
  VariableValues::ResolveVariationKey(m_question.variation, &names, values, nullptr, true);
  return values;
}

IDesignInstance * Evaluation::Instance() const {
  if (m_question.instance)
    return m_question.instance;
  std::vector<IDesignInstance *> instances;
  if (IDesign const * const design = m_manager.GetIDesign())
    design->GetDesignInstances(instances);
  return instances.empty() ? nullptr : instances.front();
}

AString Evaluation::SolvedVariation(VariableValues const & values) const {
  // A text that is no variation text has no values, as an empty one has none.  It names itself and thus no data all the
  // same: the nominal variation would be the answer to another question.
  if (values.IsOpaque())
    return values.GetVariationKey();
  VariableValues nominal;
  if (IDesignInstance const * const instance = Instance())
    instance->GetNominalVariableValues(nominal);
  VariableValues complete = values;
  for (VariableValues::Entry const & entry : nominal)
    complete.Add(entry.name, entry.value);
  return complete.GetVariationKey();
}

VariableValues Evaluation::WithoutAxesOfData(VariableValues const & values) const {
  VariationNames const names(m_manager);
  VariableValues solved = values;
  ISimDataExtractor const * const extractor = m_solution->GetISimDataExtractor();
  for (VariableValues::Entry const & entry : values) {
    Variable const * const variable = names.ResolveVariable(entry.name);
    bool const isOfDesign = variable && variable != Value::GetIntrinsicVariable(entry.name);
    SweepBase * const sweep = extractor ? extractor->GetSweep(entry.name) : nullptr;
    // A name that nothing knows is no axis: it stays, and no data is filed under it.
    bool const isAxis = !isOfDesign && (Value::GetIntrinsicVariable(entry.name) || sweep ||
                                        (extractor && extractor->GetSpecialSweep(entry.name)));
    if (isAxis || (sweep && sweep->GetPostprocessSweep()))
      solved.Remove(entry.name);
  }
  return solved;
}

bool Evaluation::HasSolvedData() {
  VariableValues const values = ResolveVariation();
  // Data is not filed under what its points run over, nor under what is applied to it afterwards: where it is not found
  // under all values that were given, these are left to the nominal ones.
  bool const isSolved = m_solution->HasValidSolutionData(SolvedVariation(values), id::invalidID) ||
                        m_solution->HasValidSolutionData(SolvedVariation(WithoutAxesOfData(values)), id::invalidID);
  if (!isSolved)
    Tell(kNoSolvedData, m_question.solution);
  return isSolved;
}

bool Evaluation::FindVariable() {
  auto * const extractor = dynamic_cast<BaseSimDataExtractor *>(m_solution->GetISimDataExtractor());
  KVRO_ASSERT(extractor);
  if (!extractor)
    return false;
  m_extractor = extractor;
  m_variable = m_manager.FindOutputVariable(m_question.variable);
  if (!m_variable)
    Tell(kNoSuchVariable, m_question.variable);
  return m_variable;
}

bool Evaluation::ChooseContext() {
  AString const text = m_variable->GetValueBaseText();
  ISolutionMgr::ReportTypeMap reportTypes;
  if (m_manager.GetOutputVariableReportTypes(text, reportTypes) > 1) {
    KVRO_ASSERT(!" There is more than one Report type in the outputvariable. Not Supported!");
    return false;
  }
  m_reportType = reportTypes.empty() ? SweepList::kAllReportTypes : reportTypes.begin()->first;
  if (m_question.context.empty())
    return true;
  std::vector<unsigned> rptTypes;
  for (auto const & [reportType, contexts] : reportTypes)
    rptTypes.push_back(reportType);
  KVRO_ASSERT(rptTypes.size() > 0);
  m_setContext(m_context, m_question.context, m_extractor, rptTypes);
  return true;
}

bool Evaluation::IsVariableUsable() const {
  if (!m_manager.IsValidOutputVariable(m_variable->GetName(), m_extractor, &m_context))
    return false;
  val::ParameterType const type = m_variable->GetParameterType();
  bool const isNumber = type == val::kReal || type == val::kComplex;
  if (!isNumber)
    Tell(kIsNoNumber, m_variable->GetName());
  return isNumber;
}

bool Evaluation::SelectPoint(SubsweepVector & subsweeps) const {
  PointSelection selection(*m_extractor);
  switch (selection.Select(m_extractor->GetSpecialSweepVariation(), subsweeps)) {
  case PointSelection::Outcome::kFound:
    return true;
  case PointSelection::Outcome::kNoValues:
    Tell(kSweepHasNoValues, m_variable->GetName());
    return false;
  case PointSelection::Outcome::kNoPoint:
    Tell(kNoSuchPoint, {selection.GetFailedVariable(), m_question.variation}, KelvroMessage::kError);
    return false;
  }
  return false;
}

bool Evaluation::Evaluate(Value & result) const {
  SpecialSweepSpan const span(*m_extractor, ResolveVariation());
  ExtractorContextSpan const context(m_extractor);
  // A product may make its sweeps when it is asked for them.
  std::vector<SweepBase *> sweeps;
  m_extractor->GetSweeps(sweeps, m_reportType, &m_context, rep::DisplayType{}, true);
  SubsweepVector subsweeps;
  if (!SelectPoint(subsweeps))
    return false;
  EvaluationTrace const trace(*m_extractor, subsweeps, m_context, m_variable->GetValueBaseText());
  if (!trace.IsMade())
    return false;
  trace.GetPointSet().SetIDesignInstance(Instance());
  UpdateSet(trace.GetPointSet());
  return trace.GetResult(result);
}

void Evaluation::UpdateSet(SolutionPointSet & pointSet) const {
  std::vector<ISolutionPointSet *> const list = {&pointSet};
  IDesign const * const design = m_manager.GetIDesign();
  if (design && design->IsV2Design()) {
    if (IReportUpdateService * const service = design->GetReportUpdateService())
      service->UpdateSolutionPointSets(list, 0);
    return;
  }
  m_manager.ForEdit().CentralizedUpdateSolutionPointSets(nullptr, &list);
  pointSet.UpdateData();
}
