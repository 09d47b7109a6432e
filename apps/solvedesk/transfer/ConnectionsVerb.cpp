#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/hub/Hub.h"
#include "desktop/project/Project.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct ConnectionsWords {
  std::string project;
  OutputOptions output;
};

char const * StateText(desktop::ConnectionState::Kind kind) {
  using Kind = desktop::ConnectionState::Kind;
  switch (kind) {
  case Kind::kCurrent:
    return "current";
  case Kind::kSourceChanged:
    return "source changed";
  case Kind::kSourceMissing:
    return "source missing";
  default:
    return "file changed";
  }
}

int List(ConnectionsWords const & words) {
  auto const session = OpenForReading(words.project);
  LongFileName const folder = session->GetProject().GetFolder();
  std::string text;
  auto json = nlohmann::ordered_json::array();
  for (desktop::ConnectionState const & state : desktop::Hub(*session).States()) {
    desktop::Connection const & connection = state.connection;
    std::string const source = Utf8(connection.ProjectIn(folder).FilePath());
    std::string const point = connection.variation.empty() ? "present point" : Utf8(connection.variation);
    text += fmt::format("{}: {}{}\n  {}, {}, {}; taken {}\n", Utf8(connection.name), StateText(state.kind),
                        state.isUsed ? "" : "; the netlist does not read it", source, Utf8(connection.setup), point,
                        Utf8(connection.date));
    if (!state.why.empty())
      text += "  " + Utf8(state.why) + "\n";
    json.push_back({{"name", Utf8(connection.name)},
                    {"state", StateText(state.kind)},
                    {"why", Utf8(state.why)},
                    {"used", state.isUsed},
                    {"project", source},
                    {"setup", Utf8(connection.setup)},
                    {"variation", Utf8(connection.variation)},
                    {"taken", Utf8(connection.date)},
                    {"file", Utf8(connection.file.PathIn(folder).FilePath())},
                    {"type", Utf8(connection.identifier.GetTransferType())},
                    {"guid", Utf8(connection.identifier.GetGuid())}});
  }
  PrintResult(words.output, text.empty() ? "no connections\n" : text,
              {{"project", Utf8(ProjectPath(words.project))}, {"connections", json}});
  return 0;
}

} // namespace

void AddConnectionsVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ConnectionsWords>();
  CLI::App * const verb =
      program.add_subcommand("connections", "tell what comes from other projects, and how it stands");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk connections receiver --json\n\n"
               "States: current; source changed (it has other data, or none any more); source missing (its project\n"
               "can't be read); file changed (the data's file is gone, or was written by somebody else).");
  verb->callback([&action, words] { action = [words] { return List(*words); }; });
}

} // namespace solvedesk
