#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"
#include "viewkit/library/CStreamioLibPrivate.h"

#include <optional>
#include <set>
#include <vector>

class SolutionFileManager;

/// The library file of an exported design point, written in place, whose blocks bear the internal names of the library
/// that it comes from.  That library's file manager outlives this, its name map loaded.  What fails leaves a partial
/// file and a trace ("Error in reading", "Error in writing", "Error in saving block"): an export goes on.
class PointLibrary {
public:
  PointLibrary(SolutionFileManager const & files, AString const & path);

  void Clear();
  /// Of a copy of the whole library: takes the blocks of these internal names out, and their entries out of its name
  /// map, stores the children of `replacements` as Replace tells, and writes the file anew.  What stays is neither
  /// decoded nor held in memory, so that the cost is that of what stays, and what goes leaves nothing behind.
  void CutDown(std::set<AString> const & internalNames, io::CBlock & replacements);
  /// Of an empty file: stores the children likewise, and a name map that tells them alone.
  void Fill(io::CBlock & blocks);

private:
  using LibIOReturn = CStreamioLibrary::LibIOReturn;

  std::optional<std::vector<AString>> NamesInFile() const;
  void TakeOut(std::set<AString> const & internalNames);
  /// Stores the children, which stand under real names and take internal ones here, in place of what bears their names.
  /// Those that could not be stored, without a trace.
  std::vector<io::CBlock_ptr<io::CBlock>> Replace(io::CBlock & blocks);
  void WriteAnew();
  void KeepOnly(std::vector<AString> const & names, io::CBlock const * map);
  void Save(io::CBlock & block);
  /// Traces a failure.
  bool IsRead(LibIOReturn result) const;
  bool IsWritten(LibIOReturn result) const;

  SolutionFileManager const & m_files;
  AString m_path;
  CStreamioLibPrivate m_library;
};
