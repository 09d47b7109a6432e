// The manager's side of traces: which are there, what an edit does to them, how they are copied.

#include "basekit/diag/Assert.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace3D.h"
#include "plotkit/trace/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"
#include "solutionmanager/outputvariables/PastedVariables.h"
#include "solutionmanager/outputvariables/SharedAnalyses.h"

int BaseSolutionManager::GetAvailableTraces(std::list<Trace *> & traces) const {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Should'nt be calling this method in new reporter rewrite");
    return 0;
  }
  std::vector<BaseSimDataExtractor *> extractors;
  GetAllAssociatedSimDataExtractors(extractors);
  for (BaseSimDataExtractor const * const extractor : extractors)
    extractor->GetAvailableTraces(traces);
  return static_cast<int>(traces.size());
}

void BaseSolutionManager::SynchronizeTraces(KelvroCommand * command) {
  std::vector<ISolutionPointSet *> affected;
  SynchronizeTracesAndGetAffectedSPS(affected, command);
}

void BaseSolutionManager::SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> & affected,
                                                             KelvroCommand * command) {
  constexpr unsigned kReportType = 1;
  SharedAnalyses const analyses(*this);
  std::vector<ISimDataExtractor *> extractors;
  GetISimDataExtractors(extractors, kReportType, AllowImportDataInTraces());
  for (ISimDataExtractor * const extractor : extractors)
    if (auto * const base = dynamic_cast<BaseSimDataExtractor *>(extractor))
      base->SynchronizeTracesAndGetAffectedSPS(affected, command);
}

void BaseSolutionManager::CreateParsedExpressionCacheOfTraces(Trace * trace,
                                                              CParsedExpressionCacheContainer & container) const {
  if (!trace)
    return;
  Trace3D const * const trace3D = trace->GetTrace3D();
  // Plain text is never evaluated: a title, read as an expression, would make every set with one invalid.
  for (TraceComponent const * const component :
       {trace->GetAbscissa(), trace->GetOrdinate(), trace3D ? trace3D->GetThird() : nullptr}) {
    AString const text = component && !component->IsPlainText() ? component->GetValueText().Trimmed() : AString();
    if (!text.empty())
      container.AddElement(CreateParsedExpressionCache(text));
  }
}

void BaseSolutionManager::ConstructTraceExprCacheMap(
    SolutionPointSet * pointSet, std::map<Trace *, CParsedExpressionCacheContainer> & caches) const {
  std::list<Trace *> traces;
  if (pointSet)
    pointSet->GetAvailableTraces(traces);
  for (Trace * const trace : traces)
    CreateParsedExpressionCacheOfTraces(trace, caches[trace]);
}

bool BaseSolutionManager::IsSolutionPointSetDefinitionValid(ISolutionPointSet * pointSet) const {
  auto * const ofTraces = dynamic_cast<SolutionPointSet *>(pointSet);
  return ofTraces && IsSolutionPointSetDefinitionValid(ofTraces, nullptr);
}

bool BaseSolutionManager::IsSolutionPointSetDefinitionValid(
    SolutionPointSet * pointSet, std::map<Trace *, CParsedExpressionCacheContainer> * caches) const {
  SharedAnalyses const analyses(*this);
  std::map<Trace *, CParsedExpressionCacheContainer> own;
  if (!caches)
    ConstructTraceExprCacheMap(pointSet, own);
  for (auto & [trace, container] : caches ? *caches : own)
    for (auto at = container.GetFirstElementForEdit(); at != container.GetLastElementForEdit(); ++at)
      if (!(*at)->IsExpressionValid())
        return false;
  return true;
}

namespace {

using ExpressionCaches = std::map<Trace *, CParsedExpressionCacheContainer>;

// In the order in which their sets have them, set by set: the map's own order is one of addresses, and would let chance
// say which trace tells the type.
std::vector<CParsedExpressionCacheContainer *> InOrderOfSets(ExpressionCaches & caches) {
  std::map<long, SolutionPointSet const *> sets;
  for (auto const & [trace, container] : caches)
    if (trace)
      sets.emplace(trace->GetSolutionPointSet().GetID(), &trace->GetSolutionPointSet());
  std::vector<CParsedExpressionCacheContainer *> ordered;
  for (auto const & [id, set] : sets) {
    std::list<Trace *> traces;
    set->GetAvailableTraces(traces);
    for (Trace * const trace : traces)
      if (auto const at = caches.find(trace); at != caches.end())
        ordered.push_back(&at->second);
  }
  return ordered;
}

} // namespace

unsigned BaseSolutionManager::GetReportTypeOfSolutionPointSet(ISolutionPointSet const * pointSet) const {
  SharedAnalyses const analyses(*this);
  std::map<Trace *, CParsedExpressionCacheContainer> caches;
  // Making expression caches changes nothing of the set.
  ConstructTraceExprCacheMap(const_cast<SolutionPointSet *>(dynamic_cast<SolutionPointSet const *>(pointSet)), caches);
  return GetFirstReportTypeFromExprCacheMap(caches);
}

unsigned BaseSolutionManager::GetFirstReportTypeFromExprCacheMap(
    std::map<Trace *, CParsedExpressionCacheContainer> & caches) const {
  for (CParsedExpressionCacheContainer * const container : InOrderOfSets(caches))
    for (auto at = container->GetFirstElementForEdit(); at != container->GetLastElementForEdit(); ++at) {
      std::vector<unsigned> reptypes;
      (*at)->GetReferencedReportTypes(reptypes);
      if (reptypes.empty())
        continue;
      // clang-format off
      KVRO_ASSERT(reptypes.size()==1);
      // clang-format on
      return reptypes.front();
    }
  constexpr unsigned kNoReportType = 0xFFFFFFFF;
  return kNoReportType;
}

bool BaseSolutionManager::WriteTraceInterpreterBlockForCopy(io::CBlock & block, ITraceCopyContext *,
                                                            TraceDefParams const &) const {
  // Nothing is copied along with traces here: a product that wants variables to travel says which.
  pastedvariables::Write(block, *this, {});
  return true;
}

bool BaseSolutionManager::ReadTraceInterpreterBlockForPaste(IKelvroCommand * command, ITracePasteContext * context,
                                                            io::CBlock const & block) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return false;
  }
  pastedvariables::Read(block, *this, command, context);
  return true;
}
