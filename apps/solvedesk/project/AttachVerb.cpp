#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/project/Attachments.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct AttachWords {
  std::string project;
  std::string file;
  std::string name;
  OutputOptions output;
};

// A folder alone keeps the file's own name.
AString NameOf(AttachWords const & words) {
  AString const own = LongFileName(ArgumentText(words.file)).NameAndExtension();
  AString const name = ArgumentText(words.name);
  return name.empty() ? own : name.EndsWith(L"/") ? name + own : name;
}

int Attach(AttachWords const & words) {
  auto const session = OpenForWriting(words.project);
  auto const attachment = desktop::Attachments(*session).Attach(LongFileName(ArgumentText(words.file)), NameOf(words));
  std::string const name = Utf8(attachment.name);
  std::string const path = Utf8(ProjectPath(words.project));
  PrintResult(
      words.output, fmt::format("{}: attached {}; not saved\n", path, name),
      {{"project", path}, {"name", name}, {"path", Utf8(attachment.path.FilePath())}, {"size", attachment.size}});
  return 0;
}

} // namespace

void AddAttachVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<AttachWords>();
  CLI::App * const verb = program.add_subcommand("attach", "keep a copy of a file with the project");
  AddProjectWord(*verb, words->project);
  verb->add_option("FILE", words->file, "the file; it stays where it is")->required();
  verb->add_option("--to", words->name, "its name in the project, FOLDER/NAME; FOLDER/ keeps the file's own name");
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk attach lowpass datasheet.pdf --to parts/inductor.pdf\n\n"
               "The copy is permanent once the project is saved; discard takes it back.");
  verb->callback([&action, words] { action = [words] { return Attach(*words); }; });
}

} // namespace solvedesk
