// Edits of the definitions of reports, and how they follow names.
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/message/NameList.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/ReportCheck.h"
#include "desktop/report/ReportList.h"
#include "plotkit/outputvariable/OutputVariable.h"

#include <algorithm>

namespace desktop {

namespace {

using Definitions = ReportList::Definitions;

AString Known(ReportList const & reports, AString const & sought) {
  std::vector<AString> names;
  for (ReportDefinition const & report : reports.All())
    names.push_back(report.name);
  return NameList(names, sought) + (names.empty() ? L"; add one with `report add`" : L"");
}

std::size_t IndexOf(ReportList const & reports, AString const & name) {
  for (std::size_t i = 0; i < reports.All().size(); ++i)
    if (AString::MatchNoCase(reports.All()[i].name, name))
      return i;
  throw Error(ErrorKind::kUsage,
              ShortName(name) + L": the project has no report of that name; it has: " + Known(reports, name));
}

// Values as they are written, under the new name.
AString WithRenamedVariable(AString const & variation, AString const & name, AString const & newName) {
  VariationText const text(variation);
  if (!text.Find(name.View()))
    return variation;
  variation::Writer renamed;
  for (VariationText::Pair const & pair : text.Pairs())
    renamed.Add(AString::MatchNoCase(AString(pair.name), name) ? newName.View() : pair.name, pair.text);
  return renamed.Take();
}

void RefuseTakenName(ReportList const & reports, AString const & name) {
  if (reports.Find(name))
    throw Error(ErrorKind::kUsage, ShortName(name) + L": there is a report of that name already; choose another one");
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
    report.variation = WithRenamedVariable(report.variation, name, newName);
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
  RefuseUnshowable(m_session, report);
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
  RefuseUnshowable(m_session, report);
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
