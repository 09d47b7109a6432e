#include "products/rfcircuit/product/quantity/PortConditions.h"

#include "plotkit/simvalue/PortSettings.h"
#include "products/rfcircuit/product/NetworkData.h"

#include <algorithm>
#include <cmath>

namespace rfcircuit {

bool PortConditions::IsRenormalizing() const {
  return std::any_of(impedances.begin(), impedances.end(),
                     [](auto const & impedance) { return impedance.has_value(); });
}

bool PortConditions::IsDeembedding() const {
  return std::any_of(distances.begin(), distances.end(), [](double distance) { return distance != 0.0; });
}

PortConditions ConditionsOf(std::vector<NetworkPort> const & ports, std::vector<PortSettings> const & settings) {
  PortConditions conditions;
  conditions.impedances.resize(ports.size());
  conditions.distances.resize(ports.size());
  for (std::size_t i = 0; i < ports.size(); ++i) {
    auto const said = std::find_if(settings.begin(), settings.end(), [&](PortSettings const & setting) {
      return AString::MatchNoCase(setting.GetItemName(), ports[i].name);
    });
    if (said == settings.end())
      continue;
    auto const impedance = said->GetTermination(true).GetValue();
    if (std::isfinite(impedance.real()) && std::isfinite(impedance.imag()) && impedance.real() > 0.0)
      conditions.impedances[i] = impedance;
    double const distance = said->GetDeembeddingDist().GetValue();
    conditions.distances[i] = std::isfinite(distance) ? distance : 0.0;
  }
  return conditions;
}

} // namespace rfcircuit
