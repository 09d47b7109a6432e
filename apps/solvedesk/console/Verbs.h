#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace solvedesk {

/// What the words of the command line ask for; gives the exit code or throws desktop::Error.
using Action = std::function<int()>;

// Each adds one verb with its options and help to the program; the verb that is used sets the action.
void AddNewVerb(CLI::App & program, Action & action);
void AddInfoVerb(CLI::App & program, Action & action);
void AddSetVerb(CLI::App & program, Action & action);
void AddSolveVerb(CLI::App & program, Action & action);
void AddConvergenceVerb(CLI::App & program, Action & action);
void AddProfileVerb(CLI::App & program, Action & action);
void AddSaveVerb(CLI::App & program, Action & action);
void AddDiscardVerb(CLI::App & program, Action & action);
void AddRecoverVerb(CLI::App & program, Action & action);
void AddValuesVerb(CLI::App & program, Action & action);
void AddReportVerb(CLI::App & program, Action & action);
void AddVarVerb(CLI::App & program, Action & action);
void AddPortVerb(CLI::App & program, Action & action);
void AddEvalVerb(CLI::App & program, Action & action);
void AddTouchstoneVerb(CLI::App & program, Action & action);
void AddImportVerb(CLI::App & program, Action & action);
void AddCompareVerb(CLI::App & program, Action & action);
void AddExportVerb(CLI::App & program, Action & action);
void AddFunctionsVerb(CLI::App & program, Action & action);
void AddReloadVerb(CLI::App & program, Action & action);
void AddSetupVerb(CLI::App & program, Action & action);
void AddDeleteVerb(CLI::App & program, Action & action);
void AddAttachVerb(CLI::App & program, Action & action);
void AddAttachmentsVerb(CLI::App & program, Action & action);
void AddDetachVerb(CLI::App & program, Action & action);
void AddConnectVerb(CLI::App & program, Action & action);
void AddConnectionsVerb(CLI::App & program, Action & action);
void AddRefreshVerb(CLI::App & program, Action & action);
void AddDisconnectVerb(CLI::App & program, Action & action);
void AddWatchVerb(CLI::App & program, Action & action);
void AddShellVerb(CLI::App & program, Action & action);
// In a shell alone, which keeps the history that they go through.
void AddUndoVerb(CLI::App & program, Action & action);
void AddRedoVerb(CLI::App & program, Action & action);
void AddHistoryVerb(CLI::App & program, Action & action);
/// What a solve starts for each core; not for people, so it stands in no help.
void AddWorkerVerb(CLI::App & program, Action & action);

} // namespace solvedesk
