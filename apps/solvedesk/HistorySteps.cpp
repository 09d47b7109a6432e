#include "apps/solvedesk/HistorySteps.h"

#include "apps/solvedesk/EditResult.h"
#include "apps/solvedesk/OpenProject.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct StepWords {
  std::string project;
  int count = 1;
  OutputOptions output;
};

int GoSteps(StepWords const & words, HistoryStep const & step) {
  using desktop::Error;
  if (words.count < 1)
    throw Error(desktop::ErrorKind::kUsage, text::FromUtf8(step.verb) + L": takes a number of commands from 1");
  auto const session = OpenForWriting(words.project);
  desktop::Editor & editor = session->GetEditor();
  EditResult const result(*session);
  nlohmann::ordered_json commands = nlohmann::ordered_json::array();
  auto const names = [&] { return editor.GetHistory().Position(); };
  for (int i = 0; i < words.count; ++i) {
    std::size_t const before = names();
    if (!(editor.*step.step)())
      throw Error(desktop::ErrorKind::kUsage,
                  text::FromUtf8(std::string(step.nothing) + (i > 0 ? " any more" : "") + "; see history"));
    commands.push_back(Utf8(editor.GetHistory().NameAt(std::min(before, names()))));
  }
  result.Print(words.output, words.project, true, std::string(), {{"commands", commands}});
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
