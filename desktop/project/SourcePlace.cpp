#include "desktop/project/SourcePlace.h"

#include "basekit/file/FileOperations.h"

namespace desktop {

LongFileName PlaceOf(SourceFile const & file, LongFileName const & projectFolder) {
  LongFileName const known = file.PathIn(projectFolder);
  LongFileName const beside = projectFolder + known.NameAndExtension();
  return LFN_Exists(known) || !LFN_Exists(beside) ? known : beside;
}

} // namespace desktop
