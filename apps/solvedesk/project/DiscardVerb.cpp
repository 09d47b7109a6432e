#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <vector>

namespace solvedesk {
namespace {

struct DiscardWords {
  std::string project;
  OutputOptions output;
};

std::string TextOf(desktop::UnsavedWork const & dropped) {
  if (!dropped.design && !dropped.results && dropped.files == 0 && !dropped.managedFiles)
    return "nothing to discard";
  // An edit enters definitions into the library too, and a deletion that it is one.
  std::vector<std::string> parts;
  if (dropped.design)
    parts.emplace_back("changes of the design");
  if (dropped.points > 0)
    parts.push_back(Count(dropped.points, "unsaved point"));
  if (dropped.files > 0)
    parts.push_back(Count(dropped.files, "unsaved result file"));
  if (dropped.managedFiles)
    parts.emplace_back("unsaved changes of the attached files");
  if (parts.empty())
    parts.emplace_back("unsaved changes of the library; no solved point was unsaved");
  return fmt::format("discarded {}", fmt::join(parts, " and "));
}

int Discard(DiscardWords const & words) {
  auto const session = OpenForWriting(words.project, desktop::Session::LeftWork::kDiscard);
  desktop::UnsavedWork const & dropped = session->GetDropped();
  std::string const path = Utf8(ProjectPath(words.project));
  PrintResult(words.output, fmt::format("{}: {}\n", path, TextOf(dropped)),
              {{"project", path},
               {"discarded", dropped.design || dropped.results || dropped.files > 0 || dropped.managedFiles},
               {"design_changes", dropped.design},
               {"points", dropped.points},
               {"files", dropped.files},
               {"attachments", dropped.managedFiles}});
  return 0;
}

} // namespace

void AddDiscardVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<DiscardWords>();
  CLI::App * const verb = program.add_subcommand("discard", "go back to what was saved last; unsaved work is dropped");
  AddProjectWord(*verb, words->project);
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Example:\n  solvedesk discard lowpass\n\n"
      "Drops unsaved changes of the design and unsaved results, also those that a crash left, taken over or not.\n"
      "What is saved stays, and what unsaved work did to it is taken back.");
  verb->callback([&action, words] { action = [words] { return Discard(*words); }; });
}

} // namespace solvedesk
