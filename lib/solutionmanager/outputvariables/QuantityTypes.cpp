#include "solutionmanager/outputvariables/QuantityTypes.h"

#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/Value.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/OutputVariableVisit.h"
#include "plotkit/SimValueContext.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/DesignNameSpace.h"
#include "solutionmanager/outputvariables/OpenedVariables.h"

bool QuantityTypes::Find(AString const & expression, Found const & found, SolutionPointSet * pointSet) const {
  DesignNameSpace const nameSpace(m_manager.GetIDesign());
  std::vector<IValueParser *> parsers;
  m_manager.GetImportedParserList(parsers, pointSet);
  Value value(Units::kNoUnits);
  if (!ExpressionParser::ValidateExpression(value, expression, parsers))
    return false;
  std::vector<AString> labels;
  ExpressionParser::GetAlienLabels(labels, expression, parsers);
  OpenedVariables opened(m_manager, &found.reportTypes);
  bool isGood = true;
  for (AString const & label : labels) {
    OutputVariable * const canned = m_manager.GetCannedOutputVariable(label);
    OutputVariable * const variable = canned ? canned : m_manager.FindOutputVariable(label);
    if (variable) {
      // Contexts and words of a variable that is met again are not listed again.
      std::optional<bool> isVariableGood = opened.Find(*variable);
      if (!isVariableGood)
        opened.Remember(*variable, *(isVariableGood = FindThroughVariable(*variable, found)));
      if (*isVariableGood)
        continue;
    }
    // A variable whose own expression is bad may still bear the name of a quantity.
    isGood = isGood && !variable;
    FindQuantity(label, found);
  }
  return isGood;
}

bool QuantityTypes::FindThroughVariable(OutputVariable & variable, Found const & found) const {
  OutputVariableVisit const visit(OutputVariableVisit::Question::Quantities, variable);
  if (!visit.MayEnter() || !m_manager.GetQuantityTypeInfo(found.reportTypes, variable.GetValueBaseText(),
                                                          found.variables, found.simValues, nullptr))
    return false;
  if (found.variables)
    found.variables->push_back(&variable);
  return true;
}

void QuantityTypes::FindQuantity(AString const & label, Found const & found) const {
  std::vector<ISolution *> solutions;
  m_manager.GetValidISolutionList(solutions, false, false);
  ReportTypeMap tempinfo;
  for (ISolution * const solution : solutions)
    if (m_ask(tempinfo, label, solution->GetISimDataExtractor()).parameterType != val::kNotAQuantity)
      break;
  // clang-format off
  KVRO_ASSERT(tempinfo.size()<=1);
  // clang-format on
  if (tempinfo.empty())
    return;
  auto const & [reportType, contexts] = *tempinfo.begin();
  std::vector<SimValueContext> & known = found.reportTypes[reportType];
  known.insert(known.end(), contexts.begin(), contexts.end());
  if (found.simValues)
    (*found.simValues)[reportType].push_back(label);
}
