#include "solutionmanager/outputvariables/ExpressionRules.h"

#include "plotkit/OutputVariable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/extraction/SDEOutputDataValueParser.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/ContextValidity.h"
#include "solutionmanager/outputvariables/DesignExpressions.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <algorithm>
#include <set>

namespace outputvariables {

namespace {

/// A product's own variable was made, if there is one, when the expression was parsed: a question why it is bad makes
/// none.
OutputVariable const * FindVariable(BaseSolutionManager const & manager, AString const & name) {
  OutputVariable const * const variable = manager.FindOutputVariable(name);
  return variable ? variable : manager.FindCannedOutputVariable(name);
}

bool Parses(DesignExpressions & expressions, AString const & expression, ISimDataExtractor * extractor,
            SimValueContext const * context) {
  auto * const base = dynamic_cast<BaseSimDataExtractor *>(extractor);
  if (!base)
    return expressions.Validate(expression);
  if (!context)
    return expressions.Validate(expression, {base->GetIValueParser()});
  SDEOutputDataValueParser parser(base, context);
  return expressions.Validate(expression, {&parser});
}

/// Tells the user which words of an expression that does not parse are to blame.
void TellBadWords(BaseSolutionManager const & manager, DesignExpressions const & expressions,
                  AString const & expression, ISimDataExtractor * extractor, SimValueContext const * context) {
  for (AString const & label : expressions.GetAlienLabels(expression)) {
    OutputVariable const * const variable = FindVariable(manager, label);
    bool const isBad =
        variable ? extractor && context && !variable->IsValid(extractor, context) : !manager.IsValidSimValue(label);
    if (isBad)
      Tell(kBadExpression, label);
  }
}

} // namespace

bool IsValidExpression(BaseSolutionManager const & manager, AString const & expression, ISimDataExtractor * extractor,
                       SimValueContext const * context) {
  DesignExpressions expressions(manager);
  ExtractorContextSpan const span(extractor);
  if (!Parses(expressions, expression, extractor, context)) {
    if (!ContextValidity::AreMessagesHeldBack())
      TellBadWords(manager, expressions, expression, extractor, context);
    return false;
  }
  if (!extractor || !context)
    return true;
  OutputVariable scratch(L"DummyVar");
  scratch.SetValueBaseText(expression, expressions.GetState());
  if (scratch.IsValid(extractor, context))
    return true;
  Tell(kBadExpression, expression);
  return false;
}

bool IsValidVariable(BaseSolutionManager const & manager, OutputVariable const & variable,
                     ISimDataExtractor * extractor, SimValueContext const * context) {
  if (!extractor || !context)
    return manager.IsValidOutputVariableExpression(variable.GetValueBaseText(), extractor, context);
  if (ContextValidity * const current = ContextValidity::Current(manager, extractor, *context))
    return current->IsValid(variable);
  return ContextValidity(manager, extractor, *context, ContextValidity::Messages::kTold).IsValid(variable);
}

bool IsCyclic(BaseSolutionManager const & manager, AString const & name, AString const & expression) {
  DesignExpressions const expressions(manager);
  std::set<OutputVariable const *> visited;
  AString text = expression;
  while (true) {
    OutputVariable const * first = nullptr;
    for (AString const & label : expressions.GetAlienLabels(text))
      if ((first = manager.FindOutputVariable(label)))
        break;
    if (!first)
      return false;
    // In a circle that the name is no part of the walk would not end; whatever leads into it has no value either.
    if (AString::MatchNoCase(first->GetName(), name) || !visited.insert(first).second) {
      Tell(kIsCyclic, name);
      return true;
    }
    text = first->GetValueBaseText();
  }
}

bool IsOkToDelete(BaseSolutionManager const & manager, AString const & name) {
  OutputVariable const * const variable = manager.FindOutputVariable(name);
  if (!variable) {
    Tell(kNoSuchVariable, name);
    return false;
  }
  if (!variable->OKtoDelete()) {
    Tell(kIsInUse, name);
    return false;
  }
  DesignExpressions const expressions(manager);
  std::vector<OutputVariable *> others;
  manager.GetOutputVariables(others);
  for (OutputVariable const * const other : others) {
    if (other == variable)
      continue;
    std::vector<AString> const labels = expressions.GetAlienLabels(other->GetValueBaseText());
    if (std::any_of(labels.begin(), labels.end(),
                    [&](AString const & label) { return AString::MatchNoCase(label, name); })) {
      Tell(kAnotherRefersToIt, name);
      return false;
    }
  }
  return true;
}

} // namespace outputvariables
