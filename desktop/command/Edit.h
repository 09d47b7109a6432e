#pragma once

#include "basekit/command/KelvroCommand.h"
#include "desktop/command/Editor.h"

namespace desktop {

/// An edit while it is carried out: the command that gathers its changes, and what people are told of them.
class Editor::Edit {
public:
  explicit Edit(AString const & name) : command(std::make_unique<KelvroCommand>(name)) {}

  /// Makes a change by an exchange that also takes it back.
  void Exchange(std::function<void()> exchange) { command->AddDeltaState(new ExchangeDelta(std::move(exchange))); }
  void OnUndo(std::function<void()> work) {
    command->AddDeltaState(new OneWayDelta(OneWayDelta::Way::kUndo, std::move(work)));
  }
  void OnRedo(std::function<void()> work) {
    command->AddDeltaState(new OneWayDelta(OneWayDelta::Way::kRedo, std::move(work)));
  }
  void Tell(AString const & what, AString const & from, AString const & to) { changes.push_back({what, from, to}); }

  std::unique_ptr<KelvroCommand> command;
  std::vector<EditChange> changes;
  bool isInvalidation = false;
  bool changesResults = false; ///< solved data goes, and comes back with undo
};

} // namespace desktop
