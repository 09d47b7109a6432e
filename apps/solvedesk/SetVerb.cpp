#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/NumberWord.h"
#include "apps/solvedesk/OpenProject.h"
#include "apps/solvedesk/VaryGrid.h"
#include "apps/solvedesk/Verbs.h"
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using Assignments = std::vector<std::pair<AString, AString>>;

struct SetWords {
  std::string project;
  std::vector<std::string> assignments;
  OutputOptions output;
};

Assignments ReadAssignments(std::vector<std::string> const & words) {
  Assignments assignments;
  for (std::string const & word : words) {
    auto const [name, value] = SplitAssignment(ArgumentText(word), L"set");
    bool const isTwice = std::any_of(assignments.begin(), assignments.end(), [&, &wanted = name](auto const & other) {
      return AString::MatchNoCase(other.first, wanted);
    });
    if (isTwice)
      throw desktop::Error(desktop::ErrorKind::kUsage, L"set " + name + L": is given twice; give one value");
    assignments.emplace_back(name, PlainNumber(ReadNumberWord(value, L"set " + name)));
  }
  return assignments;
}

int SetVariables(SetWords const & words) {
  Assignments assignments = ReadAssignments(words.assignments);
  auto const session = OpenForWriting(words.project);
  for (auto & [name, value] : assignments)
    name = KnownVariable(session->GetDesign(), name, L"set " + name);
  session->SetVariables(assignments);
  std::string text;
  nlohmann::ordered_json variables = nlohmann::ordered_json::array();
  for (Variable const * variable : session->GetDesign().GetVariables()) {
    text += fmt::format("{} = {}\n", Utf8(variable->GetName()), Utf8(variable->GetValueText()));
    variables.push_back({{"name", Utf8(variable->GetName())}, {"value", Utf8(variable->GetValueText())}});
  }
  PrintResult(words.output, text,
              {{"project", Utf8(ProjectPath(words.project))},
               {"variables", variables},
               {"unsaved_changes", session->HasUnsavedChanges()}});
  return 0;
}

} // namespace

void AddSetVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SetWords>();
  CLI::App * const verb = program.add_subcommand("set", "change design variables; `save` makes it permanent");
  AddProjectWord(*verb, words->project);
  verb->add_option("NAME=VALUE", words->assignments, "a variable and its new value: 0.95, 1e-12, 2.2p")->required();
  AddOutputOptions(*verb, words->output);
  verb->footer("Example:\n  solvedesk set lowpass cscale=0.95 lscale=1.05");
  verb->callback([&action, words] { action = [words] { return SetVariables(*words); }; });
}

} // namespace solvedesk
