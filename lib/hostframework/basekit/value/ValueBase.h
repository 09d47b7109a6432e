#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <memory>

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
  /// The text by which expressions refer to the value; empty when they do not.
  virtual AString GetText() const;

  ValueBase * Clone() const { return CloneValueBase(); }
  /// Hands the message to this value and all that it refers to; true when one of them took it.
  bool ReceiveMsg(ValueMessage & message) const { return DoReceiveMsg(message); }
  val::ParameterType GetParameterType() const { return GetValueState().parameterType; }
  Units::FullUnitType GetUnits() const { return GetValueState().fullUnit; }
  /// True while an expression refers to this value.
  bool IsReferenced() const { return m_link.use_count() > 1; }

protected:
  ValueBase() = default;
  /// Nobody refers to a copy yet.
  ValueBase(ValueBase const &) {}
  ValueBase & operator=(ValueBase const &) { return *this; }

private:
  friend class ValueReference;

  virtual bool DoReceiveMsg(ValueMessage & message) const;
  virtual ValueBase * CloneValueBase() const = 0;

  mutable std::shared_ptr<ValueBase const *> m_link; ///< made by the first reference
};

/// Refers to a value that somebody else owns and may delete.
class ValueReference {
public:
  ValueReference() = default;
  explicit ValueReference(ValueBase const * value);

  /// Null when the value is gone.
  ValueBase const * Get() const { return m_link ? *m_link : nullptr; }

private:
  std::shared_ptr<ValueBase const *> m_link;
};
