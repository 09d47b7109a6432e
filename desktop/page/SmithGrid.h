#pragma once

#include <string>

namespace desktop::page {

/// The circles of constant resistance and arcs of constant reactance, with their values, as an SVG group of the class
/// "roundgrid" around the origin; the outer circle has the radius.  Values are parts of the reference impedance.
std::string SmithGrid(double radius);

} // namespace desktop::page
