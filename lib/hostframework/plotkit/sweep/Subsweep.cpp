#include "plotkit/sweep/Subsweep.h"

#include "plotkit/sweep/SweepBase.h"

Subsweep::Subsweep(SweepBase & sweep) : m_sweep(sweep.m_self), m_lastName(sweep.GetName()) {}

Subsweep::~Subsweep() = default;

AString Subsweep::GetVariableName() const { return GetSweep() ? GetSweep()->GetName() : m_lastName; }
