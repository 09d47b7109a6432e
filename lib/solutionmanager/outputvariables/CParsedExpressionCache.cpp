#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/diag/Assert.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "plotkit/SimValueContext.h"
#include "solutionmanager/model/BaseSolutionManager.h"

CParsedExpressionCache::~CParsedExpressionCache() = default;

void CParsedExpressionCache::EnsureComputed() {
  if (!m_cacheComputed)
    PopulateCache();
  KVRO_ASSERT(m_cacheComputed);
}

void CParsedExpressionCache::PopulateCache() {
  IKitDesktop * const desktop = GetIKitDesktop();
  MessageQueueRestorer const restorer(desktop ? &desktop->GetMessageManager() : nullptr);
  ISolutionMgr::ReportTypeMap reportTypes;
  m_expressionValid = m_solutionManager->GetQuantityTypeInfo(reportTypes, m_expression, &m_outputVars,
                                                             &m_simValuesByReportType, nullptr);
  m_cacheComputed = true;
}

void CParsedExpressionCache::SetResult(bool valid, std::map<unsigned, std::vector<AString>> const & simValues,
                                       std::vector<OutputVariable *> const & variables) {
  m_expressionValid = valid;
  m_simValuesByReportType = simValues;
  m_outputVars = variables;
  m_cacheComputed = true;
}

bool CParsedExpressionCache::IsExpressionValid() {
  EnsureComputed();
  return m_expressionValid;
}

bool CParsedExpressionCache::AreThereQuantitiesOfType(unsigned reportType) {
  EnsureComputed();
  auto const found = m_simValuesByReportType.find(reportType);
  return found != m_simValuesByReportType.end() && !found->second.empty();
}

void CParsedExpressionCache::GetReferencedReportTypes(std::vector<unsigned> & reportTypes) {
  EnsureComputed();
  for (auto const & item : m_simValuesByReportType)
    reportTypes.push_back(item.first);
}

void CParsedExpressionCache::GetReferencedOutputVars(std::vector<OutputVariable *> & variables) {
  EnsureComputed();
  variables.insert(variables.end(), m_outputVars.begin(), m_outputVars.end());
}

void CParsedExpressionCache::GetReferencedSimValues(std::vector<AString> & texts, unsigned reportType) {
  EnsureComputed();
  for (auto const & [type, simValues] : m_simValuesByReportType)
    if (reportType == kAllReportTypes || reportType == type)
      texts.insert(texts.end(), simValues.begin(), simValues.end());
}
