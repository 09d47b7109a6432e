#pragma once

#include "basekit/command/KelvroCommandInfo.h"
#include "plotkit/simvalue/PortSettings.h"
#include "products/rfcircuit/product/quantity/INetworkQuantity.h"

#include <vector>

class BaseSolutionManager;
class KelvroCommand;

namespace rfcircuit {

/// Tells on a command which ports it looks at in another way.  Nothing is solved anew for it: what reports computed
/// from the ports' impedances and planes is out of date.
class PortEditInfo : public KelvroCommandInfo {
public:
  /// Under which it sits on a command; numbers from 1000 on are products' own.
  static constexpr int kNumber = 1000;

  /// Null without one.
  static PortEditInfo const * Of(KelvroCommand const * command);

  PortChange change;
};

/// Gives the ports other settings and turns them on; the command takes them back, and tells what changed.  An edit that
/// changes nothing leaves the command as it was, and gives false.
bool ChangePortSettings(BaseSolutionManager & manager, std::vector<PortSettings> const & settings,
                        KelvroCommand & command);

} // namespace rfcircuit
