#include "apps/solvedesk/HistorySteps.h"
#include "apps/solvedesk/Verbs.h"

namespace solvedesk {

void AddUndoVerb(CLI::App & program, Action & action) {
  AddHistorySteps(program, action, {"undo", "take back the last command", "nothing to undo", true});
}

} // namespace solvedesk
