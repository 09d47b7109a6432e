#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <memory>

class BaseSimDataExtractor;

/// A point set with one trace that exist for one evaluation: both leave the extractor when this object dies.
class EvaluationTrace {
public:
  /// The trace shows the expression over nothing.  Nothing is made of an expression that can't be parsed.
  EvaluationTrace(BaseSimDataExtractor & extractor, SubsweepVector const & subsweeps, SimValueContext const & context,
                  AString const & expression);
  ~EvaluationTrace();
  EvaluationTrace(EvaluationTrace const &) = delete;
  EvaluationTrace & operator=(EvaluationTrace const &) = delete;

  bool IsMade() const { return m_trace != nullptr; }
  SolutionPointSet & GetPointSet() const { return *m_pointSet; }
  /// The first value; true when the trace has exactly one.
  bool GetResult(Value & result) const;

private:
  BaseSimDataExtractor & m_extractor;
  SolutionPointSet * m_pointSet = nullptr;
  Trace * m_trace = nullptr;
  std::unique_ptr<TraceComponent> m_ordinate;
  std::unique_ptr<TraceComponent> m_abscissa;
};
