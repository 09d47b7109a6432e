// What reports, output variables and export ask of the manager.  What is not here yet
// says so and gives its empty answer.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"

bool BaseSolutionManager::IsSolutionPointSetDefinitionValid(ISolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

unsigned BaseSolutionManager::GetReportTypeOfSolutionPointSet(ISolutionPointSet const *) const {
  KVRO_ASSERT(!"Not available yet");
  return 0xFFFFFFFFu;
}

bool BaseSolutionManager::ExportDesignPointResults(LongFileName const &, AString const &, bool) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

int BaseSolutionManager::GetAvailableTraces(std::list<Trace *> &) const {
  KVRO_ASSERT(!"Not available yet");
  return 0;
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

void BaseSolutionManager::SynchronizeTraces(KelvroCommand *) { KVRO_ASSERT(!"Not available yet"); }

void BaseSolutionManager::SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> &, KelvroCommand *) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::CreateParsedExpressionCacheOfTraces(Trace *, CParsedExpressionCacheContainer &) const {
  KVRO_ASSERT(!"Not available yet");
}

bool BaseSolutionManager::IsSolutionPointSetDefinitionValid(
    SolutionPointSet *, std::map<Trace *, CParsedExpressionCacheContainer> *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::WriteTraceInterpreterBlockForCopy(io::CBlock &, ITraceCopyContext *,
                                                            TraceDefParams const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::ReadTraceInterpreterBlockForPaste(IKelvroCommand *, ITracePasteContext *,
                                                            io::CBlock const &) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

IVariableNameSpaceSetupper const * BaseSolutionManager::GetIVariableNameSpaceSetupper(long) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSolutionManager::ConstructTraceExprCacheMap(SolutionPointSet *,
                                                     std::map<Trace *, CParsedExpressionCacheContainer> &) const {
  KVRO_ASSERT(!"Not available yet");
}
