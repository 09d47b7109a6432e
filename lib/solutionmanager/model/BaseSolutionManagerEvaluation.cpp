// Questions about expressions: what they need, what they are worth, what changes them.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/AffectedVariables.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "solutionmanager/outputvariables/Evaluation.h"
#include "solutionmanager/outputvariables/QuantityTypes.h"
#include "solutionmanager/outputvariables/ReferencedVariables.h"
#include "solutionmanager/outputvariables/ValueInfo.h"

void BaseSolutionManager::GetValParserList(std::vector<IValueParser *> & parsers, SolutionPointSet * pointSet) const {
  std::vector<ISolution *> solutions;
  if (pointSet)
    solutions.push_back(pointSet->GetISimDataExtractor()->GetISolution());
  else
    GetValidISolutionList(solutions, false, true);
  for (ISolution * const solution : solutions) {
    // Null, for a solution without an extractor of the base class, counts as well.
    auto * const extractor =
        solution ? dynamic_cast<BaseSimDataExtractor *>(solution->GetISimDataExtractor()) : nullptr;
    parsers.push_back(extractor);
  }
}

void BaseSolutionManager::GetImportedParserList(std::vector<IValueParser *> & parsers,
                                                SolutionPointSet * pointSet) const {
  BaseSolutionManager::GetValParserList(parsers, pointSet);
}

bool BaseSolutionManager::IsValidSimValue(AString const & text) const {
  std::vector<AString> names;
  GetReportTypeNames(names);
  for (AString const & name : names) {
    std::vector<ISimDataExtractor *> extractors;
    GetISimDataExtractors(extractors, GetReportType(name), false);
    for (ISimDataExtractor const * const extractor : extractors)
      if (extractor && extractor->GetQuantityType(text, 0).parameterType != val::kNotAQuantity)
        return true;
  }
  return false;
}

bool BaseSolutionManager::GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                                              std::vector<OutputVariable *> * variables,
                                              SimValuesByReportType * simValues, SolutionPointSet * pointSet) const {
  QuantityTypes::AskProduct const ask = [this](ReportTypeMap & types, AString const & label,
                                               ISimDataExtractor const * extractor) {
    return GetReportTypeForSimValues(types, label, extractor);
  };
  return QuantityTypes(*this, ask).Find(expression, {reportTypes, variables, simValues}, pointSet);
}

int BaseSolutionManager::GetOutputVariableReportTypes(AString const & expression, ReportTypeMap & reportTypes) const {
  return GetQuantityTypeInfo(reportTypes, expression, nullptr, nullptr, nullptr) ? static_cast<int>(reportTypes.size())
                                                                                 : -1;
}

bool BaseSolutionManager::GetValueInfoForExpression(AString const & expression, ISolution const * solution,
                                                    Value & value) const {
  return solution && outputvariables::GetValueInfo(*this, expression, *solution, value);
}

// Solutions of this design alone: an imported one is asked for by itself, where the value of an output variable, which
// names its solution, may be one of imported data.
bool BaseSolutionManager::GetValueInfoForExpression(AString const & expression, long solutionID, Value & value) const {
  return GetValueInfoForExpression(expression, GetISolutionByID(solutionID, false, false), value);
}

bool BaseSolutionManager::GetOutputVariableValue(Value & result, AString const & variable, AString const & solution,
                                                 AString const & variation, AString const & context,
                                                 IDesignInstance * instance) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use Idesign to get IOutputVariableMgrForProducts and call it's GetOutputvariableValue function");
    return false;
  }
  Evaluation::SetContext const setContext =
      [this](SimValueContext & place, AString const & text, ISimDataExtractor const * extractor,
             std::vector<unsigned> const & reportTypes) { SetSimValueContext(place, text, extractor, reportTypes); };
  return Evaluation(*this, {variable, solution, variation, context, instance}, setContext).Run(result);
}

bool BaseSolutionManager::GetReferencedVariables(AString const & expression, std::vector<AString> & names,
                                                 SolutionPointSet * pointSet) const {
  return outputvariables::FindReferencedWords(*this, expression, names, pointSet);
}

void BaseSolutionManager::GetNominalVariableValues(VariableValues & values, long designID, long instanceID,
                                                   ReportTypeSolutionDefinition const &) const {
  MemoryTimeProfilerScope const scope("BaseSolutionManager::GetNominalVariableValues");
  GetNominalVariableValues(values, designID, instanceID);
}

void BaseSolutionManager::GetNominalVariableValues(VariableValues & values, long, long instanceID) const {
  std::vector<IDesignInstance *> instances;
  if (m_Design)
    m_Design->GetDesignInstances(instances);
  IKitDesktop const * const desktop = GetIKitDesktop();
  for (IDesignInstance const * const instance : instances)
    if (instance->GetID() == instanceID) {
      instance->GetNominalVariableValues(values, desktop && desktop->UsesPostProcessingVariables());
      return;
    }
}

void BaseSolutionManager::GetVariablesAffectedByCommand(std::vector<AString> & created, std::vector<AString> & deleted,
                                                        std::vector<AString> & edited, IKelvroCommand const * command,
                                                        long solutionID, ReportTypeSolutionDefinition const *,
                                                        long instanceID) const {
  GetVariablesAffectedByCommand(created, deleted, edited, command, solutionID, instanceID);
}

void BaseSolutionManager::GetVariablesAffectedByCommand(std::vector<AString> & created, std::vector<AString> & deleted,
                                                        std::vector<AString> & edited, IKelvroCommand const * command,
                                                        long, long) const {
  if (command)
    AffectedVariables{created, deleted, edited}.Collect(*command);
}

bool BaseSolutionManager::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                           AString const & expression) const {
  std::unique_ptr<CParsedExpressionCache> const cache(CreateParsedExpressionCache(expression));
  return cache && IsExpressionAffectedByMinorEdits(command, cache.get());
}
