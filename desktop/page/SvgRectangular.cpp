#include "desktop/page/Svg.h"

#include "basekit/text/Utf8.h"
#include "desktop/page/Document.h"
#include "desktop/page/Markup.h"
#include "desktop/page/SvgLegend.h"
#include "desktop/page/SvgPen.h"
#include "desktop/page/Ticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace desktop::page {
namespace {

constexpr double kWidth = 800.0, kHeight = 460.0;
constexpr double kLeft = 72.0, kRight = 780.0, kTop = 36.0, kBottom = 404.0;
constexpr int kMarkers = 7;

/// One axis of a picture: from values to pixels.
class Scale {
public:
  Scale(PlotAxis const & axis, double from, double to) : m_axis(axis), m_from(from), m_to(to) {}

  void Hold(double value) {
    if (double const even = Even(value); std::isfinite(even)) {
      m_low = std::min(m_low, even);
      m_high = std::max(m_high, even);
    }
  }
  /// Once all is held: a range that is never empty, wider by a part of it at both ends.
  void Settle(double margin);
  double Pixel(double value) const { return m_from + (Even(value) - m_low) / (m_high - m_low) * (m_to - m_from); }
  page::Ticks Ticks(int room) const {
    return m_axis.isLogarithmic ? DecadeTicks(std::pow(10.0, m_low), std::pow(10.0, m_high), room, m_axis.unit)
                                : LinearTicks(m_low, m_high, room, m_axis.unit);
  }

private:
  double Even(double value) const {
    if (!m_axis.isLogarithmic)
      return value;
    return value > 0.0 ? std::log10(value) : std::numeric_limits<double>::quiet_NaN();
  }

  PlotAxis const & m_axis;
  double m_from, m_to;
  double m_low = std::numeric_limits<double>::infinity(), m_high = -std::numeric_limits<double>::infinity();
};

void Scale::Settle(double margin) {
  if (!(m_low <= m_high)) {
    m_low = 0.0;
    m_high = 1.0;
  }
  // The difference of the ends of what a number can hold is no number.
  m_low = std::max(m_low, -1e307);
  m_high = std::min(m_high, 1e307);
  double wider = (m_high - m_low) * margin;
  if (!(m_high - m_low > std::abs(m_high) * 1e-12))
    wider = m_axis.isLogarithmic ? 0.5 : std::max(std::abs(m_high) / 10.0, m_high == 0.0 ? 1.0 : 0.0);
  m_low -= wider;
  m_high += wider;
}

std::string TitleOf(PlotAxis const & axis, std::string const & unit) {
  std::string const title = EscapedMarkup(Shortened(axis.title, 48));
  return unit.empty() ? title
                      : fmt::format("{}[{}]", title.empty() ? "" : title + " ",
                                    EscapedMarkup(Shortened(text::FromUtf8(unit), 12)));
}

std::string GridOf(RectangularPlot const & plot, Scale const & x, Scale const & y) {
  page::Ticks const xs = x.Ticks(8), ys = y.Ticks(8);
  std::string lines, texts;
  for (auto const & [value, told] : xs.ticks) {
    lines += fmt::format("M{:.2f} {:g}V{:g}", x.Pixel(value), kTop, kBottom);
    if (!told.empty())
      texts += SvgText(x.Pixel(value), kBottom + 17.0, "middle", told);
  }
  for (auto const & [value, told] : ys.ticks) {
    lines += fmt::format("M{:g} {:.2f}H{:g}", kLeft, y.Pixel(value), kRight);
    if (!told.empty())
      texts += SvgText(kLeft - 6.0, y.Pixel(value) + 4.0, "end", told);
  }
  texts += SvgText((kLeft + kRight) / 2.0, kBottom + 38.0, "middle", TitleOf(plot.x, xs.unit));
  texts += fmt::format("<text transform=\"translate(18 {:g}) rotate(-90)\" text-anchor=\"middle\">{}</text>\n",
                       (kTop + kBottom) / 2.0, TitleOf(plot.y, ys.unit));
  return fmt::format("<path d=\"{}\" fill=\"none\" stroke=\"#e3e6eb\"/>\n<rect x=\"{:g}\" y=\"{:g}\" width=\"{:g}\" "
                     "height=\"{:g}\" fill=\"none\" stroke=\"#a9b1bc\"/>\n",
                     lines, kLeft, kTop, kRight - kLeft, kBottom - kTop) +
         texts;
}

std::string LevelsOf(RectangularPlot const & plot, Scale const & y) {
  std::string levels;
  for (Level const & level : plot.levels)
    if (double const at = y.Pixel(level.y); at >= kTop && at <= kBottom) {
      levels += fmt::format("<path d=\"M{:g} {:.2f}H{:g}\" stroke=\"#b3261e\" stroke-dasharray=\"6 4\"/>\n"
                            "<g fill=\"#b3261e\" stroke=\"#fff\" stroke-width=\"3\" paint-order=\"stroke\">",
                            kLeft, at, kRight);
      levels += SvgText(kRight - 6.0, at + (at > kTop + 18.0 ? -4.0 : 14.0), "end",
                        EscapedMarkup(Shortened(level.label, 100))) +
                "</g>";
    }
  return levels;
}

std::size_t CountOf(Series const & series) { return std::min(series.x.size(), series.y.size()); }

std::string CurveOf(Series const & series, CurveLook const & look, std::size_t place, Scale const & x,
                    Scale const & y) {
  SvgPen pen;
  std::size_t const count = CountOf(series);
  for (std::size_t i = 0; i < count; ++i)
    pen.To(x.Pixel(series.x[i]), y.Pixel(series.y[i]));
  std::string curve = SvgPath(pen.Path(), look);
  // Curves begin at different places, so that markers don't hide each other.
  std::size_t const apart = std::max<std::size_t>(1, count / kMarkers);
  for (std::size_t i = count > 24 ? place * 5 % apart : 0; i < count; i += apart) {
    double const at = x.Pixel(series.x[i]), height = y.Pixel(series.y[i]);
    if (std::isfinite(at) && std::isfinite(height))
      curve += SvgMarker(look, at, height);
  }
  return curve;
}

} // namespace

std::string Svg(RectangularPlot const & plot) {
  Scale x(plot.x, kLeft, kRight), y(plot.y, kBottom, kTop);
  std::vector<std::pair<AString, AString>> names;
  for (Series const & series : plot.series) {
    names.emplace_back(series.name, series.variation);
    for (std::size_t i = 0; i < CountOf(series); ++i) {
      x.Hold(series.x[i]);
      y.Hold(series.y[i]);
    }
  }
  for (Level const & level : plot.levels)
    y.Hold(level.y);
  x.Settle(0.0);
  y.Settle(0.05);
  SvgLegend const legend(names);
  std::string drawing = GridOf(plot, x, y);
  for (std::size_t i = 0; i < plot.series.size(); ++i)
    drawing += CurveOf(plot.series[i], legend.Looks()[i], i, x, y);
  return legend.File(plot.title, kWidth, kHeight, drawing + LevelsOf(plot, y));
}

} // namespace desktop::page
