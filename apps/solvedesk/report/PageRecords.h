#pragma once

#include "desktop/page/Document.h"

#include <vector>

namespace desktop {
class Session;
}

namespace solvedesk {

/// What the solves of a project reported, as items of a page; a record that can't be read is told on standard error,
/// and the code becomes that of a damaged project.

/// The passes of adaptive solves: an item for each setup and criterion.
std::vector<desktop::page::Item> ConvergenceItems(desktop::Session & session, int & code);
/// What the solves cost: for each setup its variations, and its tasks summed up over them.
std::vector<desktop::page::Item> ProfileItems(desktop::Session & session, int & code);

} // namespace solvedesk
