#include "apps/solvedesk/OpenProject.h"
#include "apps/solvedesk/ReportView.h"
#include "apps/solvedesk/Verbs.h"
#include "apps/solvedesk/WordList.h"

#include <CLI/CLI.hpp>

namespace solvedesk {

void AddEvalVerb(CLI::App &, Action &) {}

} // namespace solvedesk
