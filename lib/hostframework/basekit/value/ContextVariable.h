#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueBase.h"

/// A named expression whose meaning depends on where it is evaluated.  Its state is what was known of the expression
/// when it was set.
class ContextVariable : public ValueBase {
public:
  explicit ContextVariable(AString const & name) : m_name(name) {}

  AString const & GetName() const { return m_name; }
  AString const & GetValueBaseText() const { return m_text; }
  void SetValueBaseText(AString const & text, ValueState const & state) {
    m_text = text;
    m_state = state;
  }
  ValueState GetValueState() const override { return m_state; }

protected:
  ContextVariable(ContextVariable const &) = default;
  ContextVariable & operator=(ContextVariable const &) = default;

private:
  AString m_name;
  AString m_text;
  ValueState m_state;
};
