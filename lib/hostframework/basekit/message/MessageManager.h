#pragma once

#include "basekit/message/KelvroMessage.h"

#include <cstddef>
#include <vector>

/// Receives what is posted.
class IMessageListener {
public:
  virtual ~IMessageListener();
  virtual void OnMessage(KelvroMessage const & message) = 0;
};

/// The desktop's way to the user: messages go to the listeners in the order in which these were added, or into a queue
/// while a MessageQueueRestorer holds them back.
class MessageManager {
public:
  void Post(KelvroMessage const & message);
  /// Listeners are not owned; one is there at most once.
  void AddListener(IMessageListener * listener);
  void RemoveListener(IMessageListener * listener);

  bool IsHoldingBack() const { return m_holds > 0; }
  /// What was held back by the restorers alive, oldest first.
  std::vector<KelvroMessage> const & HeldBack() const { return m_queue; }

private:
  friend class MessageQueueRestorer;

  std::vector<IMessageListener *> m_listeners;
  std::vector<KelvroMessage> m_queue;
  int m_holds = 0;
};
