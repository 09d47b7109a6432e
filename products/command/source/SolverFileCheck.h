#pragma once

namespace command {

struct SolverFile;

/// What only the whole file tells: names that are missing, unknown or there twice.  Throws SourceError; notes what may
/// surprise its writer; a file without a setup gets one.
void CheckSolverFile(SolverFile & file);

} // namespace command
