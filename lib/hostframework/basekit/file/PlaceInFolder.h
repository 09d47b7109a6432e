#pragma once

#include "basekit/text/AString.h"

class LongFileName;

/// Paths that come out of files are not trusted: before one is read, moved or deleted it must name a place below its
/// folder.  An absolute path, a "..", the folder itself and a path without text do not, nor does one whose way from the
/// folder on, its end included, leads over a symbolic link.  The folder may itself be reached by a link.

/// By the text alone.
bool LFN_IsTextOfPlaceInside(AString const & relative);
/// By the text and by what stands on the disk; a place where nothing stands yet is one too.
bool LFN_IsPlaceInside(LongFileName const & folder, AString const & relative);
/// What of the path comes behind the folder, both counted from the root; false when it lies elsewhere or is the folder.
/// Where the texts don't tell, the links in front of both do; the path's own end is not followed.
bool LFN_RelativeTo(LongFileName const & folder, LongFileName const & path, AString & relative);
