#include "solutionmanager/outputvariables/ValueInfo.h"

#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/id/Id.h"
#include "basekit/value/ExpressionParser.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/SDEOutputDataValueParser.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/DesignNameSpace.h"

#include <algorithm>

namespace {

/// The contexts of the only report type; empty when there is another number of types.
std::vector<SimValueContext> ContextsOf(BaseSolutionManager const & manager, AString const & expression) {
  ISolutionMgr::ReportTypeMap reportTypes;
  return manager.GetOutputVariableReportTypes(expression, reportTypes) == 1 ? reportTypes.begin()->second
                                                                            : std::vector<SimValueContext>();
}

} // namespace

bool outputvariables::GetValueInfo(BaseSolutionManager const & manager, AString const & expression,
                                   ISolution const & solution, Value & value) {
  std::vector<SimValueContext> const contexts = ContextsOf(manager, expression);
  if (contexts.empty())
    return false;
  SimValueContext const & context = contexts.front();
  bool const isOneDomain = std::all_of(contexts.begin(), contexts.end(), [&](SimValueContext const & other) {
    return other.GetCalculationType() == context.GetCalculationType();
  });
  if (!isOneDomain)
    return false;
  DesignNameSpace const nameSpace(manager.GetIDesign());
  std::vector<IValueParser *> parsers;
  if (context.GetKind() == id::invalidID) {
    manager.GetValParserList(parsers, nullptr);
    return ExpressionParser::ValidateExpression(value, expression, parsers);
  }
  auto * const extractor =
      dynamic_cast<BaseSimDataExtractor *>(const_cast<ISolution &>(solution).GetISimDataExtractor());
  if (!extractor)
    return false;
  SDEOutputDataValueParser parser(extractor, &context);
  parsers.push_back(&parser);
  return ExpressionParser::ValidateExpression(value, expression, parsers);
}
