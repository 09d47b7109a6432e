#include "plotkit/trace/TextTraceComponent.h"

TextTraceComponent::TextTraceComponent(AString const & text) : TraceComponent(text, 0, 0, false, Units::kNoUnits) {
  SetIsPlainText();
}

TextTraceComponent::~TextTraceComponent() = default;

TextTraceComponent * TextTraceComponent::Clone() const { return new TextTraceComponent(*this); }

void TextTraceComponent::AppendComponentValue(Value const &) { AppendInvalidValue(); }
