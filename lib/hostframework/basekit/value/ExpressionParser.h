#pragma once

#include "basekit/text/AString.h"

#include <vector>

class IValueParser;
class Value;

namespace expr {
struct Error;
}

/// Checks expressions for those who keep them as texts.  Names are looked up in the current variable name space.
class ExpressionParser {
public:
  /// True when the text is an expression whose words are variables or known to one of the parsers, null ones being
  /// passed over; the value then has its text and state.  Otherwise the value stays as it was.
  static bool ValidateExpression(Value & value, AString const & text, std::vector<IValueParser *> const & parsers);
  static bool ValidateExpression(Value & value, AString const & text, std::vector<IValueParser *> const & parsers,
                                 expr::Error & error);

  /// The words of a text that are no variables, constants or functions, each once, in the order of the text; returns
  /// their number.  A text that is no expression has words too.  What the parsers know plays no part.
  static int GetAlienLabels(std::vector<AString> & labels, AString const & text,
                            std::vector<IValueParser *> const & parsers);
};
