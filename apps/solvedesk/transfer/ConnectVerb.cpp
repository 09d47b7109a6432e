#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/hub/Hub.h"
#include "desktop/project/Project.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

struct ConnectWords {
  std::string project;
  std::string source;
  std::string setup;
  std::string variation;
  std::string name;
  OutputOptions output;
};

bool IsRead(desktop::Project const & project, desktop::Connection const & connection) {
  auto const & files = project.GetSourceFiles();
  return std::any_of(files.begin(), files.end(), [&](auto const & file) { return file.path == connection.file.path; });
}

int Connect(ConnectWords const & words) {
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  std::vector<AString> notices;
  auto const connection = desktop::Hub(*session).Connect(
      {ArgumentText(words.name), ArgumentText(words.source), ArgumentText(words.setup), ArgumentText(words.variation)},
      notices);
  desktop::Project const & project = session->GetProject();
  LongFileName const file = connection.file.PathIn(project.GetFolder());
  bool const isRead = IsRead(project, connection);
  if (!isRead)
    notices.push_back(project.GetSourceFile().NameAndExtension() + L": no line reads " + file.NameAndExtension() +
                      L" yet; write one such as 'N1 NODE NODE " + file.NameAndExtension() + L"', and reload");
  nlohmann::ordered_json notes = nlohmann::ordered_json::array();
  for (AString const & notice : notices) {
    PrintMessage("note: " + Utf8(notice));
    notes.push_back(Utf8(notice));
  }
  result.Print(words.output, words.project, true, "",
               {{"connection", Utf8(connection.name)},
                {"guid", Utf8(connection.identifier.GetGuid())},
                {"setup", Utf8(connection.setup)},
                {"file", Utf8(file.FilePath())},
                {"used", isRead},
                {"notes", notes}});
  return 0;
}

} // namespace

void AddConnectVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ConnectWords>();
  CLI::App * const verb =
      program.add_subcommand("connect", "make the S-parameters of another project a part of this one");
  AddProjectWord(*verb, words->project);
  verb->add_option("SOURCE_PROJECT", words->source, "the project file that has the data; .sproject may be left out")
      ->required();
  verb->add_option("--setup", words->setup, "the setup that solved the data; needed where the source has several");
  verb->add_option(
      "--variation", words->variation,
      "values of the source's variables; those that are not named stand as they do there, also at a later refresh");
  verb->add_option("--as", words->name, "the connection's name: letters, digits, '_' and '-'")->required();
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Examples:\n"
      "  solvedesk connect receiver lowpass --as filter\n"
      "  solvedesk connect receiver lowpass --setup SParameters1 --variation \"cscale=1; lscale=1\" --as filter\n\n"
      "The data, as the source saved it last, becomes filter.s2p beside the netlist, which reads it by a line\n"
      "such as 'N1 in out filter.s2p'. `refresh` takes newer data, `connections` tells whether there is any.");
  verb->callback([&action, words] { action = [words] { return Connect(*words); }; });
}

} // namespace solvedesk
