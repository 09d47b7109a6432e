#include "solutionmanager/transfer/ExportVariationContextObject.h"

#include "basekit/diag/Assert.h"
#include "basekit/diag/Debug.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

#include <memory>

ExportVariationContextObject::ExportVariationContextObject(BaseSolutionManager const & manager, long designVariationID,
                                                           bool isSavedState)
    : m_manager(manager) {
  auto context = std::make_unique<ExportVariationContext>();
  context->designVariationID = designVariationID;
  context->designVariationKey = manager.GetVariationFromID(designVariationID);
  context->isSavedState = isSavedState;
  KvroDebug(L"SolutionManager", 1,
            L"ExportVariationContextObject constructor: designVariationKey %s,designVariationID %d\n",
            context->designVariationKey, context->designVariationID);
  KVRO_ASSERT(!manager.m_ExportVariationContext);
  delete manager.m_ExportVariationContext; // A context within another takes its place for good.
  manager.m_ExportVariationContext = context.release();
}

ExportVariationContextObject::~ExportVariationContextObject() {
  KvroDebug(L"SolutionManager", 1, L"ExportVariationContextObject destructor\n");
  delete m_manager.m_ExportVariationContext;
  m_manager.m_ExportVariationContext = nullptr;
}
