#include "basekit/value/ContextVariable.h"

#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>
#include <set>

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

/// A question on its way through bound expressions: these share what they refer to, so that each variable must be asked
/// but once, in a circle as well.
struct Walk {
  void const * question;
  std::set<ContextVariable const *> asked;
  Walk * former;
};
thread_local Walk * currentWalk = nullptr;

class WalkSpan {
public:
  explicit WalkSpan(void const * question) : m_walk{question, {}, currentWalk} { currentWalk = &m_walk; }
  ~WalkSpan() { currentWalk = m_walk.former; }
  WalkSpan(WalkSpan const &) = delete;
  WalkSpan & operator=(WalkSpan const &) = delete;

private:
  Walk m_walk;
};

/// False, unasked, for a variable that the question came to before.
template <class Ask> bool AskOnce(ContextVariable const & variable, void const * question, Ask ask) {
  if (!currentWalk || currentWalk->question != question) {
    WalkSpan const span(question);
    return AskOnce(variable, question, ask);
  }
  return currentWalk->asked.insert(&variable).second && ask();
}

} // namespace

void ContextVariable::SetValueBaseText(AString const & text, ValueState const & state) {
  m_text = text;
  m_state = state;
  m_bound.reset();
}

bool ContextVariable::UsesVariable(Variable const & variable) const {
  return m_bound && AskOnce(*this, &variable, [&] { return m_bound->UsesVariable(variable); });
}

bool ContextVariable::UsesContextVariable(ContextVariable const * other) const {
  if (!other)
    return false;
  if (m_bound) {
    UsesContextVariableMessage message(*other);
    WalkSpan const span(&message);
    m_bound->ReceiveMsg(message);
    return message.IsFound();
  }
  std::vector<AString> const names = expr::NamesIn(m_text);
  return std::any_of(names.begin(), names.end(),
                     [&](AString const & name) { return AString::MatchNoCase(name, other->GetName()); });
}

bool ContextVariable::DoReceiveMsg(ValueMessage & message) const {
  return AskOnce(*this, &message, [&] {
    if (message.GetTag() == UsesContextVariableMessage::tag)
      static_cast<UsesContextVariableMessage &>(message).Visit(*this);
    return m_bound && m_bound->ReceiveMsg(message);
  });
}
