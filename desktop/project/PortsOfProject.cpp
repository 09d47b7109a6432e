#include "desktop/project/PortsOfProject.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/PortSettings.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace desktop {

namespace {

AString const kShown(L"Shown");
AString const kSettings(L"Settings");

} // namespace

void WritePorts(BaseSolutionManager const & manager, io::CBlock & block) {
  std::vector<PortSettings> settings;
  if (manager.GetPortPostProcessingSettings(settings) == 0)
    return;
  io::CBlock ports(kSettings);
  for (PortSettings const & port : settings) {
    io::CBlock portBlock(port.GetItemName());
    port.Write(portBlock);
    ports << portBlock;
  }
  block << io::named(kShown, manager.IsRenormalizing() || manager.IsDeembedding()) << ports;
}

void ReadPorts(io::CBlock const & block, BaseSolutionManager & manager) {
  std::vector<PortSettings> settings;
  bool isShown = false;
  block >> io::named(kShown, isShown);
  if (io::CBlock const * const ports = block.FindBlock(kSettings))
    for (auto const & child : *ports)
      if (io::CBlock_ptr<io::CBlock> const portBlock(child); portBlock) {
        settings.emplace_back(portBlock->Name());
        if (settings.back().Read(*portBlock) != io::kNoError)
          settings.pop_back();
      }
  manager.SetPortPostProcessingSettings(settings);
  manager.SetPostProcessingIsOn(isShown && !settings.empty());
}

} // namespace desktop
