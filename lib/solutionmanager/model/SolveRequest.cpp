// From a request to solve a setup to the simulation service: what needs solving, under which keys.

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/desktop/ISimulationService.h"
#include "CoreInterfaces/desktop/SimulationTask.h"
#include "basekit/diag/Assert.h"
#include "basekit/message/KelvroMessage.h"
#include "basekit/message/MessageManager.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>

namespace {

constexpr long kNothingToSolveMessage = 24680;
constexpr long kAlreadySolvingMessage = 24681;
constexpr int kSolutionMessageGroup = 6;

void PostWarning(long number, AString const & argument) {
  IKitDesktop * const desktop = GetIKitDesktop();
  if (!desktop)
    return;
  KelvroMessage message(number, KelvroMessage::kWarning, kSolutionMessageGroup);
  message.Arguments().AddArg(argument);
  desktop->GetMessageManager().Post(message);
}

} // namespace

bool BaseSimulationSetup::NeedsToSimulate(IDesignInstance * instance) const {
  for (auto const & [id, solution] : m_BaseSolutionMap)
    if (!solution || !solution->HasValidSolutionData(instance, id::invalidID))
      return true;
  PostWarning(kNothingToSolveMessage, m_Name);
  return false;
}

bool BaseSimulationSetup::NeedsToSimulate(AString const & variation) const {
  for (auto const & [id, solution] : m_BaseSolutionMap)
    if (!solution || !solution->HasValidSolutionData(variation, id::invalidID))
      return true;
  return false;
}

bool BaseSimulationSetup::GetSolutionVariationKeysForSolve(std::vector<SolutionVariationKey> & keys,
                                                           AString const & variation,
                                                           std::vector<long> const * solutionIDs) const {
  if (!solutionIDs) {
    keys.emplace_back(GetID(), variation, id::invalidID, GetVersionID());
    return true;
  }
  for (long const solutionID : *solutionIDs) {
    ISolution const * const soln = GetISolutionByID(solutionID, false);
    KVRO_ASSERT(soln);
    if (soln)
      keys.emplace_back(GetID(), variation, solutionID, soln->GetVersionID());
  }
  return true;
}

int BaseSimulationSetup::StartSingleSimulation(IDesignInstance * instance, SimulationTask const * task) const {
  KVRO_ASSERT(task);
  if (!task)
    return kSolveRefused;
  auto const & solutionIDs = task->GetSolutionIDs();
  return StartSingleSimulation(instance, task->GetA(), task->GetB(), solutionIDs.empty() ? nullptr : &solutionIDs);
}

// Of the solutions asked for those that need solving; one that does not is told to the user.
std::vector<long> BaseSimulationSetup::SolutionsToSolve(AString const & variation,
                                                        std::vector<long> const & solutionIDs) const {
  std::vector<long> toSolve;
  for (long const solutionID : solutionIDs) {
    ISolution const * const solution = GetISolutionByID(solutionID, false);
    if (!solution)
      continue;
    if (solution->NeedsToSimulate(variation, id::invalidID))
      toSolve.push_back(solutionID);
    else
      PostWarning(kNothingToSolveMessage, m_Name + L" : " + solution->GetSolutionName());
  }
  return toSolve;
}

int BaseSimulationSetup::StartSingleSimulation(IDesignInstance * instance, long a, long b,
                                               std::vector<long> const * solutionIDs) const {
  KVRO_ASSERT(instance);
  ISimulationService * const service = instance ? instance->GetSimulationService() : nullptr;
  if (!service)
    return kSolveRefused;
  AString const variation = instance->GetVariationKey();
  std::vector<long> toSolve;
  bool solving = false;
  if (solutionIDs) {
    toSolve = SolutionsToSolve(variation, *solutionIDs);
    if (toSolve.empty())
      return kNothingToSolve;
    solving = service->IsSolutionSolving(instance, GetID(), toSolve) == 1;
  } else {
    bool const anyToSolve = std::any_of(m_BaseSolutionMap.begin(), m_BaseSolutionMap.end(), [&](auto const & entry) {
      return !entry.second || entry.second->NeedsToSimulate(variation, id::invalidID);
    });
    if (!anyToSolve) {
      PostWarning(kNothingToSolveMessage, m_Name);
      return kNothingToSolve;
    }
    solving = service->IsSetupSolving(instance, GetID()) == 1;
  }
  if (solving) {
    PostWarning(kAlreadySolvingMessage, m_Name);
    return kAlreadySolving;
  }
  std::vector<SolutionVariationKey> keys;
  GetSolutionVariationKeysForSolve(keys, variation, toSolve.empty() ? nullptr : &toSolve);
  long const noParent = id::invalidID;
  return service->SubmitSolve(instance, keys, nullptr, nullptr, &noParent, 0, 0, AString(), a, b) ? kSolveSubmitted
                                                                                                  : kSolveRefused;
}
