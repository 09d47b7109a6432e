#include "basekit/command/KelvroDeltaState.h"

KelvroDeltaState::~KelvroDeltaState() = default;

void KelvroDeltaState::UndoIt() { m_changeDone = false; }

void KelvroDeltaState::RedoIt() { m_changeDone = true; }

bool KelvroDeltaState::IsEquivalent(KelvroDeltaState const & other) const { return this == &other; }
