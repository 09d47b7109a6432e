#pragma once

#include "plotkit/trace/Trace2D.h"

/// A curve of which at least one component is plain text.
class TraceText : public Trace2D {
public:
  static AString const kTraceTextKeyword;

  using Trace2D::Trace2D;
  ~TraceText() override;

  AString GetItemName() const override;
};
