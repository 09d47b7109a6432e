#include "basekit/value/ValueBase.h"

ValueMessage::~ValueMessage() = default;

ValueBase::~ValueBase() {
  if (m_link)
    *m_link = nullptr;
}

bool ValueBase::UsesVariable(Variable const &) const { return false; }

AString ValueBase::GetText() const { return {}; }

bool ValueBase::DoReceiveMsg(ValueMessage &) const { return false; }

ValueReference::ValueReference(ValueBase const * value) {
  if (!value)
    return;
  if (!value->m_link)
    value->m_link = std::make_shared<ValueBase const *>(value);
  m_link = value->m_link;
}
