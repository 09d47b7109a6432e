#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/command/Editor.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct HistoryWords {
  std::string project;
  OutputOptions output;
};

int ShowHistory(HistoryWords const & words) {
  auto const session = OpenForWriting(words.project);
  desktop::CommandStack const & history = session->GetEditor().GetHistory();
  std::string text;
  nlohmann::ordered_json commands = nlohmann::ordered_json::array();
  auto const savedMark = [&](std::size_t place) {
    return history.CleanPosition() == place && place > 0 ? "  (saved)" : "";
  };
  for (std::size_t i = 0; i < history.Size(); ++i) {
    bool const stands = i < history.Position();
    text += fmt::format("{:>4}  {:<6}  {}{}\n", i + 1, stands ? "done" : "undone", Utf8(history.NameAt(i)),
                        savedMark(i + 1));
    commands.push_back({{"command", Utf8(history.NameAt(i))}, {"done", stands}});
  }
  if (history.Size() == 0)
    text = "no command yet\n";
  PrintResult(words.output, text,
              {{"commands", commands}, {"position", history.Position()}, {"clean", history.IsClean()}});
  return 0;
}

} // namespace

void AddHistoryVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<HistoryWords>();
  CLI::App * const verb = program.add_subcommand("history", "list the commands of this shell");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  history");
  verb->callback([&action, words] { action = [words] { return ShowHistory(*words); }; });
}

} // namespace solvedesk
