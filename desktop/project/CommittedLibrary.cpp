#include "desktop/project/CommittedLibrary.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

namespace desktop {

std::set<AString> CommittedBlockNames(AString const & libraryPath) {
  std::set<AString> names;
  library::LibraryReader reader;
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  bool const isRead = reader.Open(LongFileName(libraryPath), false) == CStreamioLibrary::kLibSuccess &&
                      reader.Load(map) == CStreamioLibrary::kLibSuccess;
  if (isRead)
    for (auto const & item : map)
      names.insert(item->Name());
  return names;
}

} // namespace desktop
