#pragma once

#include "apps/qsol/Catalogue.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace qsol {

/// --setup, --solution, --variation and --kind as they stand on the command line.
struct SelectionWords {
  std::optional<long> setup;
  std::optional<long> solution;
  std::optional<std::string> variation;
  std::optional<std::string> kind;

  bool IsEmpty() const { return !setup && !solution && !variation && !kind; }
  Selection Read() const;
};

void AddSelectionOptions(CLI::App & verb, SelectionWords & words);

} // namespace qsol
