#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/ValueState.h"

#include <memory>
#include <vector>

class ColumnValue;
class ExpressionValue;
class Function;
class IValueParser;
class ValueBase;
class Variable;

namespace val {
/// Names of intrinsic variables.
extern wchar_t const * const kIntrinsicFrequency;
extern wchar_t const * const kIntrinsicTime;
extern wchar_t const * const kIntrinsicPass;
} // namespace val

/// A value: a real, integer or complex number in SI units, a column of them, an expression, or a text.  A value set by
/// text keeps that text as it was written; what is neither number nor expression stays a text.
class Value {
public:
  Value() = default;
  /// An empty value whose texts without a unit are taken in the given one.
  explicit Value(Units::FullUnitType units) : m_units(units) {}

  static Value Real(double si, Units::FullUnitType units = Units::kNoUnits);
  static Value Integer(long number);
  static Value Complex(AComplex<double> const & si, Units::FullUnitType units = Units::kNoUnits);
  static Value Text(AString const & text);
  /// Samples; the column is shared by copies of the value.
  static Value Column(ColumnValue && samples);

  /// Takes the text as a number, or as it is: what files and variations hold.  True when it is a number.
  bool SetConstantText(AString const & text, Units::FullUnitType units = Units::kNoUnits);
  /// True when the text is a number, or an expression over the current variable name space and the installed value
  /// parser.  Otherwise the value holds the text.
  bool SetValueText(AString const & text, Units::FullUnitType units);
  bool SetValueText(AString const & text) { return SetValueText(text, m_units); }
  void SetExpression(std::shared_ptr<ExpressionValue const> expression);
  AString GetText() const;

  /// One real, integer or complex number.
  bool IsNumber() const { return !m_base && m_type != val::kNotAQuantity && m_type != val::kText; }
  bool IsText() const { return m_type == val::kText; }
  /// Zero for texts and columns.  An expression is evaluated: variables count as they are now, other values as the
  /// installed value parser says; what has no value is nan.
  double GetSIValue() const { return GetComplexSIValue().real(); }
  AComplex<double> GetComplexSIValue() const;
  /// The real and the imaginary part of a number, as long as the value lives.
  double const * GetNumberParts() const { return m_number.GetParts(); }
  /// The samples; null when the value is no column.
  ColumnValue const * GetColumn() const;
  /// Null when the value is no expression.
  ExpressionValue const * GetExpression() const;
  /// The object behind a column or an expression, null for others.  It lives as long as the value.
  ValueBase const * GetValueBase() const { return m_base.get(); }
  /// What an expression is a function of, as S21 in dB(S21), and the function's name; a word alone is itself, under no
  /// name.  Null for every other value.
  ValueBase const * StripFunction(AString & functionName) const;

  ValueState GetValueState() const;
  val::ParameterType GetParameterType() const { return m_type; }
  Units::FullUnitType GetUnits() const { return m_units; }

  /// 0, 1, 2: equal, less, greater.  Numbers come before texts; texts are compared without case.  The two parts of a
  /// tolerance are those for the real and the imaginary part.
  static int Compare(Value const & a, Value const & b, AComplex<double> const & relative,
                     AComplex<double> const & absolute);

  /// The variable that every design has without defining it, by name without case; null for any other name.
  static Variable * GetIntrinsicVariable(AString const & name);

  /// All overloads of the function of this name without case; returns their number.
  static int GetFunctions(std::vector<Function const *> & functions, AString const & name);
  /// Appends the names of the functions that turn one such argument into such a result, other arguments being left
  /// out; returns the number of names.
  static int GetConversionFunctionNames(std::vector<AString> & names, ValueState const & argument,
                                        val::ParameterType result);
  /// Functions have fixed numbers from 1 on; empty and 0 where there is none.
  static AString GetFunctionName(int number);
  static int GetFunctionID(AString const & name);

  /// The parser that foreign words are handed to.  Setting gives back the former one, which the span that set it
  /// restores; nothing is owned.
  static IValueParser * SetValueParser(IValueParser * parser);
  static IValueParser * GetValueParser();

private:
  AString m_text;
  std::shared_ptr<ValueBase const> m_base;
  AComplex<double> m_number;
  Units::FullUnitType m_units = Units::kNoUnits;
  val::ParameterType m_type = val::kNotAQuantity;
};
