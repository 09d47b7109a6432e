#include "desktop/report/ReportCurves.h"

#include "basekit/value/ExpressionParser.h"
#include "basekit/value/Value.h"
#include "basekit/value/Variable.h"
#include "basekit/value/expression/Error.h"
#include "desktop/design/Design.h"
#include "desktop/message/HeldMessages.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/report/Reporter.h"
#include "plotkit/Subsweep.h"
#include "plotkit/SweepBase.h"
#include "plotkit/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>
#include <memory>

namespace desktop {

namespace {

AString Joined(std::vector<AString> const & names) {
  AString text;
  for (AString const & name : names)
    text += (text.empty() ? AString() : AString(L", ")) + name;
  return text.empty() ? AString(L"none") : text;
}

bool IsAmong(std::vector<AString> const & names, AString const & name) {
  return std::any_of(names.begin(), names.end(),
                     [&name](AString const & other) { return AString::MatchNoCase(other, name); });
}

/// The curves of one definition on the way.
class Making {
public:
  Making(Session & session, ReportDefinition const & report, BaseSolution & solution)
      : m_session(session), m_report(report), m_extractor(*solution.GetBaseSimDataExtractor()) {
    m_curves.solution = &solution;
    m_curves.traces.resize(report.y.size(), nullptr);
    m_extractor.GetSweeps(m_sweeps, FirstReportType(session), &m_context, rep::DisplayType{}, true);
  }

  ReportCurves Make() {
    if (AddVariables() && IsGood(m_report.x)) {
      AddAxis();
      for (std::size_t i = 0; i < m_report.y.size(); ++i)
        m_curves.traces[i] = IsGood(m_report.y[i]) ? MakeTrace(m_report.y[i]) : nullptr;
    }
    return std::move(m_curves);
  }

private:
  static unsigned FirstReportType(Session & session) {
    std::vector<AString> names;
    session.GetManager().GetReportTypeNames(names);
    return names.empty() ? 0 : session.GetManager().GetReportType(names.front());
  }

  void Tell(AString const & problem) { m_curves.problems.push_back(L"report " + m_report.name + L": " + problem); }

  // A variable that nothing is solved over has the design's own value alone: there is no sweep, and none is missed.
  void AddVariable(AString const & name) {
    if (IsAmong(m_curves.over, name))
      return;
    m_curves.over.push_back(name);
    for (SweepBase * const sweep : m_sweeps)
      if (*sweep == name) {
        m_points.push_back(sweep->CreateSubsweep(true));
        return;
      }
  }

  bool AddVariables() {
    Design const & design = m_session.GetDesign();
    for (AString const & name : m_report.over) {
      Variable const * const variable = design.FindVariable(name);
      if (!variable) {
        std::vector<AString> known;
        for (Variable const * const other : design.GetVariables())
          known.push_back(other->GetName());
        Tell(L"'" + name + L"' is no design variable that curves could run over; there are " + Joined(known));
        return false;
      }
      AddVariable(variable->GetName());
    }
    for (AString const & word : ExpressionWords(m_report.x))
      if (Variable const * const variable = design.FindVariable(word))
        AddVariable(variable->GetName());
    return true;
  }

  // The samples of the solution count one by one where x runs over them; else a curve is a number for each variation.
  void AddAxis() {
    std::vector<AString> const words = ExpressionWords(m_report.x);
    for (SweepBase * const sweep : m_sweeps)
      if (Value::GetIntrinsicVariable(sweep->GetName()) && IsAmong(words, sweep->GetName()))
        m_points.push_back(sweep->CreateSubsweep(true));
  }

  bool IsGood(AString const & text) {
    HeldMessages const messages;
    std::unique_ptr<TraceComponent> const component(m_extractor.CreateTraceComponent(text, &m_context));
    if (component)
      return true;
    NameSpaceSetup const names(m_extractor, true);
    Value value(Units::kNoUnits);
    expr::Error error;
    bool const isExpression = ExpressionParser::ValidateExpression(value, text, {m_extractor.GetIValueParser()}, error);
    AString const told = messages.Text();
    Tell(L"'" + text + L"' can't be evaluated" +
         (isExpression ? (told.empty() ? AString() : L": " + told) : L": " + error.Text()));
    return false;
  }

  Trace * MakeTrace(AString const & y) {
    Reporter const reporter(m_extractor, m_context, &m_session.GetDesign().NominalInstance(), m_points, m_report.x, y);
    std::vector<Trace *> traces;
    m_extractor.CreateTraces(reporter, traces);
    return traces.empty() ? nullptr : traces.front();
  }

  Session & m_session;
  ReportDefinition const & m_report;
  BaseSimDataExtractor & m_extractor;
  SimValueContext m_context;
  std::vector<SweepBase *> m_sweeps;
  SubsweepVector m_points;
  ReportCurves m_curves;
};

BaseSimulationSetup * FindSetup(Session & session, AString const & name) {
  for (auto const & [id, setup] : session.GetManager().GetSetups())
    if (name.empty() || AString::MatchNoCase(setup->GetName(), name))
      return setup;
  return nullptr;
}

} // namespace

BaseSolution * FindSolution(Session & session, ReportDefinition const & report) {
  if (BaseSimulationSetup const * const setup = FindSetup(session, report.setup))
    for (auto const & [id, solution] : setup->GetSolutions())
      if (report.solution.empty() || AString::MatchNoCase(solution->GetSolutionName(), report.solution))
        return solution;
  return nullptr;
}

ReportCurves MakeCurves(Session & session, ReportDefinition const & report) {
  BaseSolution * const solution = FindSolution(session, report);
  if (solution && solution->GetBaseSimDataExtractor())
    return Making(session, report, *solution).Make();
  ReportCurves none;
  none.traces.resize(report.y.size(), nullptr);
  std::vector<AString> known;
  for (auto const & [id, setup] : session.GetManager().GetSetups())
    for (auto const & [solutionID, other] : setup->GetSolutions())
      known.push_back(other->GetGlobalSolutionName());
  none.problems.push_back(L"report " + report.name + L": the project has no solution '" + report.setup +
                          (report.solution.empty() ? AString() : L" : " + report.solution) + L"'; it has: " +
                          Joined(known) + L"; edit the report's setup");
  return none;
}

} // namespace desktop
