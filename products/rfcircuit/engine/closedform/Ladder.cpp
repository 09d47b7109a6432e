#include "products/rfcircuit/engine/closedform/Ladder.h"

#include <cmath>
#include <numbers>

namespace rf {
namespace {

using Complex = std::complex<double>;

struct Chain {
  Complex a{1}, b{0}, c{0}, d{1};

  void ThenSeries(Complex impedance) {
    b += a * impedance;
    d += c * impedance;
  }
  void ThenShunt(Complex admittance) {
    a += b * admittance;
    c += d * admittance;
  }
};

void Append(Chain & chain, LadderElement const & element, double omega) {
  Complex const product(0, omega * element.value);
  switch (element.kind) {
  case LadderElement::Kind::SeriesResistor:
    return chain.ThenSeries(element.value);
  case LadderElement::Kind::SeriesInductor:
    return chain.ThenSeries(product);
  case LadderElement::Kind::SeriesCapacitor:
    return chain.ThenSeries(1.0 / product);
  case LadderElement::Kind::ShuntResistor:
    return chain.ThenShunt(1.0 / element.value);
  case LadderElement::Kind::ShuntInductor:
    return chain.ThenShunt(1.0 / product);
  case LadderElement::Kind::ShuntCapacitor:
    return chain.ThenShunt(product);
  }
}

} // namespace

std::complex<double> LadderS21(std::vector<LadderElement> const & ladder, double sourceZ0, double loadZ0,
                               double frequency) {
  Chain chain;
  for (LadderElement const & element : ladder)
    Append(chain, element, 2 * std::numbers::pi * frequency);
  return 2 * std::sqrt(sourceZ0 * loadZ0) /
         (chain.a * loadZ0 + chain.b + chain.c * sourceZ0 * loadZ0 + chain.d * sourceZ0);
}

} // namespace rf
