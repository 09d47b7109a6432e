#pragma once

#include <string>

namespace solvedesk {

/// Writes a file that an option such as "--csv" names, all of it or nothing; the folder is to be there.  Failures are
/// desktop::Error that name option and file.
void WriteOutputFile(std::string const & option, std::string const & file, std::string const & text);

} // namespace solvedesk
