#include "apps/solvedesk/console/TextTable.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/text/NumberText.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"
#include "desktop/design/NumberWord.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IPortProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/study/VaryWord.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct PortWords {
  std::string project;
  std::vector<std::string> impedances;
  OutputOptions output;
};

int ListPorts(PortWords const & words) {
  auto const session = OpenForReading(words.project);
  auto const * const product = dynamic_cast<desktop::IPortProduct const *>(&session->GetProduct());
  TextTable table(1);
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  table.Add({"port", "solved (ohm)", "shown (ohm)"});
  if (product)
    for (auto const & port : product->GetPorts(session->GetManager())) {
      double const shown = port.shown.value_or(port.solved);
      table.Add({Utf8(port.name), text::ShortestReal(port.solved), text::ShortestReal(shown)});
      list.push_back({{"port", Utf8(port.name)}, {"solved", port.solved}, {"shown", shown}});
    }
  PrintResult(words.output, list.empty() ? "no ports: nothing is solved, or the product has none\n" : table.Text(""),
              {{"ports", list}});
  return 0;
}

int ChangePorts(PortWords const & words) {
  std::vector<std::pair<AString, std::optional<double>>> impedances;
  for (std::string const & word : words.impedances) {
    auto const [name, value] = desktop::SplitAssignment(ArgumentText(word), L"port");
    std::optional<double> impedance;
    if (!AString::MatchNoCase(value, L"solved"))
      impedance = desktop::ReadNumberWord(value, L"port " + name);
    impedances.emplace_back(name, impedance);
  }
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  bool const isChanged = session->GetEditor().ShowPorts(impedances);
  result.Print(words.output, words.project, isChanged, "the ports are like that already");
  return 0;
}

} // namespace

void AddPortVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<PortWords>();
  CLI::App * const verb = program.add_subcommand("port", "the impedances that reports tell results with");
  AddProjectWord(*verb, words->project);
  verb->add_option("PORT=OHM", words->impedances,
                   "a port by name or number, and its impedance in ohm, or `solved` for its own; lists without");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk port lowpass\n"
               "  solvedesk port lowpass V1=75 V2=75\n"
               "  solvedesk port lowpass V1=solved\n\n"
               "Nothing is solved anew, and no data becomes stale: reports, `eval` and output variables tell what the\n"
               "network is between such ports. `touchstone` and `values` give it as it was solved.");
  verb->callback([&action, words] {
    action = [words] { return words->impedances.empty() ? ListPorts(*words) : ChangePorts(*words); };
  });
}

} // namespace solvedesk
