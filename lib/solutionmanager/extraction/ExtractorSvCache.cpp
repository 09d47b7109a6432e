// The sim value caches of an extractor's point sets.

#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/io/CBlock.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/SvCacheFile.h"

io::ReadError BaseSimDataExtractor::DoDataExchangeSimValueCache(io::CBlock & block, bool reading) {
  if (!Regime().Supports(RetiredMember::DoDataExchangeSimValueCache))
    return io::kNoError;
  io::CBlock caches(svcachefile::ExtractorBlockName(GetISolution()->GetID()));
  if (reading) {
    io::CBlock const * const read = block.FindBlock(caches.Name());
    if (!read)
      return io::kNotFound;
    caches = *read;
  }
  io::CReadError result;
  for (SolutionPointSet * const pointSet : mSolutionPointSets)
    result += pointSet->DoDataExchangeSimValueCache(caches, reading);
  if (!reading)
    block << io::CBlock_ptr<io::CBlock>(new io::CBlock(std::move(caches)));
  return result;
}

void BaseSimDataExtractor::InvalidateSimValueCaches() {}
