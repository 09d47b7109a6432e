#include "solutionmanager/outputvariables/EvaluationTrace.h"

#include "basekit/value/Value.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

EvaluationTrace::EvaluationTrace(BaseSimDataExtractor & extractor, SubsweepVector const & subsweeps,
                                 SimValueContext const & context, AString const & expression)
    : m_extractor(extractor), m_pointSet(extractor.CreateSolutionPointSet(subsweeps, &context, nullptr, false)) {
  if (!m_pointSet)
    return;
  m_ordinate.reset(extractor.CreateTraceComponent(expression, &context));
  m_abscissa = std::make_unique<TraceComponent>(AString(), 0, 0, false, Units::kNoUnits);
  if (m_ordinate)
    m_trace = extractor.CreateTrace2D(m_pointSet, m_abscissa.get(), m_ordinate.get(), false);
  if (m_trace)
    m_trace->MarkItDirty(true);
}

EvaluationTrace::~EvaluationTrace() {
  if (!m_pointSet)
    return;
  if (m_trace)
    m_pointSet->RemoveTrace(m_trace);
  m_extractor.RemoveSolutionPointSet(m_pointSet);
}

bool EvaluationTrace::GetResult(Value & result) const {
  TraceComponent const * const ordinate = m_trace->GetOrdinate();
  if (!ordinate)
    return false;
  result.SetValueText(ordinate->GetEntryText(0), Units::kNoUnits);
  return ordinate->GetValues().GetCount() == 1;
}
