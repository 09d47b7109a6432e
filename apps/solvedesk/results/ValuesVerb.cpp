#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/results/SolvedPoints.h"
#include "apps/solvedesk/results/ValueTable.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ImportedSolution.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::ErrorKind;
using desktop::QuantityValues;

struct ValuesWords {
  std::string project;
  std::vector<std::string> setups;
  std::optional<std::string> variation;
  std::vector<std::string> quantities;
  bool csv = false;
  OutputOptions output;
};

// In the order in which they are asked for.
std::vector<QuantityValues> Chosen(std::vector<QuantityValues> all, std::vector<std::string> const & names) {
  if (names.empty())
    return all;
  std::vector<QuantityValues> chosen;
  for (std::string const & word : names) {
    AString const name = ArgumentText(word);
    auto const found = std::find_if(all.begin(), all.end(), [&](QuantityValues const & quantity) {
      return AString::MatchNoCase(quantity.name, name);
    });
    if (found == all.end()) {
      AString known;
      for (QuantityValues const & quantity : all)
        known += (known.empty() ? L"" : L", ") + quantity.name;
      throw desktop::Error(ErrorKind::kUsage,
                           L"--quantity " + name + L": there is none of that name; there are " + known);
    }
    chosen.push_back(*found);
  }
  return chosen;
}

// Loads one point for as long as it takes to read it.
PointValues ValuesOf(desktop::IQuantityProduct const & product, ValuesWords const & words, SolvedPoint const & point) {
  BaseSolutionVariation * const variation = desktop::LoadVariation(*point.solution, point.index);
  bool const isThere = variation && variation->HasSolutionData();
  if (!isThere && point.solution->IsSolutionImported())
    throw desktop::Error(desktop::ErrorKind::kProject,
                         text::FromUtf8(point.setup + ": its data can't be read (`qsol verify` tells what is wrong); "
                                                      "import its file again"));
  if (!isThere)
    throw desktop::Error(ErrorKind::kProject,
                         text::FromUtf8(point.setup + " at " + Utf8(point.variation) +
                                        ": its data can't be read (`qsol verify` tells what is wrong); solve it anew: "
                                        "solvedesk solve " +
                                        words.project + " --again"));
  PointValues values{point.setup, Utf8(point.solution->GetSolutionName()), point.variation, {}, {}};
  VariationText const pairs(point.variation);
  for (VariationText::Pair const & pair : pairs.Pairs())
    values.variables.emplace_back(text::ToUtf8(pair.name), text::ToUtf8(pair.text));
  auto all = product.GetQuantities(*variation);
  variation->ClearInstanceMemoryData();
  values.quantities = Chosen(std::move(all), words.quantities);
  return values;
}

int ShowValues(ValuesWords const & words) {
  if (words.csv && words.output.json)
    throw desktop::Error(ErrorKind::kUsage, L"--csv and --json: both print on standard output; give one of them");
  auto const session = OpenForReading(words.project);
  auto const * const product = dynamic_cast<desktop::IQuantityProduct const *>(&session->GetProduct());
  if (!product)
    throw desktop::Error(ErrorKind::kUsage, ProjectPath(words.project) + L": its product " +
                                                session->GetProduct().GetName() +
                                                L" tells no named quantities; use a project of another product");
  NoteOfSource(*session);
  std::string text;
  std::string header;
  nlohmann::ordered_json points = nlohmann::ordered_json::array();
  for (SolvedPoint const & point : FindSolvedPoints(*session, words.project, words.setups, words.variation)) {
    PointValues const values = ValuesOf(*product, words, point);
    if (!words.csv)
      points.push_back(ValuesAsJson(values));
    if (words.csv) {
      // Points of an edited design may have other variables: they get a header of their own.
      std::string const own = CsvHeader(values);
      text += (own == header ? "" : header.empty() ? own : "\n" + own) + ValuesAsCsv(values);
      header = own;
    } else if (!words.output.json) {
      text += ValuesAsText(values);
    }
  }
  PrintResult(words.output, text, {{"points", points}});
  return 0;
}

} // namespace

void AddValuesVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ValuesWords>();
  CLI::App * const verb =
      program.add_subcommand("values", "print the stored quantities of every solved and valid point");
  AddProjectWord(*verb, words->project);
  verb->add_option("--setup", words->setups, "a setup; all of them without this")->allow_extra_args(false);
  verb->add_option("--variation", words->variation, "one variation, as `info` shows it");
  verb->add_option("--quantity", words->quantities, "a quantity; all of them without this")->allow_extra_args(false);
  verb->add_flag("--csv", words->csv, "print comma-separated values: setup, variables, quantities");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk values ball\n"
               "  solvedesk values ball --quantity range --csv\n\n"
               "A column of numbers takes a row for each; a single number stands in all rows of its point.");
  verb->callback([&action, words] { action = [words] { return ShowValues(*words); }; });
}

} // namespace solvedesk
