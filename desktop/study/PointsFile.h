#pragma once

#include "desktop/study/StudyAxis.h"

namespace desktop {

/// Reads points from comma-separated values: the first line names variables, each further one is a point.  Fields may
/// stand in double quotes; blank lines and lines that begin with '#' are skipped; lines may end in CR LF.  Throws Error
/// (kUsage) with file and line for whatever makes no sense: ragged rows, what is no number, a name twice, no points.
StudyAxis ReadPointsFile(AString const & path);

} // namespace desktop
