#include "basekit/file/CFileUtilities.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"

std::vector<LongFileName> CFileUtilities::SimpleFindWithWildCard(LongFileName const & directory,
                                                                 AString const & pattern) {
  std::vector<LongFileName> found;
  std::vector<AString> names;
  if (!file::FileSystem().List(directory, names).Ok())
    return found;
  for (auto const & name : names) {
    LongFileName const path = directory + name;
    if (MatchesWildCard(name, pattern) && !LFN_IsDirectory(path))
      found.push_back(path);
  }
  return found;
}

bool CFileUtilities::MatchesWildCard(AString const & name, AString const & pattern) {
  std::size_t at = 0;
  std::size_t in = 0;
  std::size_t star = AString::npos;
  std::size_t resume = 0;
  while (at < name.size()) {
    if (in < pattern.size() && pattern[in] == L'*') {
      star = in++;
      resume = at;
    } else if (in < pattern.size() && (pattern[in] == L'?' || pattern[in] == name[at])) {
      ++in;
      ++at;
    } else if (star != AString::npos) {
      in = star + 1;
      at = ++resume;
    } else {
      return false;
    }
  }
  while (in < pattern.size() && pattern[in] == L'*')
    ++in;
  return in == pattern.size();
}
