#pragma once

#include <cstddef>
#include <vector>

class KelvroMessage;
class MessageManager;

/// Keeps messages from the user for its span: at its end the queue is as it was at its start, so a check that only asks
/// leaves nothing behind.  Spans nest, the inner one ending first.  A null manager is allowed.
class MessageQueueRestorer {
public:
  explicit MessageQueueRestorer(MessageManager * manager);
  ~MessageQueueRestorer();
  MessageQueueRestorer(MessageQueueRestorer const &) = delete;
  MessageQueueRestorer & operator=(MessageQueueRestorer const &) = delete;

  /// What was held back in this span.
  std::vector<KelvroMessage> Messages() const;

private:
  MessageManager * m_manager;
  std::size_t m_queuedBefore = 0;
};
