#include "solutionmanager/outputvariables/CParsedExpressionCacheContainer.h"

#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

CParsedExpressionCacheContainer::CParsedExpressionCacheContainer(CParsedExpressionCacheContainer const & other)
    : m_caches(other.m_caches) {}

CParsedExpressionCacheContainer &
CParsedExpressionCacheContainer::operator=(CParsedExpressionCacheContainer const & other) {
  if (this == &other)
    return *this;
  DeleteOwned();
  m_caches = other.m_caches;
  return *this;
}

CParsedExpressionCacheContainer::~CParsedExpressionCacheContainer() { DeleteOwned(); }

void CParsedExpressionCacheContainer::DeleteOwned() {
  for (CParsedExpressionCache * const cache : m_owned)
    delete cache;
  m_owned.clear();
}
