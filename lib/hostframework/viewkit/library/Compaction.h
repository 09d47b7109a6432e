#pragma once

#include "viewkit/library/LogReader.h"

namespace library {

class LibraryLock;
struct FoundBlock;

/// How blocks are written anew: as they are, or decoded and encoded in a form.
struct Conversion {
  bool converts = false;
  bool isBinary = false;
  int precision = 16;
};

/// Writes a whole new file beside `path`, syncs it, takes its lock when `lock` is given, and renames it over `path`:
/// the path shows the old file or the new one, whatever happens.  `log` becomes the new file.  When syncing the
/// folder fails at the end, the new file stands but the result tells of the failure.
LibIOReturn WriteNewFile(LongFileName const & path, io::FileHeader const & header,
                         std::vector<FoundBlock> const & blocks, Conversion const & conversion,
                         io::CommitInfo const & commit, LibraryLock * lock, std::unique_ptr<LogReader> & log,
                         AString & error);

/// A name beside the path that nothing bears yet: the path, a word, a number.
LongFileName FreeNameBeside(LongFileName const & path, AString const & word);

} // namespace library
