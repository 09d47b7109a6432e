#include "desktop/project/CommittedLibrary.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "desktop/project/UnsavedWork.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>

namespace desktop {

namespace {

std::set<AString> BlockNames(AString const & libraryPath, bool withPrivate) {
  std::set<AString> names;
  library::LibraryReader reader;
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  bool const isRead = reader.Open(LongFileName(libraryPath), withPrivate) == CStreamioLibrary::kLibSuccess &&
                      reader.Load(map) == CStreamioLibrary::kLibSuccess;
  if (isRead)
    for (auto const & item : map)
      names.insert(item->Name());
  return names;
}

bool IsPoint(AString const & name) {
  SolutionVariationKey key;
  return key.Unpack(name) && key.IsValidVariationDataKey();
}

} // namespace

std::set<AString> CommittedBlockNames(AString const & libraryPath) { return BlockNames(libraryPath, false); }

int CountUnsavedPoints(AString const & libraryPath) {
  auto const committed = CommittedBlockNames(libraryPath);
  auto const all = BlockNames(libraryPath, true);
  return static_cast<int>(std::count_if(all.begin(), all.end(), [&committed](AString const & name) {
    return !committed.contains(name) && IsPoint(name);
  }));
}

} // namespace desktop
