#include "plotkit/sweep/Sweep.h"

#include "basekit/io/CBlock.h"
#include "plotkit/sweep/IndexedSubsweep.h"

AString const Sweep::kSweepKeyword(L"Sweep");

Subsweep * Sweep::CreateSubsweep(bool allPoints) { return new IndexedSubsweep(*this, allPoints); }

io::ReadError Sweep::Read(io::CBlock const & block, IDesignEditor * editor) { return m_column.Read(block, editor); }

bool Sweep::Write(io::CBlock & block) const { return !IsSpecialSweep() && m_column.Write(block); }
