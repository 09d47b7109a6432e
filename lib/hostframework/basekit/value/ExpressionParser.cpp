#include "basekit/value/ExpressionParser.h"

#include "basekit/value/ExpressionValue.h"
#include "basekit/value/Value.h"
#include "basekit/value/expression/Constants.h"
#include "basekit/value/expression/NameSpaceScope.h"
#include "basekit/value/expression/SyntaxParser.h"

bool ExpressionParser::ValidateExpression(Value & value, AString const & text,
                                          std::vector<IValueParser *> const & parsers) {
  expr::Error error;
  return ValidateExpression(value, text, parsers, error);
}

bool ExpressionParser::ValidateExpression(Value & value, AString const & text,
                                          std::vector<IValueParser *> const & parsers, expr::Error & error) {
  Value number;
  if (number.SetConstantText(text)) {
    value = number;
    return true;
  }
  auto expression = ExpressionValue::Validate(text, parsers, error);
  if (!expression)
    return false;
  value.SetExpression(std::move(expression));
  return true;
}

int ExpressionParser::GetAlienLabels(std::vector<AString> & labels, AString const & text,
                                     std::vector<IValueParser *> const &) {
  labels.clear();
  double constant = 0.0;
  for (AString const & name : expr::NamesIn(text))
    if (!expr::FindCurrentVariable(name) && !expr::FindConstant(name.View(), constant))
      labels.push_back(name);
  return static_cast<int>(labels.size());
}
