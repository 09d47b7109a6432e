#pragma once

#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

#include <memory>
#include <vector>

/// The expression caches of one trace, owned.  Copying is for putting an empty container into a map: copies share the
/// elements, and the last one frees them.
class CParsedExpressionCacheContainer {
public:
  using iterator = std::vector<CParsedExpressionCache *>::iterator;

  /// Takes ownership.
  void AddElement(CParsedExpressionCache * element) {
    m_elements.push_back(element);
    m_owned->emplace_back(element);
  }
  iterator GetFirstElementForEdit() { return m_elements.begin(); }
  iterator GetLastElementForEdit() { return m_elements.end(); }

private:
  using Owned = std::vector<std::unique_ptr<CParsedExpressionCache>>;

  std::vector<CParsedExpressionCache *> m_elements;
  std::shared_ptr<Owned> m_owned = std::make_shared<Owned>();
};
