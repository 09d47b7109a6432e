#include "solutionmanager/outputvariables/NameRules.h"

#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/DesignExpressions.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <optional>

namespace outputvariables {

namespace {

std::optional<MessageNumber> WhatIsWrong(BaseSolutionManager const & manager, DesignExpressions const & expressions,
                                         AString const & name, bool existingNameIsError) {
  std::vector<AString> const labels = expressions.GetAlienLabels(name);
  if (labels.empty())
    return kNoLabel;
  if (labels.size() > 1 || labels.front() != name)
    return kNotOneLabel;
  if (existingNameIsError && manager.FindOutputVariable(name))
    return kNameIsInUse;
  if (manager.IsValidSimValue(name))
    return kNameOfAQuantity;
  return std::nullopt;
}

} // namespace

bool IsValidName(BaseSolutionManager const & manager, DesignExpressions const & expressions, AString const & name,
                 bool existingNameIsError) {
  auto const wrong = WhatIsWrong(manager, expressions, name, existingNameIsError);
  if (wrong)
    Tell(*wrong, name);
  return !wrong;
}

} // namespace outputvariables
