#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "desktop/solve/SolveQueue.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <memory>
#include <string>

namespace solvedesk {

void AddWorkerVerb(CLI::App & program, Action & action) {
  auto const product = std::make_shared<std::string>();
  CLI::App * const verb = program.add_subcommand("worker", "");
  verb->group("");
  verb->add_option("--product", *product, "the product whose jobs come on standard input")->required();
  verb->callback([&action, product] {
    action = [product] {
      // Ctrl-C on a terminal reaches the whole group; the solve decides what becomes of its workers.
      std::signal(SIGINT, SIG_IGN);
      return desktop::RunWorker(ArgumentText(*product));
    };
  });
}

} // namespace solvedesk
