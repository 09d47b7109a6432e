#pragma once

#include <set>
#include <string>

namespace solvedesk {

/// Readable file names, without extension, that are unique without case and can't lead out of their folder: what is
/// neither letter, digit nor one of = + - . _ becomes an underscore, none begins with a dot, none is over 120 bytes.
class FileNames {
public:
  std::string Make(std::string const & wanted);

private:
  std::set<std::string> m_taken; ///< in lower case
};

} // namespace solvedesk
