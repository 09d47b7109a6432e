// Edits of the definitions of reports, and how they follow names.
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/ReportList.h"
#include "plotkit/outputvariable/OutputVariable.h"

#include <algorithm>

namespace desktop {

namespace {

using Definitions = ReportList::Definitions;

AString Known(ReportList const & reports) {
  AString known;
  for (ReportDefinition const & report : reports.All())
    known += (known.empty() ? AString() : AString(L", ")) + report.name;
  return known.empty() ? AString(L"none; add one with `report add`") : known;
}

std::size_t IndexOf(ReportList const & reports, AString const & name) {
  for (std::size_t i = 0; i < reports.All().size(); ++i)
    if (AString::MatchNoCase(reports.All()[i].name, name))
      return i;
  throw Error(ErrorKind::kUsage, name + L": the project has no report of that name; it has: " + Known(reports));
}

void RefuseSenseless(ReportDefinition const & report) {
  if (report.name.empty() || report.name != report.name.Trimmed())
    throw Error(ErrorKind::kUsage,
                AString(L"'") + report.name + L"': can't be the name of a report; give one without blanks at its ends");
  bool const hasEmpty =
      std::any_of(report.y.begin(), report.y.end(), [](AString const & text) { return text.Trimmed().empty(); });
  if (report.y.empty() || hasEmpty)
    throw Error(ErrorKind::kUsage, L"report " + report.name + L": has no y; give at least one expression");
}

void RefuseTakenName(ReportList const & reports, AString const & name) {
  if (reports.Find(name))
    throw Error(ErrorKind::kUsage, name + L": there is a report of that name already; choose another one");
}

} // namespace

void Editor::ChangeReports(Edit & edit, std::vector<ReportDefinition> const & reports) {
  auto const kept = std::make_shared<Definitions>(reports);
  edit.Exchange([&list = m_session.GetReports(), kept] { list.Exchange(*kept); });
}

void Editor::FollowInReports(Edit & edit, std::function<void(ReportDefinition & report)> const & change) {
  Definitions reports = m_session.GetReports().All();
  std::for_each(reports.begin(), reports.end(), change);
  if (reports != m_session.GetReports().All())
    ChangeReports(edit, reports);
}

void Editor::RenameInExpressions(Edit & edit, AString const & name, AString const & newName) {
  FollowInReports(edit, [&](ReportDefinition & report) {
    for (AString & variable : report.over)
      variable = AString::MatchNoCase(variable, name) ? newName : variable;
    report.x = WithRenamedWord(report.x, name, newName);
    for (AString & y : report.y)
      y = WithRenamedWord(y, name, newName);
  });
  ProductSolutionManager & manager = m_session.GetManager();
  if (!manager.AreOldReportStructuresSupported())
    return;
  std::vector<OutputVariable *> variables;
  manager.GetOutputVariables(variables);
  for (OutputVariable * const variable : variables)
    if (AString const text = WithRenamedWord(variable->GetValueBaseText(), name, newName);
        text != variable->GetValueBaseText())
      manager.EditOutputVariable(variable, text, edit.command.get());
}

void Editor::AddReport(ReportDefinition const & report) {
  RefuseSenseless(report);
  RefuseTakenName(m_session.GetReports(), report.name);
  Definitions reports = m_session.GetReports().All();
  reports.push_back(report);
  Run(AString(L"report add ") + WordOfCommand(report.name), [&](Edit & edit) {
    ChangeReports(edit, reports);
    edit.Tell(AString(L"report ") + report.name, AString(), DescribeReport(report));
  });
}

bool Editor::EditReport(AString const & name, ReportDefinition const & report) {
  Definitions reports = m_session.GetReports().All();
  std::size_t const index = IndexOf(m_session.GetReports(), name);
  RefuseSenseless(report);
  if (!AString::MatchNoCase(name, report.name))
    RefuseTakenName(m_session.GetReports(), report.name);
  ReportDefinition const former = reports[index];
  reports[index] = report;
  return Run(AString(L"report edit ") + WordOfCommand(former.name), [&](Edit & edit) {
    if (former == report)
      return;
    ChangeReports(edit, reports);
    if (former.name != report.name)
      edit.Tell(L"name of report", former.name, report.name);
    if (AString const from = DescribeReport(former), to = DescribeReport(report); from != to)
      edit.Tell(AString(L"report ") + report.name, from, to);
    if (former.display != report.display)
      edit.Tell(AString(L"display of report ") + report.name, WordOf(former.display), WordOf(report.display));
  });
}

void Editor::RemoveReport(AString const & name) {
  Definitions reports = m_session.GetReports().All();
  std::size_t const index = IndexOf(m_session.GetReports(), name);
  ReportDefinition const former = reports[index];
  reports.erase(reports.begin() + static_cast<std::ptrdiff_t>(index));
  Run(AString(L"report remove ") + WordOfCommand(former.name), [&](Edit & edit) {
    ChangeReports(edit, reports);
    edit.Tell(AString(L"report ") + former.name, DescribeReport(former), AString());
  });
}

} // namespace desktop
