#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueBase.h"

#include <memory>

/// A named expression whose meaning depends on where it is evaluated.  Its state is what was known of the expression
/// when it was set.
class ContextVariable : public ValueBase {
public:
  explicit ContextVariable(AString const & name) : m_name(name) {}

  AString const & GetName() const { return m_name; }
  AString const & GetValueBaseText() const { return m_text; }
  void SetValueBaseText(AString const & text, ValueState const & state);
  ValueState GetValueState() const override { return m_state; }
  AString GetText() const override { return m_name; }
  bool UsesVariable(Variable const & variable) const override;

  /// False while an expression refers to the variable.
  bool OKtoDelete() const { return !IsReferenced(); }
  /// True when the other one is among the words of this one's text, or, while the text is bound, of those that it
  /// leads to.
  bool UsesContextVariable(ContextVariable const * other) const;

protected:
  ContextVariable(ContextVariable const &) = default;
  ContextVariable & operator=(ContextVariable const &) = default;

  void SetName(AString const & name) { m_name = name; }
  /// The expression that the text is in the present context; null unbinds.  A copy shares it.
  void SetBoundValue(std::shared_ptr<ValueBase const> value) { m_bound = std::move(value); }
  ValueBase const * GetBoundValue() const { return m_bound.get(); }

  /// Goes on to the bound expression; a variable that the message came to before does not take it again.
  bool DoReceiveMsg(ValueMessage & message) const override;

private:
  AString m_name;
  AString m_text;
  ValueState m_state;
  std::shared_ptr<ValueBase const> m_bound;
};
