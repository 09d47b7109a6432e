#include "viewkit/property/PropList.h"

#include <algorithm>

ValueProp * PropList::FindProp(AString const & name) {
  auto const found = std::find_if(m_properties.begin(), m_properties.end(), [&](ValueProp const & property) {
    return AString::MatchNoCase(property.GetName(), name);
  });
  return found != m_properties.end() ? &*found : nullptr;
}
