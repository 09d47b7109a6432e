// Traces of an extractor, under old report structures.

#include "CoreInterfaces/reportkern/IReporter.h"
#include "CoreInterfaces/reportkern/IReporterTab.h"
#include "basekit/value/Variable.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/trace/Trace.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/TraceFactory.h"
#include "solutionmanager/extraction/TraceSynchronisation.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSimDataExtractor::InitializeReporter(IReporter &) {}

void BaseSimDataExtractor::ReporterFieldHasChanged(IReporter &, int) {}

void BaseSimDataExtractor::TraceWasSelected(IReporter &, Trace *) {}

IReporterTab * BaseSimDataExtractor::GetXTab(IReporter const & reporter) const { return TraceFactory::XTab(reporter); }

IReporterTab * BaseSimDataExtractor::GetYTab(IReporter const & reporter) const { return TraceFactory::YTab(reporter); }

IReporterTab * BaseSimDataExtractor::GetZTab(IReporter const & reporter) const { return TraceFactory::ZTab(reporter); }

int BaseSimDataExtractor::CreateTraces(IReporter const & reporter, std::vector<Trace *> & traces) {
  if (!Regime().Supports(RetiredMember::CreateTraces))
    return 0;
  IReporterTab const * const first = reporter.GetTab(TabPage::kContext);
  SetSimValueContext(first ? &first->GetSimValueContext() : nullptr);
  mCurrentSolutionPointSet =
      CreateSolutionPointSet(reporter.GetSubsweepVector(), &mSimValueContext, reporter.GetIDesignInstance(), true);
  std::size_t const former = traces.size();
  if (mCurrentSolutionPointSet) {
    bool const areClean = GetBaseSolution()->IsValid() &&
                          GetISolution()->GetVersionID() == mCurrentSolutionPointSet->GetSolutionVersionID();
    TraceFactory(*this).MakeTraces(reporter, *mCurrentSolutionPointSet, areClean, traces);
  }
  mCurrentSolutionPointSet = nullptr;
  return traces.size() == former ? 0 : static_cast<int>(traces.size());
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(AString const & text, SimValueContext const * context) {
  if (!Regime().Supports(RetiredMember::CreateTraceComponentOfText))
    return nullptr;
  SetSimValueContext(context);
  return TraceFactory(*this).MakeComponent(text);
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(IReporterTab const & tab, AString const & text,
                                                            int functionID) {
  if (!Regime().Supports(RetiredMember::CreateTraceComponentOfTab))
    return nullptr;
  return TraceFactory(*this).MakeComponent(tab, text, functionID);
}

Trace * BaseSimDataExtractor::CreateTrace2D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y,
                                            bool share) {
  if (!Regime().Supports(RetiredMember::CreateTrace2D) || !pointSet)
    return nullptr;
  return TraceFactory(*this).Make2D(*pointSet, x, y, share);
}

Trace * BaseSimDataExtractor::CreateTrace3D(SolutionPointSet * pointSet, TraceComponent * x, TraceComponent * y,
                                            TraceComponent * z, bool share) {
  if (!Regime().Supports(RetiredMember::CreateTrace3D) || !pointSet)
    return nullptr;
  return TraceFactory(*this).Make3D(*pointSet, x, y, z, share);
}

void BaseSimDataExtractor::AnalyzeQuantity(Value const & value, Units::FullUnitType & units, int & category,
                                           bool & isPass, ValueBase const *& inner) {
  constexpr int kOfVariable = 1;
  constexpr int kOfOutputVariable = 2;
  if (auto const * const simValue = dynamic_cast<SimValue const *>(inner)) {
    category = GetCategoryID(*simValue);
  } else if (auto const * const named = dynamic_cast<OutputVariable const *>(inner)) {
    if (!Regime().Supports(RetiredMember::AnalyzeQuantity))
      return;
    OutputVariable const * const variable = GetBaseSolutionMgr()->FindOutputVariable(named->GetName());
    category = variable == named ? kOfOutputVariable : kOfVariable;
    Value definition(Units::kNoUnits);
    if (variable && value.GetUnits() == Units::kNoUnits && definition.SetValueText(variable->GetValueBaseText()))
      units = definition.GetUnits();
  } else if (dynamic_cast<Variable const *>(inner)) {
    category = kOfVariable;
    isPass = inner == Value::GetIntrinsicVariable(val::kIntrinsicPass);
  }
}

int BaseSimDataExtractor::GetAvailableTraces(std::list<Trace *> & traces) const {
  if (!Regime().Supports(RetiredMember::GetAvailableTraces))
    return 0;
  for (SolutionPointSet const * const pointSet : mSolutionPointSets)
    pointSet->GetAvailableTraces(traces);
  return static_cast<int>(traces.size());
}

void BaseSimDataExtractor::MarkAllGivenTracesDirty(std::list<Trace *> & traces) const {
  for (Trace * const trace : traces)
    trace->MarkItDirty(true);
}

void BaseSimDataExtractor::SynchronizeTraces(KelvroCommand * command) {
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTraces);
  TraceSynchronisation(*this, command).SynchroniseAll(nullptr);
}

void BaseSimDataExtractor::SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> & affected,
                                                              KelvroCommand * command) {
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTracesAndGetAffectedSPS);
  TraceSynchronisation(*this, command).SynchroniseAll(&affected);
}

bool BaseSimDataExtractor::SynchronizeTracesForSolutionPointSet(KelvroCommand * command, SolutionPointSet * pointSet) {
  if (!Regime().Supports(RetiredMember::SynchronizeTracesForSolutionPointSet))
    return false;
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTracesForSolutionPointSet);
  return pointSet && TraceSynchronisation(*this, command).Synchronise(*pointSet);
}

bool BaseSimDataExtractor::SynchronizeOneTrace(KelvroCommand * command, Trace * trace, SolutionPointSet * pointSet,
                                               CParsedExpressionCacheContainer & expressions) {
  if (!Regime().Supports(RetiredMember::SynchronizeOneTrace))
    return false;
  return TraceSynchronisation(*this, command).SynchroniseOne(trace, pointSet, expressions);
}

void BaseSimDataExtractor::CleanDirtySVCaches(KelvroCommand * command, Trace * trace, SolutionPointSet * pointSet,
                                              CParsedExpressionCacheContainer & expressions) {
  if (Regime().Supports(RetiredMember::CleanDirtySVCaches))
    TraceSynchronisation(*this, command).CleanCaches(trace, pointSet, expressions);
}
