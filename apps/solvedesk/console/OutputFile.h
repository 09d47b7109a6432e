#pragma once

#include <string>

namespace solvedesk {

/// Writes the file that an option such as "--csv" names: its folder has to be there, and what stood there before is
/// replaced in one step, so that whoever reads it sees the one or the other.  Failures are desktop::Error (kUsage,
/// kStorage) that name option and file.
void WriteOutputFile(std::string const & option, std::string const & file, std::string const & text);
/// What can be said without writing it, before long work.
void CheckOutputFile(std::string const & option, std::string const & file);

} // namespace solvedesk
