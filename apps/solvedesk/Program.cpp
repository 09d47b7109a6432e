#include "apps/solvedesk/Program.h"

#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <sstream>

namespace solvedesk {
namespace {

char const * const kVersion = "solvedesk 0.1.0";

char const * const kHelpEnd = R"(Examples:
  solvedesk new lowpass --netlist examples/lowpass/lowpass.cir
  solvedesk solve lowpass --vary cscale=0.9:1.1:0.05 --vary lscale=0.9:1.1:0.05
  solvedesk info lowpass
  solvedesk touchstone lowpass --to results

Exit codes:
  0 done                          5 at least one point could not be solved
  1 failed                        6 another process has the project
  2 wrong words or values         7 results could not be stored
  3 project missing or damaged    8 stopped by the user; what was solved is kept
  4 netlist, solver file missing or wrong

Every verb has its own help: solvedesk solve --help)";

char const * const kShellHelpEnd = R"(Examples:
  set cscale=0.95
  solve
  undo
  info --why

Every verb has its own help: solve --help.  'exit', 'quit' or the end of the input ends the shell.)";

// The example's call as it is typed in a shell: "solvedesk set lowpass cscale=0.95" as "set cscale=0.95".
std::string ExampleInShell(std::string line) {
  std::string const program = "solvedesk ", project = " lowpass";
  for (std::size_t at = line.find(program); at != std::string::npos; at = line.find(program, at)) {
    std::size_t const verb = at + program.size();
    std::size_t const end = std::min(line.find_first_not_of("abcdefghijklmnopqrstuvwxyz", verb), line.size());
    if (line.compare(end, project.size(), project) == 0)
      line.erase(end, project.size()).erase(at, program.size());
    else
      at = verb;
  }
  return line;
}

// Of a verb as it is typed in a shell: without the project's name.
std::string WithoutProject(std::string const & help) {
  constexpr std::size_t kDescriptionColumn = 20;
  std::istringstream lines(help);
  std::string text, line;
  bool isOfProject = false;
  while (std::getline(lines, line)) {
    std::size_t const indent = std::min(line.find_first_not_of(' '), line.size());
    isOfProject =
        (isOfProject && indent >= kDescriptionColumn) || (indent > 0 && line.compare(indent, 8, "PROJECT ") == 0);
    if (isOfProject)
      continue;
    std::size_t const word = (line + ' ').find(" PROJECT ");
    if (word != std::string::npos)
      line.erase(word, std::string(" PROJECT").size());
    text += ExampleInShell(line) + '\n';
  }
  return text;
}

// "help", "help VERB".
void TakeHelp(std::vector<std::string> & words) {
  if (words.empty() || words[0] != "help" || words.size() > 2)
    return;
  words.erase(words.begin());
  words.push_back("--help");
}

} // namespace

Program::Program(Place place, std::string const & project)
    : m_place(place), m_project(project),
      m_app(std::make_unique<CLI::App>(
          "Solves circuits, or whatever any program solves, over design variables, and keeps what was solved.",
          place == Place::kShell ? "" : "solvedesk")) {
  if (m_place == Place::kCommandLine)
    m_app->set_version_flag("--version", kVersion, "print the version and exit");
  m_app->footer(m_place == Place::kShell ? kShellHelpEnd : kHelpEnd);
  m_app->require_subcommand(1);
  AddVerbs();
}

Program::~Program() = default;

void Program::AddVerbs() {
  if (m_place == Place::kCommandLine)
    AddNewVerb(*m_app, m_action);
  AddInfoVerb(*m_app, m_action);
  AddSetVerb(*m_app, m_action);
  AddReloadVerb(*m_app, m_action);
  AddSetupVerb(*m_app, m_action);
  AddDeleteVerb(*m_app, m_action);
  AddSolveVerb(*m_app, m_action);
  if (m_place == Place::kCommandLine)
    AddWatchVerb(*m_app, m_action);
  AddConvergenceVerb(*m_app, m_action);
  AddProfileVerb(*m_app, m_action);
  AddSaveVerb(*m_app, m_action);
  AddDiscardVerb(*m_app, m_action);
  AddValuesVerb(*m_app, m_action);
  AddReportVerb(*m_app, m_action);
  AddVarVerb(*m_app, m_action);
  AddEvalVerb(*m_app, m_action);
  AddPortVerb(*m_app, m_action);
  AddTouchstoneVerb(*m_app, m_action);
  AddImportVerb(*m_app, m_action);
  AddCompareVerb(*m_app, m_action);
  AddExportVerb(*m_app, m_action);
  AddAttachVerb(*m_app, m_action);
  AddAttachmentsVerb(*m_app, m_action);
  AddDetachVerb(*m_app, m_action);
  AddConnectVerb(*m_app, m_action);
  AddConnectionsVerb(*m_app, m_action);
  AddRefreshVerb(*m_app, m_action);
  AddDisconnectVerb(*m_app, m_action);
  if (m_place == Place::kShell) {
    AddUndoVerb(*m_app, m_action);
    AddRedoVerb(*m_app, m_action);
    AddHistoryVerb(*m_app, m_action);
    return;
  }
  AddFunctionsVerb(*m_app, m_action);
  AddRecoverVerb(*m_app, m_action);
  AddShellVerb(*m_app, m_action);
  AddWorkerVerb(*m_app, m_action);
}

// What is typed by habit.
void Program::RefuseOwnName(std::vector<std::string> const & words) const {
  std::string const extension = ".sproject";
  auto const bare = [&](std::string const & path) {
    return path.ends_with(extension) ? path.substr(0, path.size() - extension.size()) : path;
  };
  if (words.size() > 1 && bare(words[1]) == bare(m_project))
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         text::FromUtf8(words[0] + ": verbs of a shell take no project; leave '" + words[1] + "' out"));
}

void Program::PrintHelp(CLI::ParseError const & asked) {
  std::ostringstream text;
  m_app->exit(asked, text);
  std::cout << (m_place == Place::kShell ? WithoutProject(text.str()) : text.str());
}

std::string Program::HelpCommand() const {
  std::string const program = m_place == Place::kShell ? "" : "solvedesk ";
  for (CLI::App const * verb : m_app->get_subcommands())
    return program + verb->get_name() + " --help";
  return program + "--help";
}

std::string Program::VerbNames() const {
  std::string names;
  for (CLI::App const * verb : m_app->get_subcommands([](CLI::App const * any) { return !any->get_group().empty(); }))
    names += (names.empty() ? "" : ", ") + verb->get_name();
  return m_place == Place::kShell ? names + ", help, exit" : names;
}

namespace {

// "Could not convert: --jobs = x".
std::string ProblemOf(CLI::ConversionError const & error) {
  std::string const text = error.what();
  std::string const head = "Could not convert: ";
  std::size_t const middle = text.find(" = ");
  if (!text.starts_with(head) || middle == std::string::npos)
    return text;
  return text.substr(head.size(), middle - head.size()) + " " + text.substr(middle + 3) + ": takes a number";
}

} // namespace

bool Program::Parse(std::vector<std::string> words) {
  using desktop::Error;
  TakeHelp(words);
  // The first word is the verb; a wrong one is named.
  bool const isVerb = !words.empty() && !words[0].starts_with("-");
  auto const isNamed = [&words](CLI::App const * verb) { return verb->get_name() == words[0]; };
  if (isVerb && m_app->get_subcommands(isNamed).empty())
    throw Error(desktop::ErrorKind::kUsage,
                text::FromUtf8("'" + words[0] + "': there is no such verb; the verbs are " + VerbNames() + "; see " +
                               (m_place == Place::kShell ? "--help" : "solvedesk --help")));
  // Verbs take a project's name; in a shell no line bears one.
  if (isVerb && m_place == Place::kShell)
    RefuseOwnName(words);
  if (isVerb && m_place == Place::kShell)
    words.insert(words.begin() + 1, m_project);
  try {
    std::reverse(words.begin(), words.end());
    m_app->parse(std::move(words));
  } catch (CLI::ConversionError const & error) {
    throw Error(desktop::ErrorKind::kUsage, text::FromUtf8(ProblemOf(error) + "; see " + HelpCommand()));
  } catch (CLI::ParseError const & error) {
    if (error.get_exit_code() != 0)
      throw Error(desktop::ErrorKind::kUsage, text::FromUtf8(std::string(error.what()) + "; see " + HelpCommand()));
    PrintHelp(error);
    return false;
  }
  return true;
}

} // namespace solvedesk
