#include "solutionmanager/transfer/ExportVariationContextObject.h"

#include "basekit/diag/Debug.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

ExportVariationContextObject::ExportVariationContextObject(BaseSolutionManager const & manager, long designVariationID,
                                                           bool isSavedState)
    : m_manager(manager) {
  auto * const context = new ExportVariationContext;
  context->designVariationID = designVariationID;
  context->designVariationKey = manager.GetVariationFromID(designVariationID);
  context->isSavedState = isSavedState;
  manager.m_ExportVariationContext = context;
  KvroDebug(L"SolutionManager", 1,
            L"ExportVariationContextObject constructor: designVariationKey %s,designVariationID %d\n",
            context->designVariationKey, context->designVariationID);
}

ExportVariationContextObject::~ExportVariationContextObject() {
  KvroDebug(L"SolutionManager", 1, L"ExportVariationContextObject destructor\n");
  delete m_manager.m_ExportVariationContext;
  m_manager.m_ExportVariationContext = nullptr;
}
