#include "apps/solvedesk/console/TextTable.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/console/WordList.h"
#include "apps/solvedesk/project/EditResult.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/report/ReportPage.h"
#include "apps/solvedesk/report/ReportView.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"
#include "desktop/message/NameList.h"
#include "desktop/report/ReportCurves.h"
#include "desktop/report/ReportList.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

using desktop::Error;
using desktop::ErrorKind;
using desktop::ReportDefinition;

struct ReportWords {
  std::string project;
  std::string action;
  std::vector<std::string> names;
  std::optional<std::string> x;
  std::vector<std::string> y;
  std::vector<std::string> over;
  std::optional<std::string> setup;
  std::optional<std::string> solution;
  std::optional<std::string> variation;
  std::optional<std::string> display;
  ViewOptions view;
  DrawOptions draw;

  std::string const & Name() const { return names.front(); }
  bool HasDefinition() const { return x || !y.empty() || !over.empty() || setup || solution || variation || display; }
};

// What the words say takes the place of what the report has.
ReportDefinition Changed(ReportDefinition report, ReportWords const & words) {
  if (words.x)
    report.x = ArgumentText(*words.x).Trimmed();
  if (!words.y.empty())
    report.y.clear();
  for (std::string const & y : words.y)
    report.y.push_back(ArgumentText(y).Trimmed());
  if (!words.over.empty())
    report.over = WordList(words.over, L"--over");
  if (words.setup)
    report.setup = ArgumentText(*words.setup);
  if (words.solution)
    report.solution = ArgumentText(*words.solution);
  if (words.variation)
    report.variation = ArgumentText(*words.variation).Trimmed();
  if (!words.display)
    return report;
  auto const display = desktop::DisplayOf(ArgumentText(*words.display));
  if (!display)
    throw Error(ErrorKind::kUsage,
                L"--display " + ArgumentText(*words.display) + L": is none of " + desktop::DisplayWords());
  report.display = *display;
  return report;
}

void CheckNames(ReportWords const & words) {
  AString const action = ArgumentText(words.action);
  if (words.action == "list") {
    if (!words.names.empty())
      throw Error(ErrorKind::kUsage, L"report list: takes no name; `report show` shows one report");
  } else if (words.names.empty()) {
    throw Error(ErrorKind::kUsage, L"report " + action + L": takes the name of a report" +
                                       (words.action == "add" ? L"; give it one" : L"; `report list` lists them"));
  } else if (words.names.size() > 1 && words.draw.html.empty()) {
    throw Error(ErrorKind::kUsage, L"report " + action + L": takes one name; several go with `report show --html`");
  }
}

// Which options go with which action.
void CheckOptions(ReportWords const & words) {
  AString const action = ArgumentText(words.action);
  bool const isDefinition = words.action == "add" || words.action == "edit";
  if (!isDefinition && words.HasDefinition())
    throw Error(ErrorKind::kUsage, L"report " + action +
                                       L": takes no definition; --x, --y, --over, --setup, "
                                       L"--solution, --variation and --display go with add and edit");
  if (words.action == "add" && words.y.empty())
    throw Error(ErrorKind::kUsage, L"report add: needs --y, as in --y \"dB(S(2,1))\"; give it once for each curve");
  if (words.action != "show" && !words.view.csv.empty())
    throw Error(ErrorKind::kUsage, L"report " + action + L": --csv goes with show");
  if (words.action != "show" && words.draw.IsAny())
    throw Error(ErrorKind::kUsage, L"report " + action + L": --html and --svg go with show");
  if (words.draw.IsAny() && !words.view.csv.empty())
    throw Error(ErrorKind::kUsage, L"report show: --csv, --html and --svg write one file each; give one of them");
}

// Without an action it is the whole project that is drawn.
void CheckWholeProject(ReportWords const & words) {
  if (words.draw.html.empty())
    throw Error(ErrorKind::kUsage, L"report: takes add, edit, remove, list or show, or --html FILE for a page of the "
                                   L"whole project");
  if (words.HasDefinition() || !words.view.csv.empty())
    throw Error(ErrorKind::kUsage, L"report --html: draws all reports; definitions go with add and edit, --csv with "
                                   L"show");
}

void CheckWords(ReportWords const & words) {
  CheckDrawOptions(words.draw);
  if (words.action.empty())
    return CheckWholeProject(words);
  CheckNames(words);
  CheckOptions(words);
}

int List(ReportWords const & words) {
  auto const session = OpenForReading(words.project);
  TextTable table(3);
  nlohmann::ordered_json reports = nlohmann::ordered_json::array();
  for (ReportDefinition const & report : session->GetReports().All()) {
    table.Add({Utf8(report.name), Utf8(WordOf(report.display)), Utf8(DescribeReport(report))});
    reports.push_back(DefinitionAsJson(report));
  }
  PrintResult(words.view.output, reports.empty() ? "no reports; `report add` makes one\n" : table.Text(""),
              {{"reports", reports}});
  return 0;
}

int Show(ReportWords const & words) {
  auto const session = OpenForReading(words.project);
  ReportDefinition const report = KnownReport(*session, words.Name());
  NoteOfSource(*session);
  PrintReport(report, session->GetLiveReports().Show(report), words.project, words.view);
  return 0;
}

bool Change(desktop::Session & session, ReportWords const & words) {
  AString const name = ArgumentText(words.Name());
  desktop::Editor & editor = session.GetEditor();
  if (words.action == "add") {
    ReportDefinition report;
    report.name = name;
    editor.AddReport(Changed(report, words));
  } else if (words.action == "edit") {
    return editor.EditReport(name, Changed(KnownReport(session, words.Name()), words));
  } else {
    editor.RemoveReport(name);
  }
  return true;
}

int RunReport(ReportWords const & words) {
  CheckWords(words);
  if (words.draw.IsAny())
    return DrawReports(
        {words.project, words.names, FormOf(words.view) == ComplexForm::kMagDeg, words.draw, words.view.output});
  if (words.action == "list")
    return List(words);
  if (words.action == "show")
    return Show(words);
  auto const session = OpenForWriting(words.project);
  EditResult const result(*session);
  bool const isChanged = Change(*session, words);
  nlohmann::ordered_json notices = nlohmann::ordered_json::array();
  if (ReportDefinition const * const report = session->GetReports().Find(ArgumentText(words.Name())))
    for (AString const & doubt : desktop::FindProblems(*session, *report))
      notices.push_back(Utf8(doubt));
  result.Print(words.view.output, words.project, isChanged, "the report is like that already",
               {{"action", words.action}, {"report", words.Name()}, {"notices", notices}});
  for (auto const & notice : notices)
    PrintMessage(notice.get<std::string>());
  return 0;
}

// Of the action that help is asked for.
std::string HelpEnd(std::string const & action) {
  if (action == "add")
    return "report add NAME --y EXPR: defines a report.  It may name what isn't there yet, and tells so.\n\nExamples:\n"
           "  solvedesk report lowpass add gain --y \"dB(S(2,1))\" --y \"dB(S(1,1))\" --over cscale\n"
           "  solvedesk report lowpass add worst --x cscale --y \"max(dB(S(1,1)))\" --over lscale\n"
           "  solvedesk report lowpass add at1g --x cscale --y \"YAtXVal(dB(S(2,1)),1GHz)\" --y \"bandwidth(S(2,1))\"";
  if (action == "edit")
    return "report edit NAME: what is told takes the place of what the report has, all else stays.\n\nExamples:\n"
           "  solvedesk report lowpass edit gain --y \"dB(S(2,1))\"\n"
           "  solvedesk report lowpass edit gain --variation \"lscale=0.9\" --display rectangular";
  if (action == "show")
    return "report show NAME: the report's numbers, or a drawing of them; --csv, --html, --svg, --complex and the "
           "options\n"
           "of the drawings go with it alone.\n\nExamples:\n"
           "  solvedesk report lowpass show gain\n"
           "  solvedesk report lowpass show gain --csv gain.csv --complex mag-deg\n"
           "  solvedesk report lowpass show gain match --html curves.html\n"
           "  solvedesk report lowpass show gain --svg gain.svg";
  if (action == "list")
    return "report list: all reports with what they show.\n\nExample:\n  solvedesk report lowpass list --json";
  if (action == "remove")
    return "report remove NAME: drops the definition; nothing solved is touched.\n\nExample:\n"
           "  solvedesk report lowpass remove gain";
  return "Examples:\n"
         "  solvedesk report lowpass add gain --y \"dB(S(2,1))\" --y \"dB(S(1,1))\" --over cscale\n"
         "  solvedesk report lowpass add worst --x cscale --y \"max(dB(S(1,1)))\" --over lscale\n"
         "  solvedesk report lowpass show gain --csv gain.csv\n"
         "  solvedesk report lowpass show gain match --html curves.html\n"
         "  solvedesk report lowpass --html lowpass.html --live\n"
         "  solvedesk report lowpass show gain --svg gain.svg\n"
         "  solvedesk report lowpass remove gain\n\n"
         "--html writes one file that opens in any browser, offline; without ACTION it holds all reports, the\n"
         "design's tree, convergence and costs. A file that is there is replaced.\n"
         "A row stands for each sample of each variation; a variation without solved data is one row of '-'.\n"
         "Only what an edit or a solve reached is evaluated again when a report is shown once more.\n"
         "`report PROJECT ACTION --help` tells of one action.";
}

} // namespace

void AddReportVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ReportWords>();
  CLI::App * const verb =
      program.add_subcommand("report", "curves over solved data: define them, show them as tables, draw them");
  AddProjectWord(*verb, words->project);
  verb->add_option("ACTION", words->action, "add, edit, remove, list or show; none draws all of the project")
      ->check(CLI::IsMember({"add", "edit", "remove", "list", "show"}));
  verb->add_option("NAME", words->names, "the report; several for a page of them");
  verb->add_option("--x", words->x,
                   "what the curves run over: the samples (Freq) without it, a design variable, an expression");
  verb->add_option("--y", words->y, "an expression, once for each curve: quantities, output variables, functions")
      ->allow_extra_args(false);
  verb->add_option("--over", words->over, "design variables, with commas: a curve for each solved value of them")
      ->allow_extra_args(false);
  verb->add_option("--setup", words->setup, "whose data; the first setup's without it");
  verb->add_option("--solution", words->solution, "the setup's solution, where it has several");
  verb->add_option("--variation", words->variation,
                   "values of variables, as in \"cscale=0.95\"; those that are not named stand as they do");
  verb->add_option("--display", words->display, "table, rectangular, polar or smith");
  AddDrawOptions(*verb, words->draw);
  AddViewOptions(*verb, words->view, "show: ");
  verb->footer([words] { return HelpEnd(words->action); });
  verb->callback([&action, words] { action = [words] { return RunReport(*words); }; });
}

} // namespace solvedesk
