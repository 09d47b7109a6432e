// The values of a trace on their way through an update.

#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"

Trace::Values Trace::TakeValues() {
  Values values;
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (TraceComponent * const component : components)
    values.columns.push_back(std::move(component->GetValuesForEdit()));
  values.segments = std::move(m_segments);
  ClearValues();
  return values;
}

void Trace::PutValues(Values && values) {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (std::size_t place = 0; place < components.size() && place < values.columns.size(); ++place)
    components[place]->GetValuesForEdit() = std::move(values.columns[place]);
  m_segments = std::move(values.segments);
}
