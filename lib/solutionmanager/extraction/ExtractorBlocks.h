#pragma once

#include <functional>
#include <memory>
#include <vector>

class IDesignEditor;
class KelvroIDServer;
class SimValue;
class SolutionPointSet;
class SweepBase;
namespace io {
class CBlock;
}

/// The parts of an extractor's block in the design file.
namespace extractorblocks {

/// One function "SimValue" for each.
void WriteSimValues(io::CBlock & block, std::vector<SimValue *> const & simValues);
/// Block "Sweeps"; what has nothing to be saved is left out, and the block when it stays empty.
void WriteSweeps(io::CBlock & block, std::vector<SweepBase *> const & sweeps);
/// Block "SolutionPointSets": the next ID, then the sets; left out without sets.
void WritePointSets(io::CBlock & block, std::vector<SolutionPointSet *> const & pointSets,
                    KelvroIDServer const & server);

/// Reads each function into what make returns and hands it to keep; what can't be read is dropped.
void ReadSimValues(io::CBlock const & block, std::function<SimValue *()> const & make,
                   std::function<void(SimValue *)> const & keep);
/// Hands each sweep that could be read to keep.  False when one could not; blocks of other names are skipped.
bool ReadSweeps(io::CBlock const & block, IDesignEditor * editor, std::function<void(SweepBase *)> const & keep);
/// Reads each set into what make returns, null meaning that there is none, and hands it to keep.  False when one could
/// not be read.
bool ReadPointSets(io::CBlock const & pointSets, IDesignEditor * editor,
                   std::function<SolutionPointSet *(io::CBlock const &)> const & make,
                   std::function<void(SolutionPointSet *)> const & keep);
/// Null when there is none.
io::CBlock const * FindPointSets(io::CBlock const & block);

} // namespace extractorblocks
