#pragma once

#include "basekit/text/AString.h"

#include <vector>

class LongFileName;

class CFileUtilities {
public:
  /// The files (no folders) of one folder whose names match, in the order of their names.  '*' stands for any
  /// characters, '?' for one; case counts.
  static std::vector<LongFileName> SimpleFindWithWildCard(LongFileName const & directory, AString const & pattern);
  static bool MatchesWildCard(AString const & name, AString const & pattern);
};
