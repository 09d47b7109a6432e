#include "solutionmanager/extraction/SingleISolutionUpdateInfo.h"

std::size_t SingleISolutionUpdateInfo::GetCount() const {
  std::size_t count = 0;
  for (auto const & [first, secondGroup] : m_firstGroup)
    for (auto const & [second, pointSets] : secondGroup)
      count += pointSets.size();
  return count;
}
