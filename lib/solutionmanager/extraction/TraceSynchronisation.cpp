#include "solutionmanager/extraction/TraceSynchronisation.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/diag/Assert.h"
#include "plotkit/cache/CSimValueCache.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"
#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"
#include "solutionmanager/outputvariables/SharedAnalyses.h"

namespace {

constexpr unsigned kNoReportType = 0xFFFFFFFF;

int CacheVersion(SolutionPointSet const & pointSet) { return static_cast<int>(pointSet.GetSolutionVersionID()); }

} // namespace

TraceSynchronisation::TraceSynchronisation(BaseSimDataExtractor & extractor, KelvroCommand * command)
    : m_extractor(extractor), m_manager(extractor.GetBaseSolutionMgr()), m_command(command) {}

void TraceSynchronisation::SynchroniseAll(std::vector<ISolutionPointSet *> * affected) const {
  if (!m_manager)
    return;
  SharedAnalyses const analyses(*m_manager);
  auto const first = m_extractor.GetFirstSolutionPointSetForEdit();
  auto const last = m_extractor.GetLastSolutionPointSetForEdit();
  std::vector<SolutionPointSet *> const pointSets(first, last);
  for (SolutionPointSet * const pointSet : pointSets)
    if (m_extractor.SynchronizeTracesForSolutionPointSet(m_command, pointSet) && affected)
      affected->push_back(pointSet);
}

bool TraceSynchronisation::Synchronise(SolutionPointSet & pointSet) const {
  if (!m_manager)
    return false;
  std::list<Trace *> traces;
  pointSet.GetAvailableTraces(traces);
  // A set of an older state of the solution is built anew by other means.
  if (pointSet.GetSolutionVersionID() != m_extractor.GetISolution()->GetVersionID())
    return true;
  if (DoVariablesReach(pointSet))
    return MarkAll(traces, pointSet);
  SharedAnalyses const analyses(*m_manager);
  Expressions expressions;
  unsigned const reportType = FillExpressions(traces, expressions);
  if (!m_manager->IsSolutionPointSetDefinitionValid(&pointSet, &expressions))
    return MarkAll(traces, pointSet);
  if (reportType != kNoReportType &&
      m_extractor.IsSimContextDataAffectedByMinorEdits(m_command, &pointSet.GetSimValueContext(), reportType))
    return MarkAll(traces, pointSet);
  bool isAffected = false;
  for (auto & [trace, container] : expressions)
    isAffected = m_extractor.SynchronizeOneTrace(m_command, trace, &pointSet, container) || isAffected;
  return isAffected;
}

bool TraceSynchronisation::DoVariablesReach(SolutionPointSet const & pointSet) const {
  if (!m_command)
    return false;
  KelvroCommandInfo const * first = m_command->GetInfo(KelvroCommandInfo::kDesignProperties);
  if (!first)
    first = m_command->GetInfo(KelvroCommandInfo::kProjectProperties);
  auto const * const info = dynamic_cast<PropertyCommandInfo const *>(first);
  return info && (info->IsAnyPropDeleted() || info->IsAnyPropCreated() ||
                  (info->IsAnyPropEdited() && pointSet.IsDependentOnCurrentDesign(info)));
}

bool TraceSynchronisation::MarkAll(std::list<Trace *> & traces, SolutionPointSet & pointSet) const {
  m_extractor.MarkAllGivenTracesDirty(traces);
  CSimValueCache::Invalidate(pointSet.GetSimValueCache(), CacheVersion(pointSet));
  return true;
}

unsigned TraceSynchronisation::FillExpressions(std::list<Trace *> const & traces, Expressions & expressions) const {
  ValueParserSpan const parser(m_extractor.GetIValueParser());
  unsigned reportType = kNoReportType;
  for (Trace * const trace : traces) {
    CParsedExpressionCacheContainer & container = expressions[trace];
    m_manager->CreateParsedExpressionCacheOfTraces(trace, container);
    for (auto at = container.GetFirstElementForEdit();
         reportType == kNoReportType && at != container.GetLastElementForEdit(); ++at) {
      std::vector<unsigned> reptypes;
      (*at)->GetReferencedReportTypes(reptypes);
      if (reptypes.empty())
        continue;
      // clang-format off
      KVRO_ASSERT(reptypes.size()==1);
      // clang-format on
      reportType = reptypes.front();
    }
  }
  return reportType;
}

bool TraceSynchronisation::SynchroniseOne(Trace * trace, SolutionPointSet * pointSet,
                                          CParsedExpressionCacheContainer & expressions) const {
  if (!m_command || !trace || !pointSet)
    return false;
  bool isAffected = false;
  for (auto at = expressions.GetFirstElementForEdit(); !isAffected && at != expressions.GetLastElementForEdit(); ++at)
    isAffected = m_extractor.IsExpressionAffectedByMinorEdits(m_command, *at);
  if (isAffected)
    trace->MarkItDirty(true);
  if (trace->IsDirty())
    m_extractor.CleanDirtySVCaches(m_command, trace, pointSet, expressions);
  return isAffected;
}

void TraceSynchronisation::CleanCaches(Trace * tr, SolutionPointSet * ptset,
                                       CParsedExpressionCacheContainer & expressions) const {
  KelvroCommand const * const cmd = m_command;
  KVRO_ASSERT(cmd);
  KVRO_ASSERT(tr);
  KVRO_ASSERT(ptset);
  if (!cmd || !tr || !ptset || !m_manager)
    return;
  for (auto at = expressions.GetFirstElementForEdit(); at != expressions.GetLastElementForEdit(); ++at) {
    std::vector<unsigned> reportTypes;
    (*at)->GetReferencedReportTypes(reportTypes);
    for (unsigned const reportType : reportTypes) {
      if (!m_manager->IsReportTypeAffectedByMinorEdits(cmd, reportType))
        continue;
      std::vector<AString> texts;
      (*at)->GetReferencedSimValues(texts, reportType);
      for (AString const & text : texts)
        ptset->GetSimValueCache().Invalidate(CacheVersion(*ptset), &text);
    }
  }
}
