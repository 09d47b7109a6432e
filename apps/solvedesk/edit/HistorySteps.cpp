#include "apps/solvedesk/edit/HistorySteps.h"

#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct StepWords {
  std::string project;
  int count = 1;
  OutputOptions output;
};

// All of them are there, or none is gone.
void RefuseTooMany(StepWords const & words, HistoryStep const & step, desktop::CommandStack const & history) {
  std::size_t const there = step.isBack ? history.Position() : history.Size() - history.Position();
  auto const wanted = static_cast<std::size_t>(words.count);
  if (wanted <= there)
    return;
  std::string const many =
      there == 0 ? std::string(step.nothing)
                 : fmt::format("{} {}: there {} to {}; nothing is done", step.verb, wanted,
                               there == 1 ? "is 1 command" : fmt::format("are {} commands", there), step.verb);
  throw desktop::Error(desktop::ErrorKind::kUsage, text::FromUtf8(many + "; see history"));
}

// A step that can't be carried out takes those before it along.
void GoBack(desktop::Editor & editor, HistoryStep const & step, int done) {
  for (; done > 0; --done)
    step.isBack ? editor.Redo() : editor.Undo();
}

int GoSteps(StepWords const & words, HistoryStep const & step) {
  using desktop::Error;
  if (words.count < 1)
    throw Error(desktop::ErrorKind::kUsage, text::FromUtf8(step.verb) + L": takes a number of commands from 1");
  auto const session = OpenForWriting(words.project);
  desktop::Editor & editor = session->GetEditor();
  EditResult const result(*session);
  nlohmann::ordered_json commands = nlohmann::ordered_json::array();
  RefuseTooMany(words, step, editor.GetHistory());
  std::vector<desktop::EditChange> changes;
  for (int i = 0; i < words.count; ++i) {
    std::size_t const before = editor.GetHistory().Position();
    try {
      step.isBack ? editor.Undo() : editor.Redo();
    } catch (Error const &) {
      GoBack(editor, step, i);
      throw;
    }
    commands.push_back(Utf8(editor.GetHistory().NameAt(std::min(before, editor.GetHistory().Position()))));
    changes.insert(changes.end(), editor.GetLastChanges().begin(), editor.GetLastChanges().end());
  }
  result.PrintChanges(words.output, words.project, changes, {{"commands", commands}});
  return 0;
}

} // namespace

void AddHistorySteps(CLI::App & program, Action & action, HistoryStep const & step) {
  auto const words = std::make_shared<StepWords>();
  CLI::App * const verb = program.add_subcommand(step.verb, step.description);
  AddProjectWord(*verb, words->project);
  verb->add_option("N", words->count, "how many commands")->capture_default_str();
  AddOutputOptions(*verb, words->output);
  verb->footer(std::string("Example:\n  ") + step.verb + " 2");
  verb->callback([&action, words, step] { action = [words, step] { return GoSteps(*words, step); }; });
}

} // namespace solvedesk
