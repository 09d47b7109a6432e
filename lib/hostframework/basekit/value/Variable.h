#pragma once

#include "basekit/value/Value.h"
#include "basekit/value/ValueBase.h"

/// A named value.
class Variable : public ValueBase {
public:
  explicit Variable(AString const & name, AString const & valueText = AString(),
                    Units::FullUnitType units = Units::kNoUnits);
  Variable(AString const & name, Value const & value);

  AString const & GetName() const { return m_name; }
  Value const & GetValue() const { return m_value; }
  void SetValue(Value const & value) { m_value = value; }
  AString GetValueText() const { return m_value.GetText(); }
  bool SetValueText(AString const & text) { return m_value.SetConstantText(text, m_value.GetUnits()); }

  ValueState GetValueState() const override { return m_value.GetValueState(); }
  AString GetText() const override { return m_name; }
  /// By the names in the value's text, without case; functions and texts in quotes are no names.
  bool UsesVariable(Variable const & variable) const override;

private:
  ValueBase * CloneValueBase() const override { return new Variable(*this); }

  AString m_name;
  Value m_value;
};
