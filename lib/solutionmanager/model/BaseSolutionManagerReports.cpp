// What reports, output variables and export ask of the manager.  What is not here yet
// says so and gives its empty answer.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"

int BaseSolutionManager::GetOutputVariables(std::vector<OutputVariable *> &, ISimDataExtractor *,
                                            SimValueContext const *, OutputVariable *) const {
  KVRO_ASSERT(!"Not available yet");
  return 0;
}

OutputVariable * BaseSolutionManager::CreateOutputVariable(AString const &, AString const &, KelvroCommand *) {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

bool BaseSolutionManager::EditOutputVariable(OutputVariable *, AString const &, KelvroCommand *) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::DeleteOutputVariable(OutputVariable *, KelvroCommand *) {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

OutputVariable * BaseSolutionManager::FindOutputVariable(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

bool BaseSolutionManager::IsOkToDeleteOutputVariable(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsValidOutputVariableName(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsValidOutputVariableName(AString const &, bool) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsValidOutputVariableExpression(AString const &, ISimDataExtractor *,
                                                          SimValueContext const *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsValidOutputVariable(AString const &, ISimDataExtractor *, SimValueContext const *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsOKtoEditOutputVariable(AString const &, AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

void BaseSolutionManager::CentralizedUpdateSolutionPointSets(IProgressMonitor *,
                                                             std::vector<ISolutionPointSet *> const *) {
  KVRO_ASSERT(!"Not available yet");
}

bool BaseSolutionManager::IsSolutionPointSetDefinitionValid(ISolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

unsigned BaseSolutionManager::GetReportTypeOfSolutionPointSet(ISolutionPointSet const *) const {
  KVRO_ASSERT(!"Not available yet");
  return 0xFFFFFFFFu;
}

OutputVariable * BaseSolutionManager::GetCannedOutputVariable(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSolutionManager::TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(IOutputVariableMgr *) {
  KVRO_ASSERT(!"Not available yet");
}

bool BaseSolutionManager::ExportDesignPointResults(LongFileName const &, AString const &, bool) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

int BaseSolutionManager::GetOutputVariables(std::vector<OutputVariable *> &) const {
  KVRO_ASSERT(!"Not available yet");
  return 0;
}

bool BaseSolutionManager::DoesOutputVariableExist(wchar_t const *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

CParsedExpressionCache * BaseSolutionManager::CreateParsedExpressionCache(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
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

void BaseSolutionManager::UpdateAllOutputVariableLegacyText() {
  // Called after every read of a design: without output variables there is no text to bring up to date.
  if (!m_OutputVariableMap.empty())
    KVRO_ASSERT(!"Not available yet");
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

bool BaseSolutionManager::IsCyclic(AString const &, AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

void BaseSolutionManager::UpdateOutputVariables(KelvroCommand *) { KVRO_ASSERT(!"Not available yet"); }

int BaseSolutionManager::GetOutputVariables(OutputVariableMap &) const {
  KVRO_ASSERT(!"Not available yet");
  return 0;
}

OutputVariable * BaseSolutionManager::CreateCannedOutputVariable(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

OutputVariable * BaseSolutionManager::FindCannedOutputVariable(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSolutionManager::OnAddOutputVar(IKelvroCommand *, AString const &, OutputVariable *) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::ConstructTraceExprCacheMap(SolutionPointSet *,
                                                     std::map<Trace *, CParsedExpressionCacheContainer> &) const {
  KVRO_ASSERT(!"Not available yet");
}
