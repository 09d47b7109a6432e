#pragma once

#include "basekit/file/LongFileName.h"

#include <map>
#include <vector>

/// The result files of an exported design point: copies of files and folders of one design's results folder in that of
/// another place.  What lies outside of the folder or behind a link is not copied.  A copy that fails is told in a
/// trace, and the others are made all the same.
class ResultFileCopies {
public:
  /// Relative to the results folder.
  struct Lists {
    std::map<AString, AString> renamed; ///< for those whose copy bears another name
    std::vector<AString> files;
    std::vector<AString> dirs;
  };

  /// Makes the target folder.
  ResultFileCopies(LongFileName const & source, LongFileName const & target);

  void Copy(Lists const & lists) const;

private:
  void CopyOne(AString const & name, AString const & targetName, bool isFolder) const;

  LongFileName m_source;
  LongFileName m_target;
  bool m_isOntoItself = false;
};
