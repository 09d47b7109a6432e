#include "solutionmanager/extraction/SolutionPointSetUpdateHelper.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "basekit/message/CProgressQuotaSetter.h"
#include "basekit/message/IProgressMonitor.h"
#include "basekit/value/VariableValuesRestorer.h"
#include "plotkit/SolutionPointSet.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

/// Point sets read words in their own contexts; at the end the extractors read as they did before.
class ExtractorContextSpans {
public:
  explicit ExtractorContextSpans(std::vector<ISolutionPointSet *> const & pointSets) {
    for (ISolutionPointSet * const pointSet : pointSets)
      if (auto * const ofReports = dynamic_cast<SolutionPointSet *>(pointSet))
        m_spans.try_emplace(ofReports->GetISimDataExtractor(), ofReports->GetISimDataExtractor());
  }

private:
  std::map<ISimDataExtractor *, ExtractorContextSpan> m_spans;
};

} // namespace

SolutionPointSetUpdateHelper::SolutionPointSetUpdateHelper(BaseSolutionManager * manager) : m_solnMgr(manager) {
  KVRO_ASSERT(m_solnMgr);
}

bool SolutionPointSetUpdateHelper::Run(IProgressMonitor * progress, PointSets const * pointSets) const {
  if (!m_solnMgr)
    return false;
  PointSets chosen;
  if (pointSets)
    chosen = *pointSets;
  else
    m_solnMgr->GetReportSolutionPointSetsToUpdate(chosen);
  ExtractorContextSpans const contexts(chosen);
  UpdateInfos infos;
  {
    CProgressQuotaSetter const quota(progress, 25.0);
    Register(&chosen, infos, progress);
  }
  bool isComplete = false;
  {
    CProgressQuotaSetter const quota(progress, 75.0);
    isComplete = Update(infos, progress);
  }
  Finish(chosen, isComplete);
  return isComplete;
}

void SolutionPointSetUpdateHelper::Finish(PointSets const & pointSets, bool isComplete) const {
  for (ISolutionPointSet * const pointSet : pointSets)
    if (auto * const ofReports = dynamic_cast<SolutionPointSet *>(pointSet))
      ofReports->FinishUpdate(isComplete);
}

void SolutionPointSetUpdateHelper::Register(PointSets const * solnPointSetsToUpdate, UpdateInfos & solnUpdateInfo,
                                            IProgressMonitor * progress) const {
  KVRO_ASSERT(solnPointSetsToUpdate);
  KVRO_ASSERT(solnUpdateInfo.empty() == true);
  if (!solnPointSetsToUpdate || solnPointSetsToUpdate->empty())
    return;
  double const share = 100.0 / static_cast<double>(solnPointSetsToUpdate->size());
  for (ISolutionPointSet * const pointSet : *solnPointSetsToUpdate) {
    if (!pointSet)
      continue;
    auto & info = solnUpdateInfo[pointSet->GetSolutionID()];
    if (!info)
      info = std::make_unique<SingleISolutionUpdateInfo>();
    CProgressQuotaSetter const quota(progress, share);
    pointSet->RegisterForUpdate(info.get(), progress);
  }
}

bool SolutionPointSetUpdateHelper::Update(UpdateInfos const & infos, IProgressMonitor * progress) const {
  std::size_t total = 0;
  for (auto const & [solutionID, info] : infos)
    total += info->GetCount();
  if (total == 0)
    return true;
  double const share = 100.0 / static_cast<double>(total);
  std::vector<Variable *> const variables = DesignVariables();
  for (auto const & [solutionID, info] : infos)
    if (!UpdateSolution(solutionID, *info, variables, share, progress))
      return false;
  return true;
}

bool SolutionPointSetUpdateHelper::UpdateSolution(long solutionID, SingleISolutionUpdateInfo const & info,
                                                  std::vector<Variable *> const & variables, double share,
                                                  IProgressMonitor * progress) const {
  ISolution * const solution = m_solnMgr->GetISolutionByID(solutionID, false, false);
  ISimDataExtractor * const extractor = solution ? solution->GetISimDataExtractor() : nullptr;
  if (!extractor)
    return false;
  for (auto const & [first, secondGroup] : info.GetFirstGroup())
    for (auto const & [second, pointSets] : secondGroup) {
      bool success = true;
      for (auto const & [ptSet, ptSetInfo] : pointSets) {
        if (progress && progress->IsCancelled()) {
          extractor->FinishLoadingSolvedData();
          return false;
        }
        CProgressQuotaSetter const quota(progress, share);
        KVRO_ASSERT(ptSet);
        success = UpdatePointSet(*extractor, &ptSetInfo, first, second, variables, progress);
        if (!success) {
          extractor->FinishLoadingSolvedData();
          return false;
        }
      }
      extractor->FinishLoadingSolvedData();
      KVRO_ASSERT(success == true);
    }
  return true;
}

bool SolutionPointSetUpdateHelper::UpdatePointSet(ISimDataExtractor & extractor, PointSetInfo const * ptSetInfo,
                                                  VariableValues const & first, VariableValues const & second,
                                                  std::vector<Variable *> const & variables,
                                                  IProgressMonitor * progress) const {
  KVRO_ASSERT(ptSetInfo);
  KVRO_ASSERT(ptSetInfo->m_reportTypes.empty() == false);
  if (!ptSetInfo->m_pointSet)
    return true;
  bool isLoaded = false;
  {
    VariableValuesRestorer const restorer(variables);
    CProgressQuotaSetter const quota(progress, 70.0);
    std::map<unsigned, std::vector<AString>> quantities;
    ptSetInfo->m_pointSet->GetLoadQuantities(quantities);
    isLoaded = extractor.LoadSolvedData(first, second, ptSetInfo->m_reportTypes, quantities, progress);
  }
  VariableValuesRestorer const restorer(variables);
  CProgressQuotaSetter const quota(progress, 30.0);
  return !isLoaded || ptSetInfo->m_pointSet->UpdateFromLoadedData(first, second, progress);
}

std::vector<Variable *> SolutionPointSetUpdateHelper::DesignVariables() const {
  std::vector<Variable *> variables;
  if (IDesign const * const design = m_solnMgr->GetIDesign()) {
    design->GetPropertyVariables(variables);
    design->GetFurtherVariables(variables);
  }
  return variables;
}
