#pragma once

#include "basekit/text/AString.h"
#include "desktop/page/CurveLook.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace desktop::page {

/// What stands around the curves of an SVG file: its head, title and legend.  Sizes are in pixels.
class SvgLegend {
public:
  /// Curves are told by name and variation.
  explicit SvgLegend(std::vector<std::pair<AString, AString>> const & curves);

  std::vector<CurveLook> const & Looks() const { return m_looks; }
  /// How much room it takes below the plot.
  double Height() const;
  /// Below the height, with what the file begins and ends with around the drawing.
  std::string File(AString const & title, double width, double height, std::string const & drawing) const;

private:
  std::vector<std::pair<AString, AString>> const m_curves;
  std::vector<CurveLook> const m_looks;
};

/// The text, shortened where it has more letters: pictures don't wrap.
AString Shortened(AString const & text, std::size_t letters);
/// Elements of a curve's path, which is in the syntax of SVG.
std::string SvgPath(std::string const & path, CurveLook const & look);
std::string SvgText(double x, double y, char const * anchor, std::string const & escaped);

} // namespace desktop::page
