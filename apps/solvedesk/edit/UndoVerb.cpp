#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/edit/HistorySteps.h"

namespace solvedesk {

void AddUndoVerb(CLI::App & program, Action & action) {
  AddHistorySteps(program, action, {"undo", "take back the last command", "nothing to undo", true});
}

} // namespace solvedesk
