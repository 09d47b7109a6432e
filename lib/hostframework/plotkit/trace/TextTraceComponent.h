#pragma once

#include "plotkit/trace/TraceComponent.h"

/// A component that is plain text: it shows the text at every point and is never evaluated.
class TextTraceComponent : public TraceComponent {
public:
  explicit TextTraceComponent(AString const & text);
  ~TextTraceComponent() override;

  TextTraceComponent * Clone() const override;
  void AppendComponentValue(Value const & value) override;

private:
  TextTraceComponent(TextTraceComponent const &) = default;
};
