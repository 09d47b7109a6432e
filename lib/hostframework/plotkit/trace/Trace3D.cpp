#include "plotkit/trace/Trace3D.h"

#include "plotkit/trace/TraceComponent.h"

AString const Trace3D::kTrace3DKeyword(L"Trace3D");

Trace3D::Trace3D(SolutionPointSet & pointSet, TraceComponent * x, TraceComponent * y, TraceComponent * z)
    : Trace(pointSet, x, y) {
  SetThirdComponent(z);
}

Trace3D::~Trace3D() = default;

AString Trace3D::GetItemName() const { return kTrace3DKeyword; }
