#pragma once

#include <string>

namespace desktop::page {

struct PolarPlot;
struct RectangularPlot;
struct SmithChart;

/// Single plots as SVG files in UTF-8, on white, with axes, units and a legend.  Of many samples in one column of
/// pixels only what can be seen is written.
std::string Svg(RectangularPlot const & plot);
std::string Svg(PolarPlot const & plot);
std::string Svg(SmithChart const & chart);

} // namespace desktop::page
