#pragma once

#include "apps/qsol/Catalogue.h"
#include "apps/qsol/SelectionWords.h"

#include <string>
#include <vector>

namespace qsol {

/// Throws Failure for a name that is none.
void CheckNames(std::vector<std::string> const & names);

/// The blocks that names, or without names a selection, ask for; what is not there becomes an error, a line each.
std::vector<Block const *> ChosenBlocks(std::vector<std::string> const & names, SelectionWords const & selection,
                                        Catalogue const & catalogue, std::string const & file,
                                        std::vector<std::string> & errors);

} // namespace qsol
