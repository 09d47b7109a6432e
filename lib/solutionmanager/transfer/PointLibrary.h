#pragma once

#include "basekit/text/AString.h"
#include "viewkit/library/CStreamioLibPrivate.h"

#include <set>

class SolutionFileManager;

namespace io {
class CBlock;
}

/// The library file of an exported design point, written in place, whose blocks bear the internal names of the library
/// that it comes from.  That library's file manager outlives this, its name map loaded.  What fails leaves a partial
/// file and a trace: an export goes on.
class PointLibrary {
public:
  PointLibrary(SolutionFileManager const & files, AString const & path);

  void Clear();
  /// Of a copy of the whole library: takes these blocks out, and their entries out of its name map.  What stays is
  /// neither decoded nor held in memory, so that the cost is that of what stays.  Blocks that Replace is about to store
  /// are not written once more, and leave nothing behind.
  void TakeOut(std::set<AString> const & internalNames, io::CBlock const & replacements);
  /// Stores the children, which stand under real names and take internal ones here, in place of what bears their names.
  void Replace(io::CBlock & blocks);
  /// Of an empty file: stores the children likewise, and a name map that tells them alone.
  void Fill(io::CBlock & blocks);

private:
  std::set<AString> InternalNamesOf(io::CBlock const & blocks) const;
  void WriteAnew();
  void Save(io::CBlock & block);

  SolutionFileManager const & m_files;
  AString m_path;
  CStreamioLibPrivate m_library;
};
