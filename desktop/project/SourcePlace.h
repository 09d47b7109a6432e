#pragma once

#include "desktop/project/SourceFiles.h"

namespace desktop {

/// Where a file of the source is now.  One that is not where the project knows it, as the project went to another
/// place or machine, is looked for by its name beside the project file; where it is not there either, it is the place
/// that the project knows.
LongFileName PlaceOf(SourceFile const & file, LongFileName const & projectFolder);

} // namespace desktop
