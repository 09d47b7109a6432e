// Traces of an extractor.  None can be made yet: what would make one says so.

#include "basekit/diag/Assert.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

void BaseSimDataExtractor::InitializeReporter(IReporter &) {}

void BaseSimDataExtractor::ReporterFieldHasChanged(IReporter &, int) {}

void BaseSimDataExtractor::TraceWasSelected(IReporter &, Trace *) {}

int BaseSimDataExtractor::CreateTraces(IReporter const &, std::vector<Trace *> &) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return 0;
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(AString const &, SimValueContext const *) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

TraceComponent * BaseSimDataExtractor::CreateTraceComponent(IReporterTab const &, AString const &, int) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

Trace * BaseSimDataExtractor::CreateTrace2D(SolutionPointSet *, TraceComponent *, TraceComponent *, bool) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

Trace * BaseSimDataExtractor::CreateTrace3D(SolutionPointSet *, TraceComponent *, TraceComponent *, TraceComponent *,
                                            bool) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
  else
    KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

int BaseSimDataExtractor::GetAvailableTraces(std::list<Trace *> & traces) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Not supported, use new reportsetupmodule for this!");
    return 0;
  }
  return static_cast<int>(traces.size());
}

void BaseSimDataExtractor::SynchronizeTraces(KelvroCommand *) {
  if (IsV2Design())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
}

void BaseSimDataExtractor::SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> &, KelvroCommand *) {
  if (IsV2Design())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
}

bool BaseSimDataExtractor::SynchronizeTracesForSolutionPointSet(KelvroCommand *, SolutionPointSet *) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
    return false;
  }
  if (IsV2Design())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in V2");
  KVRO_ASSERT(!"Not available yet");
  return false;
}

bool BaseSimDataExtractor::SynchronizeOneTrace(KelvroCommand *, Trace *, SolutionPointSet *,
                                               CParsedExpressionCacheContainer &) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  else
    KVRO_ASSERT(!"Not available yet");
  return false;
}

void BaseSimDataExtractor::CleanDirtySVCaches(KelvroCommand *, Trace *, SolutionPointSet *,
                                              CParsedExpressionCacheContainer &) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  else
    KVRO_ASSERT(!"Not available yet");
}
