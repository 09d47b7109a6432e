#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/edit/HistorySteps.h"

namespace solvedesk {

void AddRedoVerb(CLI::App & program, Action & action) {
  AddHistorySteps(program, action,
                  {"redo", "make the command stand again that was undone last", "nothing to redo", false});
}

} // namespace solvedesk
