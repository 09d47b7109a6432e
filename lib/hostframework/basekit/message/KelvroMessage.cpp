#include "basekit/message/KelvroMessage.h"

KelvroMessage::KelvroMessage(long number, Severity severity, int messageGroup, wchar_t const * context,
                             wchar_t const * subContext)
    : m_number(number), m_severity(severity), m_messageGroup(messageGroup), m_context(context ? context : L""),
      m_subContext(subContext ? subContext : L"") {}
