// solvedesk: the headless desktop as a program.

#include "apps/solvedesk/Program.h"
#include "apps/solvedesk/console/Console.h"
#include "basekit/message/MessageManager.h"
#include "desktop/Error.h"
#include "desktop/KitDesktop.h"
#include "desktop/message/Catalogue.h"
#include "products/command/product/RegisterCommand.h"
#include "products/rfcircuit/product/RegisterRfCircuit.h"

#include <csignal>
#include <exception>
#include <string>
#include <vector>

namespace {

/// Tells people what the library and the desktop have to tell.
class MessagesToConsole : public IMessageListener {
public:
  void OnMessage(KelvroMessage const & message) override {
    solvedesk::PrintMessage(solvedesk::Utf8(desktop::ComposeMessage(message)));
  }
};

int Run(int count, char ** words) {
  solvedesk::Program program(solvedesk::Program::Place::kCommandLine);
  if (!program.Parse(std::vector<std::string>(words + 1, words + count)))
    return 0; // help and version
  rfcircuit::RegisterRfCircuit();
  command::RegisterCommand();
  desktop::KitDesktop kit;
  MessagesToConsole messages;
  kit.GetMessageManager().AddListener(&messages);
  int const status = program.Run();
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
