#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/hub/Hub.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

struct RefreshWords {
  std::string project;
  std::string name;
  OutputOptions output;
};

int Refresh(RefreshWords const & words) {
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  std::vector<AString> notices;
  auto const refreshed = desktop::Hub(*session).Refresh(ArgumentText(words.name), notices);
  nlohmann::ordered_json connections = nlohmann::ordered_json::array();
  for (auto const & connection : refreshed)
    connections.push_back({{"name", Utf8(connection.name)}, {"changed", connection.isChanged}});
  nlohmann::ordered_json notes = nlohmann::ordered_json::array();
  for (AString const & notice : notices) {
    PrintMessage("note: " + Utf8(notice));
    notes.push_back(Utf8(notice));
  }
  bool const isChanged =
      std::any_of(refreshed.begin(), refreshed.end(), [](auto const & connection) { return connection.isChanged; });
  std::string const nothing =
      refreshed.empty() ? "the project has no connections" : "every connection holds what its source has";
  result.Print(words.output, words.project, isChanged, nothing, {{"connections", connections}, {"notes", notes}});
  return 0;
}

} // namespace

void AddRefreshVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<RefreshWords>();
  CLI::App * const verb =
      program.add_subcommand("refresh", "take newer data of the projects that this one is connected to");
  AddProjectWord(*verb, words->project);
  verb->add_option("NAME", words->name, "a connection; all of them without this");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n  solvedesk refresh receiver\n  solvedesk refresh receiver filter\n\n"
               "Other numbers make what was solved with them stale; `info --why` tells so, and `solve --stale` solves\n"
               "it anew. All connections are refreshed, or none is.");
  verb->callback([&action, words] { action = [words] { return Refresh(*words); }; });
}

} // namespace solvedesk
