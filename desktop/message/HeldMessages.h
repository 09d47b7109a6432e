#pragma once

#include "basekit/message/MessageQueueRestorer.h"
#include "basekit/text/AString.h"

namespace desktop {

/// Keeps what the library posts in its span from the listeners, for whoever tells it as part of a refusal.
class HeldMessages {
public:
  HeldMessages();
  /// The errors and warnings that were held back, as sentences; empty without one.
  AString Text() const;

private:
  MessageQueueRestorer m_restorer;
};

} // namespace desktop
