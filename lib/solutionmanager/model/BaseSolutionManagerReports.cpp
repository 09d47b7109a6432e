// What reports ask of the manager about sweeps and names; the export of a design point is not here yet, says so and
// gives its empty answer.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

bool BaseSolutionManager::ExportDesignPointResults(LongFileName const &, AString const &, bool) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

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
