#include "plotkit/TraceFiller.h"

#include "plotkit/ReadingContext.h"
#include "plotkit/TextTraceComponent.h"
#include "plotkit/Trace3D.h"
#include "plotkit/TraceText.h"
#include "plotkit/VariationSamples.h"

#include <algorithm>
#include <typeinfo>

namespace {

/// More is left to the column's own growth: room for numbers that never come costs nothing but must have an end.
constexpr double kMaxReserved = 1e9;

bool IsOwnClass(Trace const & trace) {
  std::type_info const & type = typeid(trace);
  return type == typeid(Trace) || type == typeid(Trace2D) || type == typeid(Trace3D) || type == typeid(TraceText);
}

bool IsOwnClass(TraceComponent const & component) {
  return typeid(component) == typeid(TraceComponent) || typeid(component) == typeid(TextTraceComponent);
}

} // namespace

TraceFiller::TraceFiller(Trace & trace) : m_trace(&trace) {
  std::vector<TraceComponent *> components;
  trace.GetTraceComponents(components);
  m_isByColumn = IsOwnClass(trace);
  for (TraceComponent * const component : components) {
    m_isByColumn = m_isByColumn && IsOwnClass(*component);
    m_parts.emplace_back().component = component;
  }
}

bool TraceFiller::Evaluate(Part & part, VariationSamples const & samples, std::size_t count) {
  expr::Result & result = part.result;
  if (part.component->IsPlainText())
    return false;
  if (ExpressionValue const * const expression = part.component->GetExpression()) {
    expr::Error error;
    if (!expression->Evaluate(samples, samples.GetAxis(), result, error))
      return false;
    return result.isScalar || (result.isComplex ? result.complexes.size() : result.reals.size()) == count;
  }
  Value const & value = part.component->GetValue();
  if (!value.IsNumber())
    return false;
  result = {};
  result.isComplex = postp::GetBasicParamType(value.GetParameterType()) == val::kComplex;
  if (result.isComplex)
    result.complexes = {value.GetComplexSIValue()};
  else
    result.reals = {value.GetSIValue()};
  return true;
}

void TraceFiller::Append(Part const & part, std::size_t count) {
  ValueColumn & values = part.component->GetValuesForEdit();
  expr::Result const & result = part.result;
  if (!part.isThere) {
    values.AppendInvalid(count);
  } else if (result.isComplex) {
    values.Append(result.isScalar ? std::vector<std::complex<double>>(count, result.Number()) : result.complexes);
  } else {
    values.Append(result.isScalar ? std::vector<double>(count, result.Real()) : result.reals);
  }
}

void TraceFiller::AppendRun(VariationSamples const & samples, std::size_t count) {
  if (!m_isByColumn) {
    for (std::size_t sample = 0; sample < count; ++sample) {
      samples.SetVariables(sample);
      m_trace->AppendNewValue();
    }
    return readingcontext::Set(m_trace->GetSolutionPointSet());
  }
  bool isAnyThere = false;
  bool runsOverSamples = false;
  for (Part & part : m_parts) {
    // A swept variable that is otherwise defined by a text has the words read anew now.
    readingcontext::Set(m_trace->GetSolutionPointSet(), *part.component);
    part.isThere = Evaluate(part, samples, count);
    isAnyThere = isAnyThere || part.isThere;
    runsOverSamples = runsOverSamples || (part.isThere && !part.result.isScalar);
  }
  readingcontext::Set(m_trace->GetSolutionPointSet());
  for (Part const & part : m_parts)
    Append(part, isAnyThere && !runsOverSamples ? 1 : count);
}

void TraceFiller::AppendMissing() {
  for (Part const & part : m_parts)
    part.component->AppendInvalidValue();
}

void TraceFiller::Reserve(double count) {
  if (m_isByColumn && count <= kMaxReserved)
    for (Part const & part : m_parts)
      part.component->GetValuesForEdit().Reserve(static_cast<std::size_t>(count));
}
