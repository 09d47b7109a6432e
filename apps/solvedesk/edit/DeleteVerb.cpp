#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct DeleteWords {
  std::string project;
  std::string variation;
  std::string solution;
  std::string setup;
  OutputOptions output;
};

int Delete(DeleteWords const & words) {
  if (words.variation.empty() == words.solution.empty())
    throw desktop::Error(desktop::ErrorKind::kUsage, L"delete: give one of --variation V and --solution S");
  if (!words.solution.empty() && !words.setup.empty())
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         L"delete --setup: goes with --variation; write --solution 'SETUP : SOLUTION'");
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  int blocks = 0;
  if (words.solution.empty())
    blocks = session->GetEditor().DeleteVariation(ArgumentText(words.variation), ArgumentText(words.setup));
  else
    session->GetEditor().DeleteSolution(ArgumentText(words.solution));
  result.Print(words.output, words.project, true, std::string(), {{"deleted_blocks", blocks}});
  return 0;
}

} // namespace

void AddDeleteVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<DeleteWords>();
  CLI::App * const verb =
      program.add_subcommand("delete", "delete the data of a variation, or a solution with all data");
  AddProjectWord(*verb, words->project);
  verb->add_option("--variation", words->variation, "the point, as info lists it: 'cscale=0.9; lscale=1'");
  verb->add_option("--solution", words->solution, "the solution and all data in it, by its name or 'SETUP : SOLUTION'");
  verb->add_option("--setup", words->setup, "delete the variation's data in this setup alone");
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Example:\n  solvedesk delete lowpass --variation 'cscale=0.9; lscale=1'\n\n"
      "Within a shell, undo brings the data back. Outside, discard does until a save, and a solve that stored a point\n"
      "saves. A setup whose solution was deleted is solved again after `reload` or `setup edit`, which make it a\n"
      "new, empty one.");
  verb->callback([&action, words] { action = [words] { return Delete(*words); }; });
}

} // namespace solvedesk
