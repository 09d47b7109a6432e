#include "products/rfcircuit/engine/touchstone/FewerPorts.h"

namespace rf {

void FewerPorts::EndLine(std::vector<double> const & numbers) {
  std::size_t const length = numbers.size() - m_Read;
  if (length == 0 && m_Lines > 0) // blanks and comments only
    return;
  if (m_Lines++ == 0) {
    m_Length = length + 1;
  } else {
    m_IsPossible = m_IsPossible && length == m_Length && numbers[m_Read] > m_Before;
    m_Before = numbers[m_Read];
  }
  m_Read = numbers.size();
}

std::optional<std::size_t> FewerPorts::Suspected() const {
  if (!m_IsPossible || m_Lines < 2 || (m_Length != 3 && m_Length != 9))
    return std::nullopt;
  return m_Length == 3 ? 1 : 2;
}

} // namespace rf
