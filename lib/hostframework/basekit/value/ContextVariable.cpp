#include "basekit/value/ContextVariable.h"

#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>

namespace {

/// Looks for one context variable along a tree of values.
class UsesContextVariableMessage : public ValueMessage {
public:
  static constexpr unsigned long tag = 0x75736376;
  explicit UsesContextVariableMessage(ContextVariable const & wanted) : ValueMessage(tag), m_wanted(wanted) {}
  void Visit(ContextVariable const & variable) { m_isFound = m_isFound || &variable == &m_wanted; }
  bool IsFound() const { return m_isFound; }

private:
  ContextVariable const & m_wanted;
  bool m_isFound = false;
};

} // namespace

void ContextVariable::SetValueBaseText(AString const & text, ValueState const & state) {
  m_text = text;
  m_state = state;
  m_bound.reset();
}

bool ContextVariable::UsesVariable(Variable const & variable) const {
  if (!m_bound || m_isAsked)
    return false;
  m_isAsked = true;
  bool const isUsed = m_bound->UsesVariable(variable);
  m_isAsked = false;
  return isUsed;
}

bool ContextVariable::UsesContextVariable(ContextVariable const * other) const {
  if (!other)
    return false;
  if (m_bound) {
    UsesContextVariableMessage message(*other);
    m_bound->ReceiveMsg(message);
    return message.IsFound();
  }
  std::vector<AString> const names = expr::NamesIn(m_text);
  return std::any_of(names.begin(), names.end(),
                     [&](AString const & name) { return AString::MatchNoCase(name, other->GetName()); });
}

bool ContextVariable::DoReceiveMsg(ValueMessage & message) const {
  if (m_isAsked)
    return false;
  if (message.GetTag() == UsesContextVariableMessage::tag)
    static_cast<UsesContextVariableMessage &>(message).Visit(*this);
  if (!m_bound)
    return false;
  m_isAsked = true;
  bool const isTaken = m_bound->ReceiveMsg(message);
  m_isAsked = false;
  return isTaken;
}
