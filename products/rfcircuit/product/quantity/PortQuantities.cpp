#include "products/rfcircuit/product/quantity/PortQuantities.h"

#include "basekit/value/expression/ColumnOperations.h"
#include "desktop/product/quantity/QuantityColumn.h"
#include "products/rfcircuit/product/quantity/NetworkView.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace rfcircuit {
namespace {

using Reals = desktop::QuantityColumn::Reals;
using Complexes = desktop::QuantityColumn::Complexes;

ValueState StateOf(Units::UnitType unit, val::ParameterType type) {
  return {Units::GetDefaultUnits(unit), unit, 1, type};
}

Complexes Given(NetworkView::Column const & column) { return Complexes(column.begin(), column.end()); }

// A moved plane turns the phases of its port's own S-parameters; with other impedances it matters to all of them.
bool IsPhaseReached(PortChange const & change, std::vector<AString> const & ports) {
  if (!change.impedances.empty())
    return true;
  return change.isRenormalizing ? !change.planes.empty()
                                : std::any_of(ports.begin(), ports.end(),
                                              [&](AString const & port) { return change.planes.count(port) > 0; });
}

} // namespace

ValueState SParameter::GetState() const { return StateOf(Units::kNoUnitType, val::kComplex); }

void SParameter::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  column.numbers = Given(view.S(ports[0], ports[1]));
}

bool SParameter::Matters(PortChange const & change, std::vector<AString> const & ports) const {
  return IsPhaseReached(change, ports);
}

ValueState YParameter::GetState() const { return StateOf(Units::kConductance, val::kComplex); }

void YParameter::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  column.numbers = Given(view.Y(ports[0], ports[1]));
}

bool YParameter::Matters(PortChange const & change, std::vector<AString> const &) const {
  return !change.planes.empty();
}

ValueState ZParameter::GetState() const { return StateOf(Units::kResistance, val::kComplex); }

void ZParameter::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  column.numbers = Given(view.Z(ports[0], ports[1]));
}

bool ZParameter::Matters(PortChange const & change, std::vector<AString> const &) const {
  return !change.planes.empty();
}

ValueState StandingWaveRatio::GetState() const { return StateOf(Units::kNoUnitType, val::kReal); }

void StandingWaveRatio::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  Reals ratios;
  for (auto const & reflection : view.S(ports[0], ports[0])) {
    double const magnitude = std::abs(reflection);
    ratios.push_back(magnitude >= 1.0 ? std::numeric_limits<double>::infinity()
                                      : (1.0 + magnitude) / (1.0 - magnitude));
  }
  column.numbers = std::move(ratios);
}

bool StandingWaveRatio::Matters(PortChange const & change, std::vector<AString> const &) const {
  return !change.impedances.empty() || (change.isRenormalizing && !change.planes.empty());
}

ValueState GroupDelay::GetState() const { return StateOf(Units::kTime, val::kReal); }

void GroupDelay::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  NetworkView::Column const s = view.S(ports[0], ports[1]);
  Reals delays(s.size());
  expr::RunColumnOperation(expr::ColumnOperation::kGroupDelay, view.Frequencies(), s, delays);
  column.numbers = std::move(delays);
}

bool GroupDelay::Matters(PortChange const & change, std::vector<AString> const & ports) const {
  return IsPhaseReached(change, ports);
}

ValueState PortImpedance::GetState() const { return StateOf(Units::kResistance, val::kComplex); }

void PortImpedance::Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const {
  column.numbers = Complexes(view.Frequencies().size(), view.Impedance(ports[0]));
}

bool PortImpedance::Matters(PortChange const & change, std::vector<AString> const & ports) const {
  return ports.empty() ? !change.impedances.empty() : change.impedances.count(ports[0]) > 0;
}

ValueState FrequencyQuantity::GetState() const { return StateOf(Units::kFrequency, val::kReal); }

void FrequencyQuantity::Fill(NetworkView & view, Ports const &, desktop::QuantityColumn & column) const {
  column.numbers = view.Frequencies();
}

} // namespace rfcircuit
