#pragma once

#include "basekit/value/ValueState.h"

class Variable;

/// What can be asked or told along a tree of values; a message's tag says which class it is.
class ValueMessage {
public:
  explicit ValueMessage(unsigned long tag) : m_tag(tag) {}
  virtual ~ValueMessage();
  unsigned long GetTag() const { return m_tag; }

private:
  unsigned long m_tag;
};

/// Base of everything that an expression may refer to: variables, solved quantities, named expressions.
class ValueBase {
public:
  virtual ~ValueBase();

  virtual ValueState GetValueState() const = 0;
  /// True when the value changes with the variable; a variable uses itself only through another one.
  virtual bool UsesVariable(Variable const & variable) const;

  ValueBase * Clone() const { return CloneValueBase(); }
  /// Hands the message to this value and all that it refers to; true when one of them took it.
  bool ReceiveMsg(ValueMessage & message) const { return DoReceiveMsg(message); }
  val::ParameterType GetParameterType() const { return GetValueState().parameterType; }
  Units::FullUnitType GetUnits() const { return GetValueState().fullUnit; }

protected:
  ValueBase() = default;
  ValueBase(ValueBase const &) = default;
  ValueBase & operator=(ValueBase const &) = default;

private:
  virtual bool DoReceiveMsg(ValueMessage & message) const;
  virtual ValueBase * CloneValueBase() const = 0;
};
