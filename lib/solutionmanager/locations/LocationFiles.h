#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

/// What a location store does on the disk, below one root directory.  Locations come out of files: one that leads out
/// of the root, by its text or over a symbolic link, is reported and nothing is done with it; so is one that overlaps
/// the open backup area.  A save of which a part was refused is not whole.
class LocationFiles {
public:
  LocationFiles(AString const & root, bool isFile) : m_root(root), m_isFile(isFile) {}

  /// False, and reported, for a location that leads elsewhere.
  bool IsInside(AString const & location) const;
  bool Exists(AString const & location) const;
  /// To the open backup area, or for good; what is not there is no error.
  void Delete(AString const & location) const;
  /// Never to a backup.
  void DeleteOutright(AString const & location) const;
  /// Failures are not told: the views are what counts.
  void Move(AString const & from, AString const & to) const;
  /// Whether two locations name one file, which must not go away under its other name.
  bool AreSame(AString const & a, AString const & b) const;
  void CreateDirectory(AString const & location) const;

private:
  bool MayTouch(AString const & location) const;
  LongFileName PathOf(AString const & location) const { return LongFileName(m_root + location); }

  AString m_root;
  bool m_isFile;
};
