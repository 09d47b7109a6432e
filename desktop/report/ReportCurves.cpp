#include "desktop/report/ReportCurves.h"

#include "basekit/value/ExpressionParser.h"
#include "basekit/value/Value.h"
#include "basekit/value/Variable.h"
#include "basekit/value/expression/Error.h"
#include "basekit/value/expression/SyntaxTree.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/design/NumberWord.h"
#include "desktop/message/HeldMessages.h"
#include "desktop/message/NameList.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/MixedKinds.h"
#include "desktop/report/ReportCheck.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/report/Reporter.h"
#include "desktop/report/SelfReference.h"
#include "desktop/report/WholeCurve.h"
#include "plotkit/sweep/Subsweep.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <memory>
#include <optional>

namespace desktop {

namespace {

bool IsAmong(std::vector<AString> const & names, AString const & name) {
  return std::any_of(names.begin(), names.end(),
                     [&name](AString const & other) { return AString::MatchNoCase(other, name); });
}

/// What people call the frequency, whose variable has a shorter name.
wchar_t const * const kFrequency = L"Freq";
/// Solvers add their axes up step by step, and print them with ten digits or so: a sample that people name by its round
/// number is met only nearly.
constexpr double kSampleTolerance = 1e-9;

bool IsSameSample(double there, double wanted) {
  return std::abs(there - wanted) <= kSampleTolerance * std::max(std::abs(there), std::abs(wanted));
}

/// The nearest: several may lie that close together.
std::optional<unsigned> SampleAt(Sweep const & sweep, double wanted) {
  std::optional<unsigned> nearest;
  double least = 0.0;
  for (unsigned place = 0; place < sweep.GetCount(); ++place) {
    double const there = sweep.Column().ComplexAt(place).real();
    double const distance = std::abs(there - wanted);
    if (!IsSameSample(there, wanted) || (nearest && distance >= least))
      continue;
    nearest = place;
    least = distance;
  }
  return nearest;
}

// A question has no name.
AString NameFirst(ReportDefinition const & report, AString const & problem) {
  return (report.name.empty() ? AString() : L"report " + report.name + L": ") + problem;
}

/// The curves of one definition on the way.
class Making {
public:
  Making(Session & session, ReportDefinition const & report, BaseSolution & solution)
      : m_session(session), m_design(session.GetDesign()), m_report(report),
        m_extractor(*solution.GetBaseSimDataExtractor()) {
    m_curves.solution = &solution;
    m_curves.traces.resize(report.y.size(), nullptr);
    m_curves.units.resize(report.y.size(), Units::kNoUnits);
    FindReportTypes();
    m_context = ProductSolutionManager::ContextOf(m_reportType);
    m_extractor.GetSweeps(m_sweeps, m_reportType, &m_context, rep::DisplayType{}, true);
  }

  ReportCurves Make(Axis axis) {
    ChooseX(axis);
    if (!AddVariables() || !GoToVariation() || !IsGood(m_x))
      return std::move(m_curves);
    AddAxis();
    for (std::size_t i = 0; i < m_report.y.size(); ++i)
      if (IsGood(m_report.y[i])) {
        m_curves.traces[i] = MakeTrace(m_report.y[i]);
        m_curves.units[i] = UnitsOfRanged(m_report.y[i]);
        TellNarrowed(m_report.y[i]);
      }
    return std::move(m_curves);
  }

  /// Makes nothing.
  std::vector<AString> FindProblems() {
    ChooseX(Axis::kOwn);
    bool const areVariablesThere = AddVariables();
    if (HasData() && areVariablesThere && GoToVariation() && IsGood(m_x))
      for (AString const & y : m_report.y)
        IsGood(y);
    return std::move(m_curves.problems);
  }

private:
  bool HasData() const {
    BaseSolution const & solution = *m_curves.solution;
    return std::any_of(
        solution.GetVariations().begin(), solution.GetVariations().end(), [&solution](auto const & item) {
          return solution.HasSolutionData(item.second->GetDesignVariationKey(), item.second->GetVersionID());
        });
  }

  QuantityReportType const * ReportType(unsigned number) const {
    auto const * const quantities = dynamic_cast<QuantityExtractor const *>(&m_extractor);
    return quantities ? quantities->FindReportType(number) : nullptr;
  }

  bool RunsOverSamples(unsigned reportType) const {
    QuantityReportType const * const type = ReportType(reportType);
    return type && !type->axis.empty();
  }

  // All curves run over one axis: that of the first that has one counts.
  void FindReportTypes() {
    HeldMessages const messages;
    BaseSolutionManager const & manager = m_session.GetManager();
    std::vector<unsigned> ofCurves;
    for (AString const & y : m_report.y) {
      BaseSolutionManager::ReportTypeMap types;
      ofCurves.push_back(manager.GetOutputVariableReportTypes(y, types) > 0 ? types.begin()->first : 0);
      if (m_reportType == 0 || (!RunsOverSamples(m_reportType) && RunsOverSamples(ofCurves.back())))
        m_reportType = ofCurves.back();
    }
    for (unsigned const type : ofCurves)
      m_curves.hasOtherSamples.push_back(type != m_reportType && RunsOverSamples(type));
    std::vector<AString> names;
    if (m_reportType == 0 && manager.GetReportTypeNames(names) > 0)
      m_reportType = manager.GetReportType(names.front());
  }

  // The sweep over an axis serves all report types.
  bool HasSample(AString const & axis, double wanted) const {
    QuantityReportType const * const type = ReportType(m_reportType);
    if (!type || (!AString::MatchNoCase(type->axis, axis) && !AString::MatchNoCase(type->intrinsic, axis)))
      return true;
    return std::any_of(type->axisValues.begin(), type->axisValues.end(),
                       [wanted](double there) { return IsSameSample(there, wanted); });
  }

  void Tell(AString const & problem, bool isOfWords = true) {
    m_curves.areWordsWrong = m_curves.areWordsWrong || isOfWords;
    m_curves.problems.push_back(NameFirst(m_report, problem));
  }

  bool IsAxis(SweepBase const & sweep) const { return !m_design.FindVariable(sweep.GetName()); }

  SweepBase * FindSweep(AString const & name) const {
    auto const at =
        std::find_if(m_sweeps.begin(), m_sweeps.end(), [&name](SweepBase const * sweep) { return *sweep == name; });
    return at == m_sweeps.end() ? nullptr : *at;
  }

  // Without anything to run over, x is a number that nobody is shown.
  void ChooseX(Axis axis) {
    m_curves.x = m_report.x;
    if (m_curves.x.empty() && axis == Axis::kOwn)
      for (SweepBase const * const sweep : m_sweeps)
        if (m_curves.x.empty() && IsAxis(*sweep))
          m_curves.x = TitleOfAxis(sweep->GetName());
    m_x = m_curves.x.empty() ? AString(L"0") : m_curves.x;
    if (!FindSweep(kFrequency) && FindSweep(val::kIntrinsicFrequency))
      m_x = WithRenamedWord(m_x, kFrequency, val::kIntrinsicFrequency);
  }

  static AString TitleOfAxis(AString const & name) {
    return AString::MatchNoCase(name, val::kIntrinsicFrequency) ? AString(kFrequency) : name;
  }

  // A variable that nothing is solved over has the design's own value alone: there is no sweep, and none is missed.
  void AddVariable(AString const & name) {
    if (IsAmong(m_curves.over, name))
      return;
    m_curves.over.push_back(name);
    if (SweepBase * const sweep = FindSweep(name))
      m_points.push_back(sweep->CreateSubsweep(true));
  }

  std::vector<AString> VariableNames() const {
    std::vector<AString> names;
    for (Variable const * const variable : m_design.GetVariables())
      names.push_back(variable->GetName());
    return names;
  }

  bool AddVariables() {
    for (AString const & name : m_report.over) {
      Variable const * const variable = m_design.FindVariable(name);
      if (!variable) {
        Tell(L"'" + name + L"' is no design variable that curves could run over; there are " +
             NameList(VariableNames(), name));
        return false;
      }
      AddVariable(variable->GetName());
    }
    for (AString const & word : ExpressionWords(m_report.x))
      if (Variable const * const variable = m_design.FindVariable(word))
        AddVariable(variable->GetName());
    return true;
  }

  bool GoToVariation() {
    m_instance = &m_design.NominalInstance();
    if (m_report.variation.empty())
      return true;
    VariationText const variation(m_report.variation);
    if (variation.Pairs().empty()) {
      Tell(L"'" + m_report.variation + L"' is no variation; write it as in \"C1=1.2pF; L1=4nH\"");
      return false;
    }
    for (VariationText::Pair const & pair : variation.Pairs()) {
      AString const name(pair.name);
      Variable const * const variable = m_design.FindVariable(name);
      if (variable ? Runs(*variable, pair) || !IsValueOf(*variable, pair) : !GoToSample(name, pair))
        return false;
      if (variable)
        m_curves.given.emplace_back(variable->GetName(), AString(pair.text));
    }
    m_instance = &m_design.InstanceFor(m_design.GetVariation(m_curves.given));
    return true;
  }

  bool Runs(Variable const & variable, VariationText::Pair const & pair) {
    bool const runs = IsAmong(m_curves.over, variable.GetName());
    if (runs)
      Tell(L"'" + variable.GetName() + L"' runs over its solved values, so that it can't stand at " +
           AString(pair.text) + L" as well; leave one of the two out");
    return runs;
  }

  // What a number is wanted for is refused as in other requests, but what the design itself says of the variable.
  bool IsValueOf(Variable const & variable, VariationText::Pair const & pair) {
    try {
      RefuseNoNumber(m_design, variable, pair.text);
      return true;
    } catch (Error const & error) {
      Tell(text::FromUtf8(error.what()));
      return false;
    }
  }

  bool GoToSample(AString const & name, VariationText::Pair const & pair) {
    SweepBase * axis = FindSweep(name);
    if (!axis && AString::MatchNoCase(name, kFrequency))
      axis = FindSweep(val::kIntrinsicFrequency);
    Sweep const * const sweep = axis ? axis->GetSweep() : nullptr;
    if (!sweep) {
      Tell(L"'" + name + L"' is no design variable and no axis of the solved data; there are " +
               NameList(VariableNames(), name),
           HasData());
      return false;
    }
    auto const place = pair.isNumber ? SampleAt(*sweep, pair.number.real()) : std::nullopt;
    if (!place || !HasSample(axis->GetName(), pair.number.real())) {
      Tell(name + L"=" + AString(pair.text) + L": there is no such sample; " +
               (pair.isNumber ? SamplesAround(*sweep, name, pair)
                              : L"a report over " + name + L" shows which there are"),
           HasData());
      return false;
    }
    std::unique_ptr<Subsweep> sample(axis->CreateSubsweep(false));
    sample->SetSelection(*place);
    m_sampleAxes.push_back(axis->GetName());
    m_sample = name + L"=" + AString(pair.text);
    m_points.push_back(sample.release());
    return true;
  }

  // What to ask for in place of a sample that isn't there.
  AString SamplesAround(Sweep const & sweep, AString const & name, VariationText::Pair const & pair) const {
    double const wanted = pair.number.real();
    std::optional<double> below;
    std::optional<double> above;
    for (unsigned place = 0; place < sweep.GetCount(); ++place) {
      double const there = sweep.Column().ComplexAt(place).real();
      if (!HasSample(sweep.GetName(), there))
        continue;
      if (there < wanted)
        below = std::max(below.value_or(there), there);
      else
        above = std::min(above.value_or(there), there);
    }
    AString const over = L"a report over " + name + L" shows which there are";
    if (!below || !above)
      return over;
    return L"the nearest are " + PlainNumber(*below) + L" and " + PlainNumber(*above) + L", and YAtXVal(" +
           m_report.y.front() + L"," + AString(pair.text) + L") takes the value between them; " + over;
  }

  // The samples of the solution count one by one where x runs over them; else a curve is a number for each variation.
  void AddAxis() {
    std::vector<AString> const words = ExpressionWords(m_x);
    for (SweepBase * const sweep : m_sweeps) {
      if (!IsAxis(*sweep) || IsAmong(m_sampleAxes, sweep->GetName()))
        continue;
      if (IsAmong(words, sweep->GetName()))
        m_points.push_back(sweep->CreateSubsweep(true));
      else
        m_curves.unseenAxis = TitleOfAxis(sweep->GetName());
    }
  }

  // A quantity that was there when it was asked for first is still known by its text when what it names is gone.
  bool IsGood(AString const & text) {
    HeldMessages const messages;
    std::unique_ptr<TraceComponent> const component(m_extractor.CreateTraceComponent(text, &m_context));
    NameSpaceSetup const names(m_extractor, true);
    Value value(Units::kNoUnits);
    expr::Error error;
    bool const isExpression = ExpressionParser::ValidateExpression(value, text, {m_extractor.GetIValueParser()}, error);
    if (component && isExpression)
      return IsOfOneKind(text);
    if (AString const way = SelfReference(m_session.GetManager(), text); !way.empty()) {
      AString const name = way.substr(0, way.find(L' '));
      Tell(L"'" + ShortName(text) + L"' can't be evaluated: '" + name + L"' refers to itself: " + way +
           L"; edit it with `var edit`");
      return false;
    }
    AString const told = messages.Text();
    bool const hasData = HasData();
    Tell(L"'" + ShortName(text) + L"' can't be evaluated" +
             (!isExpression   ? L": " + error.Text()
              : !told.empty() ? L": " + told
                              : AString(L"; check that what it names exists")) +
             (hasData ? AString() : AString(L"; nothing is solved yet that would tell the quantities")),
         hasData);
    return false;
  }

  // The whole axis is not what was asked for, and one sample is none.
  void TellNarrowed(AString const & text) {
    if (m_sample.empty() || !NeedsWholeCurve(m_extractor, text))
      return;
    auto const plain = std::find_if(m_report.y.begin(), m_report.y.end(),
                                    [this](AString const & y) { return !NeedsWholeCurve(m_extractor, y); });
    std::size_t const equals = m_sample.find(L'=');
    m_curves.notes.push_back(NameFirst(m_report, L"'" + ShortName(text) + L"' takes a whole curve, and " + m_sample +
                                                     L" leaves it one sample; leave " + m_sample.substr(0, equals) +
                                                     L" out, and tell values there as in YAtXVal(" +
                                                     (plain == m_report.y.end() ? AString(L"Y") : *plain) + L"," +
                                                     m_sample.substr(equals + 1) + L")"));
  }

  // Functions whose results are on one of the trace's axes.
  Units::FullUnitType UnitsOfRanged(AString const & text) const {
    auto const call = AsRangedCall(m_extractor, text);
    QuantityReportType const * const type = ReportType(m_reportType);
    if (call && call->scale == ranged::Scale::kX)
      return type ? type->axisState.fullUnit : Units::kNoUnits;
    if (!call || call->scale != ranged::Scale::kY)
      return Units::kNoUnits;
    HeldMessages const messages;
    NameSpaceSetup const names(m_extractor, true);
    Value value(Units::kNoUnits);
    if (!ExpressionParser::ValidateExpression(value, call->trace, {m_extractor.GetIValueParser()}))
      return Units::kNoUnits;
    Units::FullUnitType const units = value.GetValueState().fullUnit;
    return expr::HasOffset(units) ? Units::kNoUnits : units;
  }

  bool IsOfOneKind(AString const & text) {
    AString const problem = MixedKinds(m_session.GetManager(), text);
    if (!problem.empty())
      Tell(problem);
    return problem.empty();
  }

  // A curve that there is already counts as clean when it is asked for again; what an edit did to it stays.
  Trace * MakeTrace(AString const & y) {
    std::list<Trace *> dirty;
    m_extractor.GetAvailableTraces(dirty);
    std::erase_if(dirty, [](Trace const * trace) { return !trace->IsDirty(); });
    Reporter const reporter(m_extractor, m_context, m_instance, m_points, m_x, y);
    std::vector<Trace *> traces;
    m_extractor.CreateTraces(reporter, traces);
    for (Trace * const trace : dirty)
      trace->MarkItDirty(true);
    return traces.empty() ? nullptr : traces.front();
  }

  Session & m_session;
  Design & m_design;
  ReportDefinition const & m_report;
  BaseSimDataExtractor & m_extractor;
  unsigned m_reportType = 0;
  SimValueContext m_context;
  std::vector<SweepBase *> m_sweeps;
  AString m_x;
  AString m_sample; ///< "Freq=1GHz", where the definition names one
  std::vector<AString> m_sampleAxes;
  IDesignInstance * m_instance = nullptr;
  SubsweepVector m_points;
  ReportCurves m_curves;
};

BaseSimulationSetup * FindSetup(Session & session, AString const & name) {
  ProductSolutionManager const & manager = session.GetManager();
  for (auto const * const setups : {&manager.GetSetups(), &manager.GetImportedSetups()})
    for (auto const & [id, setup] : *setups)
      if (name.empty() || AString::MatchNoCase(setup->GetName(), name))
        return setup;
  return nullptr;
}

AString NoSolution(Session & session, ReportDefinition const & report) {
  std::vector<AString> known;
  ProductSolutionManager const & manager = session.GetManager();
  for (auto const * const setups : {&manager.GetSetups(), &manager.GetImportedSetups()})
    for (auto const & [id, setup] : *setups)
      for (auto const & [solutionID, solution] : setup->GetSolutions())
        known.push_back(solution->GetGlobalSolutionName());
  AString const sought = report.setup + (report.solution.empty() ? AString() : L" : " + report.solution);
  AString const what = sought.empty() ? AString(L"the project has no solution")
                                      : L"the project has no solution '" + ShortName(sought) + L"'";
  return NameFirst(report, what + L"; it has: " + NameList(known, sought) +
                               (known.empty()         ? L"; add a setup"
                                : report.name.empty() ? L""
                                                      : L"; edit the report's setup"));
}

AString WhyNoCurves(Session & session, ReportDefinition const & report, BaseSolution const * solution) {
  return solution ? NameFirst(report, L"the solution '" + ShortName(solution->GetGlobalSolutionName()) +
                                          L"' has no data that reports could show; choose another one")
                  : NoSolution(session, report);
}

} // namespace

BaseSolution * FindSolution(Session & session, ReportDefinition const & report) {
  if (BaseSimulationSetup const * const setup = FindSetup(session, report.setup))
    for (auto const & [id, solution] : setup->GetSolutions())
      if (report.solution.empty() || AString::MatchNoCase(solution->GetSolutionName(), report.solution))
        return solution;
  return nullptr;
}

ReportCurves MakeCurves(Session & session, ReportDefinition const & report, Axis axis) {
  BaseSolution * const solution = FindSolution(session, report);
  if (solution && solution->GetBaseSimDataExtractor())
    return Making(session, report, *solution).Make(axis);
  ReportCurves none;
  none.traces.resize(report.y.size(), nullptr);
  none.problems.push_back(WhyNoCurves(session, report, solution));
  none.areWordsWrong = true;
  return none;
}

std::vector<AString> FindProblems(Session & session, ReportDefinition const & report) {
  BaseSolution * const solution = FindSolution(session, report);
  if (solution && solution->GetBaseSimDataExtractor())
    return Making(session, report, *solution).FindProblems();
  return {WhyNoCurves(session, report, solution)};
}

} // namespace desktop
