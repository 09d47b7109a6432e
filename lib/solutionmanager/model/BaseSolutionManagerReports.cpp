// What reports, output variables and export ask of the manager.  What is not here yet
// says so and gives its empty answer.

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"

bool BaseSolutionManager::GetValueInfoForExpression(AString const &, ISolution const *, Value &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

int BaseSolutionManager::GetOutputVariableReportTypes(AString const &, ReportTypeMap &) const {
  KVRO_ASSERT(!"Not available yet");
  return -1;
}

bool BaseSolutionManager::IsExpressionAffectedByMinorEdits(KelvroCommand const *, AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::GetOutputVariableValue(Value &, AString const &, AString const &, AString const &,
                                                 AString const &, IDesignInstance *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::ExportDesignPointResults(LongFileName const &, AString const &, bool) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::IsValidSimValue(AString const &) const {
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

void BaseSolutionManager::GetVariablesAffectedByCommand(std::vector<AString> &, std::vector<AString> &,
                                                        std::vector<AString> &, IKelvroCommand const *, long,
                                                        long) const {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::GetVariablesAffectedByCommand(std::vector<AString> &, std::vector<AString> &,
                                                        std::vector<AString> &, IKelvroCommand const *, long,
                                                        ReportTypeSolutionDefinition const *, long) const {
  KVRO_ASSERT(!"Not available yet");
}

bool BaseSolutionManager::GetQuantityTypeInfo(ReportTypeMap &, AString const &, std::vector<OutputVariable *> *,
                                              SimValuesByReportType *, SolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSolutionManager::GetReferencedVariables(AString const &, std::vector<AString> &, SolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

void BaseSolutionManager::GetValParserList(std::vector<IValueParser *> &, SolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::GetImportedParserList(std::vector<IValueParser *> &, SolutionPointSet *) const {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::GetNominalVariableValues(VariableValues &, long, long) const {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSolutionManager::GetNominalVariableValues(VariableValues &, long, long,
                                                   ReportTypeSolutionDefinition const &) const {
  KVRO_ASSERT(!"Not available yet");
}

IVariableNameSpaceSetupper const * BaseSolutionManager::GetIVariableNameSpaceSetupper(long) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

bool BaseSolutionManager::GetValueInfoForExpression(AString const & expression, long solutionID, Value & value) const {
  return GetValueInfoForExpression(expression, GetISolutionByID(solutionID, false, false), value);
}
