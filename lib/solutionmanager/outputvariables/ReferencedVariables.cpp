#include "solutionmanager/outputvariables/ReferencedVariables.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/OutputVariableVisit.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

void GetLabels(BaseSolutionManager const & manager, AString const & expression, SolutionPointSet * pointSet,
               std::vector<AString> & labels) {
  // The design does not set this name space up; its variables are known by their servers.
  VariableNameSpace nameSpace(true, true, false);
  if (IDesign const * const design = manager.GetIDesign()) {
    nameSpace.AddVariableServer(design->GetVariableServer());
    nameSpace.AddVariableServer(design->GetProjectVariableServer());
  }
  std::vector<IValueParser *> parsers;
  manager.GetImportedParserList(parsers, pointSet);
  ExpressionParser::GetAlienLabels(labels, expression, parsers);
}

} // namespace

bool outputvariables::FindReferencedWords(BaseSolutionManager const & manager, AString const & expression,
                                          std::vector<AString> & names, SolutionPointSet * pointSet) {
  std::vector<AString> labels;
  GetLabels(manager, expression, pointSet, labels);
  for (AString const & label : labels) {
    OutputVariable * const canned = manager.GetCannedOutputVariable(label);
    OutputVariable const * const variable = canned ? canned : manager.FindOutputVariable(label);
    if (!variable) {
      names.push_back(label);
      continue;
    }
    OutputVariableVisit const visit(OutputVariableVisit::Question::References, *variable);
    if (!visit.MayEnter() || !manager.GetReferencedVariables(variable->GetValueBaseText(), names, nullptr))
      return false;
  }
  return true;
}
