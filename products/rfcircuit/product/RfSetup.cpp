#include "products/rfcircuit/product/RfSetup.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/SweepDefinition.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/SweepSettings.h"

namespace rfcircuit {

AString const RfSetup::kTypeName(L"SParameters");
AString const RfSetup::kSettingsBlockName(L"Settings");

RfSetup::RfSetup(BaseSolutionManager const * manager, AString const & name) : BaseSimulationSetup(manager, name) {}

RfSetup::RfSetup(BaseSolutionManager const * manager, long id, long version)
    : BaseSimulationSetup(manager, id, version) {}

RfSetup::RfSetup(BaseSolutionManager const * manager, ISimulationSetup const * source)
    : BaseSimulationSetup(manager, source) {
  if (auto const * const setup = dynamic_cast<RfSetup const *>(source))
    m_sweep = setup->m_sweep;
  else
    TakeSweepOfDefinitions();
}

RfSetup::~RfSetup() { RemoveAllSweeps(); }

void RfSetup::SetSweep(rf::FrequencySweep const & sweep) {
  m_sweep = sweep;
  RemoveAllSweeps();
  if (SweepDefinition * const definition = MakeSweepDefinition(sweep))
    AddSingleSweep(definition);
  for (auto const & [id, solution] : GetSolutions())
    if (auto * const rfSolution = dynamic_cast<RfSolution *>(solution))
      rfSolution->SetSweep(sweep);
}

void RfSetup::TakeSweepOfDefinitions() {
  std::vector<SweepDefinition *> definitions;
  GetSweepDefinitions(definitions);
  for (SweepDefinition const * const definition : definitions)
    if (!m_sweep)
      m_sweep = SweepOf(*definition);
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
  if (m_sweep)
    solution->SetSweep(*m_sweep);
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
  m_sweep.reset();
  io::ReadError const result = BaseSimulationSetup::DesignFileRead(block);
  io::CBlock settings(kSettingsBlockName);
  block >> settings;
  AString error;
  if (block.Found())
    m_sweep = ReadSweep(settings, error);
  else
    TakeSweepOfDefinitions();
  if (std::optional<rf::FrequencySweep> const sweep = m_sweep)
    SetSweep(*sweep);
  return result;
}

bool RfSetup::DesignFileWrite(io::CBlock & block) {
  if (!BaseSimulationSetup::DesignFileWrite(block))
    return false;
  if (!m_sweep)
    return true;
  io::CBlock settings(kSettingsBlockName);
  WriteSweep(settings, *m_sweep);
  block << settings;
  return true;
}

bool RfSetup::IsEqual(ISimulationSetup const * other) const {
  if (!BaseSimulationSetup::IsEqual(other))
    return false;
  auto const * const theirs = dynamic_cast<RfSetup const *>(other);
  if (!theirs || !m_sweep || !theirs->m_sweep)
    return !theirs || m_sweep.has_value() == theirs->m_sweep.has_value();
  return m_sweep->GetKind() == theirs->m_sweep->GetKind() && m_sweep->Frequencies() == theirs->m_sweep->Frequencies();
}

} // namespace rfcircuit
