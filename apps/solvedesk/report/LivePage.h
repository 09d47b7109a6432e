#pragma once

namespace solvedesk {

struct DrawRequest;

/// Writes a page again and again while another process solves the project, each time that there are new points or
/// passes, and once more when that process is done, or at Ctrl-C; the last page is like any other.  The writer is never
/// held up: each page is made from a copy of the project's state and library as they are then.
int DrawLive(DrawRequest const & request);

} // namespace solvedesk
