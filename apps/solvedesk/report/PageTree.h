#pragma once

#include "desktop/page/Document.h"

namespace desktop {
class Session;
}

namespace solvedesk {

/// A project as a page shows it: variables, setups, solutions, and their variations with the reasons of stale ones.  Of
/// a solution of very many variations those that need a word come first, and the rest is counted.
desktop::page::Tree TreeOf(desktop::Session & session);

} // namespace solvedesk
