#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/Delivery.h"
#include "apps/solvedesk/FileNames.h"
#include "apps/solvedesk/OpenProject.h"
#include "apps/solvedesk/Verbs.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/product/IDesktopProduct.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct TouchstoneWords {
  std::string project;
  std::string folder;
  int digits = 15;
  std::vector<std::string> setups;
  std::string variation;
  OutputOptions output;
};

struct Item {
  BaseSolution * solution = nullptr;
  VariationIDIndex index;
  std::string wantedName;
  std::string setup;
  std::string variation;
  std::string file;
};

std::string WantedName(BaseSimulationSetup const & setup, BaseSolution const & solution, AString const & variation) {
  std::string name = Utf8(setup.GetName());
  if (setup.GetSolutions().size() > 1)
    name += "_" + Utf8(solution.GetSolutionName());
  return name + "_" + Utf8(variation);
}

void CollectOf(BaseSimulationSetup const & setup, AString const & wanted, std::vector<Item> & items) {
  for (auto const & [id, solution] : setup.GetSolutions()) {
    for (auto const & [index, variation] : solution->GetVariations()) {
      AString const text = variation->GetDesignVariationKey();
      if (!variation->IsVariationValid() || !solution->HasSolutionData(text, variation->GetVersionID()))
        continue;
      if (wanted.empty() || VariableValues::AreVariationKeysEqual(text, wanted))
        items.push_back({solution, index, WantedName(setup, *solution, text), Utf8(setup.GetName()), Utf8(text), {}});
    }
  }
}

std::vector<Item> Collect(desktop::Session & session, TouchstoneWords const & words) {
  std::vector<Item> items;
  AString const wanted = ArgumentText(words.variation);
  for (BaseSimulationSetup const * setup : ChooseSetups(session, words.setups))
    CollectOf(*setup, wanted, items);
  if (items.empty() && !wanted.empty())
    throw desktop::Error(ErrorKind::kUsage, AString(L"--variation '") + wanted +
                                                L"': no solved and valid variation equals it; `info` lists them");
  if (items.empty())
    throw desktop::Error(ErrorKind::kFailed, ProjectPath(words.project) +
                                                 L": has no solved and valid variation; run `solvedesk solve` first");
  return items;
}

// The words that solve a variation anew.
std::string SolveAgain(std::string const & project, Item const & item) {
  std::string command = "solvedesk solve " + project + " --again --setup " + item.setup;
  std::istringstream parts(item.variation);
  for (std::string part; std::getline(parts >> std::ws, part, ';');)
    command += " --vary " + part;
  return command;
}

// Loads one variation for as long as it takes to write it.
void WriteItem(desktop::INetworkProduct const & product, TouchstoneWords const & words, Item & item,
               AString const & base) {
  BaseSolutionVariation * const variation = item.solution->GetVariationData(item.index, false);
  if (!variation || !variation->HasSolutionData())
    throw desktop::Error(ErrorKind::kProject,
                         text::FromUtf8(item.setup + " at " + item.variation +
                                        ": its data can't be read (`qsol verify` tells what is wrong); solve it anew: " +
                                        SolveAgain(words.project, item)));
  LongFileName written;
  AString error;
  bool const done = product.WriteTouchstone(*variation, LongFileName(base), words.digits, written, error);
  variation->ClearInstanceMemoryData();
  if (!done)
    throw desktop::Error(ErrorKind::kFailed, error);
  item.file = Utf8(written.NameAndExtension());
}

std::string Quoted(std::string const & text) {
  std::string quoted = "\"";
  for (char const c : text)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void WriteAll(desktop::INetworkProduct const & product, TouchstoneWords const & words, std::vector<Item> & items) {
  Delivery delivery(words.folder);
  FileNames names;
  std::string index = "file,setup,variation\n";
  for (Item & item : items) {
    std::string const base = (delivery.Workplace() / names.Make(item.wantedName)).string();
    WriteItem(product, words, item, ArgumentText(base));
    index += fmt::format("{},{},{}\n", Quoted(item.file), Quoted(item.setup), Quoted(item.variation));
  }
  delivery.WriteFile("index.csv", index);
  delivery.Deliver();
}

int WriteTouchstone(TouchstoneWords const & words) {
  if (words.digits < 1 || words.digits > 17)
    throw desktop::Error(ErrorKind::kUsage, L"--digits: takes 1 to 17 significant digits");
  if (ArgumentText(words.folder).empty())
    throw desktop::Error(ErrorKind::kUsage, L"--to: names no folder; give one");
  auto const session = OpenForReading(words.project);
  auto const * const product = dynamic_cast<desktop::INetworkProduct const *>(&session->GetProduct());
  if (!product)
    throw desktop::Error(ErrorKind::kUsage, ProjectPath(words.project) + L": its product " +
                                                session->GetProduct().GetName() +
                                                L" makes no network parameters; use a project of another product");
  std::vector<Item> items = Collect(*session, words);
  WriteAll(*product, words, items);
  nlohmann::ordered_json files = nlohmann::ordered_json::array();
  for (Item const & item : items)
    files.push_back({{"file", item.file}, {"setup", item.setup}, {"variation", item.variation}});
  PrintResult(words.output, fmt::format("{} files and index.csv in {}\n", items.size(), words.folder),
              {{"folder", words.folder}, {"files", files}});
  return 0;
}

} // namespace

void AddTouchstoneVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<TouchstoneWords>();
  CLI::App * const verb = program.add_subcommand("touchstone", "write every solved and valid variation as a .sNp file");
  AddProjectWord(*verb, words->project);
  verb->add_option("--to", words->folder, "the folder for the files and their index.csv")->required();
  verb->add_option("--digits", words->digits, "significant digits, 1 to 17")->capture_default_str();
  verb->add_option("--setup", words->setups, "a setup to write; all of them without this")->allow_extra_args(false);
  verb->add_option("--variation", words->variation, "one variation, as `info` shows it");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk touchstone lowpass --to results\n"
               "  solvedesk touchstone lowpass --to results --digits 17 --variation \"cscale=1; lscale=1\"\n\n"
               "All files are written, or none and the folder is as it was. Files of the same names are replaced.");
  verb->callback([&action, words] { action = [words] { return WriteTouchstone(*words); }; });
}

} // namespace solvedesk
