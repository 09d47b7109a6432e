// Setups and solutions of a design: look-ups over the four maps, adding and deleting.

#include "basekit/command/KelvroCommand.h"
#include "basekit/diag/Assert.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/SetupDirectory.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"

namespace {

using SetupDelta = SolutionMapDeltaState<long, BaseSimulationSetup *>;

void HandOver(SetupDelta * delta, KelvroCommand * command) {
  if (command)
    command->AddDeltaState(delta);
  else
    delete delta;
}

} // namespace

SetupDirectory BaseSolutionManager::Directory() const {
  return SetupDirectory(m_SimSetupMap, m_DeletedSimSetupMap, m_ImportedSimSetupMap, m_DeletedImportedSimSetupMap);
}

BaseSimulationSetup * BaseSolutionManager::CreateSimulationSetup(long id, long version, AString const &) {
  return new BaseSimulationSetup(this, id, version);
}

BaseSimulationSetup * BaseSolutionManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new BaseSimulationSetup(this, source);
}

BaseSimulationSetup * BaseSolutionManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new BaseSimulationSetup(this, name);
}

ISimulationSetup * BaseSolutionManager::CreateEquivalentISimulationSetup(ISimulationSetup const * source) {
  return CreateSimulationSetup(source);
}

void BaseSolutionManager::AddSimulation(BaseSimulationSetup * simSetup, KelvroCommand * command) {
  KVRO_ASSERT(simSetup);
  if (!simSetup || m_SimSetupMap.count(simSetup->GetID()))
    return;
  auto * delta = new SetupDelta(&m_SimSetupMap, &m_DeletedSimSetupMap);
  m_SimSetupMap.emplace(simSetup->GetID(), simSetup);
  // A deleted setup that comes back stands in one map only.
  m_DisplacedSetups->Leave(m_DeletedSimSetupMap, simSetup->GetID(), simSetup);
  delta->Record(simSetup->GetID(), simSetup, true);
  HandOver(delta, command);
}

void BaseSolutionManager::DeleteSimulationSetup(long id, KelvroCommand * command) {
  SetupMap * map = &m_SimSetupMap;
  SetupMap * deletedMap = &m_DeletedSimSetupMap;
  auto * displaced = m_DisplacedSetups.get();
  auto it = m_SimSetupMap.find(id);
  if (it == m_SimSetupMap.end()) {
    map = &m_ImportedSimSetupMap;
    deletedMap = &m_DeletedImportedSimSetupMap;
    displaced = m_DisplacedImportedSetups.get();
    it = m_ImportedSimSetupMap.find(id);
    KVRO_ASSERT(it != m_ImportedSimSetupMap.end());
    if (it == m_ImportedSimSetupMap.end())
      return;
  }
  BaseSimulationSetup * const setup = it->second;
  auto * delta = new SetupDelta(map, deletedMap);
  map->erase(it);
  displaced->Enter(*deletedMap, id, setup);
  delta->Record(id, setup, false);
  setup->UpdatePostProcessingItems(false);
  HandOver(delta, command);
}

bool BaseSolutionManager::AddImportData(ISolution * solution, KelvroCommand * command) {
  KVRO_ASSERT(solution);
  if (!solution)
    return false;
  auto * const setup =
      const_cast<BaseSimulationSetup *>(dynamic_cast<BaseSimulationSetup const *>(solution->GetISimulationSetup()));
  if (!setup)
    return false;
  if (m_ImportedSimSetupMap.count(setup->GetID()))
    return true;
  auto * delta = new SetupDelta(&m_ImportedSimSetupMap, &m_DeletedImportedSimSetupMap);
  m_ImportedSimSetupMap.emplace(setup->GetID(), setup);
  m_DisplacedImportedSetups->Leave(m_DeletedImportedSimSetupMap, setup->GetID(), setup);
  delta->Record(setup->GetID(), setup, true);
  HandOver(delta, command);
  return true;
}

void BaseSolutionManager::SimulationSetupWasRenamed(AString const & oldName, AString const & newName) {
  if (auto * const setup = dynamic_cast<BaseSimulationSetup *>(GetISimulationSetup(oldName, false, true)))
    setup->SetName(newName);
}

ISimulationSetup * BaseSolutionManager::GetISimulationSetup(AString const & name, bool includeDeleted,
                                                            bool includeImported) const {
  return Directory().Find(includeDeleted, includeImported, [&name](auto const & entry) {
    return AString::MatchNoCase(entry.second->GetName(), name) ? entry.second : nullptr;
  });
}

ISimulationSetup * BaseSolutionManager::GetISimulationSetupByID(long id, bool includeDeleted,
                                                                bool includeImported) const {
  return Directory().FindByID(id, includeDeleted, includeImported);
}

ISolution * BaseSolutionManager::GetISolution(AString const & name, bool includeDeleted, bool includeImported) const {
  return Directory().Find(includeDeleted, includeImported,
                          [&](auto const & entry) { return entry.second->GetISolution(name, includeDeleted); });
}

ISolution * BaseSolutionManager::GetISolutionByID(long id, bool includeDeleted, bool includeImported) const {
  return Directory().Find(includeDeleted, includeImported,
                          [&](auto const & entry) { return entry.second->GetISolutionByID(id, includeDeleted); });
}

ITaskSetup * BaseSolutionManager::GetITaskSetupByID(long id) const {
  for (auto const & [key, setup] : m_SimSetupMap)
    if (setup->GetUniqueID() == id)
      return setup;
  return nullptr;
}

int BaseSolutionManager::GetITaskSetupList(std::vector<ITaskSetup *> & list) const {
  for (auto const & [id, setup] : m_SimSetupMap)
    list.push_back(setup);
  return static_cast<int>(list.size());
}

ISimulationSetup * BaseSolutionManager::FindEquivalentISimulationSetup(ISimulationSetup * setup) const {
  KVRO_ASSERT(setup);
  if (!setup)
    return nullptr;
  ISimulationSetup * firstEqual = nullptr;
  for (auto const & [id, candidate] : m_SimSetupMap) {
    if (static_cast<ISimulationSetup *>(candidate) == setup)
      return setup;
    if (!firstEqual && setup->IsEqual(candidate))
      firstEqual = candidate;
  }
  return firstEqual;
}

int BaseSolutionManager::GetISimulationSetupList(std::vector<ISimulationSetup *> & list, bool includeDeleted,
                                                 bool includeImported) const {
  for (auto const & [id, setup] : m_SimSetupMap)
    list.push_back(setup);
  if (includeDeleted)
    for (auto const & [id, setup] : m_DeletedSimSetupMap)
      list.push_back(setup);
  if (includeImported)
    for (auto const & [id, setup] : m_ImportedSimSetupMap)
      list.push_back(setup);
  return static_cast<int>(list.size());
}

namespace {

void AppendValid(std::vector<ISolution *> const & candidates, std::vector<ISolution *> & list) {
  for (ISolution * const candidate : candidates) {
    auto const * const solution = dynamic_cast<BaseSolution const *>(candidate);
    if (solution && solution->IsValid())
      list.push_back(candidate);
  }
}

using ListSolutions = int (ISimulationSetup::*)(std::vector<ISolution *> &) const;

int AppendValidOf(std::vector<ISimulationSetup *> const & setups, ListSolutions listSolutions,
                  std::vector<ISolution *> & list) {
  if (setups.empty())
    return 0;
  for (ISimulationSetup const * const setup : setups) {
    std::vector<ISolution *> solutions;
    (setup->*listSolutions)(solutions);
    AppendValid(solutions, list);
  }
  return static_cast<int>(list.size());
}

} // namespace

int BaseSolutionManager::GetValidISolutionList(std::vector<ISolution *> & list, bool includeDeleted,
                                               bool includeImported) const {
  std::vector<ISimulationSetup *> setups;
  GetISimulationSetupList(setups, includeDeleted, includeImported);
  return AppendValidOf(setups, &ISimulationSetup::GetISolutionList, list);
}

int BaseSolutionManager::GetValidISolutionListForSweepwise(std::vector<ISolution *> & list, bool includeDeleted,
                                                           bool includeImported) const {
  std::vector<ISimulationSetup *> setups;
  GetISimulationSetupList(setups, includeDeleted, includeImported);
  return AppendValidOf(setups, &ISimulationSetup::GetISolutionListForSweepwise, list);
}

int BaseSolutionManager::GetValidISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list,
                                                           bool includeDeleted, bool includeImported) const {
  std::vector<ISolution *> solutions;
  GetValidISolutionListForSweepwise(solutions, includeDeleted, includeImported);
  for (ISolution * const solution : solutions)
    list.push_back(dynamic_cast<ISolutionForSweepwise *>(solution));
  return static_cast<int>(list.size());
}

int BaseSolutionManager::GetImportedSolutionList(std::vector<ISolution *> & list) const {
  for (auto const & [id, setup] : m_ImportedSimSetupMap) {
    std::vector<ISolution *> solutions;
    setup->GetISolutionList(solutions);
    AppendValid(solutions, list);
  }
  return static_cast<int>(list.size());
}

ISimulationSetupForSweepwise * BaseSolutionManager::GetISimulationSetupForSweepwise(AString const & name,
                                                                                    bool includeDeleted,
                                                                                    bool includeImported) const {
  return dynamic_cast<BaseSimulationSetup *>(GetISimulationSetup(name, includeDeleted, includeImported));
}

ISimulationSetupForSweepwise * BaseSolutionManager::GetISimulationSetupForSweepwiseByID(long id, bool includeDeleted,
                                                                                        bool includeImported) const {
  return dynamic_cast<BaseSimulationSetup *>(GetISimulationSetupByID(id, includeDeleted, includeImported));
}

int BaseSolutionManager::GetISimulationSetupForSweepwiseList(std::vector<ISimulationSetupForSweepwise *> & list,
                                                             bool includeDeleted, bool includeImported) const {
  std::vector<ISimulationSetup *> setups;
  GetISimulationSetupList(setups, includeDeleted, includeImported);
  for (ISimulationSetup * const setup : setups)
    list.push_back(dynamic_cast<BaseSimulationSetup *>(setup));
  return static_cast<int>(list.size());
}

ISolutionForSweepwise * BaseSolutionManager::GetISolutionForSweepwise(AString const & name, bool includeDeleted,
                                                                      bool includeImported) const {
  return dynamic_cast<BaseSolution *>(GetISolution(name, includeDeleted, includeImported));
}

ISolutionForSweepwise * BaseSolutionManager::GetISolutionForSweepwiseByID(long id, bool includeDeleted,
                                                                          bool includeImported) const {
  return dynamic_cast<BaseSolution *>(GetISolutionByID(id, includeDeleted, includeImported));
}

bool BaseSolutionManager::HasSolutions() const {
  for (auto const & [id, setup] : m_SimSetupMap)
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (solution->HasSolutionData(static_cast<IDesignInstance const *>(nullptr), id::invalidID))
        return true;
  return !m_ImportedSimSetupMap.empty();
}

bool BaseSolutionManager::DoesSolutionExist(long id) const {
  auto const * const solution = dynamic_cast<BaseSolution const *>(GetISolutionByID(id, false, true));
  return solution && !solution->IsDeleted();
}

void BaseSolutionManager::GetAllAssociatedSimDataExtractors(std::vector<BaseSimDataExtractor *> & extractors) const {
  for (SetupMap const * const map : {&m_SimSetupMap, &m_ImportedSimSetupMap})
    for (auto const & [id, setup] : *map)
      for (auto const & [solutionID, solution] : setup->GetSolutions())
        if (auto * const extractor = dynamic_cast<BaseSimDataExtractor *>(solution->GetISimDataExtractor()))
          extractors.push_back(extractor);
}

int BaseSolutionManager::Simulate(IDesignInstance *, ISimulationSetup *, ISolutionDefinition *) {
  KVRO_ASSERT(0);
  return 0;
}

ISolution * BaseSolutionManager::SimulateBlocking(IDesignInstance *, ISimulationSetup *, ISolutionDefinition *) {
  KVRO_ASSERT(0);
  return nullptr;
}

ISolution * BaseSolutionManager::GetISolution(AString const &, ISolutionDefinition *, IDesignInstance *,
                                              RunStatusType &, bool) {
  KVRO_ASSERT(0);
  return nullptr;
}

bool BaseSolutionManager::LoadSetupsFromFile(LongFileName const & file, std::vector<ISimulationSetup *> & setups) {
  BaseSolutionManager temporary(file);
  temporary.ReadAllDefinitionBlocks();
  for (auto const & [id, setup] : temporary.m_SimSetupMap)
    setups.push_back(setup);
  // The setups die with the temporary manager: the caller learns only how many the file has.
  return !setups.empty();
}
