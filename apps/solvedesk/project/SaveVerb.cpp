#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct SaveWords {
  std::string project;
  OutputOptions output;
};

int Save(SaveWords const & words) {
  auto const session = OpenForWriting(words.project);
  bool const hadChanges = session->HasUnsavedChanges();
  if (hadChanges)
    session->Save();
  std::string const path = Utf8(ProjectPath(words.project));
  PrintResult(words.output, fmt::format("{}: {}\n", path, hadChanges ? "saved" : "nothing to save"),
              {{"project", path}, {"saved", hadChanges}});
  return 0;
}

} // namespace

void AddSaveVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SaveWords>();
  CLI::App * const verb = program.add_subcommand("save", "make unsaved changes and results permanent");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk save lowpass");
  verb->callback([&action, words] { action = [words] { return Save(*words); }; });
}

} // namespace solvedesk
