#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

struct SetupWords {
  std::string project;
  std::string action;
  std::string name;
  std::vector<std::string> words;
  OutputOptions output;
};

// "1 GHz" in quotes is one number, as it is for `set`.
std::string OneWord(std::string word) {
  std::size_t const blank = word.find(' ');
  bool const isNumber =
      blank != std::string::npos && blank > 0 && word.find_first_not_of("0123456789.+-eE") == blank &&
      blank + 1 < word.size() &&
      word.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", blank + 1) == std::string::npos;
  return isNumber ? word.erase(blank, 1) : word;
}

AString Joined(std::vector<std::string> const & words) {
  std::string joined;
  for (std::string const & word : words)
    joined += (joined.empty() ? "" : " ") + word;
  return ArgumentText(joined);
}

[[noreturn]] void Refuse(SetupWords const & words, wchar_t const * problem) {
  throw desktop::Error(desktop::ErrorKind::kUsage,
                       L"setup " + ArgumentText(words.action) + L" " + ArgumentText(words.name) + L": " + problem);
}

// A netlist reads them as milli; whoever types a frequency means mega.
bool IsAmbiguousNumber(std::string const & word) {
  std::size_t const unit = std::min(word.find_first_not_of("0123456789.", word.find_first_not_of("-+")), word.size());
  AString const letters = ArgumentText(word.substr(unit));
  bool const isNumber = unit > 0 && word.find_first_of("0123456789") < unit;
  return isNumber && (letters.CompareNoCase(L"m") == 0 || letters.CompareNoCase(L"mhz") == 0);
}

// Also one of the numbers of "voltages=1g,2g".
bool IsAmbiguous(std::string const & word) {
  std::size_t const first = word.find('=') + 1; // 0 without one
  for (std::size_t begin = first; begin < word.size();) {
    std::size_t const end = std::min(word.find(',', begin), word.size());
    if (IsAmbiguousNumber(word.substr(begin, end - begin)))
      return true;
    begin = end + 1;
  }
  return false;
}

void RefuseAmbiguous(SetupWords const & words) {
  for (std::string const & word : words.words)
    if (IsAmbiguous(word))
      throw desktop::Error(desktop::ErrorKind::kUsage,
                           L"setup " + ArgumentText(words.action) + L" " + ArgumentText(words.name) + L": '" +
                               ArgumentText(word) +
                               L"' can be read in two ways (milli as in netlists, or mega); write "
                               L"meg, as in 10meg, or the exponent");
}

bool Change(desktop::Editor & editor, SetupWords const & words) {
  AString const name = ArgumentText(words.name);
  AString const rest = Joined(words.words);
  if ((words.action == "delete" || words.action == "invalidate") && !rest.empty())
    Refuse(words, L"takes no words behind the name");
  if (words.action == "add" || words.action == "edit")
    RefuseAmbiguous(words);
  if (words.action == "add")
    editor.AddSetup(name, rest);
  else if (words.action == "edit")
    return editor.EditSetup(name, rest);
  else if (words.action == "rename")
    return words.words.size() == 1 ? editor.RenameSetup(name, rest)
                                   : (Refuse(words, L"takes the new name, as one word; write it in quotes"), false);
  else if (words.action == "delete")
    editor.DeleteSetup(name);
  else if (name.find(L':') != AString::npos)
    editor.InvalidateSolution(name);
  else
    editor.InvalidateSetup(name);
  return true;
}

int ChangeSetup(SetupWords words) {
  if (words.action == "add" || words.action == "edit")
    std::transform(words.words.begin(), words.words.end(), words.words.begin(), OneWord);
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  bool const isChanged = Change(session->GetEditor(), words);
  result.Print(words.output, words.project, isChanged, "the setup is like that already",
               {{"action", words.action}, {"setup", words.name}});
  return 0;
}

} // namespace

void AddSetupVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<SetupWords>();
  CLI::App * const verb = program.add_subcommand("setup", "add, edit, rename, delete or invalidate a setup");
  AddProjectWord(*verb, words->project);
  verb->add_option("ACTION", words->action, "add, edit, rename, delete or invalidate")
      ->required()
      ->check(CLI::IsMember({"add", "edit", "rename", "delete", "invalidate"}));
  verb->add_option("NAME", words->name, "the setup; to invalidate one solution alone, 'SETUP : SOLUTION'")->required();
  verb->add_option("WORDS", words->words,
                   "add, edit: what it solves, as in a .sp line, or the settings of a solver file, as "
                   "in steps=100; rename: the new name");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk setup lowpass add Fine lin 1001 10meg 2g\n"
               "  solvedesk setup lowpass edit Fine dec 50 1meg 2g\n"
               "  solvedesk setup lowpass rename Fine Wide\n"
               "  solvedesk setup lowpass invalidate Wide\n"
               "  solvedesk setup lowpass delete Wide\n\n"
               "An edit makes what the setup solved stale; one that leads back to what it was makes that valid again.");
  verb->callback([&action, words] { action = [words] { return ChangeSetup(*words); }; });
}

} // namespace solvedesk
