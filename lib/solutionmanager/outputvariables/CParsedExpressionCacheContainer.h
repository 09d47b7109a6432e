#pragma once

#include <vector>

class CParsedExpressionCache;

/// The expression caches of one trace, owned.  A copy shares the caches of its source and never frees them: copying is
/// meant for an empty container that enters a map.
class CParsedExpressionCacheContainer {
public:
  using iterator = std::vector<CParsedExpressionCache *>::iterator;

  CParsedExpressionCacheContainer() = default;
  CParsedExpressionCacheContainer(CParsedExpressionCacheContainer const & other);
  CParsedExpressionCacheContainer & operator=(CParsedExpressionCacheContainer const & other);
  ~CParsedExpressionCacheContainer();

  /// Takes ownership; null, from a product that has no cache to give, is ignored.
  void AddElement(CParsedExpressionCache * cache) {
    if (!cache)
      return;
    m_caches.push_back(cache);
    m_owned.push_back(cache);
  }
  iterator GetFirstElementForEdit() { return m_caches.begin(); }
  iterator GetLastElementForEdit() { return m_caches.end(); }

private:
  void DeleteOwned();

  std::vector<CParsedExpressionCache *> m_caches;
  std::vector<CParsedExpressionCache *> m_owned; ///< those that were added here
};
