#include "apps/solvedesk/report/ProjectPage.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/report/PageRecords.h"
#include "apps/solvedesk/report/PageTree.h"
#include "apps/solvedesk/report/ReportView.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"

#include <ctime>

namespace solvedesk {
namespace {

namespace page = desktop::page;
namespace pageview = desktop::pageview;

std::string Now() {
  std::time_t const now = std::time(nullptr);
  std::tm local{};
  char text[64] = "";
  if (localtime_r(&now, &local))
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %z", &local);
  return text;
}

std::size_t SamplesOf(page::Item const & item) {
  std::size_t samples = 0;
  if (auto const * const plot = std::get_if<page::RectangularPlot>(&item))
    for (page::Series const & series : plot->series)
      samples += series.x.size();
  if (auto const * const plot = std::get_if<page::PolarPlot>(&item))
    for (page::ComplexSeries const & series : plot->series)
      samples += series.values.size();
  if (auto const * const chart = std::get_if<page::SmithChart>(&item))
    for (page::ComplexSeries const & series : chart->series)
      samples += series.values.size();
  return samples;
}

class PageMaker {
public:
  PageMaker(desktop::Session & session, std::string const & project, PageContents const & contents)
      : m_session(session), m_project(project), m_contents(contents) {}

  ProjectPage Make() {
    page::Document & document = m_page.document;
    document.title = m_session.GetProject().GetName();
    document.subtitle = m_session.GetProduct().GetName() + L", as of " + text::FromUtf8(Now());
    m_session.GetLiveReports().Update(m_contents.reports);
    for (desktop::ReportDefinition const & report : m_contents.reports)
      document.sections.push_back(Report(report));
    if (!m_contents.isWhole)
      return std::move(m_page);
    if (m_contents.reports.empty())
      document.sections.push_back({L"Reports", L"The project has no reports; `solvedesk report add` makes one.", {}});
    document.sections.push_back({L"Design", {}, {TreeOf(m_session)}});
    Add(L"Convergence", L"The passes of the last solve of each variation.", ConvergenceItems(m_session, m_page.code));
    Add(L"Costs", L"What the solves took, as each worker measured it; of memory the most counts.",
        ProfileItems(m_session, m_page.code));
    return std::move(m_page);
  }

private:
  void Add(AString const & title, AString const & text, std::vector<page::Item> items) {
    if (!items.empty())
      m_page.document.sections.push_back({title, text, std::move(items)});
  }

  // What is shown looks at curves that the next report may change.
  page::Section Report(desktop::ReportDefinition const & report) {
    pageview::ReportItems const items(m_session, report, m_contents.look);
    auto const & shown = items.GetShown();
    page::Section section{report.name, desktop::DescribeReport(report), {}};
    if (std::string const why = WhyNothing(report, shown, m_project); !why.empty()) {
      m_page.nothing.push_back(why);
      Note(section, why);
      return section;
    }
    for (std::string const & note : NotesOf(shown, m_project)) {
      m_page.notes.push_back(m_contents.reports.size() > 1 && note.rfind("report ", 0) != 0
                                 ? "report " + Utf8(report.name) + ": " + note
                                 : note);
      Note(section, note);
    }
    section.items = items.Plots();
    m_page.plots += section.items.size();
    for (page::Item const & item : section.items)
      m_page.points += SamplesOf(item);
    if (auto numbers = items.Numbers(); !numbers.entries.empty())
      section.items.push_back(std::move(numbers));
    section.items.push_back(items.Table());
    return section;
  }

  static void Note(page::Section & section, std::string const & note) {
    section.text += AString(L"\nNote: ") + text::FromUtf8(note);
  }

  desktop::Session & m_session;
  std::string const & m_project;
  PageContents const & m_contents;
  ProjectPage m_page;
};

} // namespace

ProjectPage MakePage(desktop::Session & session, std::string const & project, PageContents const & contents) {
  return PageMaker(session, project, contents).Make();
}

} // namespace solvedesk
