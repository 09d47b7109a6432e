#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/project/Attachments.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct DetachWords {
  std::string project;
  std::string name;
  OutputOptions output;
};

int Detach(DetachWords const & words) {
  auto const session = OpenForWriting(words.project);
  desktop::Attachments(*session).Detach(ArgumentText(words.name));
  std::string const path = Utf8(ProjectPath(words.project));
  PrintResult(words.output, fmt::format("{}: detached {}; not saved\n", path, words.name),
              {{"project", path}, {"name", words.name}});
  return 0;
}

} // namespace

void AddDetachVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<DetachWords>();
  CLI::App * const verb = program.add_subcommand("detach", "drop a file that was attached to the project");
  AddProjectWord(*verb, words->project);
  verb->add_option("NAME", words->name, "its name, as attachments lists it")->required();
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk detach lowpass parts/inductor.pdf\n\n"
               "The copy goes when the project is saved; until then discard keeps it.");
  verb->callback([&action, words] { action = [words] { return Detach(*words); }; });
}

} // namespace solvedesk
