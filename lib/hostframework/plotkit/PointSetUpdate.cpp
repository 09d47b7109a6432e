#include "plotkit/PointSetUpdate.h"

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/diag/Assert.h"
#include "plotkit/CachedColumns.h"
#include "plotkit/ISolvedColumns.h"
#include "plotkit/PostprocessMsg.h"
#include "plotkit/ReadingContext.h"
#include "plotkit/SampleSelection.h"
#include "plotkit/SimValue.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/SteppedColumns.h"
#include "plotkit/SweepValues.h"
#include "plotkit/TraceComponent.h"
#include "plotkit/TraceFiller.h"
#include "plotkit/VariationSamples.h"

namespace {

/// How many ways there are in which the free variables may stand; 0 for more than there can be values.
std::size_t FreeCount(SampleSelection const & selection, std::size_t majorCount) {
  double count = 1.0;
  for (SubsweepPoints const * const points : selection.GetFree())
    count *= points->GetCount();
  double const others = static_cast<double>(std::max(majorCount, selection.GetPlaces().size()));
  bool const isFreeCountInRange = count <= 1.0 || count * others <= core::kMaxSweepValues;
  KVRO_ASSERT(isFreeCountInRange);
  return isFreeCountInRange ? static_cast<std::size_t>(count) : 0;
}

/// Calls take so many times, the variables being set to one way after the other, the last running fastest.
template <class Take>
void ForEachFreePoint(std::vector<SubsweepPoints const *> const & free, std::size_t count, Take take) {
  for (std::size_t point = 0; point < count; ++point) {
    std::size_t rest = point;
    for (auto points = free.rbegin(); points != free.rend(); ++points) {
      (*points)->Set(static_cast<unsigned>(rest % (*points)->GetCount()));
      rest /= (*points)->GetCount();
    }
    take();
  }
}

} // namespace

PointSetUpdate::PointSetUpdate(SolutionPointSet & pointSet, std::vector<Trace *> const & traces, long version)
    : m_pointSet(pointSet), m_extractor(*pointSet.GetISimDataExtractor()),
      m_loaded(dynamic_cast<ISolvedColumns const *>(&m_extractor)), m_traces(traces), m_version(version),
      m_points(pointSet, dynamic_cast<IVariableServer const *>(&m_extractor)),
      m_isTaken(m_points.GetMajorCount(), false), m_openCount(m_points.GetMajorCount()) {
  FindSimValues();
}

PointSetUpdate::~PointSetUpdate() {
  if (m_isFinished)
    return;
  for (std::size_t i = 0; i < m_former.size(); ++i)
    m_traces[i]->PutValues(std::move(m_former[i]));
}

void PointSetUpdate::FindSimValues() {
  for (Trace * const trace : m_traces) {
    std::vector<TraceComponent *> components;
    trace->GetTraceComponents(components);
    bool isCurrent = true;
    for (TraceComponent const * const component : components) {
      ExpressionValue const * const expression = component->GetExpression();
      isCurrent =
          isCurrent && (expression ? expression->IsCurrent() : component->IsBound() || component->IsPlainText());
    }
    if (!isCurrent) {
      trace->BindComponents();
      readingcontext::Set(m_pointSet);
    }
    for (TraceComponent const * const component : components)
      if (ExpressionValue const * const expression = component->GetExpression())
        for (expr::ProgramQuantity const & quantity : expression->GetQuantities())
          if (auto const * const simValue = dynamic_cast<SimValue const *>(quantity.base))
            m_simValues.insert(simValue);
  }
}

void PointSetUpdate::Begin() {
  if (!m_former.empty() || m_traces.empty())
    return;
  for (Trace * const trace : m_traces)
    m_former.push_back(trace->TakeValues());
  PostprocessMsg message(m_pointSet, 0);
  for (Trace * const trace : m_traces) {
    trace->BeginPostprocessingUpdate(message);
    m_fillers.emplace_back(*trace);
  }
}

std::vector<AString> PointSetUpdate::AxisNames() const {
  std::vector<AString> names;
  for (SubsweepPoints const * const points : m_points.GetMinors())
    names.push_back(points->GetName());
  return names;
}

bool PointSetUpdate::IsKnownToSolution(VariableValues const & values) {
  if (!m_known) {
    m_known = std::make_unique<std::set<VariableValues>>();
    std::list<AString> variations;
    if (ISolution const * const solution = m_extractor.GetISolution())
      solution->GetAvailableVariations(variations, m_version);
    for (AString const & variation : variations) {
      VariableValues known;
      if (VariableValues::ResolveVariationKey(variation, nullptr, known, nullptr, true))
        m_known->insert(std::move(known));
    }
  }
  return m_known->count(values) > 0;
}

bool PointSetUpdate::IsVersionSolved() {
  if (!m_isVersionSolved) {
    ISolution const * const solution = m_extractor.GetISolution();
    m_isVersionSolved = solution && solution->HasSolutionData(static_cast<IDesignInstance const *>(nullptr), m_version);
  }
  return *m_isVersionSolved;
}

bool PointSetUpdate::IsCached(VariableValues const & values) {
  CSimValueCacheV const & cache = m_pointSet.GetSimValueCache();
  if (m_simValues.empty() || !cache.Find(m_version, **m_simValues.begin()) || !IsKnownToSolution(values))
    return false;
  if (!m_cached)
    m_cached = std::make_unique<CachedColumns>(cache, m_version);
  return m_cached->GoTo(values.GetVariationKey(), {m_simValues.begin(), m_simValues.end()}, AxisNames());
}

bool PointSetUpdate::TakeLoaded(VariableValues const & values) {
  if (m_loaded)
    return TakePoints(values, m_loaded);
  SteppedColumns const stepped(m_points.GetMinors(), m_points.GetMinorCount(), m_extractor.GetIValueParser());
  return TakePoints(values, &stepped);
}

bool PointSetUpdate::TakeUnloaded(VariableValues const & values) {
  if (!m_loaded)
    return TakeLoaded(values);
  return TakePoints(values, IsCached(values) ? m_cached.get() : nullptr);
}

void PointSetUpdate::TakeUnloadedRest() {
  for (std::size_t point = 0; m_openCount > 0 && point < m_isTaken.size(); ++point)
    if (!m_isTaken[point])
      TakeUnloaded(m_points.GetMajorValues(point));
}

bool PointSetUpdate::TakePoints(VariableValues const & values, ISolvedColumns const * columns) {
  PointSetPoints::Places const * const points = m_points.FindPoints(values);
  if (!points)
    return false;
  Begin();
  m_points.SetVariables(values);
  AString const variation = values.GetVariationKey();
  for (std::size_t const point : *points) {
    if (m_isTaken[point])
      continue;
    if (columns)
      TakeColumns(point, values, *columns);
    for (std::size_t trace = 0; trace < m_traces.size(); ++trace)
      AppendTo(trace, point, variation, columns);
    m_isTaken[point] = true;
    --m_openCount;
  }
  return true;
}

void PointSetUpdate::AppendTo(std::size_t place, std::size_t point, AString const & variation, bool hasData) {
  Trace & trace = *m_traces[place];
  bool const hasNewValues = trace.GetValueCount() > trace.GetSegments().GetSampleCount();
  bool const isMissing = !hasData || (m_fillers[place].HasComponents() && !hasNewValues);
  if (isMissing)
    m_fillers[place].AppendMissing();
  trace.AddSegment(point, variation, isMissing);
}

void PointSetUpdate::TakeColumns(std::size_t point, VariableValues const & values, ISolvedColumns const & columns) {
  // Where numbers are asked for one by one, only those of the points are.
  SampleSelection const selection(columns, m_points.GetMinors(), !m_loaded);
  VariationSamples samples(columns, selection, m_extractor.GetIValueParser());
  ForEachFreePoint(selection.GetFree(), FreeCount(selection, m_isTaken.size()), [&] {
    for (SampleSelection::Run const & run : selection.GetRuns()) {
      samples.GoTo(run);
      for (TraceFiller & filler : m_fillers)
        filler.AppendRun(samples, run.count);
    }
  });
  bool const isFirst = m_openCount == m_isTaken.size();
  for (std::size_t i = 0; isFirst && i < m_traces.size(); ++i)
    m_fillers[i].Reserve(static_cast<double>(m_traces[i]->GetValueCount()) * static_cast<double>(m_openCount));
  // While the version that the set will bear has no data, that of an older one is shown, but not kept.
  if (m_loaded && IsVersionSolved())
    m_keeper.Keep(point, values.GetVariationKey(), columns, samples, AxisNames(), m_openCount);
}

void PointSetUpdate::Finish() {
  for (Trace * const trace : m_traces) {
    trace->ArrangeSegments();
    trace->MarkItDirty(false);
  }
  m_keeper.StoreIn(m_pointSet.GetSimValueCache(), m_version);
  m_isFinished = true;
}
