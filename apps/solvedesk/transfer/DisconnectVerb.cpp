#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/hub/Hub.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct DisconnectWords {
  std::string project;
  std::string name;
  OutputOptions output;
};

int Disconnect(DisconnectWords const & words) {
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  desktop::Hub(*session).Disconnect(ArgumentText(words.name));
  result.Print(words.output, words.project, true);
  return 0;
}

} // namespace

void AddDisconnectVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<DisconnectWords>();
  CLI::App * const verb = program.add_subcommand("disconnect", "end a connection to another project");
  AddProjectWord(*verb, words->project);
  verb->add_option("NAME", words->name, "the connection")->required();
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk disconnect receiver filter\n\n"
               "The file with the data stays, for the netlist reads it; nothing becomes stale.");
  verb->callback([&action, words] { action = [words] { return Disconnect(*words); }; });
}

} // namespace solvedesk
