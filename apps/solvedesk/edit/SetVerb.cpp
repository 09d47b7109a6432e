#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"
#include "desktop/design/Design.h"
#include "desktop/design/KnownVariable.h"
#include "desktop/design/NumberWord.h"
#include "desktop/study/VaryWord.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::ErrorKind;
using Assignments = std::vector<std::pair<AString, AString>>;

struct SetWords {
  std::string project;
  std::vector<std::string> assignments;
  std::vector<std::string> added;
  std::vector<std::string> renamed;
  std::vector<std::string> removed;
  OutputOptions output;

  bool IsEmpty() const { return assignments.empty() && added.empty() && renamed.empty() && removed.empty(); }
};

Assignments ReadPairs(std::vector<std::string> const & words, AString const & where, bool areNumbers) {
  Assignments pairs;
  for (std::string const & word : words) {
    auto const [name, value] = desktop::SplitAssignment(ArgumentText(word), where);
    bool const isTwice = std::any_of(pairs.begin(), pairs.end(), [&, &wanted = name](auto const & other) {
      return AString::MatchNoCase(other.first, wanted);
    });
    if (isTwice)
      throw desktop::Error(ErrorKind::kUsage, where + L" " + name + L": is given twice; give one value");
    pairs.emplace_back(name,
                       areNumbers ? desktop::PlainNumber(desktop::ReadNumberWord(value, where + L" " + name)) : value);
  }
  return pairs;
}

// Names first, so that values may be given under the new ones.
void ChangeAll(desktop::Session & session, SetWords const & words) {
  Assignments assignments = ReadPairs(words.assignments, L"set", true);
  Assignments const added = ReadPairs(words.added, L"set --add", true);
  Assignments const renamed = ReadPairs(words.renamed, L"set --rename", false);
  desktop::Editor & editor = session.GetEditor();
  for (auto const & [name, newName] : renamed)
    editor.RenameVariable(desktop::KnownVariable(session.GetDesign(), name, L"set --rename " + name), newName);
  for (std::string const & name : words.removed)
    editor.RemoveVariable(desktop::KnownVariable(session.GetDesign(), ArgumentText(name), L"set --remove"));
  for (auto const & [name, value] : added)
    editor.AddVariable(name, value);
  for (auto & [name, value] : assignments)
    name = desktop::KnownVariable(session.GetDesign(), name, L"set " + name);
  if (!assignments.empty())
    editor.SetVariables(assignments);
}

AString GroupName(SetWords const & words) {
  std::string name = "set";
  auto const append = [&name](char const * option, std::vector<std::string> const & texts) {
    for (std::string const & text : texts)
      name += option + text;
  };
  append(" ", words.assignments);
  append(" --add ", words.added);
  append(" --rename ", words.renamed);
  append(" --remove ", words.removed);
  return ArgumentText(name);
}

int SetVariables(SetWords const & words) {
  if (words.IsEmpty())
    throw desktop::Error(ErrorKind::kUsage, L"set: names no variable; write NAME=VALUE, or see set --help");
  ReadPairs(words.assignments, L"set", true); // Wrong words are told before the project is opened.
  auto const session = OpenForWriting(words.project);
  desktop::Editor & editor = session->GetEditor();
  EditResult const result(*session);
  long const serial = editor.GetHistory().NextSerial();
  editor.RunGroup(GroupName(words), [&] { ChangeAll(*session, words); });
  bool const isChanged = editor.GetHistory().UndosTo(serial) > 0;
  std::string text;
  nlohmann::ordered_json variables = nlohmann::ordered_json::array();
  for (Variable const * variable : session->GetDesign().GetVariables()) {
    text +=
        (text.empty() ? "" : "\n") + fmt::format("{} = {}", Utf8(variable->GetName()), Utf8(variable->GetValueText()));
    variables.push_back({{"name", Utf8(variable->GetName())}, {"value", Utf8(variable->GetValueText())}});
  }
  result.Print(words.output, words.project, isChanged, text, {{"variables", variables}});
  return 0;
}

} // namespace

void AddSetVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SetWords>();
  CLI::App * const verb = program.add_subcommand("set", "change design variables; `save` makes it permanent");
  AddProjectWord(*verb, words->project);
  verb->add_option("NAME=VALUE", words->assignments, "a variable and its new value: 0.95, 1e-12, 2.2p");
  verb->add_option("--add", words->added,
                   "NAME=VALUE: a new variable; what is solved was solved with the netlist's own value of it")
      ->allow_extra_args(false);
  verb->add_option("--rename", words->renamed, "NAME=NEWNAME: another name, in what is solved too")
      ->allow_extra_args(false);
  verb->add_option("--remove", words->removed,
                   "NAME: no variable any more; the netlist's own value counts, and what was solved at it stays valid")
      ->allow_extra_args(false);
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk set lowpass cscale=0.95 lscale=1.05\n"
               "  solvedesk set lowpass --rename cscale=c\n\n"
               "All is changed, or nothing when a word is wrong. The netlist has to know the names when it is solved.");
  verb->callback([&action, words] { action = [words] { return SetVariables(*words); }; });
}

} // namespace solvedesk
