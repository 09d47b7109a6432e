#pragma once

#include "plotkit/trace/Trace.h"

/// An ordinate over an abscissa.
class Trace2D : public Trace {
public:
  static AString const kTrace2DKeyword;

  explicit Trace2D(SolutionPointSet & pointSet, TraceComponent * x = nullptr, TraceComponent * y = nullptr);
  ~Trace2D() override;

  Trace2D const * GetTrace2D() const override { return this; }
  Trace2D * GetTrace2D() override { return this; }
  AString GetItemName() const override;
};
