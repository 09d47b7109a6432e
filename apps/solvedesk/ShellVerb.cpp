#include "apps/solvedesk/Program.h"
#include "apps/solvedesk/ScriptLine.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/Error.h"

#include "apps/solvedesk/console/Console.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include <unistd.h>

namespace solvedesk {
namespace {

using desktop::ErrorKind;
using Json = nlohmann::ordered_json;

struct ShellWords {
  std::string project;
  std::string script;
  bool keepGoing = false;
  bool json = false;
};

bool IsEnd(std::vector<std::string> const & words) {
  if (words.empty() || (words[0] != "exit" && words[0] != "quit"))
    return false;
  if (words.size() > 1)
    throw desktop::Error(ErrorKind::kUsage, ArgumentText(words[0]) + L": takes no words; write it alone");
  return true;
}

/// Carries out lines on the project that is open.
class Shell {
public:
  Shell(ShellWords const & words, std::string const & name) : m_words(words), m_name(name) {}

  /// Gives the exit code of the first line that failed.
  int Run(std::istream & lines, bool isInteractive) {
    std::string line;
    for (int number = 1; !m_isEnded && ReadLine(lines, line, isInteractive); ++number) {
      int const status = RunLine(line, number);
      m_status = m_status == 0 ? status : m_status;
      if (status != 0 && !isInteractive && !m_words.keepGoing)
        break;
    }
    return isInteractive ? 0 : m_status;
  }

private:
  static bool ReadLine(std::istream & lines, std::string & line, bool isInteractive) {
    if (isInteractive)
      std::cerr << "solvedesk> " << std::flush;
    return static_cast<bool>(std::getline(lines, line));
  }

  int RunLine(std::string const & line, int number) {
    Json result;
    std::string error;
    int status = 0;
    {
      LineOutput::Receiver receiver;
      if (m_words.json)
        receiver = [&result](std::string const &, Json const & document) { result = document; };
      LineOutput const output(fmt::format("{}:{}", m_name, number), receiver);
      status = RunWords(line, error);
    }
    if (m_words.json && (!result.is_null() || status != 0)) {
      Json whole{{"schema_version", 1}, {"line", number}, {"exit_code", status}};
      if (!result.is_null())
        whole["result"] = result;
      if (!error.empty())
        whole["error"] = error;
      PrintEvent(whole);
    } else {
      FinishOutput();
    }
    return status;
  }

  int RunWords(std::string const & line, std::string & error) {
    try {
      auto const words = WordsOfLine(line);
      m_isEnded = IsEnd(words);
      Program program(Program::Place::kShell, m_words.project);
      return words.empty() || m_isEnded || !program.Parse(words) ? 0 : program.Run();
    } catch (desktop::Error const & refused) {
      error = refused.what();
      PrintMessage(error);
      return static_cast<int>(refused.Kind());
    }
  }

  ShellWords const & m_words;
  std::string m_name;
  int m_status = 0;
  bool m_isEnded = false;
};

std::ifstream OpenScript(std::string const & path) {
  errno = 0;
  std::ifstream script(path);
  if (!script || script.peek() == std::ifstream::traits_type::eof())
    script.clear(errno == 0 ? std::ios::goodbit : std::ios::failbit);
  if (!script)
    throw desktop::Error(ErrorKind::kUsage, ArgumentText(path) + L": the script can't be read (" +
                                                ArgumentText(std::strerror(errno)) + L"); check its name");
  return script;
}

int RunShell(ShellWords const & words) {
  std::ifstream script;
  if (!words.script.empty())
    script = OpenScript(words.script);
  auto const session = OpenForWriting(words.project);
  SharedSession const shared(session);
  bool const isInteractive = words.script.empty() && isatty(STDIN_FILENO);
  Shell shell(words, words.script.empty() ? "line" : words.script);
  int const status = shell.Run(words.script.empty() ? std::cin : script, isInteractive);
  if (session->HasUnsavedChanges())
    PrintMessage(words.project + ": has unsaved changes, which the next session goes on with; `save` makes them "
                                 "permanent");
  return status;
}

} // namespace

void AddShellVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ShellWords>();
  CLI::App * const verb = program.add_subcommand("shell", "verbs line by line in one process, with undo and redo");
  AddProjectWord(*verb, words->project);
  verb->add_option("SCRIPT", words->script, "a file of lines; without it they come from standard input");
  verb->add_flag("--keep-going", words->keepGoing, "go on after a line that failed");
  verb->add_flag("--json", words->json, "print one JSON document on one line for each line");
  verb->footer("Example:\n"
               "  solvedesk shell lowpass study.txt\n"
               "with the lines\n"
               "  set cscale=0.95        # a verb without the project's name\n"
               "  solve --no-save\n"
               "  undo\n"
               "  info --why\n\n"
               "undo, redo and history exist here alone. A line that fails ends the script with its exit code, and is\n"
               "told with its number; at a terminal the shell goes on.");
  verb->callback([&action, words] { action = [words] { return RunShell(*words); }; });
}

} // namespace solvedesk
