#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/diag/Assert.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/SharedAnalyses.h"

CParsedExpressionCache::CParsedExpressionCache(AString const & expression, BaseSolutionManager const * manager)
    : m_expression(expression), m_solutionManager(manager) {}

CParsedExpressionCache::~CParsedExpressionCache() = default;

void CParsedExpressionCache::Compute() {
  if (!m_cacheComputed)
    PopulateCache();
  KVRO_ASSERT(m_cacheComputed);
}

void CParsedExpressionCache::PopulateCache() {
  m_cacheComputed = true;
  KVRO_ASSERT(m_solutionManager);
  if (!m_solutionManager)
    return;
  SharedAnalyses * const analyses = SharedAnalyses::Of(m_solutionManager);
  if (SharedAnalyses::Analysis const * const known = analyses ? analyses->Find(m_expression) : nullptr) {
    m_expressionValid = known->isValid;
    m_outputVars = known->outputVariables;
    m_simValuesByReportType = known->simValues;
    return;
  }
  IKitDesktop * const desktop = GetIKitDesktop();
  MessageQueueRestorer const silence(desktop ? &desktop->GetMessageManager() : nullptr);
  ISolutionMgr::ReportTypeMap reportTypes;
  m_expressionValid = m_solutionManager->GetQuantityTypeInfo(reportTypes, m_expression, &m_outputVars,
                                                             &m_simValuesByReportType, nullptr);
  if (analyses)
    analyses->Keep(m_expression, {m_expressionValid, m_outputVars, m_simValuesByReportType});
}

bool CParsedExpressionCache::IsExpressionValid() {
  Compute();
  return m_expressionValid;
}

bool CParsedExpressionCache::AreThereQuantitiesOfType(unsigned reportType) {
  Compute();
  auto const at = m_simValuesByReportType.find(reportType);
  return at != m_simValuesByReportType.end() && !at->second.empty();
}

void CParsedExpressionCache::GetReferencedReportTypes(std::vector<unsigned> & reportTypes) {
  Compute();
  for (auto const & [reportType, texts] : m_simValuesByReportType)
    reportTypes.push_back(reportType);
}

void CParsedExpressionCache::GetReferencedOutputVars(std::vector<OutputVariable *> & variables) {
  Compute();
  variables.insert(variables.end(), m_outputVars.begin(), m_outputVars.end());
}

void CParsedExpressionCache::GetReferencedSimValues(std::vector<AString> & texts, unsigned reportType) {
  Compute();
  for (auto const & [type, ofType] : m_simValuesByReportType)
    if (reportType == kAllReportTypes || reportType == type)
      texts.insert(texts.end(), ofType.begin(), ofType.end());
}
