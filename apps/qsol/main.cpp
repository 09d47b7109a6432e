// qsol: looks into solution libraries.  Nothing is written, locked or taken over but by the two verbs that say so.

#include "apps/qsol/Failure.h"
#include "apps/qsol/Message.h"
#include "apps/qsol/Output.h"
#include "apps/qsol/Text.h"
#include "apps/qsol/Verbs.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ostream>

#include <unistd.h>

namespace {

char const * const kVersion = "qsol 0.1.0";

char const * const kHelpEnd = R"(Examples:
  qsol list amp.qsol
  qsol show amp.qsol SolutionBlock7
  qsol stats amp.qsol --private
  qsol verify amp.qsol
  qsol diff amp.qsol backup/amp.qsol
  qsol follow amp.qsol --json
  qsol extract amp.qsol --kind data --to blocks
  qsol compact amp.qsol

FILE is a library, amp.qsol. Work that is not committed stands beside it in amp.qsol_priv, and --private shows it too,
while another process is writing it as well. Only compact and convert write to a library, and lock it; all others
leave it as it is.

Exit codes:
  0 done                                       3 missing, or can't be read
  1 damaged, unlike, refused, or not there     4 no block library
  2 wrong words or values                      5 written in a later format

Every verb has its own help: qsol list --help)";

void PrintMessage(std::string const & text) { qsol::WriteMessage(STDERR_FILENO, text); }

std::string HelpCommand(CLI::App const & program) {
  for (CLI::App const * verb : program.get_subcommands())
    return "qsol " + verb->get_name() + " --help";
  return "qsol --help";
}

std::string VerbNames(CLI::App const & program) {
  std::string names;
  for (CLI::App const * verb : program.get_subcommands([](CLI::App const *) { return true; }))
    names += (names.empty() ? "" : ", ") + verb->get_name();
  return names;
}

// "Could not convert: --relative = x".
std::string ProblemOf(CLI::ParseError const & error) {
  std::string const text = error.what();
  std::string const head = "Could not convert: ";
  std::size_t const middle = text.find(" = ");
  if (!text.starts_with(head) || middle == std::string::npos)
    return text;
  return text.substr(head.size(), middle - head.size()) + " " + text.substr(middle + 3) + ": takes a number";
}

// The first word is the verb; a wrong one is named.
bool IsWrongVerb(CLI::App const & program, int count, char ** words) {
  auto const isNamed = [words](CLI::App const * verb) { return verb->get_name() == words[1]; };
  return count > 1 && *words[1] != '-' && program.get_subcommands(isNamed).empty();
}

int Perform(qsol::Action const & action) {
  qsol::OutputBuffer buffer(STDOUT_FILENO);
  std::ostream out(&buffer);
  int status = 0;
  try {
    status = action({out, PrintMessage});
  } catch (...) {
    out.flush();
    throw;
  }
  out.flush();
  // A reader that has seen enough is no failure.
  if (buffer.Error() == 0 || buffer.Error() == EPIPE)
    return status;
  throw qsol::Failure(qsol::Exit::Failed, fmt::format("standard output: can't be written: {}; check where it leads",
                                                      std::strerror(buffer.Error())));
}

int Run(int count, char ** words) {
  CLI::App program("Looks into the solution libraries of projects.", "qsol");
  program.set_version_flag("--version", kVersion, "print the version and exit");
  program.footer(kHelpEnd);
  program.require_subcommand(1);
  qsol::Action action;
  qsol::AddListVerb(program, action);
  qsol::AddShowVerb(program, action);
  qsol::AddStatsVerb(program, action);
  qsol::AddVerifyVerb(program, action);
  qsol::AddDiffVerb(program, action);
  qsol::AddFollowVerb(program, action);
  qsol::AddExtractVerb(program, action);
  qsol::AddCompactVerb(program, action);
  qsol::AddConvertVerb(program, action);
  if (IsWrongVerb(program, count, words)) {
    PrintMessage(std::string("'") + words[1] + "': there is no such verb; the verbs are " + VerbNames(program) +
                 "; see qsol --help");
    return static_cast<int>(qsol::Exit::Usage);
  }
  try {
    program.parse(count, words);
  } catch (CLI::ParseError const & error) {
    if (error.get_exit_code() == 0)
      return program.exit(error); // help and version
    PrintMessage(ProblemOf(error) + "; see " + HelpCommand(program));
    return static_cast<int>(qsol::Exit::Usage);
  }
  return Perform(action);
}

} // namespace

int main(int count, char ** words) {
  std::signal(SIGPIPE, SIG_IGN);
  qsol::KeepStandardDescriptors();
  try {
    return Run(count, words);
  } catch (qsol::Failure const & failure) {
    PrintMessage(failure.what());
    return static_cast<int>(failure.Code());
  } catch (std::bad_alloc const &) {
    PrintMessage("out of memory; ask for fewer blocks at a time");
  } catch (std::exception const & error) {
    PrintMessage(std::string("unexpected failure: ") + error.what());
  }
  return static_cast<int>(qsol::Exit::Failed);
}
