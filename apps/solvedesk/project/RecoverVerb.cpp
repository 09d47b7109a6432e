#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/project/RecoveryText.h"
#include "desktop/Error.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectCopy.h"
#include "desktop/project/RecoveryFailed.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct RecoverWords {
  std::string project;
  bool dryRun = false;
  bool setAside = false;
  OutputOptions output;
};

int Tell(RecoverWords const & words, desktop::Session & session, std::vector<AString> const & notices) {
  std::string const path = Utf8(ProjectPath(words.project));
  RecoveryText const recovery(session, words.dryRun);
  nlohmann::ordered_json document{{"project", path}, {"dry_run", words.dryRun}};
  document.update(recovery.Document());
  document["notices"] = nlohmann::ordered_json::array();
  for (AString const & notice : notices)
    document["notices"].push_back(Utf8(notice));
  // What was set aside is told before.
  std::string const text = words.setAside ? "goes on from the saved state\n" : recovery.Text();
  PrintResult(words.output, path + ": " + text, document);
  return 0;
}

// The takeover is carried out on a copy, so what is told is what would happen.
int Rehearse(RecoverWords const & words) {
  desktop::Project const project(ProjectPath(words.project));
  desktop::ProjectCopy const copy(project);
  try {
    auto const session = desktop::Session::Open(copy.Path(), desktop::Session::Access::kWrite);
    std::vector<AString> notices;
    for (AString const & notice : session->GetNotices()) {
      notices.push_back(copy.ToldOfProject(notice));
      PrintMessage("would be told: " + Utf8(notices.back()));
    }
    return Tell(words, *session, notices);
  } catch (desktop::Error const & error) {
    throw desktop::Error(error.Kind(), copy.ToldOfProject(text::FromUtf8(error.what())));
  }
}

int Recover(RecoverWords const & words) {
  if (words.dryRun && words.setAside)
    throw desktop::Error(desktop::ErrorKind::kUsage, L"--dry-run and --set-aside: give one of them");
  if (words.dryRun)
    return Rehearse(words);
  using LeftWork = desktop::Session::LeftWork;
  auto const session = OpenForWriting(words.project, words.setAside ? LeftWork::kSetAside : LeftWork::kGoOn);
  return Tell(words, *session, session->GetNotices());
}

} // namespace

void AddRecoverVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<RecoverWords>();
  CLI::App * const verb = program.add_subcommand("recover", "take over what a crash left, and tell what came back");
  AddProjectWord(*verb, words->project);
  verb->add_flag("--dry-run", words->dryRun, "tell what would be taken over and change nothing");
  verb->add_flag("--set-aside", words->setAside,
                 "go on from the saved state: unsaved work is moved aside under other names");
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Examples:\n"
      "  solvedesk recover lowpass --dry-run\n"
      "  solvedesk recover lowpass\n\n"
      "Every verb that opens a project for writing recovers it too, and tells so in one line. When the work of\n"
      "a crash can't be taken over, nothing is changed until --set-aside, `discard` or a repair says what\n"
      "becomes of it.");
  verb->callback([&action, words] { action = [words] { return Recover(*words); }; });
}

} // namespace solvedesk
