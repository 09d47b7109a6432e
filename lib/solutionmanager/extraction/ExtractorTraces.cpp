// Traces of an extractor.  None can be made yet: what would make one says so.

#include "basekit/diag/Assert.h"
#include "plotkit/SolutionPointSet.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ReportRegime.h"

void BaseSimDataExtractor::InitializeReporter(IReporter &) {}

void BaseSimDataExtractor::ReporterFieldHasChanged(IReporter &, int) {}

void BaseSimDataExtractor::TraceWasSelected(IReporter &, Trace *) {}

int BaseSimDataExtractor::CreateTraces(IReporter const &, std::vector<Trace *> &) {
  if (Regime().Supports(RetiredMember::CreateTraces))
    KVRO_ASSERT(!"Not available yet");
  return 0;
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(AString const &, SimValueContext const *) {
  if (Regime().Supports(RetiredMember::CreateTraceComponentOfText))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(IReporterTab const &, AString const &, int) {
  if (Regime().Supports(RetiredMember::CreateTraceComponentOfTab))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

Trace * BaseSimDataExtractor::CreateTrace2D(SolutionPointSet *, TraceComponent *, TraceComponent *, bool) {
  if (Regime().Supports(RetiredMember::CreateTrace2D))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

Trace * BaseSimDataExtractor::CreateTrace3D(SolutionPointSet *, TraceComponent *, TraceComponent *, TraceComponent *,
                                            bool) {
  if (Regime().Supports(RetiredMember::CreateTrace3D))
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

int BaseSimDataExtractor::GetAvailableTraces(std::list<Trace *> & traces) const {
  if (!Regime().Supports(RetiredMember::GetAvailableTraces))
    return 0;
  for (SolutionPointSet const * const pointSet : mSolutionPointSets)
    pointSet->GetAvailableTraces(traces);
  return static_cast<int>(traces.size());
}

void BaseSimDataExtractor::SynchronizeTraces(KelvroCommand *) {
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTraces);
}

void BaseSimDataExtractor::SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> &, KelvroCommand *) {
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTracesAndGetAffectedSPS);
}

bool BaseSimDataExtractor::SynchronizeTracesForSolutionPointSet(KelvroCommand *, SolutionPointSet *) {
  if (!Regime().Supports(RetiredMember::SynchronizeTracesForSolutionPointSet))
    return false;
  Regime().IsRetiredInV2(RetiredMember::SynchronizeTracesForSolutionPointSet);
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSimDataExtractor::SynchronizeOneTrace(KelvroCommand *, Trace *, SolutionPointSet *,
                                               CParsedExpressionCacheContainer &) {
  if (Regime().Supports(RetiredMember::SynchronizeOneTrace))
    KVRO_ASSERT(!"Not available yet");
  return false;
}

void BaseSimDataExtractor::CleanDirtySVCaches(KelvroCommand *, Trace *, SolutionPointSet *,
                                              CParsedExpressionCacheContainer &) {
  if (Regime().Supports(RetiredMember::CleanDirtySVCaches))
    KVRO_ASSERT(!"Not available yet");
}
