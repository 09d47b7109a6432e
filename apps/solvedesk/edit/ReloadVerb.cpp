#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/command/Editor.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct ReloadWords {
  std::string project;
  OutputOptions output;
};

int Reload(ReloadWords const & words) {
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  std::vector<AString> notices;
  bool const isChanged = session->GetEditor().Reload(notices);
  nlohmann::ordered_json notes = nlohmann::ordered_json::array();
  for (AString const & notice : notices) {
    PrintMessage("note: " + Utf8(notice));
    notes.push_back(Utf8(notice));
  }
  std::string const nothing =
      isChanged ? "read; nothing that counts has changed in it" : "the source is what it was when the project read it";
  result.Print(words.output, words.project, isChanged, nothing, {{"notes", notes}});
  return 0;
}

} // namespace

void AddReloadVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ReloadWords>();
  CLI::App * const verb = program.add_subcommand("reload", "read the changed netlist again: one edit");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Example:\n  solvedesk reload lowpass\n\n"
      "A change of the circuit makes solved data stale, and one of the value of a .param that is no variable of the\n"
      "project: not one of other values of .param, of .sp lines or of comments. A setup whose solution was\n"
      "deleted gets a new one. What was changed here too stays as it is here, and is told.");
  verb->callback([&action, words] { action = [words] { return Reload(*words); }; });
}

} // namespace solvedesk
