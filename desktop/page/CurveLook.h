#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <vector>

namespace desktop::page {

/// How a curve is told from others, without colour, too.
struct CurveLook {
  std::string colour;
  std::string dashes; ///< empty for a line without gaps
  int marker = -1;    ///< -1 for none
};

/// A look for each of the curves, of which name and variation are told: a variation has its colour and marker in all
/// families, a family its dashes.
std::vector<CurveLook> LooksOf(std::vector<std::pair<AString, AString>> const & curves);

/// A marker as an SVG element in the colour, filled with white.
std::string SvgMarker(CurveLook const & look, double x, double y);

} // namespace desktop::page
