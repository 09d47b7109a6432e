#pragma once

#include "basekit/value/AComplex.h"
#include "basekit/value/ValueBase.h"
#include "basekit/value/expression/Program.h"

#include <memory>
#include <vector>

class IValueParser;

/// Gives the samples of what an expression refers to.
class ISampleSource {
public:
  virtual ~ISampleSource();
  /// False when the source does not know the quantity: a variable then has its present value.
  virtual bool GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const = 0;
};

/// An expression whose names are bound: variables by the current name space, other words by a value parser.  What it
/// refers to is owned elsewhere and may go away; an evaluation then fails.  Numbers and definitions of variables are
/// those of the time of evaluation: once a definition has changed, the text is bound again, by the name space and the
/// parser that are current then, and stays so bound until the next change.
class ExpressionValue : public ValueBase {
public:
  /// Null with an error when the text is no expression here.  The parser may be null.
  static std::shared_ptr<ExpressionValue const> Bind(AString const & text, IValueParser * parser, expr::Error & error);
  /// The same for a check: no value is made of the words, their states are asked of the parsers, in order.
  static std::shared_ptr<ExpressionValue const>
  Validate(AString const & text, std::vector<IValueParser *> const & parsers, expr::Error & error);

  ValueState GetValueState() const override { return m_program.GetValueState(); }
  bool UsesVariable(Variable const & variable) const override;
  AString GetText() const override { return m_text; }

  /// What is read at each evaluation, of definitions as well.
  std::vector<expr::ProgramQuantity> const & GetQuantities() const { return m_program.GetQuantities(); }
  /// False when something that the text refers to is gone, or is defined otherwise by now.
  bool IsCurrent() const;

  /// Over a trace.
  bool Evaluate(ISampleSource const & source, std::span<double const> axis, expr::Result & result,
                expr::Error & error) const;
  /// As one number: variables as they are now, other values by the installed value parser; nan where there is none.
  AComplex<double> GetNumber() const;

  /// What the expression is a function of, as in dB(S21), and the function's name.  A single word is itself, under no
  /// name.  Null for every other expression.
  ValueBase const * StripFunction(AString & functionName) const;

private:
  ExpressionValue(AString const & text, expr::Program && program);

  static std::shared_ptr<ExpressionValue> Make(AString const & text, expr::IScope const & scope, expr::Error & error);
  bool DoReceiveMsg(ValueMessage & message) const override;
  ValueBase * CloneValueBase() const override { return new ExpressionValue(*this); }
  void FindInner(IValueParser * parser);
  bool IsStale() const;
  bool Renew(expr::Error & error) const;
  /// Where the quantity stands that the base, which may be gone, is or was behind; definitions have no place.
  void SetPlace(expr::Error & error, ValueBase const * base) const;
  bool GetSamples(expr::ProgramQuantity const & quantity, ISampleSource const & source, expr::Samples & samples) const;

  /// What was compiled of a variable or context variable: the type of its samples and its definition, which is empty
  /// for a number.
  struct KnownDefinition {
    ValueReference value;
    val::ParameterType type = val::kReal;
    AString text;
  };

  AString m_text;
  expr::Program m_program;
  std::vector<ValueReference> m_references; ///< of the bases of the program, in their order
  std::vector<KnownDefinition> m_definitions;
  AString m_functionName;
  ValueReference m_innerWord;
  std::shared_ptr<ExpressionValue const> m_inner;
  mutable std::shared_ptr<ExpressionValue const> m_renewed; ///< bound after a definition had changed
};
