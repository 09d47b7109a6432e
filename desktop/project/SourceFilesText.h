#pragma once

#include "desktop/project/SourceFiles.h"

namespace desktop {

/// What the files of a source held, as one text to keep with what was solved from them.
AString FilesText(SourceFiles const & files);
/// The paths of those files, in their order, that hold something else now; one that is no file of the source any more
/// is not among them.
std::vector<AString> ChangedFiles(AString const & filesText, SourceFiles const & now);

} // namespace desktop
