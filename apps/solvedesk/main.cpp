// solvedesk: the headless desktop as a program.

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/Verbs.h"
#include "basekit/message/MessageManager.h"
#include "desktop/Error.h"
#include "desktop/KitDesktop.h"
#include "desktop/message/Catalogue.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <exception>
#include <string>

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
  4 netlist missing or wrong

Every verb has its own help: solvedesk solve --help)";

/// Tells people what the library and the desktop have to tell.
class MessagesToConsole : public IMessageListener {
public:
  void OnMessage(KelvroMessage const & message) override {
    solvedesk::PrintMessage(solvedesk::Utf8(desktop::ComposeMessage(message)));
  }
};

void AddVerbs(CLI::App & program, solvedesk::Action & action) {
  solvedesk::AddNewVerb(program, action);
  solvedesk::AddInfoVerb(program, action);
  solvedesk::AddSetVerb(program, action);
  solvedesk::AddSolveVerb(program, action);
  solvedesk::AddSaveVerb(program, action);
  solvedesk::AddDiscardVerb(program, action);
  solvedesk::AddRecoverVerb(program, action);
  solvedesk::AddTouchstoneVerb(program, action);
  solvedesk::AddWorkerVerb(program, action);
}

std::string HelpCommand(CLI::App const & program) {
  for (CLI::App const * verb : program.get_subcommands())
    return "solvedesk " + verb->get_name() + " --help";
  return "solvedesk --help";
}

std::string VerbNames(CLI::App const & program) {
  std::string names;
  for (CLI::App const * verb : program.get_subcommands([](CLI::App const * any) { return !any->get_group().empty(); }))
    names += (names.empty() ? "" : ", ") + verb->get_name();
  return names;
}

// The first word is the verb; a wrong one is named.
bool IsWrongVerb(CLI::App const & program, int count, char ** words) {
  auto const isNamed = [words](CLI::App const * verb) { return verb->get_name() == words[1]; };
  return count > 1 && *words[1] != '-' && program.get_subcommands(isNamed).empty();
}

int Run(int count, char ** words) {
  CLI::App program("Solves the circuits of a project over its design variables, and keeps what was solved.",
                   "solvedesk");
  program.set_version_flag("--version", kVersion, "print the version and exit");
  program.footer(kHelpEnd);
  program.require_subcommand(1);
  solvedesk::Action action;
  AddVerbs(program, action);
  if (IsWrongVerb(program, count, words)) {
    solvedesk::PrintMessage(std::string("'") + words[1] + "': there is no such verb; the verbs are " +
                            VerbNames(program) + "; see solvedesk --help");
    return static_cast<int>(desktop::ErrorKind::kUsage);
  }
  try {
    program.parse(count, words);
  } catch (CLI::ParseError const & error) {
    if (error.get_exit_code() == 0)
      return program.exit(error); // help and version
    solvedesk::PrintMessage(std::string(error.what()) + "; see " + HelpCommand(program));
    return static_cast<int>(desktop::ErrorKind::kUsage);
  }
  rfcircuit::RegisterRfCircuit();
  desktop::KitDesktop kit;
  MessagesToConsole messages;
  kit.GetMessageManager().AddListener(&messages);
  int const status = action();
  if (!solvedesk::IsReaderGone()) // Then its verb told so.
    solvedesk::FinishOutput();
  return status;
}

} // namespace

int main(int count, char ** words) {
  // A limit on the size of files is met as a full disk is: told, with what was stored kept.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return Run(count, words);
  } catch (desktop::Error const & error) {
    solvedesk::PrintMessage(error.what());
    return static_cast<int>(error.Kind());
  } catch (std::bad_alloc const &) {
    solvedesk::PrintMessage("out of memory; ask for fewer points at a time");
  } catch (std::exception const & error) {
    solvedesk::PrintMessage(std::string("unexpected failure: ") + error.what());
  }
  return static_cast<int>(desktop::ErrorKind::kFailed);
}
