#pragma once

#include <string>

namespace solvedesk {

/// Writes the file that an option names: its folder has to be there, and what stood there before is replaced in one
/// step, so that whoever reads it sees the one or the other.  Failures are desktop::Error (kUsage, kStorage) that tell
/// the option, such as "--csv".
void WriteNamedFile(std::string const & option, std::string const & file, std::string const & text);
/// What can be said without writing it.
void CheckNamedFile(std::string const & option, std::string const & file);

} // namespace solvedesk
