#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

namespace rfcircuit {

struct NetworkLayout;

/// Expressions that stand ready by name, without case.  Of a two-port: "KFactor" and "MuFactor" (unconditionally stable
/// above one), "Delta" (the determinant of S), "MaxGain" (the maximum available gain in dB, where KFactor is above one,
/// and the maximum stable gain elsewhere).  Of ports: "IL(2,1)" and "RL(1)", insertion and return loss in dB. False for
/// other names, and for ports that there are not.
bool FindCannedExpression(AString const & name, NetworkLayout const & layout, AString & expression, ValueState & state);
/// Whether it is such a name, whatever ports there are.
bool MightBeCanned(AString const & name);

} // namespace rfcircuit
