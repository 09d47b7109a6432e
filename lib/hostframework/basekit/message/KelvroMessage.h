#pragma once

#include "basekit/message/ArgumentManager.h"
#include "basekit/text/AString.h"

/// A message to the user by number; the desktop's catalogue holds its text.
class KelvroMessage {
public:
  enum Severity : int { kInfo = 0, kError = 1, kWarning = 2, kFatal = 4 };

  /// Null context texts mean none.
  KelvroMessage(long number, Severity severity, int messageGroup, wchar_t const * context = nullptr,
                wchar_t const * subContext = nullptr);

  long GetNumber() const { return m_number; }
  Severity GetSeverity() const { return m_severity; }
  int GetMessageGroup() const { return m_messageGroup; }
  AString const & GetContext() const { return m_context; }
  AString const & GetSubContext() const { return m_subContext; }
  ArgumentManager & Arguments() { return m_arguments; }
  ArgumentManager const & Arguments() const { return m_arguments; }

private:
  long m_number;
  Severity m_severity;
  int m_messageGroup;
  AString m_context;
  AString m_subContext;
  ArgumentManager m_arguments;
};
