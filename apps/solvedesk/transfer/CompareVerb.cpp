#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/OutputFile.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/transfer/ComparedData.h"
#include "apps/solvedesk/transfer/ComparisonText.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/page/Document.h"
#include "desktop/page/HtmlPage.h"
#include "desktop/product/IComparisonProduct.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/report/ComparisonDocument.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace solvedesk {
namespace {

using desktop::Comparison;
using desktop::ErrorKind;

constexpr char const * kStandardOutput = "-";

struct CompareWords {
  std::string project;
  std::string first;
  std::string second;
  std::optional<std::string> firstVariation;
  std::optional<std::string> secondVariation;
  std::vector<std::string> parameters;
  std::string csv;
  std::string html;
  OutputOptions output;
};

Comparison Made(desktop::Session & session, ComparedData const & first, ComparedData const & second) {
  auto const * const product = dynamic_cast<desktop::IComparisonProduct const *>(&session.GetProduct());
  if (!product)
    throw desktop::Error(ErrorKind::kUsage, session.GetProduct().GetName() +
                                                L": this product compares no data; use a project of another one");
  Comparison comparison;
  AString error;
  if (!product->Compare(first.Variation(), second.Variation(), comparison, error))
    throw desktop::Error(ErrorKind::kFailed, first.Title() + L" and " + second.Title() + L": " + error);
  return comparison;
}

// "s(2, 1)" and "S21" as "S(2,1)", without case.
AString Plain(AString const & name) {
  AString plain;
  for (wchar_t const letter : name)
    if (letter != L' ')
      plain += AString(std::wstring(1, letter));
  bool const isShort = plain.size() == 3 && plain.substr(1).IsNumber(10);
  return isShort ? plain.substr(0, 1) + L"(" + plain.substr(1, 1) + L"," + plain.substr(2, 1) + L")" : plain;
}

// In the order in which they are asked for.
void Choose(Comparison & comparison, std::vector<std::string> const & names) {
  if (names.empty())
    return;
  std::vector<Comparison::Parameter> chosen;
  for (std::string const & word : names) {
    AString const name = Plain(ArgumentText(word));
    auto const found = std::find_if(comparison.parameters.begin(), comparison.parameters.end(),
                                    [&name](auto const & one) { return AString::MatchNoCase(one.name, name); });
    if (found == comparison.parameters.end()) {
      AString known;
      for (auto const & one : comparison.parameters)
        known += (known.empty() ? L"" : L", ") + one.name;
      throw desktop::Error(ErrorKind::kUsage,
                           L"--parameter " + ArgumentText(word) + L": there is none of that name; there are " + known);
    }
    chosen.push_back(*found);
  }
  comparison.parameters = std::move(chosen);
}

void CheckOutputs(CompareWords const & words) {
  if (words.csv == kStandardOutput && words.output.json)
    throw desktop::Error(ErrorKind::kUsage, L"--csv - and --json: both go to standard output; name a file for one");
}

int Compare(CompareWords const & words) {
  CheckOutputs(words);
  auto const session = OpenForReading(words.project);
  NoteOfSource(*session);
  ComparedData const first(*session, words.first, words.firstVariation, "--variation-a");
  ComparedData const second(*session, words.second, words.secondVariation, "--variation-b");
  Comparison comparison = Made(*session, first, second);
  Choose(comparison, words.parameters);
  bool const isCsvPrinted = words.csv == kStandardOutput;
  if (!words.csv.empty() && !isCsvPrinted)
    WriteOutputFile("--csv", words.csv, ComparisonAsCsv(comparison));
  if (!words.html.empty())
    WriteOutputFile("--html", words.html,
                    desktop::page::HtmlPage(desktop::ComparisonDocument(comparison, first.Title(), second.Title())));
  std::string const a = Utf8(first.Title());
  std::string const b = Utf8(second.Title());
  bool const hasTable = !words.parameters.empty();
  PrintResult(words.output, isCsvPrinted ? ComparisonAsCsv(comparison) : ComparisonAsText(comparison, a, b, hasTable),
              ComparisonAsJson(comparison, a, b));
  return 0;
}

} // namespace

void AddCompareVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<CompareWords>();
  CLI::App * const verb =
      program.add_subcommand("compare", "A minus B: two solutions, or a solution and imported data");
  AddProjectWord(*verb, words->project);
  verb->add_option("A", words->first, "a setup, or 'SETUP : SOLUTION'; solved or imported")->required();
  verb->add_option("B", words->second, "the same; it is taken at the samples of A")->required();
  verb->add_option("--variation-a", words->firstVariation,
                   "values of variables for A, as in \"cscale=0.95\"; the design's own for those not named");
  verb->add_option("--variation-b", words->secondVariation, "the same for B");
  verb->add_option("--parameter", words->parameters,
                   "such as \"S(2,1)\" or S21: its numbers, row by row; may be given "
                   "again")
      ->allow_extra_args(false);
  verb->add_option("--csv", words->csv, "a file for the numbers, which read back bit for bit; - is standard output");
  verb->add_option("--html", words->html, "a file for one page with plots and numbers");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk compare lowpass SParameters1 Measured\n"
               "  solvedesk compare lowpass SParameters1 Measured --parameter \"S(2,1)\" --csv s21.csv\n"
               "  solvedesk compare lowpass SParameters1 SParameters1 --variation-b \"cscale=0.95\" --html tol.html\n\n"
               "Differences are those of complex numbers, at the samples of A that lie in the range of B.");
  verb->callback([&action, words] { action = [words] { return Compare(*words); }; });
}

} // namespace solvedesk
