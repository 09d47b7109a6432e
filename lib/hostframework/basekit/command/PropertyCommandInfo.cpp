#include "basekit/command/PropertyCommandInfo.h"

#include <algorithm>

bool PropertyCommandInfo::HasAny(unsigned flag) const {
  return std::any_of(m_properties.begin(), m_properties.end(),
                     [flag](Property const & property) { return (property.GetFlags() & flag) != 0; });
}
