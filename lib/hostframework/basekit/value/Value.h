#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/AComplex.h"
#include "basekit/value/ValueState.h"

#include <memory>
#include <vector>

class ColumnValue;
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

/// A value: a real, integer or complex number in SI units, or a text.  A value set by text keeps that text as it was
/// written; a text that is no number (a word, an expression) stays a text.
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
  /// True when the text is a number.
  bool SetValueText(AString const & text, Units::FullUnitType units);
  bool SetValueText(AString const & text) { return SetValueText(text, m_units); }
  AString GetText() const;

  /// One real, integer or complex number.
  bool IsNumber() const { return !m_base && m_type != val::kNotAQuantity && m_type != val::kText; }
  bool IsText() const { return m_type == val::kText; }
  double GetSIValue() const { return m_number.real(); }
  AComplex<double> const & GetComplexSIValue() const { return m_number; }
  /// The samples; null when the value is no column.
  ColumnValue const * GetColumn() const;

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
