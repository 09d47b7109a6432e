#include "desktop/report/ReporterTab.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "plotkit/trace/TraceComponent.h"

namespace desktop {

int ReporterTab::GetTraceComponents(std::vector<TraceComponent *> & components) const {
  for (AString const & text : m_texts)
    if (TraceComponent * const component = m_extractor.CreateTraceComponent(text, &m_context))
      components.push_back(component);
  return static_cast<int>(components.size());
}

} // namespace desktop
