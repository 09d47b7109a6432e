#include "desktop/page/SvgLegend.h"

#include "desktop/page/Markup.h"

#include <fmt/format.h>

#include <algorithm>

namespace desktop::page {
namespace {

constexpr std::size_t kMostEntries = 24;
constexpr double kLine = 18.0;

AString FullName(std::pair<AString, AString> const & curve) {
  return curve.second.empty() ? curve.first : curve.first + L", " + curve.second;
}

} // namespace

SvgLegend::SvgLegend(std::vector<std::pair<AString, AString>> const & curves)
    : m_curves(curves), m_looks(LooksOf(curves)) {}

double SvgLegend::Height() const {
  std::size_t const lines = std::min(m_curves.size(), kMostEntries) + (m_curves.size() > kMostEntries ? 1 : 0);
  return 10.0 + kLine * static_cast<double>(lines);
}

std::string SvgLegend::File(AString const & title, double width, double height, std::string const & drawing) const {
  std::string file =
      fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:g}\" height=\"{1:g}\" "
                  "viewBox=\"0 0 {0:g} {1:g}\" font-family=\"sans-serif\" font-size=\"12\" fill=\"#1c2430\">\n"
                  "<title>{2}</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n",
                  width, height + Height(), EscapedMarkup(title));
  file += fmt::format("<text x=\"12\" y=\"22\" font-size=\"15\" font-weight=\"bold\">{}</text>\n",
                      EscapedMarkup(Shortened(title, static_cast<std::size_t>(width) / 11)));
  file += drawing;
  double y = height + 10.0;
  for (std::size_t i = 0; i < std::min(m_curves.size(), kMostEntries); ++i, y += kLine) {
    file += SvgPath(fmt::format("M20 {0:g}H54", y), m_looks[i]) + SvgMarker(m_looks[i], 37.0, y);
    file += SvgText(62.0, y + 4.0, "start",
                    EscapedMarkup(Shortened(FullName(m_curves[i]), static_cast<std::size_t>(width) / 8)));
  }
  if (m_curves.size() > kMostEntries)
    file += SvgText(62.0, y + 4.0, "start", fmt::format("and {} more", m_curves.size() - kMostEntries));
  return file + "</svg>\n";
}

AString Shortened(AString const & text, std::size_t letters) {
  return text.size() <= letters ? text : text.substr(0, letters) + L"…";
}

std::string SvgPath(std::string const & path, CurveLook const & look) {
  if (path.empty())
    return {};
  std::string const dashes = look.dashes.empty() ? std::string() : " stroke-dasharray=\"" + look.dashes + "\"";
  return fmt::format("<path d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"1.6\" stroke-linejoin=\"round\"{}/>\n",
                     path, look.colour, dashes);
}

std::string SvgText(double x, double y, char const * anchor, std::string const & escaped) {
  return fmt::format("<text x=\"{:.6g}\" y=\"{:.6g}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor, escaped);
}

} // namespace desktop::page
