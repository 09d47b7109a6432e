#include "apps/solvedesk/report/ReportView.h"

#include "apps/solvedesk/console/DocumentText.h"
#include "apps/solvedesk/console/OutputFile.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/report/UnsolvedPlace.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "solutionmanager/model/BaseSolution.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::ErrorKind;
using Json = nlohmann::ordered_json;

constexpr char const * kStandardOutput = "-";

bool HasAnything(desktop::ReportTable const & table) { return table.RowCount() > table.GapCount(); }

using Values = std::vector<std::pair<AString, AString>>;

std::string Quoted(std::string const & word) {
  return word.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.=+-") ==
                 std::string::npos
             ? word
             : '"' + word + '"';
}

/// A point of the design: how it is told, and the words that solve it.
struct Point {
  Point(Values const & values, std::string const & project) : command("`solvedesk solve " + project) {
    for (auto const & [name, value] : values) {
      std::string const pair = Utf8(name) + "=" + Utf8(value);
      text += (text.empty() ? "" : "; ") + pair;
      command += " --vary " + Quoted(pair);
    }
    command += '`';
  }
  std::string text;
  std::string command;
};

Values FirstGapOf(desktop::LiveReports::Shown const & shown) {
  Values values = shown.table.FirstGap();
  for (auto const & [name, value] : shown.given)
    if (std::none_of(values.begin(), values.end(),
                     [&name](auto const & other) { return AString::MatchNoCase(other.first, name); }))
      values.emplace_back(name, value);
  return values;
}

std::string NoteOfGaps(desktop::LiveReports::Shown const & shown, std::string const & project) {
  std::size_t const gaps = shown.table.GapCount();
  Point const first(FirstGapOf(shown), project);
  return gaps == 1 ? fmt::format("1 variation has no solved data: {}; {} solves it", first.text, first.command)
                   : fmt::format("{} have no solved data, the first at {}; {} solves that one",
                                 Count(static_cast<long long>(gaps), "variation"), first.text, first.command);
}

std::string NothingSolved(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                          std::string const & project) {
  UnsolvedPlace const place(shown);
  Point const point(shown.given, project);
  std::string const who = Utf8(ProjectPath(project));
  if (place.Instead().empty())
    return fmt::format("{}: nothing is solved{}; run {} first", who,
                       place.Where().empty() ? "" : " at " + place.Where(), point.command);
  return fmt::format(
      "{}: nothing is solved at {}{}; {}: {}--variation \"{}\" stands there, --over {} runs over all, and "
      "{} solves it where it stands now",
      who, place.Where(), place.IsOfDesign() ? ", where the design stands" : "", place.Instead(),
      report.name.empty() ? "" : "in `report edit` ", place.Example(), place.Names(), point.command);
}

bool IsToFile(ViewOptions const & options) { return !options.csv.empty() && options.csv != kStandardOutput; }

std::string DocumentOf(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                       ReportText const & text, std::vector<std::string> const & notes, ViewOptions const & options) {
  DocumentText document;
  Json definition = DefinitionAsJson(report);
  definition["x"] = Utf8(shown.x);
  definition["solution"] = Utf8(shown.solution->GetGlobalSolutionName());
  document.Members(definition);
  document.Number("updated_traces", static_cast<long>(shown.updated));
  document.Number("gaps", static_cast<long>(shown.table.GapCount()));
  document.Value("notices", Json(notes));
  document.Value("columns", text.Columns());
  if (!IsToFile(options)) {
    document.BeginArray("rows");
    for (std::size_t row = 0; row < text.RowCount(); ++row)
      document.Value({}, text.Row(row));
    document.EndArray();
  } else {
    document.Value("csv", options.csv);
    document.Number("row_count", static_cast<long>(text.RowCount()));
  }
  return std::move(document).Take();
}

} // namespace

std::vector<std::string> NotesOf(desktop::LiveReports::Shown const & shown, std::string const & project) {
  std::vector<std::string> notes;
  for (AString const & problem : shown.problems)
    notes.push_back(Utf8(problem));
  if (!HasAnything(shown.table))
    return notes;
  for (AString const & note : shown.notes)
    notes.push_back(Utf8(note));
  if (shown.solution->GetClosestVersionWithData() != shown.solution->GetVersionID())
    notes.push_back(fmt::format("{}: its data are stale, as `solvedesk info {} --why` tells; `solvedesk solve {}` "
                                "solves them anew",
                                Utf8(shown.solution->GetGlobalSolutionName()), project, project));
  if (shown.table.GapCount() > 0)
    notes.push_back(NoteOfGaps(shown, project));
  return notes;
}

std::string WhyNothing(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                       std::string const & project) {
  if (shown.problems.size() < std::max<std::size_t>(report.y.size(), 1) && HasAnything(shown.table))
    return std::string();
  std::vector<std::string> const notes = NotesOf(shown, project);
  return notes.empty() ? NothingSolved(report, shown, project) : fmt::format("{}", fmt::join(notes, "; "));
}

void RefuseNothing(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                   std::string const & project) {
  if (std::string const reason = WhyNothing(report, shown, project); !reason.empty())
    throw desktop::Error(shown.areWordsWrong ? ErrorKind::kUsage : ErrorKind::kFailed, text::FromUtf8(reason));
}

void AddViewOptions(CLI::App & verb, ViewOptions & options, std::string const & goesWith) {
  verb.add_option("--csv", options.csv,
                  goesWith + "a file for the rows, with numbers that read back bit for bit; - is standard output")
      ->check([](std::string const & file) {
        return file.empty() ? std::string("names no file; give one, or - for standard output") : std::string();
      });
  verb.add_option("--complex", options.form, goesWith + "complex numbers as re-im or mag-deg (degrees)")
      ->check(CLI::IsMember({"re-im", "mag-deg"}))
      ->capture_default_str();
  AddOutputOptions(verb, options.output);
}

ComplexForm FormOf(ViewOptions const & options) {
  return options.form == "re-im" ? ComplexForm::kReIm : ComplexForm::kMagDeg;
}

void PrintReport(desktop::ReportDefinition const & report, desktop::LiveReports::Shown const & shown,
                 std::string const & project, ViewOptions const & options) {
  if (options.csv == kStandardOutput && options.output.json)
    throw desktop::Error(ErrorKind::kUsage, L"--csv - and --json: both go to standard output; name a file for one");
  RefuseNothing(report, shown, project);
  std::vector<std::string> const notes = NotesOf(shown, project);
  for (std::string const & note : notes)
    PrintMessage(note);
  ReportText const text(shown.table, FormOf(options));
  if (IsToFile(options))
    WriteOutputFile("--csv", options.csv, text.Csv());
  std::string const forPeople =
      !IsTextWanted(options.output) ? std::string()
      : options.csv.empty()         ? text.Table()
      : !IsToFile(options)
          ? text.Csv()
          : fmt::format("{} in {}\n", Count(static_cast<long long>(text.RowCount()), "row"), options.csv);
  PrintResult(options.output, forPeople,
              IsDocumentWanted(options.output) ? DocumentOf(report, shown, text, notes, options) : std::string());
}

} // namespace solvedesk
