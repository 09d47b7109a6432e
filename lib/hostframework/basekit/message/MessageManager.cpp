#include "basekit/message/MessageManager.h"

#include "basekit/message/MessageQueueRestorer.h"

#include <algorithm>

IMessageListener::~IMessageListener() = default;

void MessageManager::Post(KelvroMessage const & message) {
  if (m_holds > 0) {
    m_queue.push_back(message);
    return;
  }
  // A listener may leave, or take another one with it, while it is told.
  std::vector<IMessageListener *> const listeners = m_listeners;
  for (IMessageListener * const listener : listeners)
    if (std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end())
      listener->OnMessage(message);
}

void MessageManager::AddListener(IMessageListener * listener) {
  if (listener && std::find(m_listeners.begin(), m_listeners.end(), listener) == m_listeners.end())
    m_listeners.push_back(listener);
}

void MessageManager::RemoveListener(IMessageListener * listener) { std::erase(m_listeners, listener); }

MessageQueueRestorer::MessageQueueRestorer(MessageManager * manager) : m_manager(manager) {
  if (!m_manager)
    return;
  ++m_manager->m_holds;
  m_queuedBefore = m_manager->m_queue.size();
}

MessageQueueRestorer::~MessageQueueRestorer() {
  if (!m_manager)
    return;
  --m_manager->m_holds;
  auto & queue = m_manager->m_queue;
  if (queue.size() > m_queuedBefore)
    queue.erase(queue.begin() + static_cast<std::ptrdiff_t>(m_queuedBefore), queue.end());
}

std::vector<KelvroMessage> MessageQueueRestorer::Messages() const {
  if (!m_manager || m_manager->m_queue.size() <= m_queuedBefore)
    return {};
  return {m_manager->m_queue.begin() + static_cast<std::ptrdiff_t>(m_queuedBefore), m_manager->m_queue.end()};
}
