// The manager's sim value caches in their file.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/SvCacheFile.h"
#include "solutionmanager/model/BaseSolutionManager.h"

bool BaseSolutionManager::DoDataExchangeSimValueCache(bool reading) {
  if (!AreOldReportStructuresSupported())
    return true;
  AString path;
  if (!GetSimValueCacheFullFileName(path))
    return false;
  io::CBlock caches(svcachefile::kTopBlockName);
  if (reading && !svcachefile::Read(path, caches))
    return false;
  io::CReadError result;
  std::vector<BaseSimDataExtractor *> extractors;
  GetAllAssociatedSimDataExtractors(extractors);
  for (BaseSimDataExtractor * const extractor : extractors)
    result += extractor->DoDataExchangeSimValueCache(caches, reading);
  if (!reading && !svcachefile::Write(path, caches)) {
    KVRO_ASSERT(!"Could not write solution manager simvalue cache file");
    return false;
  }
  return result == io::kNoError;
}
