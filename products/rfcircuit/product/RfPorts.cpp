// Ports as results are told with them.

#include "desktop/product/ProductSolutionManager.h"
#include "products/rfcircuit/product/PortEdit.h"
#include "products/rfcircuit/product/RfCircuitProduct.h"
#include "products/rfcircuit/product/RfExtractor.h"
#include "products/rfcircuit/product/quantity/NetworkLayout.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>

namespace rfcircuit {
namespace {

PortSettings * FindSettings(std::vector<PortSettings> & settings, AString const & port) {
  auto const at = std::find_if(settings.begin(), settings.end(), [&port](PortSettings const & one) {
    return AString::MatchNoCase(one.GetItemName(), port);
  });
  return at == settings.end() ? nullptr : &*at;
}

NetworkLayout LayoutOf(desktop::ProductSolutionManager const & manager) {
  for (auto const & [id, setup] : manager.GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (auto const * const extractor = dynamic_cast<RfExtractor const *>(solution->GetBaseSimDataExtractor()))
        if (extractor->GetLayout().isKnown)
          return extractor->GetLayout();
  return {};
}

} // namespace

std::vector<desktop::IPortProduct::Port>
RfCircuitProduct::GetPorts(desktop::ProductSolutionManager const & manager) const {
  std::vector<PortSettings> settings;
  if (manager.IsRenormalizing())
    manager.GetPortPostProcessingSettings(settings);
  std::vector<Port> ports;
  for (NetworkPort const & port : LayoutOf(manager).ports) {
    ports.push_back({port.name, port.z0, {}});
    PortSettings const * const said = FindSettings(settings, port.name);
    double const impedance = said ? said->GetTermination(true).GetValue().real() : 0.0;
    if (impedance != 0.0)
      ports.back().shown = impedance;
  }
  return ports;
}

void RfCircuitProduct::ShowPorts(desktop::ProductSolutionManager & manager, std::vector<Port> const & ports,
                                 KelvroCommand & command) const {
  std::vector<PortSettings> settings;
  manager.GetPortPostProcessingSettings(settings);
  for (Port const & port : ports) {
    PortSettings * said = FindSettings(settings, port.name);
    if (!said)
      said = &settings.emplace_back(port.name);
    said->SetImpedance(port.solved);
    if (port.shown)
      said->SetRenormalization(*port.shown);
    else
      said->ClearRenormalization();
  }
  ChangePortSettings(manager, settings, command);
}

} // namespace rfcircuit
