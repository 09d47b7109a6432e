#include "solutionmanager/outputvariables/DesignExpressions.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/ExpressionParser.h"
#include "solutionmanager/model/BaseSolutionManager.h"

DesignExpressions::DesignExpressions(BaseSolutionManager const & manager) {
  if (IDesign const * const design = manager.GetIDesign())
    design->SetupVariableNameSpace(m_nameSpace, false);
  manager.GetValParserList(m_parsers, nullptr);
}

std::vector<AString> DesignExpressions::GetAlienLabels(AString const & text) const {
  std::vector<AString> labels;
  ExpressionParser::GetAlienLabels(labels, text, m_parsers);
  return labels;
}

bool DesignExpressions::Validate(AString const & text, std::vector<IValueParser *> const & parsers) {
  m_scratch = Value(Units::kNoUnits);
  return ExpressionParser::ValidateExpression(m_scratch, text, parsers);
}
