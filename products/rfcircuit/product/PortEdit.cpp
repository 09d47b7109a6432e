#include "products/rfcircuit/product/PortEdit.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/KelvroDeltaState.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace rfcircuit {
namespace {

struct PortState {
  std::vector<PortSettings> settings;
  bool isOn = false;
};

PortState StateOf(BaseSolutionManager const & manager) {
  PortState state;
  manager.GetPortPostProcessingSettings(state.settings);
  state.isOn = manager.IsRenormalizing() || manager.IsDeembedding();
  return state;
}

void Give(BaseSolutionManager & manager, PortState const & state) {
  manager.SetPortPostProcessingSettings(state.settings);
  manager.SetPostProcessingIsOn(state.isOn);
}

class PortSettingsDelta : public KelvroDeltaState {
public:
  PortSettingsDelta(BaseSolutionManager & manager, PortState before, PortState after)
      : KelvroDeltaState(true), m_manager(manager), m_before(std::move(before)), m_after(std::move(after)) {}
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    Give(m_manager, m_before);
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    Give(m_manager, m_after);
  }

private:
  BaseSolutionManager & m_manager;
  PortState m_before;
  PortState m_after;
};

AComplex<double> ImpedanceOf(PortState const & state, AString const & port) {
  for (PortSettings const & settings : state.settings)
    if (state.isOn && AString::MatchNoCase(settings.GetItemName(), port))
      return settings.GetTermination(true).GetValue();
  return {};
}

double DistanceOf(PortState const & state, AString const & port) {
  for (PortSettings const & settings : state.settings)
    if (state.isOn && AString::MatchNoCase(settings.GetItemName(), port))
      return settings.GetDeembeddingDist().GetValue();
  return 0.0;
}

void Compare(PortState const & before, PortState const & after, AString const & port, PortChange & change) {
  auto const former = ImpedanceOf(before, port);
  auto const now = ImpedanceOf(after, port);
  if (!(former == now))
    change.impedances.insert(port);
  if (DistanceOf(before, port) != DistanceOf(after, port))
    change.planes.insert(port);
  change.isRenormalizing = change.isRenormalizing || !(former == AComplex<double>()) || !(now == AComplex<double>());
}

void Tell(KelvroCommand & command, PortChange const & change) {
  auto * info = dynamic_cast<PortEditInfo *>(command.GetInfo(PortEditInfo::kNumber));
  if (!info) {
    info = new PortEditInfo;
    command.SetInfo(PortEditInfo::kNumber, info);
  }
  info->change.impedances.insert(change.impedances.begin(), change.impedances.end());
  info->change.planes.insert(change.planes.begin(), change.planes.end());
  info->change.isRenormalizing = info->change.isRenormalizing || change.isRenormalizing;
}

} // namespace

PortEditInfo const * PortEditInfo::Of(KelvroCommand const * command) {
  return command ? dynamic_cast<PortEditInfo const *>(command->GetInfo(kNumber)) : nullptr;
}

bool ChangePortSettings(BaseSolutionManager & manager, std::vector<PortSettings> const & settings,
                        KelvroCommand & command) {
  PortState const before = StateOf(manager);
  PortState const after{settings, true};
  PortChange change;
  for (PortState const & state : {before, after})
    for (PortSettings const & port : state.settings)
      Compare(before, after, port.GetItemName(), change);
  if (change.impedances.empty() && change.planes.empty())
    return false;
  Give(manager, after);
  command.AddDeltaState(new PortSettingsDelta(manager, before, after));
  Tell(command, change);
  return true;
}

} // namespace rfcircuit
