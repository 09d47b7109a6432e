#pragma once

namespace solvedesk {

/// Whether whatever opens a project gets the session of a shell.
bool IsSessionShared();

} // namespace solvedesk
