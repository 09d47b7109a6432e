#pragma once

#include "basekit/file/LongFileName.h"

#include <cstdint>
#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

/// A file of a source and what it held when it was read.  A file in the project's folder or below it is known by its
/// path from there, so that the folder can be moved; any other one by its full path.
struct SourceFile {
  AString path;
  std::uint64_t size = 0;
  std::uint32_t checksum = 0;

  /// Reads the file; an Error of kind kSource when that fails.
  static SourceFile Read(LongFileName const & file, LongFileName const & projectFolder);
  LongFileName PathIn(LongFileName const & projectFolder) const;

  friend bool operator==(SourceFile const & a, SourceFile const & b) = default;
};

using SourceFiles = std::vector<SourceFile>;

/// Items: one function item "File" for each.
void WriteSourceFiles(SourceFiles const & files, io::CBlock & block);
/// False when the block is not what the writer made.
bool ReadSourceFiles(io::CBlock const & block, SourceFiles & files);

/// An Error of kind kSource that names the first file that is not what it was.
void CheckUnchanged(SourceFiles const & files, LongFileName const & projectFolder);

} // namespace desktop
