// The traces of a point set.

#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"

#include <algorithm>

namespace {

template <class Fits> Trace * FindShared(std::list<Trace *> const & traces, Fits fits) {
  auto const found = std::find_if(traces.begin(), traces.end(),
                                  [&fits](Trace const * trace) { return trace->GetIsShared() && fits(*trace); });
  return found != traces.end() ? *found : nullptr;
}

} // namespace

int SolutionPointSet::GetAvailableTraces(std::list<Trace *> & traces) const {
  traces.insert(traces.end(), m_traces.begin(), m_traces.end());
  return static_cast<int>(traces.size());
}

Trace * SolutionPointSet::FindTrace2D(TraceComponent const * x, TraceComponent const * y) const {
  return FindShared(m_traces, [x, y](Trace const & trace) { return trace.IsEqual(x, y); });
}

Trace * SolutionPointSet::FindTrace3D(TraceComponent const * x, TraceComponent const * y,
                                      TraceComponent const * z) const {
  return FindShared(m_traces, [x, y, z](Trace const & trace) { return trace.IsEqual(x, y, z); });
}

void SolutionPointSet::SetUniqueTraceName(Trace * trace) const {
  if (!trace)
    return;
  for (std::size_t number = m_traces.size() + 1;; ++number) {
    AString const name = AString::Format(L"Trace %lu", number);
    bool const isTaken = std::any_of(m_traces.begin(), m_traces.end(), [&name, trace](Trace const * other) {
      return other != trace && AString::MatchNoCase(other->GetName(), name);
    });
    if (!isTaken)
      return trace->SetName(name);
  }
}

void SolutionPointSet::AddTraceToList(Trace * trace) {
  if (trace && std::find(m_traces.begin(), m_traces.end(), trace) == m_traces.end())
    m_traces.push_back(trace);
}

void SolutionPointSet::RemoveTrace(Trace * trace) {
  auto const found = std::find(m_traces.begin(), m_traces.end(), trace);
  if (found == m_traces.end())
    return;
  DropUpdate();
  delete trace;
  m_traces.erase(found);
}

void SolutionPointSet::DoGarbageCollection(std::set<Trace *> const & tracesInUse) {
  DropUpdate();
  m_traces.remove_if([&tracesInUse](Trace * trace) {
    if (tracesInUse.count(trace))
      return false;
    delete trace;
    return true;
  });
}
