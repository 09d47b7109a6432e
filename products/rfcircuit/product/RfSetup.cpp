#include "products/rfcircuit/product/RfSetup.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/SweepColumns.h"
#include "products/rfcircuit/product/SweepSettings.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace rfcircuit {

AString const RfSetup::kTypeName(L"SParameters");
AString const RfSetup::kSettingsBlockName(L"Settings");

RfSetup::RfSetup(BaseSolutionManager const * manager, AString const & name) : BaseSimulationSetup(manager, name) {}

RfSetup::RfSetup(BaseSolutionManager const * manager, long id, long version)
    : BaseSimulationSetup(manager, id, version) {}

RfSetup::RfSetup(BaseSolutionManager const * manager, ISimulationSetup const * source)
    : BaseSimulationSetup(manager, source) {
  if (auto const * const setup = dynamic_cast<RfSetup const *>(source))
    m_plan = setup->m_plan;
  else
    TakeSweepOfDefinitions();
}

RfSetup::~RfSetup() { RemoveAllSweeps(); }

void RfSetup::SetPlan(SweepPlan const & plan) {
  m_plan = plan;
  RemoveAllSweeps();
  if (SweepDefinition * const definition = MakeSweepDefinition(plan.sweep))
    AddSingleSweep(definition);
  for (auto const & [id, solution] : GetSolutions())
    if (auto * const rfSolution = dynamic_cast<RfSolution *>(solution))
      rfSolution->SetSweep(plan.sweep);
}

void RfSetup::TakeSweepOfDefinitions() {
  std::vector<SweepDefinition *> definitions;
  GetSweepDefinitions(definitions);
  for (SweepDefinition const * const definition : definitions)
    if (auto const sweep = SweepOf(*definition); sweep && !m_plan)
      m_plan = SweepPlan{*sweep, rf::SweepMethod::Direct(), {}};
}

BaseSolution * RfSetup::CreateSolution(long sol_id, long version) {
  KVRO_ASSERT(sol_id != -1);
  return MakeSolution(sol_id, version);
}

BaseSolution * RfSetup::CreateSolution(AString const & name) {
  BaseSolution * const solution = MakeSolution(-1, 0);
  solution->SetSolutionName(name);
  return solution;
}

BaseSolution * RfSetup::MakeSolution(long id, long version) {
  auto * const solution = new RfSolution(*this, id, version);
  if (m_plan)
    solution->SetSweep(m_plan->sweep);
  return BecomeDefaultIfFirst(solution);
}

BaseSolution * RfSetup::CustomCreateSolutionWhileReading(io::CBlock const & block, long id) {
  BaseSolution * const solution = CreateSolution(id, GetVersionID());
  AString name = solution->GetSolutionName();
  block >> io::named(kSolutionName, name);
  solution->SetSolutionName(name);
  return solution;
}

io::ReadError RfSetup::DesignFileRead(io::CBlock const & block) {
  RemoveAllSweeps();
  m_plan.reset();
  io::ReadError const result = BaseSimulationSetup::DesignFileRead(block);
  io::CBlock settings(kSettingsBlockName);
  block >> settings;
  AString error;
  if (block.Found())
    m_plan = ReadPlan(settings, error);
  else
    TakeSweepOfDefinitions();
  if (std::optional<SweepPlan> const plan = m_plan)
    SetPlan(*plan);
  return result;
}

bool RfSetup::DesignFileWrite(io::CBlock & block) {
  if (!BaseSimulationSetup::DesignFileWrite(block))
    return false;
  if (!m_plan)
    return true;
  io::CBlock settings(kSettingsBlockName);
  WritePlan(settings, *m_plan);
  block << settings;
  return true;
}

bool RfSetup::IsEqual(ISimulationSetup const * other) const {
  if (!BaseSimulationSetup::IsEqual(other))
    return false;
  auto const * const theirs = dynamic_cast<RfSetup const *>(other);
  if (!theirs || !m_plan || !theirs->m_plan)
    return !theirs || m_plan.has_value() == theirs->m_plan.has_value();
  return m_plan->method == theirs->m_plan->method && m_plan->files == theirs->m_plan->files &&
         m_plan->sweep.GetKind() == theirs->m_plan->sweep.GetKind() &&
         m_plan->sweep.Frequencies() == theirs->m_plan->sweep.Frequencies();
}

ConvergenceData * RfSetup::SetupConvData(AString const & variation, long version, int index) {
  ConvergenceData * record = BaseSimulationSetup::SetupConvData(variation, version, index);
  bool const isAdaptive = m_plan && m_plan->method.isAdaptive;
  SetupConvDef const * const columns = GetBaseSolutionMgr()->GetConvDefsForSetup(kTypeName);
  if (!record && isAdaptive && columns) {
    CreateConvData(variation, version, columns, index);
    InitConvData(variation, version, AString::Format(L"%d", rf::SweepMethod::MOST_PASSES),
                 text::FromUtf8(text::ShortestReal(m_plan->method.target)), SweepColumns::kChange, SweepColumns::kPass,
                 AString::Format(L"%d", m_plan->method.passes + 1), L"Passes", index);
    record = BaseSimulationSetup::SetupConvData(variation, version, index);
    record->SetTargetConsecPasses(AString::Format(L"%d", m_plan->method.passes), index);
  } else if (record && record->NeedInit(index) && !record->NeedDefinition(index)) {
    // What was asked for stands in the record; labels don't.
    InitConvData(variation, version, record->GetMaximumIter(index), record->GetTargetCriterion(index),
                 SweepColumns::kChange, SweepColumns::kPass, record->GetMinimumIter(index), L"Passes", index);
  }
  return record;
}

} // namespace rfcircuit
