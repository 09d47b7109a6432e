#include "desktop/page/SmithGrid.h"

#include <fmt/format.h>

#include <complex>

namespace desktop::page {
namespace {

constexpr double kResistances[] = {0.2, 0.5, 1.0, 2.0, 5.0};
constexpr double kFineResistances[] = {0.1, 0.3, 0.7, 1.5, 3.0, 10.0};
constexpr double kReactances[] = {0.2, 0.5, 1.0, 2.0, 5.0};
constexpr double kFineReactances[] = {0.1, 0.3, 0.7, 1.5, 3.0, 10.0};

std::complex<double> Reflection(double resistance, double reactance) {
  std::complex<double> const z(resistance, reactance);
  return (z - 1.0) / (z + 1.0);
}

// Around r/(r+1) with the radius 1/(r+1).
std::string Resistance(double r, double radius, char const * look) {
  return fmt::format("<circle cx=\"{:.6g}\" cy=\"0\" r=\"{:.6g}\"{}/>", r / (r + 1.0) * radius, radius / (r + 1.0),
                     look);
}

// From the outer circle to the point of infinity; the mirror image has the reactance of the other sign.
std::string Reactance(double x, double radius, char const * look) {
  std::complex<double> const begin = Reflection(0.0, x) * radius;
  return fmt::format(
      "<path d=\"M{0:.6g} {1:.6g}A{2:.6g} {2:.6g} 0 0 0 {3:.6g} 0A{2:.6g} {2:.6g} 0 0 0 {0:.6g} {4:.6g}\"{5}/>",
      begin.real(), -begin.imag(), radius / x, radius, begin.imag(), look);
}

std::string Label(double x, double y, char const * look, std::string const & text) {
  return fmt::format("<text x=\"{:.6g}\" y=\"{:.6g}\" class=\"{}\">{}</text>", x, y, look, text);
}

} // namespace

std::string SmithGrid(double radius) {
  std::string grid = "<g class=\"roundgrid\">";
  for (double const r : kFineResistances)
    grid += Resistance(r, radius, "");
  for (double const x : kFineReactances)
    grid += Reactance(x, radius, "");
  for (double const r : kResistances)
    grid += Resistance(r, radius, " class=\"main\"");
  for (double const x : kReactances)
    grid += Reactance(x, radius, " class=\"main\"");
  grid += fmt::format("<path d=\"M{0:.6g} 0H{1:.6g}\" class=\"main\"/>", -radius, radius);
  grid += fmt::format("<circle cx=\"0\" cy=\"0\" r=\"{:.6g}\" class=\"outer\"/>", radius);
  for (double const r : kResistances)
    grid +=
        Label(Reflection(r, 0.0).real() * radius + radius * 0.008, -radius * 0.012, "label", fmt::format("{:g}", r));
  for (double const x : kReactances) {
    std::complex<double> const at = Reflection(0.0, x) * radius * 1.075;
    grid += Label(at.real(), -at.imag(), "middle", fmt::format("{:g}j", x));
    grid += Label(at.real(), at.imag(), "middle", fmt::format("−{:g}j", x));
  }
  grid += Label(-radius * 1.06, 0.0, "middle", "0") + Label(radius * 1.06, 0.0, "middle", "∞");
  return grid + "</g>";
}

} // namespace desktop::page
