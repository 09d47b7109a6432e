#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/file/LongFileName.h"
#include "desktop/command/Editor.h"
#include "desktop/project/Session.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>

namespace solvedesk {
namespace {

struct ImportWords {
  std::string project;
  std::string file;
  std::optional<std::string> name;
  OutputOptions output;
};

AString NameOf(ImportWords const & words) {
  return ArgumentText(words.name ? *words.name : std::filesystem::path(words.file).stem().string());
}

int Import(ImportWords const & words) {
  AString const name = NameOf(words);
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  LongFileName const file(ArgumentText(words.file));
  nlohmann::ordered_json notices = nlohmann::ordered_json::array();
  for (AString const & notice : session->GetEditor().Import(file, name)) {
    PrintMessage(words.file + ": " + Utf8(notice));
    notices.push_back(Utf8(notice));
  }
  result.Print(words.output, words.project, true, std::string(),
               {{"setup", Utf8(name)}, {"file", words.file}, {"notices", notices}});
  return 0;
}

} // namespace

void AddImportVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ImportWords>();
  CLI::App * const verb =
      program.add_subcommand("import", "take a file of measured data in, as a setup that is not solved");
  AddProjectWord(*verb, words->project);
  verb->add_option("FILE", words->file, "a Touchstone file: .s1p, .s2p and so on")->required();
  verb->add_option("--name", words->name,
                   "the setup's name, the file's without its extension else; one of that name that was imported is "
                   "replaced");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk import lowpass unit7.s2p --name Measured\n"
               "  solvedesk eval lowpass \"dB(S(2,1))\" --solution Measured\n"
               "  solvedesk report lowpass add Gain --setup Measured --y \"dB(S(2,1))\"\n"
               "  solvedesk compare lowpass SParameters1 Measured\n\n"
               "The project keeps the numbers: the file may go away. `setup delete` removes them.");
  verb->callback([&action, words] { action = [words] { return Import(*words); }; });
}

} // namespace solvedesk
