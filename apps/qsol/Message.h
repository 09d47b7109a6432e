#pragma once

#include <string>

namespace qsol {

/// Writes "qsol: TEXT" as one line without control characters.  What can't be written is lost: the exit code tells
/// enough, and a message is no reason to end in another way.
void WriteMessage(int descriptor, std::string const & text) noexcept;

/// Keeps the numbers of the standard streams from files that are opened later, so that no message and no output ends
/// in a library: a stream that is closed refuses what is written to it, as before.
void KeepStandardDescriptors() noexcept;

} // namespace qsol
