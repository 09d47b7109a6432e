#include "desktop/page/Svg.h"

#include "basekit/text/Utf8.h"
#include "desktop/page/Document.h"
#include "desktop/page/Markup.h"
#include "desktop/page/SmithGrid.h"
#include "desktop/page/SvgLegend.h"
#include "desktop/page/SvgPen.h"
#include "desktop/page/Ticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace desktop::page {
namespace {

constexpr double kWidth = 640.0, kHeight = 620.0, kRadius = 255.0;
constexpr double kMiddleX = kWidth / 2.0, kMiddleY = 330.0;
constexpr std::size_t kMarkers = 5;

double LargestOf(std::vector<ComplexSeries> const & all) {
  double largest = 0.0;
  for (ComplexSeries const & series : all)
    for (std::complex<double> const value : series.values)
      if (double const radius = std::abs(value); std::isfinite(radius))
        largest = std::max(largest, radius);
  return largest;
}

// Around the middle, where one unit of the values takes `scale` pixels.
std::string CurvesOf(std::vector<ComplexSeries> const & all, SvgLegend const & legend, double scale) {
  std::string curves;
  for (std::size_t which = 0; which < all.size(); ++which) {
    std::vector<std::complex<double>> const & values = all[which].values;
    CurveLook const & look = legend.Looks()[which];
    SvgPen pen;
    for (std::complex<double> const value : values)
      pen.To(value.real() * scale, -value.imag() * scale);
    curves += SvgPath(pen.Path(), look);
    std::size_t const apart = std::max<std::size_t>(1, values.size() / kMarkers);
    for (std::size_t i = apart / 2; i < values.size(); i += apart)
      if (std::isfinite(values[i].real()) && std::isfinite(values[i].imag()))
        curves += SvgMarker(look, values[i].real() * scale, -values[i].imag() * scale);
  }
  return curves;
}

SvgLegend LegendOf(std::vector<ComplexSeries> const & all) {
  std::vector<std::pair<AString, AString>> names;
  for (ComplexSeries const & series : all)
    names.emplace_back(series.name, series.variation);
  return SvgLegend(names);
}

// The grid's elements are coloured by their classes, as on a page.
std::string Around(std::string const & drawing) {
  return fmt::format(
      "<style>.roundgrid path,.roundgrid circle{{fill:none;stroke:#e3e6eb}}.roundgrid .main,"
      ".roundgrid .outer{{stroke:#a9b1bc}}.roundgrid text{{fill:#56606e;stroke:none}}.middle{{text-anchor:middle;"
      "dominant-baseline:middle}}</style>\n<g transform=\"translate({:g} {:g})\">\n{}</g>\n",
      kMiddleX, kMiddleY, drawing);
}

std::string Spokes() {
  std::string spokes;
  for (int angle = 0; angle < 360; angle += 30) {
    double const c = std::cos(angle * std::numbers::pi / 180.0), s = std::sin(angle * std::numbers::pi / 180.0);
    spokes +=
        fmt::format("<path d=\"M0 0L{:.2f} {:.2f}\"/><text x=\"{:.2f}\" y=\"{:.2f}\" class=\"middle\">{}°</text>\n",
                    c * kRadius, -s * kRadius, c * kRadius * 1.08, -s * kRadius * 1.08, angle);
  }
  return spokes;
}

} // namespace

std::string Svg(PolarPlot const & plot) {
  SvgLegend const legend = LegendOf(plot.series);
  double const largest = LargestOf(plot.series), most = largest > 0.0 ? largest : 1.0;
  Ticks const steps = LinearTicks(0.0, most, 5, AString());
  double const step = steps.ticks.size() > 1 ? steps.ticks[1].value : most;
  double const outer = std::ceil(most / step - 1e-9) * step;
  std::string grid = "<g class=\"roundgrid\">\n" + Spokes();
  Ticks const ticks = LinearTicks(0.0, outer, 5, plot.unit);
  for (auto const & [value, told] : ticks.ticks)
    if (value > 0.0) {
      double const radius = value / outer * kRadius;
      bool const isOuter = value > outer * (1.0 - 1e-9);
      grid += fmt::format("<circle r=\"{:.2f}\"{}/>", radius, isOuter ? " class=\"outer\"" : "");
      grid += SvgText(4.0, -radius + (isOuter ? 14.0 : -3.0), "start", told);
    }
  grid += "</g>\n";
  std::string drawing = Around(grid + CurvesOf(plot.series, legend, kRadius / outer));
  if (!ticks.unit.empty())
    drawing += SvgText(kWidth - 16.0, 22.0, "end", "[" + EscapedMarkup(text::FromUtf8(ticks.unit)) + "]");
  return legend.File(plot.title, kWidth, kHeight, drawing);
}

std::string Svg(SmithChart const & chart) {
  SvgLegend const legend = LegendOf(chart.series);
  // Active circuits reflect more than they get: then the whole chart is drawn smaller.
  double const scale = kRadius / std::max(1.0, LargestOf(chart.series));
  std::string const drawing = Around(SmithGrid(scale) + CurvesOf(chart.series, legend, scale));
  return legend.File(chart.title, kWidth, kHeight,
                     drawing +
                         SvgText(kWidth - 16.0, 22.0, "end",
                                 chart.impedance ? fmt::format("reference {:g} Ω", *chart.impedance) : "normalised"));
}

} // namespace desktop::page
