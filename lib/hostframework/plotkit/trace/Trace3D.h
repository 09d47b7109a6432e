#pragma once

#include "plotkit/trace/Trace.h"

/// A third component over abscissa and ordinate.
class Trace3D : public Trace {
public:
  static AString const kTrace3DKeyword;

  explicit Trace3D(SolutionPointSet & pointSet, TraceComponent * x = nullptr, TraceComponent * y = nullptr,
                   TraceComponent * z = nullptr);
  ~Trace3D() override;

  bool Is3D() const override { return true; }
  Trace3D const * GetTrace3D() const override { return this; }
  Trace3D * GetTrace3D() override { return this; }
  AString GetItemName() const override;

  TraceComponent * GetThird() const { return GetThirdComponent(); }
};
