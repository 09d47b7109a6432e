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
  ISolution const * const solution = GetISolution();
  if (!solution)
    return io::kNotFound;
  AString const name = svcachefile::ExtractorBlockName(solution->GetID());
  io::CReadError result;
  if (reading) {
    io::CBlock const * const read = block.FindBlock(name);
    if (!read)
      return io::kNotFound;
    // Reading changes no block: a copy would need room for all numbers twice.
    for (SolutionPointSet * const pointSet : mSolutionPointSets)
      result += pointSet->DoDataExchangeSimValueCache(const_cast<io::CBlock &>(*read), true);
    return result;
  }
  io::CBlock caches(name);
  for (SolutionPointSet * const pointSet : mSolutionPointSets)
    result += pointSet->DoDataExchangeSimValueCache(caches, false);
  block << io::CBlock_ptr<io::CBlock>(new io::CBlock(std::move(caches)));
  return result;
}

void BaseSimDataExtractor::InvalidateSimValueCaches() {}
