#pragma once

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/VariableNameSpace.h"

/// The names that a design's own expressions may use, for the span of its life.  Without a design: intrinsic variables
/// and what the caller's name space knows.
class DesignNameSpace {
public:
  explicit DesignNameSpace(IDesign const * design) {
    if (design)
      design->SetupVariableNameSpace(m_nameSpace, false);
  }

private:
  VariableNameSpace m_nameSpace{true, true, false};
};
