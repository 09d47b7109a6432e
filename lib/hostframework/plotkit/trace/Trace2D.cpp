#include "plotkit/trace/Trace2D.h"

#include "plotkit/trace/TraceComponent.h"

AString const Trace2D::kTrace2DKeyword(L"Trace2D");

Trace2D::Trace2D(SolutionPointSet & pointSet, TraceComponent * x, TraceComponent * y) : Trace(pointSet, x, y) {}

Trace2D::~Trace2D() = default;

AString Trace2D::GetItemName() const { return kTrace2DKeyword; }
