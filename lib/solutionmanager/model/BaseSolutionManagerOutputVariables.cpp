// The manager's output variables.  Under the reporter rewrite a module of its own has them, and what is asked here says
// so.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/OutputVariableLegacyUpdater.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "solutionmanager/outputvariables/CannedVariables.h"
#include "solutionmanager/outputvariables/DesignExpressions.h"
#include "solutionmanager/outputvariables/ExpressionRules.h"
#include "solutionmanager/outputvariables/NameRules.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"
#include "solutionmanager/outputvariables/ReportCandidates.h"
#include "solutionmanager/outputvariables/VariableBlocks.h"

namespace {

std::vector<OutputVariable *> ListOf(BaseSolutionManager::OutputVariableMap const & map) {
  std::vector<OutputVariable *> list;
  for (auto const & [name, variable] : map)
    list.push_back(variable);
  return list;
}

} // namespace

int BaseSolutionManager::GetOutputVariables(std::vector<OutputVariable *> & variables, ISimDataExtractor * extractor,
                                            SimValueContext const * context, OutputVariable * editVariable) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return 0;
  }
  if (m_OutputVariableMap.empty())
    return 0;
  DesignExpressions const expressions(*this);
  ExtractorContextSpan const span(extractor);
  ReportCandidates const report(*this, extractor, context);
  std::vector<OutputVariable *> const candidates = report.Choose(ListOf(m_OutputVariableMap));
  if (!extractor) {
    KVRO_ASSERT(!editVariable);
    variables.insert(variables.begin(), candidates.begin(), candidates.end());
    return static_cast<int>(candidates.size());
  }
  std::vector<OutputVariable *> const activated = report.Activate(candidates);
  if (editVariable) {
    for (OutputVariable * const variable : activated)
      if (!variable->UsesContextVariable(editVariable))
        variables.push_back(variable);
  } else {
    variables.insert(variables.begin(), activated.begin(), activated.end());
  }
  for (OutputVariable * const variable : activated)
    variable->Deactivate();
  return static_cast<int>(variables.size());
}

OutputVariable * BaseSolutionManager::FindOutputVariable(AString const & name) const {
  if (!AreOldReportStructuresSupported())
    return nullptr;
  auto const at = m_OutputVariableMap.find(name);
  return at == m_OutputVariableMap.end() ? nullptr : at->second;
}

bool BaseSolutionManager::DoesOutputVariableExist(wchar_t const * name) const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
  return FindOutputVariable(name) != nullptr;
}

bool BaseSolutionManager::IsOkToDeleteOutputVariable(AString const & name) const {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Use OutputVariableModule instead");
  return outputvariables::IsOkToDelete(*this, name);
}

bool BaseSolutionManager::IsValidOutputVariableName(AString const & name) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  return IsValidOutputVariableName(name, true);
}

bool BaseSolutionManager::IsValidOutputVariableName(AString const & name, bool existingNameIsError) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  return outputvariables::IsValidName(*this, DesignExpressions(*this), name, existingNameIsError);
}

bool BaseSolutionManager::IsValidOutputVariableExpression(AString const & expression, ISimDataExtractor * extractor,
                                                          SimValueContext const * context) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  return outputvariables::IsValidExpression(*this, expression, extractor, context);
}

bool BaseSolutionManager::IsValidOutputVariable(AString const & name, ISimDataExtractor * extractor,
                                                SimValueContext const * context) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  // A product's own variables are as good as the user's: what an expression in a context refers to is asked for here,
  // and may be either.
  OutputVariable const * variable = FindOutputVariable(name);
  if (!variable)
    variable = GetCannedOutputVariable(name);
  if (!variable) {
    outputvariables::Tell(outputvariables::kNoSuchVariable, name);
    return false;
  }
  return outputvariables::IsValidVariable(*this, *variable, extractor, context);
}

bool BaseSolutionManager::IsOKtoEditOutputVariable(AString const & name, AString const & expression) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  return IsValidOutputVariableExpression(expression, nullptr, nullptr) && !IsCyclic(name, expression);
}

bool BaseSolutionManager::IsCyclic(AString const & name, AString const & expression) const {
  return outputvariables::IsCyclic(*this, name, expression);
}

int BaseSolutionManager::GetOutputVariables(std::vector<OutputVariable *> & variables) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return 0;
  }
  for (auto const & [name, variable] : m_OutputVariableMap)
    variables.push_back(variable);
  return static_cast<int>(variables.size());
}

int BaseSolutionManager::GetOutputVariables(OutputVariableMap & variables) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return 0;
  }
  variables.insert(m_OutputVariableMap.begin(), m_OutputVariableMap.end());
  return static_cast<int>(variables.size());
}

void BaseSolutionManager::UpdateAllOutputVariableLegacyText() {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return;
  }
  outputvariables::Silence const silence;
  std::vector<IValueParser *> parsers;
  GetValParserList(parsers, nullptr);
  OutputVariableLegacyUpdater::UpdateLegacyText(ListOf(m_OutputVariableMap), parsers, GetIDesign());
}

OutputVariable * BaseSolutionManager::CreateCannedOutputVariable(AString const & name) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return nullptr;
  }
  return CannedVariables::Create(*this, name);
}

OutputVariable * BaseSolutionManager::FindCannedOutputVariable(AString const & name) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return nullptr;
  }
  return CannedVariables(mCannedOutputVariables).Find(name);
}

OutputVariable * BaseSolutionManager::GetCannedOutputVariable(AString const & name) const {
  if (!AreOldReportStructuresSupported())
    return nullptr;
  return CannedVariables(mCannedOutputVariables).FindOrCreate(*this, name);
}

void BaseSolutionManager::CollectCannedOutputVariables() {
  if (!AreOldReportStructuresSupported() && !mCannedOutputVariables.empty()) {
    KVRO_ASSERT(0);
    return;
  }
  CannedVariables(mCannedOutputVariables).Collect();
}

CParsedExpressionCache * BaseSolutionManager::CreateParsedExpressionCache(AString const & expression) const {
  return new CParsedExpressionCache(expression, this);
}

bool BaseSolutionManager::WriteOutputVariables(io::CBlock & block) const {
  if (m_OutputVariableMap.empty())
    return true;
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"How does this have old output variables?!");
  io::CBlock variables(kOutputVariableBlockName);
  bool const areAllWritten = outputvariables::WriteVariables(variables, m_OutputVariableMap);
  block << variables;
  return areAllWritten;
}

io::ReadError BaseSolutionManager::ReadOutputVariables(io::CBlock const & block) {
  io::CBlock variables(kOutputVariableBlockName);
  block >> variables;
  return outputvariables::ReadVariables(variables, *this, m_OutputVariableMap);
}
