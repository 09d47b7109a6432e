#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/project/Attachments.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct AttachmentsWords {
  std::string project;
  OutputOptions output;
};

char const * StateOf(desktop::Attachment const & attachment) {
  return attachment.isMissing    ? "missing"
         : attachment.isDetached ? "detached"
         : attachment.isSaved    ? "saved"
                                 : "unsaved";
}

int List(AttachmentsWords const & words) {
  auto const session = OpenForReading(words.project);
  std::string text;
  auto json = nlohmann::ordered_json::array();
  for (desktop::Attachment const & attachment : desktop::Attachments(*session).List()) {
    std::string const path = Utf8(attachment.path.FilePath());
    text += fmt::format("{:<8}  {:>10}  {}  {}\n", StateOf(attachment), attachment.size, Utf8(attachment.name), path);
    json.push_back({{"name", Utf8(attachment.name)},
                    {"size", attachment.size},
                    {"saved", attachment.isSaved},
                    {"detached", attachment.isDetached},
                    {"missing", attachment.isMissing},
                    {"path", path}});
  }
  PrintResult(words.output, text.empty() ? "no attachments\n" : text,
              {{"project", Utf8(ProjectPath(words.project))}, {"attachments", json}});
  return 0;
}

} // namespace

void AddAttachmentsVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<AttachmentsWords>();
  CLI::App * const verb = program.add_subcommand("attachments", "list the files that were attached to the project");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Example:\n  solvedesk attachments lowpass --json\n\n"
      "Tells of each file whether it is saved, its size in bytes, its name, and where its copy lies. One that\n"
      "was detached stays until the next save; a missing one was taken away by other means.");
  verb->callback([&action, words] { action = [words] { return List(*words); }; });
}

} // namespace solvedesk
