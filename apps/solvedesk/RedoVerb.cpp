#include "apps/solvedesk/HistorySteps.h"
#include "apps/solvedesk/Verbs.h"

namespace solvedesk {

void AddRedoVerb(CLI::App & program, Action & action) {
  AddHistorySteps(program, action,
                  {"redo", "make the command stand again that was undone last", "nothing to redo", false});
}

} // namespace solvedesk
