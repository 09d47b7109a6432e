#include "plotkit/simvalue/ReferencesSimValuesMessage.h"

#include "plotkit/simvalue/SimValue.h"

#include <algorithm>

void ReferencesSimValuesMessage::Add(SimValue const & value) {
  if ((m_oneIsEnough && !m_simValues.empty()) ||
      std::find(m_simValues.begin(), m_simValues.end(), &value) != m_simValues.end())
    return;
  // Expressions refer to values without changing them; whoever asks here is the extractor that owns them.
  m_simValues.push_back(const_cast<SimValue *>(&value));
}
