// What reports ask of the manager about sweeps and names.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroCommandInfo.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSolutionManager::SynchronizeSweeps(KelvroCommand * command) {
  if (command && !command->GetInfo(KelvroCommandInfo::kDesignProperties) &&
      !command->GetInfo(KelvroCommandInfo::kProjectProperties))
    return;
  std::vector<BaseSimDataExtractor *> extractors;
  GetAllAssociatedSimDataExtractors(extractors);
  for (BaseSimDataExtractor const * const extractor : extractors)
    extractor->SynchronizeSweeps(command);
}

IVariableNameSpaceSetupper const * BaseSolutionManager::GetIVariableNameSpaceSetupper(long solutionID) const {
  auto const * const solution = dynamic_cast<BaseSolution const *>(GetISolutionByID(solutionID, false, false));
  return solution && !solution->IsDeleted() ? solution->GetBaseSimDataExtractor() : nullptr;
}
