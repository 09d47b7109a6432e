#include "solutionmanager/outputvariables/ReferencedVariables.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/OutputVariableVisit.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/OpenedVariables.h"

namespace {

void GetLabels(BaseSolutionManager const & manager, AString const & expression, SolutionPointSet * pointSet,
               std::vector<AString> & labels) {
  // The design does not set this name space up, as nothing is bound here; its variables are known by their servers,
  // since an expression of design variables alone refers to nothing else.
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
  OpenedVariables opened(manager, &names);
  for (AString const & label : labels) {
    OutputVariable * const canned = manager.GetCannedOutputVariable(label);
    OutputVariable const * const variable = canned ? canned : manager.FindOutputVariable(label);
    if (!variable) {
      names.push_back(label);
      continue;
    }
    // The words of a variable that is met again are not listed again.
    if (opened.Find(*variable))
      continue;
    OutputVariableVisit const visit(OutputVariableVisit::Question::References, *variable);
    if (!visit.MayEnter() || !manager.GetReferencedVariables(variable->GetValueBaseText(), names, nullptr))
      return false;
    opened.Remember(*variable, true);
  }
  return true;
}
