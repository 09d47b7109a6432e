#include "desktop/report/MixedKinds.h"

#include "desktop/message/HeldMessages.h"
#include "desktop/message/NameList.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace desktop {

AString MixedKinds(BaseSolutionManager const & manager, AString const & expression) {
  HeldMessages const messages;
  BaseSolutionManager::ReportTypeMap types;
  if (manager.GetOutputVariableReportTypes(expression, types) <= 1)
    return {};
  std::vector<AString> names;
  manager.GetReportTypeNames(names);
  std::erase_if(names, [&](AString const & name) { return !types.count(manager.GetReportType(name)); });
  return L"'" + ShortName(expression) + L"' mixes quantities of several kinds, " + NameList(names) +
         L"; give each an expression of its own";
}

} // namespace desktop
