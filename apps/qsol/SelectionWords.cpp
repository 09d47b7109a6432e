#include "apps/qsol/SelectionWords.h"

#include "apps/qsol/Text.h"

#include <CLI/CLI.hpp>

namespace qsol {

namespace {

constexpr Kind kKinds[] = {Kind::Data,   Kind::Definition, Kind::Convergence, Kind::Profile,
                           Kind::Header, Kind::Map,        Kind::Other};

std::vector<std::string> KindNames() {
  std::vector<std::string> names;
  for (Kind const kind : kKinds)
    names.push_back(NameOf(kind));
  return names;
}

} // namespace

Selection SelectionWords::Read() const {
  Selection selection{setup, solution, {}, {}};
  if (variation)
    selection.variation = Word(*variation);
  for (Kind const each : kKinds)
    if (kind && *kind == NameOf(each))
      selection.kind = each;
  return selection;
}

void AddSelectionOptions(CLI::App & verb, SelectionWords & words) {
  verb.add_option("--setup", words.setup, "only blocks of this setup")->type_name("ID");
  verb.add_option("--solution", words.solution, "only blocks of this solution")->type_name("ID");
  verb.add_option("--variation", words.variation, "only blocks of this variation, however it is spelled")
      ->type_name("TEXT");
  verb.add_option("--kind", words.kind, "data, definition, convergence, profile, header, map or other")
      ->check(CLI::IsMember(KindNames()))
      ->type_name("KIND");
}

} // namespace qsol
