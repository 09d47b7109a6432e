#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Delivery.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/transfer/ExportIndex.h"
#include "apps/solvedesk/transfer/FileNames.h"
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

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct TouchstoneWords {
  std::string project;
  std::string folder;
  int digits = 15;
  std::vector<std::string> setups;
  std::optional<std::string> variation;
  OutputOptions output;

  bool IsPart() const { return variation || !setups.empty(); }
};

struct Item {
  BaseSolution * solution = nullptr;
  VariationIDIndex index;
  std::string name; ///< of its file, without extension
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

// Also what is not asked for takes its name: a variation has the same one in every export.
void CollectOf(BaseSimulationSetup const & setup, bool isAsked, AString const & wanted, FileNames & names,
               std::vector<Item> & items) {
  for (auto const & [id, solution] : setup.GetSolutions()) {
    for (auto const & [index, variation] : solution->GetVariations()) {
      AString const text = variation->GetDesignVariationKey();
      if (!variation->IsVariationValid() || !solution->HasSolutionData(text, variation->GetVersionID()))
        continue;
      std::string const name = names.Make(WantedName(setup, *solution, text));
      if (isAsked && (wanted.empty() || VariableValues::AreVariationKeysEqual(text, wanted)))
        items.push_back({solution, index, name, Utf8(setup.GetName()), Utf8(text), {}});
    }
  }
}

std::vector<Item> Collect(desktop::Session & session, TouchstoneWords const & words) {
  std::vector<Item> items;
  AString const wanted = ArgumentText(words.variation.value_or(std::string()));
  FileNames names;
  auto const asked = ChooseSetups(session, words.setups);
  for (BaseSimulationSetup const * setup : ChooseSetups(session, {}))
    CollectOf(*setup, std::find(asked.begin(), asked.end(), setup) != asked.end(), wanted, names, items);
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

// The file was made in a workplace: it is told by the place it was made for.
[[noreturn]] void RefuseFile(AString const & error, AString const & base, std::string const & folder, bool isStorage) {
  namespace fs = std::filesystem;
  std::string text = Utf8(error);
  fs::path const made = Utf8(base);
  if (text.starts_with(made.string()))
    text.replace(0, made.string().size(), (fs::path(folder) / made.filename()).string());
  throw desktop::Error(isStorage ? ErrorKind::kStorage : ErrorKind::kFailed, text::FromUtf8(text));
}

// Loads one variation for as long as it takes to write it.
void WriteItem(desktop::INetworkProduct const & product, TouchstoneWords const & words, Item & item,
               AString const & base) {
  BaseSolutionVariation * const variation = item.solution->GetVariationData(item.index, false);
  if (!variation || !variation->HasSolutionData())
    throw desktop::Error(
        ErrorKind::kProject,
        text::FromUtf8(item.setup + " at " + item.variation +
                       ": its data can't be read (`qsol verify` tells what is wrong); solve it anew: " +
                       SolveAgain(words.project, item)));
  LongFileName written;
  AString error;
  bool const done = product.WriteTouchstone(*variation, LongFileName(base), words.digits, written, error);
  variation->ClearInstanceMemoryData();
  if (!done)
    RefuseFile(error, base, words.folder, !written.IsEmpty());
  item.file = Utf8(written.NameAndExtension());
}

void WriteAll(desktop::INetworkProduct const & product, TouchstoneWords const & words, std::vector<Item> & items) {
  ExportIndex index(std::filesystem::path(words.folder) / "index.csv", words.IsPart());
  Delivery delivery(words.folder);
  for (Item & item : items) {
    std::string const base = (delivery.Workplace() / item.name).string();
    WriteItem(product, words, item, ArgumentText(base));
    index.Add(item.file, item.setup, item.variation);
  }
  delivery.WriteFile("index.csv", index.Text());
  delivery.Deliver();
}

int WriteTouchstone(TouchstoneWords const & words) {
  if (words.digits < 1 || words.digits > 17)
    throw desktop::Error(ErrorKind::kUsage, L"--digits: takes 1 to 17 significant digits");
  if (ArgumentText(words.folder).empty())
    throw desktop::Error(ErrorKind::kUsage, L"--to: names no folder; give one");
  if (words.variation && ArgumentText(*words.variation).Trimmed().empty())
    throw desktop::Error(ErrorKind::kUsage, L"--variation: names no variation; `info` lists them");
  auto const session = OpenForReading(words.project);
  auto const * const product = dynamic_cast<desktop::INetworkProduct const *>(&session->GetProduct());
  if (!product)
    throw desktop::Error(ErrorKind::kUsage, ProjectPath(words.project) + L": its product " +
                                                session->GetProduct().GetName() +
                                                L" makes no network parameters; use a project of another product");
  std::vector<Item> items = Collect(*session, words);
  std::string const note = NoteOfSource(*session);
  WriteAll(*product, words, items);
  nlohmann::ordered_json files = nlohmann::ordered_json::array();
  for (Item const & item : items)
    files.push_back({{"file", item.file}, {"setup", item.setup}, {"variation", item.variation}});
  nlohmann::ordered_json notices = nlohmann::ordered_json::array();
  for (AString const & notice : session->GetNotices())
    notices.push_back(Utf8(notice));
  if (!note.empty())
    notices.push_back(note);
  PrintResult(
      words.output,
      fmt::format("{} and index.csv in {}\n", Count(static_cast<long long>(items.size()), "file"), words.folder),
      {{"folder", words.folder}, {"notices", notices}, {"files", files}});
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
               "All files are written, or none and the folder is as it was. Files of the same names are replaced.\n"
               "With --setup or --variation the rows of index.csv that tell of other files stay.");
  verb->callback([&action, words] { action = [words] { return WriteTouchstone(*words); }; });
}

} // namespace solvedesk
