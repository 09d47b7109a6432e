#pragma once

#include "basekit/value/ValueBase.h"

/// A dynamic dataset: the numbers of one value at those of another.  Who keeps datasets owns it; the two values are
/// their owners', and may go.
class DatasetValue : public ValueBase {
public:
  /// The state is the one that a dataset of values in these states has; of parameter type 0 when such values make none:
  /// the first must be real, the second real or complex, single or in columns.
  DatasetValue(ValueBase const * first, ValueBase const * second, ValueState const & state)
      : m_first(first), m_second(second), m_state(state) {}
  static ValueState StateOf(ValueState const & first, ValueState const & second);

  /// Null when the value is gone, or was never there.
  ValueBase const * GetFirst() const { return m_first.Get(); }
  ValueBase const * GetSecond() const { return m_second.Get(); }
  ValueState GetValueState() const override { return m_state; }
  bool UsesVariable(Variable const & variable) const override;
  bool OKtoDelete() const { return !IsReferenced(); }

protected:
  bool DoReceiveMsg(ValueMessage & message) const override;

private:
  ValueBase * CloneValueBase() const override { return new DatasetValue(*this); }

  ValueReference m_first;
  ValueReference m_second;
  ValueState m_state;
};
