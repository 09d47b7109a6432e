#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/hub/FilesOfNewProject.h"
#include "desktop/hub/Hub.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

struct NewWords {
  std::string project;
  std::string netlist;
  std::string product = "rfcircuit";
  std::vector<std::string> connections;
  OutputOptions output;
};

void CheckProduct(AString const & name) {
  auto const & registry = desktop::ProductRegistry::Instance();
  if (registry.Find(name))
    return;
  AString known;
  for (AString const & other : registry.Names())
    known += (known.empty() ? AString() : AString(L", ")) + other;
  throw desktop::Error(desktop::ErrorKind::kUsage,
                       AString(L"--product ") + name + L": there is no product of that name; known are: " + known);
}

// The words that make another product read a source; empty when none of them can.
AString HintOfProduct(AString const & source, AString const & product) {
  auto const & registry = desktop::ProductRegistry::Instance();
  for (AString const & name : registry.Names()) {
    desktop::SourceDescription description;
    AString ignored; // what is wrong with it for yet another product
    if (!AString::MatchNoCase(name, product) && registry.Find(name)->ReadSource(source, description, ignored))
      return AString(L"; the product ") + name + L" can read it: add --product " + name;
  }
  return AString();
}

std::shared_ptr<desktop::Session> Create(NewWords const & words, AString const & path) {
  AString const product = ArgumentText(words.product);
  AString const source = ArgumentText(words.netlist);
  CheckProduct(product);
  try {
    return desktop::Session::Create(path, source, product);
  } catch (desktop::Error const & error) {
    AString const hint = error.Kind() == desktop::ErrorKind::kSource ? HintOfProduct(source, product) : AString();
    if (hint.empty())
      throw;
    throw desktop::Error(error.Kind(), text::FromUtf8(error.what()) + hint);
  }
}

bool IsProject(std::string const & path) { return LFN_Exists(LongFileName(ProjectPath(path))); }

// Of "PROJECT", "PROJECT:SETUP" or "PROJECT:SETUP:VARIATION".  A colon may also stand in the project's path.
void TakeSource(std::string const & word, desktop::ConnectionRequest & request) {
  std::size_t colon = IsProject(word) ? std::string::npos : word.find(':');
  std::size_t const first = colon;
  while (colon != std::string::npos && !IsProject(word.substr(0, colon)))
    colon = word.find(':', colon + 1);
  colon = colon == std::string::npos ? first : colon;
  request.project = ArgumentText(word.substr(0, colon));
  if (colon == std::string::npos || colon == 0)
    return;
  std::string const rest = word.substr(colon + 1);
  std::size_t const second = rest.find(':');
  request.setup = ArgumentText(rest.substr(0, second)).Trimmed();
  if (second != std::string::npos)
    request.variation = ArgumentText(rest.substr(second + 1)).Trimmed();
}

// Of "NAME=SOURCE".
desktop::ConnectionRequest RequestOf(std::string const & word) {
  std::size_t const middle = word.find('=');
  if (middle == std::string::npos || middle + 1 == word.size())
    throw desktop::Error(desktop::ErrorKind::kUsage,
                         AString(L"--connect '") + ArgumentText(word) +
                             L"': is not NAME=SOURCE_PROJECT, with :SETUP behind where it has several; give both");
  desktop::ConnectionRequest request{ArgumentText(word.substr(0, middle)), AString(), AString(), AString()};
  TakeSource(word.substr(middle + 1), request);
  return request;
}

// The source reads the files of the connections, so they are there before it is read.
std::shared_ptr<desktop::Session> CreateConnected(NewWords const & words, AString const & path) {
  LongFileName const source = LFN_AbsolutePath(LongFileName(ArgumentText(words.netlist)));
  desktop::FilesOfNewProject files{LongFileName(source.DirPath())};
  std::vector<desktop::ConnectionRequest> requests;
  for (std::string const & word : words.connections) {
    requests.push_back(RequestOf(word));
    files.Write(requests.back());
  }
  auto session = Create(words, path);
  files.Keep();
  std::vector<AString> notices;
  for (desktop::ConnectionRequest const & request : requests)
    desktop::Hub(*session).Connect(request, notices);
  if (!requests.empty())
    session->Save();
  return session;
}

int MakeProject(NewWords const & words) {
  AString const path = ProjectPath(words.project);
  auto const session = CreateConnected(words, path);
  nlohmann::ordered_json variables = nlohmann::ordered_json::array();
  nlohmann::ordered_json setups = nlohmann::ordered_json::array();
  for (Variable const * variable : session->GetDesign().GetVariables())
    variables.push_back({{"name", Utf8(variable->GetName())}, {"value", Utf8(variable->GetValueText())}});
  for (auto const & [id, setup] : session->GetManager().GetSetups())
    setups.push_back(Utf8(setup->GetName()));
  nlohmann::ordered_json notes = nlohmann::ordered_json::array();
  for (AString const & note : session->GetNotices()) {
    PrintMessage("note: " + Utf8(note));
    notes.push_back(Utf8(note));
  }
  std::string const text = fmt::format("{}: made from {}; design variables: {}, setups: {}\n", Utf8(path),
                                       words.netlist, variables.size(), setups.size());
  PrintResult(words.output, text,
              {{"project", Utf8(path)},
               {"netlist", words.netlist},
               {"product", words.product},
               {"variables", variables},
               {"setups", setups},
               {"notes", notes}});
  return 0;
}

} // namespace

void AddNewVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<NewWords>();
  CLI::App * const verb = program.add_subcommand("new", "make a project from a netlist, or a solver file");
  AddProjectWord(*verb, words->project);
  verb->add_option("--netlist,--source", words->netlist,
                   "the netlist; .param lines become design variables, .sp lines setups; or the solver file of the "
                   "product 'command'")
      ->required();
  verb->add_option("--product", words->product, "what solves it: rfcircuit, or command for any program")
      ->capture_default_str();
  verb->add_option("--connect", words->connections,
                   "NAME=SOURCE_PROJECT[:SETUP[:VARIATION]]: connects at once, for a netlist that reads NAME.s2p; see "
                   "`connect`")
      ->allow_extra_args(false);
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk new lowpass --netlist examples/lowpass/lowpass.cir\n"
               "  solvedesk new receiver --netlist receiver.cir --connect amp=amplifier\n"
               "  solvedesk new receiver --netlist receiver.cir --connect \"amp=amplifier:Fine:gain=2\"\n"
               "  solvedesk new ball --source examples/ball/ball.solver --product command");
  verb->callback([&action, words] { action = [words] { return MakeProject(*words); }; });
}

} // namespace solvedesk
