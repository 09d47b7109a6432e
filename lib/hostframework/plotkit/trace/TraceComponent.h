#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/Value.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "plotkit/simvalue/ValueColumn.h"

#include <optional>

class ExpressionValue;
namespace io {
class CBlock_func;
}

/// What one axis of a trace shows: an expression, and the values that it had at the points of the trace's set.
///
/// Names of the expression are bound, in the current name space and by the installed value parser, when the component
/// is made of a value, when an unbound one is cloned, and by Bind.  Whoever holds the component owns it.
class TraceComponent {
public:
  /// Category 2 is output variables, 1 variables and what is like them, 0 what has none.  With a function the text is
  /// what the function is applied to.
  TraceComponent(AString const & text, int category, int functionID, bool isPass, Units::FullUnitType units);
  /// The value is the whole expression, function and all.
  TraceComponent(Value const & value, AString const & text, int category, int functionID, bool isPass,
                 Units::FullUnitType units);
  virtual ~TraceComponent();
  TraceComponent & operator=(TraceComponent const &) = delete;

  /// Without the values; what is not bound is bound now.
  virtual TraceComponent * Clone() const;
  virtual void ClearComponentValues();
  virtual void AppendComponentValue(Value const & value);
  virtual void AppendInvalidValue();

  /// The expression text without the function.
  AString const & GetValueText() const { return m_text; }
  /// The text that is evaluated, with the function.
  AString const & GetExpressionText() const { return m_expression; }
  int GetCategory() const { return m_category; }
  int GetFunctionID() const { return m_functionID; }
  /// True for the intrinsic pass variable.
  bool IsPass() const { return m_isPass; }
  Units::FullUnitType GetUnits() const { return m_units; }
  /// The same text, category, function, flag, units and class.
  bool IsEqual(TraceComponent const & other) const;

  /// Gives the names of the text their present meaning; false when it is no number or expression now, all values are
  /// then missing.
  bool Bind();
  bool IsBound() const;
  bool IsPlainText() const { return m_isPlainText; }
  /// The number, or the expression when it is bound.
  Value const & GetValue() const { return m_value; }
  /// Null unless the component is bound to one.
  ExpressionValue const * GetExpression() const { return m_value.GetExpression(); }
  /// With variables as they are now; a missing value unless the component is bound.
  void AppendPresentValue();

  ValueColumn const & GetValues() const { return m_values; }
  ValueColumn & GetValuesForEdit() { return m_values; }
  /// The text of one value, in the component's units; "N/A" for a missing one.
  AString GetEntryText(std::size_t place) const;

  /// The context in which the words of the expression are meant, where one was told; that of the set otherwise.
  std::optional<SimValueContext> const & GetSimValueContext() const { return m_context; }
  void SetSimValueContext(SimValueContext const & context) { m_context = context; }

  void Write(io::CBlock_func & func) const;
  /// A new component, not bound yet; null when the function holds none.
  static TraceComponent * Read(io::CBlock_func const & func);

protected:
  void SetIsPlainText() { m_isPlainText = true; }
  /// Without the values.
  TraceComponent(TraceComponent const & other);

private:
  AString WholeText() const;

  AString m_text;
  AString m_expression;
  int m_category;
  int m_functionID;
  bool m_isPass;
  Units::FullUnitType m_units;
  bool m_isPlainText = false;
  std::optional<SimValueContext> m_context;
  Value m_value;
  ValueColumn m_values;
};
