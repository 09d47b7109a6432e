#pragma once

#include "basekit/text/AString.h"

#include <set>

/// Paths of files and folders below one root, for telling whether a step concerns what another one does: the same
/// place, one inside it, or one that it lies in.
class TouchedPlaces {
public:
  void Add(AString const & path) { m_paths.insert(path); }
  void Clear() { m_paths.clear(); }
  bool Touches(AString const & path) const {
    AString const inside = path + L"/";
    auto const below = m_paths.lower_bound(inside);
    if (m_paths.contains(path) || (below != m_paths.end() && below->substr(0, inside.size()) == inside))
      return true;
    std::wstring_view above = path.View();
    for (std::size_t end = above.rfind(L'/'); end != std::wstring_view::npos; end = above.rfind(L'/')) {
      above = above.substr(0, end);
      if (m_paths.contains(AString(above)))
        return true;
    }
    return false;
  }

private:
  std::set<AString> m_paths;
};
