// An extractor in the design file.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

bool BaseSimDataExtractor::DesignFileWrite(io::CBlock &) {
  // There is nothing to write: sim values, sweeps and point sets can't be made yet.
  return true;
}

io::ReadError BaseSimDataExtractor::DesignFileRead(io::CBlock const & block) {
  bool const isEmpty = block.Empty();
  if (!isEmpty)
    KVRO_ASSERT(!"Not available yet");
  OnSimValuesRead();
  ClearSweepsOnDesignFileRead();
  return io::kNoError;
}

void BaseSimDataExtractor::OnSimValuesRead() {}

SimValue * BaseSimDataExtractor::CreateSimValue() {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

io::ReadError BaseSimDataExtractor::DoDataExchangeSimValueCache(io::CBlock &, bool) {
  if (!AreOldReportStructuresSupported())
    KVRO_ASSERT(!"Should just not be calling this. Done differently in reporter rewrite");
  return io::kNoError;
}
