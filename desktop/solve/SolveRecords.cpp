#include "desktop/solve/SolveRecords.h"

#include "basekit/diag/Assert.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileUpdate.h"
#include "desktop/solve/JobCost.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <vector>

namespace desktop {

namespace {

constexpr int kWholeIndex = ConvergenceData::kSingleSet;
constexpr std::size_t kLongestOutcome = 1000;
wchar_t const * const kWholeTask = L"Whole solve";
wchar_t const * const kNotTold = L"N/A";

CProfileUpdate StartOf(BaseSimulationSetup const & setup, AString const & variation) {
  return CProfileUpdate(
      CProfileUpdate::kStartGroup,
      CProfileTask(kWholeTask, variation.empty() ? setup.GetName() : setup.GetName() + L" at " + variation));
}

CProfileUpdate TaskOf(JobCost const & cost) {
  CProfileTask task(kWholeTask, AString());
  task.SetCost(cost.seconds, cost.cpuSeconds, cost.memory);
  return CProfileUpdate(CProfileUpdate::kTask, task);
}

// People tell the tasks of a table by their names.
CProfileUpdate Named(CProfileUpdate const & update) {
  CProfileTask const & task = update.GetTask();
  if (!task.GetName().empty())
    return update;
  CProfileTask named(L"Task", task.GetInfo());
  named.SetCost(task.GetRealTime(), task.GetCpuTime(), task.GetMemory());
  return CProfileUpdate(update.GetKind(), named, update.GetInfo());
}

SetupConvDef const * DefinitionOf(ConvergenceData const * record, int index) {
  CBaseConvergenceData const * const set = record ? record->GetBaseConvergenceData(index) : nullptr;
  return set ? set->GetDefinition() : nullptr;
}

} // namespace

AString const SolveRecords::kSolved(L"solved");
AString const SolveRecords::kStopped(L"stopped before its end");

SolveRecords::Job * SolveRecords::Find(int number) {
  auto const at = m_jobs.find(number);
  return at == m_jobs.end() ? nullptr : &at->second;
}

// Null for a setup that was deleted meanwhile: its records went with it.
BaseSimulationSetup * SolveRecords::SetupOf(Job const & job) const {
  return dynamic_cast<BaseSimulationSetup *>(m_manager.GetISimulationSetupByID(job.address.setupID, false, false));
}

void SolveRecords::Begin(int number, RecordAddress const & address) {
  Job & job = m_jobs[number] = Job();
  job.address = address;
  job.nextWrite = Clock::now() + kBetweenWrites;
  BaseSimulationSetup * const setup = SetupOf(job);
  if (!setup)
    return;
  Identity const identity = IdentityOf(address);
  bool const isFirst = ++m_users[identity] == 1 && !m_shared.contains(identity);
  if (setup->GetSolutions().size() > 1)
    m_shared.insert(identity);
  // The product gets the chance to make the record with its targets before there is any pass.
  if (isFirst && setup->GetConvData(address.variation, address.version, kWholeIndex))
    BeginSet(job, *setup, kWholeIndex);
  else if (!isFirst)
    job.begunSets.insert(kWholeIndex);
  setup->ProfileUpdate(address.variation, address.version, StartOf(*setup, address.variation), kWholeIndex, &job.group);
}

void SolveRecords::BeginSet(Job & job, BaseSimulationSetup & setup, int index) {
  if (!job.begunSets.insert(index).second)
    return;
  ConvergenceData * const record = setup.GetConvData(job.address.variation, job.address.version, index);
  if (!record || !record->GetBaseConvergenceData(index))
    return;
  if (!record->NeedDefinition(index))
    setup.ClearConvValues(job.address.variation, job.address.version, index);
  // Of a former solve; a record that never told stays silent about it.
  if (record->SupportsIsConverged(index))
    record->SetIsConverged(false, index);
  if (record->GetCurrentConsecPasses(index).Compare(kNotTold) != 0)
    record->SetCurrentConsecPasses(kNotTold, index);
}

ConvergenceData const * SolveRecords::AddPass(int number, io::CBlock_ptr<io::CBlock_func> const & row, int index) {
  Job * const job = Find(number);
  BaseSimulationSetup * const setup = job ? SetupOf(*job) : nullptr;
  if (!setup)
    return nullptr;
  auto const & [setupID, version, variationID, variation] = job->address;
  BeginSet(*job, *setup, index);
  ConvergenceData const * const record = setup->GetConvData(variation, version, index);
  SetupConvDef const * const definition = DefinitionOf(record, index);
  // A product that reports passes declares its columns and makes the record.
  KVRO_ASSERT(definition);
  if (!definition)
    return nullptr;
  ConvValues values;
  for (ConvDef const * const column : *definition)
    if (ConvValue * const value = column->ReadValue(row))
      values.AddValue(value);
  setup->AddConvValues(variation, version, &values, index);
  ++job->passes;
  job->isChanged = true;
  return record;
}

void SolveRecords::SetConvergence(int number, bool isConverged, AString const & consecutivePasses, int index) {
  Job * const job = Find(number);
  BaseSimulationSetup * const setup = job ? SetupOf(*job) : nullptr;
  if (!setup)
    return;
  BeginSet(*job, *setup, index);
  ConvergenceData * const record = setup->GetConvData(job->address.variation, job->address.version, index);
  bool const hasSet = record && record->GetBaseConvergenceData(index);
  KVRO_ASSERT(hasSet);
  if (!hasSet)
    return;
  record->SetIsConverged(isConverged, index);
  record->SetCurrentConsecPasses(consecutivePasses, index);
  job->isChanged = true;
}

// Costs outside all groups of their index count for the solve as a whole.
void SolveRecords::AddCost(int number, CProfileUpdate const & update, int index) {
  Job * const job = Find(number);
  BaseSimulationSetup * const setup = job ? SetupOf(*job) : nullptr;
  if (!setup)
    return;
  auto const & [setupID, version, variationID, variation] = job->address;
  auto const open = job->openGroups.find(index);
  if (update.GetKind() == CProfileUpdate::kStartGroup) {
    // One that was not stopped ends where the next one begins.
    setup->ProfileUpdate(variation, version, update, index, &job->openGroups[index]);
    return;
  }
  bool const isOpen = open != job->openGroups.end();
  if (update.GetKind() == CProfileUpdate::kStopGroup) {
    if (isOpen)
      setup->ProfileUpdate(variation, version, update, index, &open->second);
    job->openGroups.erase(index);
    return;
  }
  setup->ProfileUpdate(variation, version, Named(update), isOpen ? index : kWholeIndex,
                       isOpen ? &open->second : &job->group);
}

void SolveRecords::WriteConvergence(Job & job, BaseSimulationSetup & setup) {
  setup.WriteConvergenceDataBlock(job.address.variation, job.address.version);
  job.passesWritten = job.passes;
  job.isChanged = false;
}

// A write stores all passes, so it waits until they have grown by a part: the writes of very many passes together cost
// a few times what the last one costs.
void SolveRecords::WriteDue() {
  constexpr int kPart = 8;
  auto const now = Clock::now();
  for (auto & [number, job] : m_jobs) {
    bool const isDue =
        job.isChanged && now >= job.nextWrite && job.passes - job.passesWritten >= job.passesWritten / kPart;
    BaseSimulationSetup * const setup = isDue ? SetupOf(job) : nullptr;
    if (!setup)
      continue;
    WriteConvergence(job, *setup);
    job.nextWrite = now + kBetweenWrites;
  }
}

// Whether the records could be written is not asked: results that are stored next to them tell of a disk that is full.
void SolveRecords::Close(int number, AString const & outcome, JobCost const * cost) {
  Job * const job = Find(number);
  if (!job)
    return;
  if (BaseSimulationSetup * const setup = SetupOf(*job)) {
    auto const & [setupID, version, variationID, variation] = job->address;
    if (cost)
      setup->ProfileUpdate(variation, version, TaskOf(*cost), kWholeIndex, &job->group);
    CProfileUpdate const stop(CProfileUpdate::kStopGroup, CProfileTask(), outcome.substr(0, kLongestOutcome));
    setup->ProfileUpdate(variation, version, stop, kWholeIndex, &job->group);
    WriteConvergence(*job, *setup);
    setup->WriteProfileDataBlock(variation, version);
    auto const users = m_users.find(IdentityOf(job->address));
    if (users != m_users.end() && --users->second == 0) {
      m_users.erase(users);
      setup->ForgetRecords(variation, version);
    }
  }
  m_jobs.erase(number);
}

void SolveRecords::End(int number, AString const & outcome, JobCost const & cost) { Close(number, outcome, &cost); }

CProfileTask const * SolveRecords::WholeOf(int index, CProfileGroup const & group) {
  auto const & tasks = group.GetTasks();
  bool const isWhole = index == kWholeIndex && !tasks.empty() && tasks.back()->GetName().Compare(kWholeTask) == 0;
  return isWhole ? tasks.back().get() : nullptr;
}

void SolveRecords::EndAll() {
  std::vector<int> numbers;
  for (auto const & [number, job] : m_jobs)
    numbers.push_back(number);
  for (int const number : numbers)
    Close(number, kStopped, nullptr);
  m_users.clear();
  m_shared.clear();
}

} // namespace desktop
