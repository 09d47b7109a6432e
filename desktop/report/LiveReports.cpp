#include "desktop/report/LiveReports.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/MixedKinds.h"
#include "desktop/report/ReportList.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/QuestionSpan.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/outputvariables/SharedAnalyses.h"

#include <algorithm>
#include <map>
#include <set>

namespace desktop {

namespace {

bool IsUpToDate(Trace const & trace) {
  SolutionPointSet const & points = trace.GetSolutionPointSet();
  return !trace.IsDirty() && !points.IsDirty() &&
         points.GetSolutionVersionID() == points.GetISimDataExtractor()->GetISolution()->GetVersionID();
}

bool IsColumnEmpty(ReportTable const & table, std::size_t column) {
  for (std::size_t row = 0; row < table.RowCount(); ++row)
    if (table.At(row, column))
      return false;
  return true;
}

// Samples that only nearly fit are none, which nobody would see from an empty column.
void AddLostCurves(ReportDefinition const & definition, ReportCurves const & curves, ReportTable const & table,
                   std::vector<AString> & problems) {
  std::size_t const firstY = table.Columns().size() - definition.y.size();
  for (std::size_t i = 0; i < curves.hasOtherSamples.size(); ++i)
    if (curves.hasOtherSamples[i] && curves.traces[i] && table.RowCount() > table.GapCount() &&
        IsColumnEmpty(table, firstY + i))
      problems.push_back((definition.name.empty() ? AString() : L"report " + definition.name + L": ") + L"'" +
                         definition.y[i] +
                         L"' runs over other samples, and has no value at those that are shown; give "
                         L"it a report of its own");
}

// Rows that have all their variables in common are told apart by nothing.
void AddNamelessSamples(ReportDefinition const & definition, ReportCurves const & curves, ReportTable const & table,
                        std::vector<AString> & notes) {
  bool const isOverVariable = std::any_of(curves.over.begin(), curves.over.end(), [&curves](AString const & name) {
    return AString::MatchNoCase(name, curves.x);
  });
  if (!isOverVariable || curves.unseenAxis.empty() || table.LongestCurve() <= 1)
    return;
  notes.push_back((definition.name.empty() ? AString() : L"report " + definition.name + L": ") + L"each value of " +
                  curves.x + AString::Format(L" has %ld rows, ", static_cast<long>(table.LongestCurve())) +
                  L"as y runs over " + curves.unseenAxis +
                  L", which is not shown; name one sample with --variation, as in \"" + curves.unseenAxis +
                  L"=...\", or make one number of them, as in max(" + definition.y.front() + L")");
}

std::vector<Trace const *> AsConst(std::vector<Trace *> const & traces) { return {traces.begin(), traces.end()}; }

bool MixesKinds(BaseSolutionManager const & manager, Trace const & trace) {
  std::vector<TraceComponent *> components;
  trace.GetTraceComponents(components);
  return std::any_of(components.begin(), components.end(), [&manager](TraceComponent const * component) {
    return !component->IsPlainText() && !MixedKinds(manager, component->GetValueText()).empty();
  });
}

void MarkDirty(std::list<Trace *> const & traces) {
  for (Trace * const trace : traces)
    trace->MarkItDirty(true);
}

/// Curves that don't hold any more, and the sets that an update of them evaluates.
struct CurvesToUpdate {
  std::size_t count = 0;
  std::vector<SolutionPointSet *> sets;

  void Add(Trace & trace) {
    ++count;
    SolutionPointSet & points = trace.GetSolutionPointSet();
    if (std::find(sets.begin(), sets.end(), &points) == sets.end())
      sets.push_back(&points);
  }
};

BaseSolution const & SolutionOf(SolutionPointSet const & points) {
  return dynamic_cast<BaseSolution const &>(*points.GetISimDataExtractor()->GetISolution());
}

// The update of all solutions together passes over imported data, and ends there: such sets are updated by themselves.
void UpdateSets(BaseSolutionManager & manager, std::vector<SolutionPointSet *> const & sets,
                IProgressMonitor * progress) {
  std::vector<ISolutionPointSet *> together;
  std::map<ISimDataExtractor *, std::vector<SolutionPointSet *>> imported;
  for (SolutionPointSet * const points : sets)
    if (SolutionOf(*points).IsSolutionImported())
      imported[points->GetISimDataExtractor()].push_back(points);
    else
      together.push_back(points);
  if (!together.empty())
    manager.CentralizedUpdateSolutionPointSets(progress, &together);
  for (auto & [extractor, ofOne] : imported)
    extractor->Update(true, &ofOne);
}

// What shows the data of an older version of the solution doesn't hold once there is data of the present one.
void MarkOldDataDirty(SolutionPointSet const & points) {
  BaseSolution const & solution = SolutionOf(points);
  if (solution.GetClosestVersionWithData() == solution.GetVersionID())
    return;
  std::list<Trace *> traces;
  points.GetAvailableTraces(traces);
  MarkDirty(traces);
}

// Where a question stands; nothing where it runs over variations.
VariableValues VariationOf(ReportDefinition const & question) {
  VariableValues values;
  if (question.over.empty() && question.x.empty())
    VariableValues::ResolveVariationKey(question.variation, nullptr, values, nullptr, true);
  return values;
}

} // namespace

// Under the reporter rewrite extractors have no curves, and say so when they are asked.
bool LiveReports::AreCurvesKept() const { return m_session.GetManager().AreOldReportStructuresSupported(); }

LiveReports::LiveReports(Session & session) : m_session(session) {
  if (!AreCurvesKept())
    return;
  std::vector<BaseSimDataExtractor *> extractors;
  session.GetManager().GetAllAssociatedSimDataExtractors(extractors);
  std::list<Trace *> read;
  for (BaseSimDataExtractor const * const extractor : extractors)
    extractor->GetAvailableTraces(read);
  m_read.insert(read.begin(), read.end());
}

// An edit, or what was solved since, may give an expression quantities of several kinds.  The library takes a curve to
// be of one kind; such a one has no value, and is made again once it makes sense.
void LiveReports::DropMixedCurves() {
  ProductSolutionManager & manager = m_session.GetManager();
  SharedAnalyses const analyses(manager);
  std::list<Trace *> traces;
  manager.GetAvailableTraces(traces);
  std::erase_if(traces, [&manager](Trace const * trace) { return !MixesKinds(manager, *trace); });
  if (traces.empty())
    return;
  for (Trace * const mixed : traces) {
    m_read.erase(mixed);
    for (Report & report : m_reports)
      std::replace(report.curves.traces.begin(), report.curves.traces.end(), mixed, static_cast<Trace *>(nullptr));
  }
  Collect();
}

LiveReports::Report & LiveReports::ReportOf(ReportDefinition const & definition) {
  auto const at = std::find_if(m_reports.begin(), m_reports.end(), [&](Report const & report) {
    return AString::MatchNoCase(report.definition.name, definition.name);
  });
  Report & report = at == m_reports.end() ? m_reports.emplace_back() : *at;
  if (!(report.definition == definition)) {
    report.definition = definition;
    report.isToBeMade = true;
  }
  return report;
}

// A curve that holds nothing yet counts as clean when it is made, as its solution is valid.
void LiveReports::Make(Report & report) {
  if (!AreCurvesKept())
    throw Error(ErrorKind::kUsage,
                L"report " + report.definition.name + L": under the reporter rewrite ReportSetup shows reports");
  report.curves = MakeCurves(m_session, report.definition, report.axis);
  for (Trace * const trace : report.curves.traces)
    if (trace && trace->GetSegments().empty())
      trace->MarkItDirty(true);
  report.isToBeMade = false;
}

// Reports share sets, so that an update of one evaluates curves of others too.
std::size_t LiveReports::UpdateCurves(std::vector<Report *> const & reports, IProgressMonitor * progress) {
  CurvesToUpdate curves;
  for (Report const * const report : reports)
    for (Trace * const trace : report->curves.traces)
      if (trace && !IsUpToDate(*trace))
        curves.Add(*trace);
  if (curves.sets.empty())
    return 0;
  UpdateSets(m_session.GetManager(), curves.sets, progress);
  std::set<ISimDataExtractor *> extractors;
  for (SolutionPointSet const * const points : curves.sets) {
    MarkOldDataDirty(*points);
    extractors.insert(points->GetISimDataExtractor());
  }
  for (ISimDataExtractor * const extractor : extractors)
    extractor->ValidateSolutionPointSet();
  return curves.count;
}

void LiveReports::Update(std::vector<ReportDefinition> const & definitions, IProgressMonitor * progress) {
  std::vector<Report *> reports;
  for (ReportDefinition const & definition : definitions) {
    Report & report = *reports.emplace_back(&ReportOf(definition));
    if (report.isToBeMade)
      Make(report);
  }
  UpdateCurves(reports, progress);
}

LiveReports::Shown LiveReports::Show(ReportDefinition const & definition, IProgressMonitor * progress) {
  return ShowAsItIs(ReportOf(definition), progress);
}

LiveReports::Shown LiveReports::ShowAsItIs(Report & report, IProgressMonitor * progress) {
  if (report.isToBeMade)
    Make(report);
  std::size_t const updated = UpdateCurves({&report}, progress);
  ReportCurves const & curves = report.curves;
  ReportTable const table(curves.over, curves.x, report.definition.y, AsConst(curves.traces), curves.units);
  std::vector<AString> problems = curves.problems;
  AddLostCurves(report.definition, curves, table, problems);
  std::vector<AString> notes = curves.notes;
  AddNamelessSamples(report.definition, curves, table, notes);
  return {curves.solution, curves.x, table, curves.given, problems, notes, curves.areWordsWrong, updated};
}

// Whether an expression is one number for a variation shows when it is evaluated.
LiveReports::Shown LiveReports::Evaluate(ReportDefinition const & question) {
  BaseSolution const * const solution = FindSolution(m_session, question);
  QuestionSpan const span(solution ? solution->GetBaseSimDataExtractor() : nullptr, VariationOf(question));
  Report & report = ReportOf(question);
  report.axis = Axis::kNone;
  Shown shown = ShowAsItIs(report, nullptr);
  if (shown.table.LongestCurve() <= 1 || !question.x.empty())
    return shown;
  report.axis = Axis::kOwn;
  report.isToBeMade = true;
  return ShowAsItIs(report, nullptr);
}

void LiveReports::Forget(ReportDefinition const & definition) {
  std::erase_if(m_reports, [&](Report const & report) { return report.definition == definition; });
  Collect();
}

void LiveReports::DropUnused() {
  std::erase_if(m_reports, [this](Report const & report) {
    ReportDefinition const * const there = m_session.GetReports().Find(report.definition.name);
    return !there || !(*there == report.definition);
  });
  Collect();
}

// What the others made of a report shows in the curves that came with the file: they are found again, not made.
void LiveReports::KeepWhatReportsNeed() {
  if (!AreCurvesKept())
    return;
  if (!m_read.empty()) {
    std::set<Trace *> needed;
    for (ReportDefinition const & report : m_session.GetReports().All())
      for (Trace * const trace : MakeCurves(m_session, report).traces)
        if (m_read.contains(trace))
          needed.insert(trace);
    m_read = std::move(needed);
  }
  DropUnused();
}

void LiveReports::Collect() {
  std::set<Trace *> inUse = m_read;
  for (Report const & report : m_reports)
    inUse.insert(report.curves.traces.begin(), report.curves.traces.end());
  inUse.erase(nullptr);
  m_session.GetManager().DoGarbageCollection(inUse);
}

void LiveReports::Follow(KelvroCommand & command) {
  ProductSolutionManager & manager = m_session.GetManager();
  manager.SynchronizeSweeps(&command);
  if (!AreCurvesKept())
    return;
  DropMixedCurves();
  manager.SynchronizeTraces(&command);
  for (Report & report : m_reports) {
    report.isToBeMade = true;
    if (report.curves.solution)
      report.curves.solution->GetBaseSimDataExtractor()->ValidateSolutionPointSet();
  }
}

// Curves that an earlier session left, of reports that nobody looked at in this one, were evaluated along with others.
void LiveReports::ResultsChanged() {
  for (Report & report : m_reports)
    report.isToBeMade = true;
  if (!AreCurvesKept())
    return;
  std::list<Trace *> traces;
  m_session.GetManager().GetAvailableTraces(traces);
  MarkDirty(traces);
}

std::vector<LiveReports::State> LiveReports::States() const {
  std::vector<State> states;
  for (Report const & report : m_reports) {
    if (!m_session.GetReports().Find(report.definition.name))
      continue;
    State state{report.definition.name, 0, report.curves.traces.size()};
    for (Trace const * const trace : report.curves.traces)
      state.dirty += trace && IsUpToDate(*trace) ? 0 : 1;
    states.push_back(state);
  }
  return states;
}

} // namespace desktop
