#pragma once

#include "products/rfcircuit/engine/netlist/SourcePosition.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rf {

/** A compiled number or expression of a netlist, evaluated as often as wanted.
    + - * / ^ ** (powers bind tighter than a sign and group to the left, so 2^3^2 is 64 and -2^2 is -4), parentheses,
    sqrt exp log ln log10 sin cos tan atan abs min max pow, the constant pi, names of parameters without case.
    Held as postfix code, so that evaluation needs no recursion however long the text is. */
class Expression {
public:
  /** What the names stand for while an expression is evaluated; throws for a name that it doesn't know. */
  class Names {
  public:
    virtual ~Names() = default;
    virtual double ValueOf(std::string const & name, SourcePosition const & where, std::string const & thing) = 0;
  };

  Expression() = default;

  /** Compiles the longest expression at `position`, which moves behind it.  `thing` is whom errors are about. */
  static Expression Parse(std::string_view text, std::size_t & position, SourcePosition const & where,
                          std::string const & thing);
  /** Compiles a text that must be used up whole. */
  static Expression ParseWhole(std::string_view text, SourcePosition const & where, std::string const & thing);

  /** Finite, or NetlistError: undefined names, division by zero, results that are nan or infinite. */
  double Evaluate(Names & names, std::string const & thing) const;

  /** The value if the expression is one number, perhaps with a sign. */
  std::optional<double> PlainNumber() const;
  std::string const & Text() const { return m_Text; }
  SourcePosition const & Where() const { return m_Where; }

  struct Step {
    enum class Kind { Number, Name, Negate, Add, Subtract, Multiply, Divide, Power, Call };
    Kind kind = Kind::Number;
    double number = 0;  ///< of Number
    std::size_t at = 0; ///< of Name: which of the names; of Call: which function
  };

private:
  friend class ExpressionCompiler;

  std::vector<Step> m_Steps;
  std::vector<std::string> m_Names;
  std::string m_Text;
  SourcePosition m_Where;
};

} // namespace rf
