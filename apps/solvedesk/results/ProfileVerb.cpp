#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/results/ProfileReport.h"
#include "apps/solvedesk/results/RecordChoice.h"
#include "solutionmanager/address/SolutionVariationKey.h"

#include <CLI/CLI.hpp>

namespace solvedesk {
namespace {

struct ProfileWords {
  RecordWords records;
  bool brief = false;
  OutputOptions output;
};

int ShowProfile(ProfileWords const & words) {
  auto const session = OpenForReading(words.records.project);
  ProfileReport report(words.brief);
  int const code = ForEachRecord(*session, words.records, SolutionVariationKey::kProfileDataKey,
                                 [&report](RecordOfSolve const & solve) { return report.Add(solve); });
  PrintResult(words.output, report.Text(), report.Document());
  return code;
}

} // namespace

void AddProfileVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ProfileWords>();
  CLI::App * const verb = program.add_subcommand("profile", "show what solves cost: time and memory");
  AddRecordWords(*verb, words->records);
  verb->add_flag("--brief", words->brief, "one line for each solve, without its tasks");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk profile lowpass --brief\n"
               "  solvedesk profile lowpass --setup SParameters1 --json\n\n"
               "Each solve of a variation at the setup's present settings has left a group of tasks, also one that\n"
               "failed. The task 'Whole solve' at its end is all of it, as the worker measured it. Groups that the\n"
               "solver made of its own tasks follow.");
  verb->callback([&action, words] { action = [words] { return ShowProfile(*words); }; });
}

} // namespace solvedesk
