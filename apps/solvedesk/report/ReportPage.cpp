#include "apps/solvedesk/report/ReportPage.h"

#include "apps/solvedesk/console/OutputFile.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/report/LivePage.h"
#include "apps/solvedesk/report/ReportView.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/message/NameList.h"
#include "desktop/page/HtmlPage.h"
#include "desktop/page/Svg.h"
#include "desktop/report/ReportList.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

namespace page = desktop::page;
using desktop::Error;
using desktop::ErrorKind;

/// Browsers take seconds to open more.
constexpr std::size_t kLargePage = 50'000'000;

std::string SizeText(std::size_t bytes) {
  return bytes < 1'000'000 ? fmt::format("{:.0f} kB", static_cast<double>(bytes) / 1e3)
                           : fmt::format("{:.1f} MB", static_cast<double>(bytes) / 1e6);
}

desktop::pageview::Look LookOf(DrawRequest const & request) {
  desktop::pageview::Look look;
  look.isPolar = request.isPolar;
  if (request.draw.as.empty())
    return look;
  look.display = desktop::DisplayOf(ArgumentText(request.draw.as));
  if (!look.display)
    throw Error(ErrorKind::kUsage,
                L"--as " + ArgumentText(request.draw.as) + L": is none of " + desktop::DisplayWords());
  return look;
}

// Nothing to show is no failure of a whole project, or of a page that waits for its numbers.
void CheckAnything(ProjectPage const & made, DrawRequest const & request) {
  bool const isAsked = !request.names.empty() && !request.draw.isLive;
  if (isAsked && made.nothing.size() == made.document.sections.size())
    throw Error(ErrorKind::kFailed, text::FromUtf8(fmt::format("{}", fmt::join(made.nothing, "; "))));
}

std::string SvgOf(page::Item const & item) {
  if (auto const * const plot = std::get_if<page::RectangularPlot>(&item))
    return page::Svg(*plot);
  if (auto const * const plot = std::get_if<page::PolarPlot>(&item))
    return page::Svg(*plot);
  auto const * const chart = std::get_if<page::SmithChart>(&item);
  return chart ? page::Svg(*chart) : std::string();
}

AString TitleOf(page::Item const & item) {
  return std::visit([](auto const & one) { return one.title; }, item);
}

page::Item const & PlotToDraw(std::vector<page::Item> const & plots, DrawRequest const & request) {
  if (plots.empty())
    throw Error(ErrorKind::kFailed, L"--svg: the report is numbers without anything that curves could run over; "
                                    L"`report show` tells them");
  std::string list;
  for (std::size_t i = 0; i < plots.size(); ++i)
    list += fmt::format("{}{} ({})", i > 0 ? ", " : "", i + 1, Utf8(TitleOf(plots[i])));
  auto const wanted = static_cast<std::size_t>(request.draw.plot);
  if (wanted == 0 && plots.size() > 1)
    throw Error(ErrorKind::kUsage,
                text::FromUtf8(fmt::format("--svg: the report has {} plots, and a picture holds one: choose it with "
                                           "--plot; there are {}",
                                           plots.size(), list)));
  if (wanted > plots.size())
    throw Error(ErrorKind::kUsage,
                text::FromUtf8(fmt::format("--plot {}: there is no such plot; there are {}", wanted, list)));
  return plots[wanted == 0 ? 0 : wanted - 1];
}

int DrawPicture(DrawRequest const & request) {
  CheckOutputFile("--svg", request.draw.svg);
  auto const session = OpenForReading(request.project);
  desktop::ReportDefinition const report = KnownReport(*session, request.names.front());
  desktop::pageview::ReportItems const items(*session, report, LookOf(request));
  auto const & shown = items.GetShown();
  RefuseNothing(report, shown, request.project);
  std::vector<std::string> const notes = NotesOf(shown, request.project);
  auto const plots = items.Plots();
  std::string const svg = SvgOf(PlotToDraw(plots, request));
  for (std::string const & note : notes)
    PrintMessage(note);
  WriteOutputFile("--svg", request.draw.svg, svg);
  PrintResult(request.output, fmt::format("{}: {}\n", request.draw.svg, SizeText(svg.size())),
              {{"svg", request.draw.svg}, {"bytes", svg.size()}, {"report", Utf8(report.name)}, {"notices", notes}});
  return 0;
}

} // namespace

void AddDrawOptions(CLI::App & verb, DrawOptions & options) {
  auto const isNamed = [](std::string const & file) {
    return file.empty() ? std::string("names no file; give one") : std::string();
  };
  verb.add_option("--html", options.html, "a page of the reports, in one file; of the whole project without an ACTION")
      ->check(isNamed);
  verb.add_option("--svg", options.svg, "show: a picture of one plot")->check(isNamed);
  verb.add_option("--plot", options.plot, "which plot of a report that has several, from 1")
      ->check(CLI::Range(1, 1000));
  verb.add_option("--as", options.as, "draw as table, rectangular, polar or smith, whatever the report says");
  verb.add_flag("--live", options.isLive, "--html: write the page anew as a study goes on, until it ends or Ctrl-C");
  verb.add_flag("--wait", options.waits, "--live: wait for a process that solves, when there is none");
}

void CheckDrawOptions(DrawOptions const & options) {
  if (!options.html.empty() && !options.svg.empty())
    throw Error(ErrorKind::kUsage, L"--html and --svg: give one of them");
  if (!options.IsAny() && (options.isLive || options.waits || !options.as.empty() || options.plot > 0))
    throw Error(ErrorKind::kUsage, L"--as, --plot, --live and --wait go with --html FILE or --svg FILE; `report edit "
                                   L"NAME --display` changes how a report is drawn");
  if (options.isLive && options.html.empty())
    throw Error(ErrorKind::kUsage, L"--live: goes with --html FILE");
  if (options.waits && !options.isLive)
    throw Error(ErrorKind::kUsage, L"--wait: goes with --live");
  if (options.plot > 0 && options.svg.empty())
    throw Error(ErrorKind::kUsage, L"--plot: goes with --svg FILE; a page has all plots");
}

desktop::ReportDefinition const & KnownReport(desktop::Session & session, std::string const & word) {
  AString const name = ArgumentText(word);
  if (desktop::ReportDefinition const * const report = session.GetReports().Find(name))
    return *report;
  std::vector<AString> known;
  for (desktop::ReportDefinition const & report : session.GetReports().All())
    known.push_back(report.name);
  throw Error(ErrorKind::kUsage,
              L"report " + desktop::ShortName(name) + L": the project has no report of that name; it has: " +
                  desktop::NameList(known, name) + (known.empty() ? L"; add one with `report add`" : L""));
}

PageContents ContentsOf(desktop::Session & session, DrawRequest const & request) {
  PageContents contents;
  contents.look = LookOf(request);
  contents.isWhole = request.names.empty();
  for (std::string const & name : request.names)
    contents.reports.push_back(KnownReport(session, name));
  if (contents.isWhole)
    for (desktop::ReportDefinition const & report : session.GetReports().All())
      contents.reports.push_back(report);
  return contents;
}

int DeliverPage(ProjectPage const & made, DrawRequest const & request, std::optional<int> rewrites) {
  std::string const html = page::HtmlPage(made.document);
  WriteOutputFile("--html", request.draw.html, html);
  std::vector<std::string> notes = made.notes;
  notes.insert(notes.end(), made.nothing.begin(), made.nothing.end());
  if (html.size() > kLargePage)
    notes.push_back(fmt::format("{}: {} is much for a browser; `report show NAME --html` draws one report, `report "
                                "edit NAME --over` or --variation lets it show less",
                                request.draw.html, SizeText(html.size())));
  for (std::string const & note : notes)
    PrintMessage(note);
  nlohmann::ordered_json document{{"html", request.draw.html},
                                  {"bytes", html.size()},
                                  {"plots", made.plots},
                                  {"points", made.points},
                                  {"notices", notes}};
  if (rewrites)
    document["written"] = *rewrites + 1;
  PrintResult(request.output,
              fmt::format("{}: {} of {}, {}{}\n", request.draw.html, Count(static_cast<long long>(made.plots), "plot"),
                          Count(static_cast<long long>(made.points), "point"), SizeText(html.size()),
                          rewrites ? fmt::format(", written {} times", *rewrites + 1) : std::string()),
              document);
  return made.code;
}

int DrawReports(DrawRequest const & request) {
  if (!request.draw.svg.empty())
    return DrawPicture(request);
  CheckOutputFile("--html", request.draw.html);
  if (request.draw.isLive)
    return DrawLive(request);
  auto const session = OpenForReading(request.project);
  NoteOfSource(*session);
  ProjectPage const made = MakePage(*session, request.project, ContentsOf(*session, request));
  CheckAnything(made, request);
  return DeliverPage(made, request);
}

} // namespace solvedesk
