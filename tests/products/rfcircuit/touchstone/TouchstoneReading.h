#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

#include <string>
#include <vector>

namespace rftest {

/** A data set as a plain reader of Touchstone 1 sees it. */
struct TouchstoneData {
  std::vector<std::string> comments;
  std::string optionLine;
  std::vector<double> frequencies;
  std::vector<rf::SMatrix> matrices;
  std::size_t longestLine = 0; ///< in pairs
};

TouchstoneData ReadTouchstone(std::string const & text, std::size_t ports);

} // namespace rftest
