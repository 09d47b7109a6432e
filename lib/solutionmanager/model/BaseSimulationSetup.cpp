// Identity, solutions, variables and versions of a setup.

#include "solutionmanager/model/BaseSimulationSetup.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/ISolutionDefinition.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/diag/Assert.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/undo/CAllSolutionsDeltaState.h"
#include "solutionmanager/undo/PreserveState.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"

#include <type_traits>

AString const BaseSimulationSetup::kSolBlockName(L"Solution");
AString const BaseSimulationSetup::kSolutionID(L"ID");
AString const BaseSimulationSetup::kSolutionName(L"Name");
AString const BaseSimulationSetup::kBaseSimSetupType(L"BaseSetup");

BaseSimulationSetup::BaseSimulationSetup(BaseSolutionManager const * manager, AString const & name)
    : m_Name(name), m_SolutionMgr(manager) {}

BaseSimulationSetup::BaseSimulationSetup(BaseSolutionManager const * manager, long id, long version)
    : m_ID(id), m_VersionID(version), m_SolutionMgr(manager) {}

BaseSimulationSetup::BaseSimulationSetup(BaseSolutionManager const * manager, ISimulationSetup const * source)
    : m_Name(source->GetName()), m_SolutionMgr(manager) {
  source->GetSweepDefinitions(m_SweepDefs);
  for (SweepDefinition * const definition : m_SweepDefs)
    definition->Share();
  m_HeldSweeps = m_SweepDefs;
}

BaseSimulationSetup::BaseSimulationSetup(BaseSimulationSetup const & source) : m_SolutionMgr(source.m_SolutionMgr) {
  ShareContentsOf(source);
}

BaseSimulationSetup & BaseSimulationSetup::operator=(BaseSimulationSetup const & source) {
  if (this == &source)
    return *this;
  // The source may share what is this setup's own, so nothing is freed before this setup dies.
  Retire(m_BaseSolutionMap);
  Retire(m_DeletedSolutionMap);
  Retire(m_ConvergenceData);
  Retire(m_ProfileData);
  m_RetiredSweeps.insert(m_RetiredSweeps.end(), m_SweepDefs.begin(), m_SweepDefs.end());
  ShareContentsOf(source);
  return *this;
}

template <class Map> void BaseSimulationSetup::Retire(Map const & map) {
  for (auto const & [key, object] : map)
    if (m_Shared.insert(object).second)
      m_Retired.emplace_back(std::shared_ptr<std::remove_pointer_t<typename Map::mapped_type>>(object));
}

void BaseSimulationSetup::ShareContentsOf(BaseSimulationSetup const & source) {
  m_Name = source.m_Name;
  m_ID = source.m_ID;
  m_VersionID = source.m_VersionID;
  m_BaseSolutionMap = source.m_BaseSolutionMap;
  m_DeletedSolutionMap = source.m_DeletedSolutionMap;
  m_SolutionMgr = source.m_SolutionMgr;
  m_DefaultSolution = source.m_DefaultSolution;
  m_SweepDefs = source.m_SweepDefs;
  m_ConvergenceData = source.m_ConvergenceData;
  m_ProfileData = source.m_ProfileData;
  source.m_IsCopied = true;
  for (auto const * const map : {&m_BaseSolutionMap, &m_DeletedSolutionMap})
    for (auto const & [id, solution] : *map)
      m_Shared.insert(solution);
  for (auto const & [index, data] : m_ConvergenceData)
    m_Shared.insert(data);
  for (auto const & [index, data] : m_ProfileData)
    m_Shared.insert(data);
  for (SweepDefinition * const definition : m_SweepDefs)
    definition->Share();
  m_HeldSweeps = m_SweepDefs;
}

template <class Map> void BaseSimulationSetup::DeleteOwned(Map & map) {
  for (auto const & [key, object] : map)
    if (!m_Shared.count(object))
      delete object;
  map.clear();
}

// The sweep definitions stay, whoever may still use them; a copy gives up what it held.
BaseSimulationSetup::~BaseSimulationSetup() {
  DeleteOwned(m_BaseSolutionMap);
  DeleteOwned(m_DeletedSolutionMap);
  if (m_DisplacedSolutions)
    for (BaseSolution * const solution : m_DisplacedSolutions->TakeAll())
      if (!m_Shared.count(solution))
        delete solution;
  DeleteOwned(m_ConvergenceData);
  DeleteOwned(m_ProfileData);
  for (auto const * const sweeps : {&m_HeldSweeps, &m_RetiredSweeps})
    for (SweepDefinition * const definition : *sweeps)
      SweepDefinition::FreeStorage(definition);
}

long BaseSimulationSetup::GetID() const {
  if (m_ID == -1)
    m_ID = m_SolutionMgr->ForEdit().FetchNextUniqueID();
  return m_ID;
}

ISolutionMgr const * BaseSimulationSetup::GetISolutionMgr() const { return m_SolutionMgr; }

bool BaseSimulationSetup::IsExclusiveSwiseSetup() const { return false; }

AString BaseSimulationSetup::GetSimSetupTypeName() const { return kBaseSimSetupType; }

void BaseSimulationSetup::SetName(AString const & name) { m_Name = name; }

bool BaseSimulationSetup::IsActive() const {
  return m_SolutionMgr->GetISimulationSetupByID(GetID(), false, false) != nullptr;
}

bool BaseSimulationSetup::IsImportedSolution(int id) const {
  return m_SolutionMgr->GetISolutionByID(id, false, false) == nullptr;
}

ISolution * BaseSimulationSetup::GetDefaultISolution() const { return m_DefaultSolution; }

void BaseSimulationSetup::SetDefaultSolution(BaseSolution * solution) {
  if (solution)
    KVRO_ASSERT(m_BaseSolutionMap.find(solution->GetID()) != m_BaseSolutionMap.end());
  m_DefaultSolution = solution;
}

BaseSolution * BaseSimulationSetup::CreateSolution(AString const & name) {
  auto * solution = new BaseSolution(*this, -1, 0);
  solution->SetSolutionName(name);
  return BecomeDefaultIfFirst(solution);
}

BaseSolution * BaseSimulationSetup::CreateSolution(long sol_id, long version) {
  KVRO_ASSERT(sol_id != -1);
  return BecomeDefaultIfFirst(new BaseSolution(*this, sol_id, version));
}

BaseSolution * BaseSimulationSetup::BecomeDefaultIfFirst(BaseSolution * solution) {
  if (!m_DefaultSolution)
    m_DefaultSolution = solution;
  return solution;
}

undo::Graveyard<BaseSimulationSetup::SolutionMap> & BaseSimulationSetup::DisplacedSolutions() {
  if (!m_DisplacedSolutions)
    m_DisplacedSolutions = undo::GraveyardOf(&m_DeletedSolutionMap);
  return *m_DisplacedSolutions;
}

void BaseSimulationSetup::AddSolution(BaseSolution * solution, KelvroCommand * command) {
  KVRO_ASSERT(solution);
  if (!solution || m_BaseSolutionMap.count(solution->GetID()))
    return;
  auto * delta = new SolutionMapDeltaState<long, BaseSolution *>(&m_BaseSolutionMap, &m_DeletedSolutionMap);
  m_BaseSolutionMap.emplace(solution->GetID(), solution);
  // A deleted solution that comes back stands in one map only.
  DisplacedSolutions().Leave(m_DeletedSolutionMap, solution->GetID(), solution);
  delta->Record(solution->GetID(), solution, true);
  if (command)
    command->AddDeltaState(delta);
  else
    delete delta;
}

void BaseSimulationSetup::DeleteSolution(long solution_id, KelvroCommand * command) {
  auto const it = m_BaseSolutionMap.find(solution_id);
  KVRO_ASSERT((it != m_BaseSolutionMap.end()) || (GetISolutionByID(solution_id, true) != 0));
  if (it == m_BaseSolutionMap.end())
    return;
  BaseSolution * const solution = it->second;
  auto * delta = new SolutionMapDeltaState<long, BaseSolution *>(&m_BaseSolutionMap, &m_DeletedSolutionMap);
  m_BaseSolutionMap.erase(it);
  DisplacedSolutions().Enter(m_DeletedSolutionMap, solution_id, solution);
  delta->Record(solution_id, solution, false);
  solution->UnloadAllSolutionData();
  solution->UpdatePostProcessingItems(false);
  if (command)
    command->AddDeltaState(delta);
  else
    delete delta;
}

ISolution * BaseSimulationSetup::GetISolutionByID(long id, bool includeDeleted) const {
  auto const at = m_BaseSolutionMap.find(id);
  if (at != m_BaseSolutionMap.end())
    return at->second;
  auto const deleted = includeDeleted ? m_DeletedSolutionMap.find(id) : m_DeletedSolutionMap.end();
  return deleted == m_DeletedSolutionMap.end() ? nullptr : deleted->second;
}

namespace {

// From the highest ID down, so that of two solutions of one name the younger is found.
BaseSolution * YoungestOfName(BaseSimulationSetup::SolutionMap const & map, AString const & name) {
  for (auto at = map.rbegin(); at != map.rend(); ++at)
    if (at->second->NameIdentifiesSolution(name))
      return at->second;
  return nullptr;
}

} // namespace

ISolution * BaseSimulationSetup::GetISolution(AString const & name, bool includeDeleted) const {
  BaseSolution * const active = YoungestOfName(m_BaseSolutionMap, name);
  return active || !includeDeleted ? active : YoungestOfName(m_DeletedSolutionMap, name);
}

int BaseSimulationSetup::GetISolutionList(std::vector<ISolution *> & list) const {
  if (m_BaseSolutionMap.empty())
    return 0;
  for (auto const & [id, solution] : m_BaseSolutionMap)
    list.push_back(solution);
  return static_cast<int>(list.size());
}

int BaseSimulationSetup::GetISolutionListForSweepwise(std::vector<ISolution *> & list) const {
  return GetISolutionList(list);
}

int BaseSimulationSetup::GetISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list) const {
  std::vector<ISolution *> solutions;
  GetISolutionListForSweepwise(solutions);
  list.reserve(list.size() + solutions.size());
  for (ISolution * const solution : solutions)
    list.push_back(dynamic_cast<ISolutionForSweepwise *>(solution));
  return static_cast<int>(list.size());
}

int BaseSimulationSetup::GetValidISolutions(std::vector<ISolution *> & list) const {
  std::vector<ISolution *> solutions;
  GetISolutionList(solutions);
  for (ISolution * const candidate : solutions) {
    auto const * const solution = dynamic_cast<BaseSolution const *>(candidate);
    if (solution && solution->IsValid())
      list.push_back(candidate);
  }
  return static_cast<int>(list.size());
}

bool BaseSimulationSetup::IsDeletedSolution(BaseSolution const * solution) const {
  for (auto const & [id, deleted] : m_DeletedSolutionMap)
    if (deleted == solution)
      return true;
  return false;
}

void BaseSimulationSetup::SolutionWasRenamed(AString const & oldName, AString const & newName) {
  if (auto * const solution = dynamic_cast<BaseSolution *>(GetISolution(oldName, false)))
    solution->SetSolutionName(newName);
}

ISolution * BaseSimulationSetup::FindBestISolutionFit(ISolutionDefinition * definition,
                                                      SolutionDefinitionMatch & match) const {
  KVRO_ASSERT(definition);
  for (auto const & [id, solution] : m_BaseSolutionMap) {
    if (!definition)
      break;
    ISolutionDefinition const * const candidate = solution->GetSolutionDefinition(id::invalidID);
    if (candidate && *candidate == *definition) {
      match = SolutionDefinitionMatch::kExact;
      return solution;
    }
  }
  match = SolutionDefinitionMatch::kNone;
  return nullptr;
}

int BaseSimulationSetup::GetIntrinsicVariables(std::vector<Variable *> & variables) const {
  variables.push_back(Value::GetIntrinsicVariable(L"F"));
  return 1;
}

int BaseSimulationSetup::GetVariables(std::vector<Variable *> & variables, unsigned, int) const {
  GetIntrinsicVariables(variables);
  if (IDesign const * const design = m_SolutionMgr->GetIDesign()) {
    std::vector<Variable *> properties;
    design->GetPropertyVariables(properties);
    for (Variable * const variable : properties)
      if (variable)
        variables.push_back(variable);
    design->GetFurtherVariables(variables);
  }
  return static_cast<int>(variables.size());
}

void BaseSimulationSetup::GetSolvedVariations(std::set<VariableValues> & variations) const {
  std::vector<ISolution *> solutions;
  GetValidISolutions(solutions);
  IDesign const * const design = m_SolutionMgr->GetIDesign();
  VariableValues defaults;
  if (design)
    design->GetDefaultVariableValues(defaults);
  variations.clear();
  for (ISolution const * const solution : solutions) {
    std::list<AString> texts;
    solution->GetAvailableVariations(texts, id::invalidID);
    for (AString const & text : texts) {
      VariableValues values;
      VariableValues::ResolveVariationKey(text, design ? design->GetVariableServer() : nullptr, values, &defaults,
                                          true);
      variations.insert(values);
    }
  }
}

void BaseSimulationSetup::SetState(long const & version, bool) { m_VersionID = version; }

void BaseSimulationSetup::GetState(long & version) const { version = m_VersionID; }

void BaseSimulationSetup::Invalidate(KelvroCommand * command, long version, int flags) {
  if (flags == 0)
    return;
  if (version == id::invalidID)
    version = m_SolutionMgr->ForEdit().FetchNextUniqueID();
  if (flags & kInvalidateSetups)
    PreserveState(*this, version, command, m_VersionID);
  if (flags & kInvalidateSolutions) {
    if (command) {
      auto * delta = new CAllSolutionsDeltaState(this, version, -1);
      delta->Capture();
      command->AddDeltaState(delta);
    } else {
      for (auto const & [id, solution] : m_BaseSolutionMap)
        solution->Invalidate(nullptr, version);
      for (auto const & [id, solution] : m_DeletedSolutionMap)
        solution->Invalidate(nullptr, version);
      if (m_DisplacedSolutions)
        m_DisplacedSolutions->ForEach([&](BaseSolution * solution) { solution->Invalidate(nullptr, version); });
    }
  }
  if (!m_BaseSolutionMap.empty() || !m_DeletedSolutionMap.empty())
    return;
  IDesign * const design = m_SolutionMgr->GetIDesign();
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionsChanged();
}

void BaseSimulationSetup::NonUndoableInvalidateAll() {
  m_VersionID = m_SolutionMgr->ForEdit().FetchNextUniqueID();
  for (auto const & [id, solution] : m_BaseSolutionMap)
    solution->NonUndoableInvalidateAll();
  for (auto const & [id, solution] : m_DeletedSolutionMap)
    solution->NonUndoableInvalidateAll();
  if (m_DisplacedSolutions)
    m_DisplacedSolutions->ForEach([](BaseSolution * solution) { solution->NonUndoableInvalidateAll(); });
}

bool BaseSimulationSetup::LoadCurrentDesignSolutionData() {
  bool any = false;
  for (auto const & [id, solution] : m_BaseSolutionMap)
    any = solution->LoadCurrentDesignSolutionData() || any;
  return any;
}

void BaseSimulationSetup::UpdatePostProcessingItems(bool hasData) {
  for (auto const & [id, solution] : m_BaseSolutionMap)
    solution->UpdatePostProcessingItems(hasData);
}
