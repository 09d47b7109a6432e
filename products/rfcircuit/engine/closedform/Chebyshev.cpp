#include "products/rfcircuit/engine/closedform/Chebyshev.h"

#include <cmath>
#include <numbers>

namespace rf {
namespace {

double ChebyshevPolynomial(int order, double x) {
  return x <= 1 ? std::cos(order * std::acos(x)) : std::cosh(order * std::acosh(x));
}

} // namespace

double ChebyshevLowPassS21(int order, double rippleDb, double cutoff, double frequency) {
  double const polynomial = ChebyshevPolynomial(order, std::fabs(frequency) / cutoff);
  double const rippleSquared = std::expm1(rippleDb / 10 * std::numbers::ln10);
  return 1 / std::sqrt(1 + rippleSquared * polynomial * polynomial);
}

std::vector<double> ChebyshevPrototype(int order, double rippleDb) {
  double const pi = std::numbers::pi;
  // ln(coth(r / 17.37)) of the textbook, where 17.37 stands for 40 / ln 10.
  double const beta = -std::log(std::tanh(rippleDb * std::numbers::ln10 / 40));
  double const gamma = std::sinh(beta / (2 * order));
  auto const a = [&](int k) { return std::sin((2 * k - 1) * pi / (2 * order)); };
  auto const b = [&](int k) { return gamma * gamma + std::pow(std::sin(k * pi / order), 2); };
  std::vector<double> values{2 * a(1) / gamma};
  for (int k = 2; k <= order; ++k)
    values.push_back(4 * a(k - 1) * a(k) / (b(k - 1) * values.back()));
  return values;
}

std::vector<LadderElement> ChebyshevLowPassLadder(int order, double rippleDb, double cutoff, double z0,
                                                  double capacitorScale, double inductorScale) {
  double const omega = 2 * std::numbers::pi * cutoff;
  std::vector<LadderElement> ladder;
  for (double value : ChebyshevPrototype(order, rippleDb)) {
    bool const isCapacitor = ladder.size() % 2 == 0;
    ladder.push_back(isCapacitor
                         ? LadderElement{LadderElement::Kind::ShuntCapacitor, capacitorScale * value / (omega * z0)}
                         : LadderElement{LadderElement::Kind::SeriesInductor, inductorScale * value * z0 / omega});
  }
  return ladder;
}

double ChebyshevBandPassS21(int order, double rippleDb, double centre, double relativeBandwidth, double frequency) {
  return ChebyshevLowPassS21(order, rippleDb, 1, (frequency / centre - centre / frequency) / relativeBandwidth);
}

std::vector<LadderElement> ChebyshevBandPassLadder(int order, double rippleDb, double centre, double relativeBandwidth,
                                                   double z0) {
  using Kind = LadderElement::Kind;
  double const omega = 2 * std::numbers::pi * centre;
  std::vector<LadderElement> ladder;
  for (double value : ChebyshevPrototype(order, rippleDb)) {
    double const slope = value / (relativeBandwidth * omega); // of the reactance, of the level of one ohm
    double const other = relativeBandwidth / (value * omega);
    bool const isShunt = ladder.size() % 4 == 0;
    ladder.push_back({isShunt ? Kind::ShuntCapacitor : Kind::SeriesInductor, isShunt ? slope / z0 : slope * z0});
    ladder.push_back({isShunt ? Kind::ShuntInductor : Kind::SeriesCapacitor, isShunt ? other * z0 : other / z0});
  }
  return ladder;
}

} // namespace rf
