#include "plotkit/trace/TraceDescription.h"

#include "basekit/value/expression/Lexer.h"

AString AddSubcircuitToTraceDescription(AString const & text, AString const & subcircuit) {
  return subcircuit.empty() || !expr::IsPlainName(text.View()) ? text : subcircuit + L":" + text;
}
