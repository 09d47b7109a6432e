#include "solutionmanager/extraction/ExtractorBlocks.h"

#include "basekit/command/KelvroIDServer.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/sweep/SynchronizedSweep.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

namespace {

wchar_t const * const kSweepsBlockName = L"Sweeps";
wchar_t const * const kSolutionPointSetsBlockName = L"SolutionPointSets";

/// A sweep of the class that the block's name tells; null when it tells none.
std::unique_ptr<SweepBase> MakeSweep(AString const & keyword) {
  if (AString::MatchNoCase(keyword, Sweep::kSweepKeyword))
    return std::make_unique<Sweep>();
  if (AString::MatchNoCase(keyword, SynchronizedSweep::kSynchronizedSweepKeyword))
    return std::make_unique<SynchronizedSweep>();
  if (AString::MatchNoCase(keyword, PostprocessSweep::kPostprocessSweepKeyword))
    return std::make_unique<PostprocessSweep>();
  return nullptr;
}

bool IsRead(io::ReadError result) { return result == io::kNoError || result == io::kWarning; }

} // namespace

void extractorblocks::WriteSimValues(io::CBlock & block, std::vector<SimValue *> const & simValues) {
  for (SimValue const * const simValue : simValues) {
    io::CBlock_ptr<io::CBlock_func> const func(new io::CBlock_func(BaseSimDataExtractor::kSimValueBlockName));
    simValue->WriteSimValue(*func);
    block << func;
  }
}

void extractorblocks::WriteSweeps(io::CBlock & block, std::vector<SweepBase *> const & sweeps) {
  io::CBlock_ptr<io::CBlock> const written(new io::CBlock(kSweepsBlockName));
  for (SweepBase const * const sweep : sweeps) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(sweep->GetItemName()));
    if (sweep->Write(*child))
      *written << child;
  }
  if (!written->Empty())
    block << written;
}

void extractorblocks::WritePointSets(io::CBlock & block, std::vector<SolutionPointSet *> const & pointSets,
                                     KelvroIDServer const & server) {
  if (pointSets.empty())
    return;
  io::CBlock_ptr<io::CBlock> const written(new io::CBlock(kSolutionPointSetsBlockName));
  server.WriteNextUniqueID(*written);
  for (SolutionPointSet const * const pointSet : pointSets) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(pointSet->GetItemName()));
    pointSet->Write(*child);
    *written << child;
  }
  block << written;
}

void extractorblocks::ReadSimValues(io::CBlock const & block, std::function<SimValue *()> const & make,
                                    std::function<void(SimValue *)> const & keep) {
  for (auto const & item : block) {
    if (!AString::MatchNoCase(item->Name(), BaseSimDataExtractor::kSimValueBlockName))
      continue;
    auto const * const func = dynamic_cast<io::CBlock_func const *>(item.Item());
    KVRO_ASSERT(func);
    if (!func)
      continue;
    std::unique_ptr<SimValue> simValue(make());
    if (simValue && simValue->ReadSimValue(*func) == io::kNoError)
      keep(simValue.release());
  }
}

bool extractorblocks::ReadSweeps(io::CBlock const & block, IDesignEditor * editor,
                                 std::function<void(SweepBase *)> const & keep) {
  io::CBlock const * const sweeps = block.FindBlock(kSweepsBlockName);
  bool areAllRead = true;
  if (sweeps)
    for (auto const & child : *sweeps) {
      std::unique_ptr<SweepBase> sweep = child->IsBlock() ? MakeSweep(child->Name()) : nullptr;
      if (!sweep)
        continue;
      if (IsRead(sweep->Read(static_cast<io::CBlock const &>(*child), editor)))
        keep(sweep.release());
      else
        areAllRead = false;
    }
  return areAllRead;
}

io::CBlock const * extractorblocks::FindPointSets(io::CBlock const & block) {
  return block.FindBlock(kSolutionPointSetsBlockName);
}

bool extractorblocks::ReadPointSets(io::CBlock const & pointSets, IDesignEditor * editor,
                                    std::function<SolutionPointSet *(io::CBlock const &)> const & make,
                                    std::function<void(SolutionPointSet *)> const & keep) {
  bool areAllRead = true;
  for (auto const & child : pointSets) {
    if (!child->IsBlock())
      continue;
    auto const & content = static_cast<io::CBlock const &>(*child);
    std::unique_ptr<SolutionPointSet> pointSet(make(content));
    if (pointSet && IsRead(pointSet->Read(content, editor)))
      keep(pointSet.release());
    else
      areAllRead = false;
  }
  return areAllRead;
}
