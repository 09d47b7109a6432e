#include "apps/solvedesk/console/TextTable.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductSolutionManager.h"
#include "plotkit/outputvariable/OutputVariable.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::Error;
using desktop::ErrorKind;

struct VarWords {
  std::string project;
  std::string action;
  std::string word;
  OutputOptions output;
};

// The expression may hold further equals signs.
std::pair<AString, AString> Split(VarWords const & words) {
  AString const word = ArgumentText(words.word);
  std::size_t const equals = word.find(L'=');
  AString const where = L"var " + ArgumentText(words.action);
  if (equals == AString::npos)
    throw Error(ErrorKind::kUsage, where + L": takes NAME=EXPRESSION, as in gain=dB(S(2,1)); write it in quotes");
  std::pair<AString, AString> const pair(word.substr(0, equals).Trimmed(), word.substr(equals + 1).Trimmed());
  if (pair.second.empty())
    throw Error(ErrorKind::kUsage, where + L" " + pair.first + L": has no expression behind the equals sign");
  return pair;
}

int List(VarWords const & words) {
  if (!words.word.empty())
    throw Error(ErrorKind::kUsage, L"var list: takes no name");
  auto const session = OpenForReading(words.project);
  std::vector<OutputVariable *> variables;
  session->GetManager().GetOutputVariables(variables);
  std::sort(variables.begin(), variables.end(), [](OutputVariable const * a, OutputVariable const * b) {
    return a->GetName().CompareNoCase(b->GetName()) < 0;
  });
  TextTable table(3);
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (OutputVariable const * const variable : variables) {
    table.Add({Utf8(variable->GetName()), "=", Utf8(variable->GetValueBaseText())});
    list.push_back({{"name", Utf8(variable->GetName())}, {"expression", Utf8(variable->GetValueBaseText())}});
  }
  PrintResult(words.output, list.empty() ? "no output variables; `var add` makes one\n" : table.Text(""),
              {{"variables", list}});
  return 0;
}

int RunVar(VarWords const & words) {
  if (words.action == "list")
    return List(words);
  if (words.word.empty())
    throw Error(ErrorKind::kUsage, L"var " + ArgumentText(words.action) + L": takes the name of an output variable");
  auto const [name, expression] =
      words.action == "delete" ? std::pair<AString, AString>(ArgumentText(words.word), AString()) : Split(words);
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  desktop::Editor & editor = session->GetEditor();
  bool isChanged = true;
  if (words.action == "add")
    editor.AddOutputVariable(name, expression);
  else if (words.action == "edit")
    isChanged = editor.EditOutputVariable(name, expression);
  else
    editor.DeleteOutputVariable(name);
  result.Print(words.output, words.project, isChanged, "the output variable is like that already",
               {{"action", words.action}, {"variable", Utf8(name)}});
  return 0;
}

// Of the action that help is asked for.
std::string HelpEnd(std::string const & action) {
  if (action == "add" || action == "edit")
    return "var " + action +
           " NAME=EXPRESSION: write it in quotes.  The expression has to make sense now, and may not\n"
           "lead back to its own name.\n\nExample:\n  solvedesk var lowpass " +
           action + " \"gain=dB(S(2,1))\"";
  if (action == "delete")
    return "var delete NAME: refused while a report or another output variable uses it.\n\nExample:\n"
           "  solvedesk var lowpass delete gain";
  if (action == "list")
    return "var list: all output variables with their expressions.\n\nExample:\n  solvedesk var lowpass list --json";
  return "Examples:\n"
         "  solvedesk var lowpass add \"gain=dB(S(2,1))\"\n"
         "  solvedesk var lowpass edit \"gain=dB(S(2,1))+20\"\n"
         "  solvedesk var lowpass delete gain\n\n"
         "Reports, `eval` and other output variables use the name as they use a quantity. One that is in use\n"
         "can't be deleted, and none may lead back to itself. `var PROJECT ACTION --help` tells of one action.";
}

} // namespace

void AddVarVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<VarWords>();
  CLI::App * const verb = program.add_subcommand("var", "output variables: named expressions over solved quantities");
  AddProjectWord(*verb, words->project);
  verb->add_option("ACTION", words->action, "add, edit, delete or list")
      ->required()
      ->check(CLI::IsMember({"add", "edit", "delete", "list"}));
  verb->add_option("NAME=EXPRESSION", words->word, "add, edit: the variable and what it is; delete: the name alone");
  AddOutputOptions(*verb, words->output);
  verb->footer([words] { return HelpEnd(words->action); });
  verb->callback([&action, words] { action = [words] { return RunVar(*words); }; });
}

} // namespace solvedesk
