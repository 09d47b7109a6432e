#include "desktop/report/ExpressionWords.h"

#include "basekit/value/expression/Lexer.h"

#include <functional>

namespace desktop {

namespace {

void ForEachWord(AString const & expression, std::function<void(expr::Token const & token)> const & visit) {
  expr::Lexer lexer(expression.View());
  expr::Error error;
  for (expr::Token token = lexer.Next(error); token.kind != expr::Token::Kind::kEnd; token = lexer.Next(error))
    if (token.kind == expr::Token::Kind::kName)
      visit(token);
}

} // namespace

std::vector<AString> ExpressionWords(AString const & expression) {
  std::vector<AString> words;
  ForEachWord(expression, [&words](expr::Token const & token) { words.emplace_back(token.name); });
  return words;
}

AString WithRenamedWord(AString const & expression, AString const & from, AString const & to) {
  std::wstring text(expression.View());
  std::ptrdiff_t grown = 0;
  ForEachWord(expression, [&](expr::Token const & token) {
    if (!AString::MatchNoCase(AString(token.name), from))
      return;
    std::wstring const name = expr::NameText(to.View());
    text.replace(static_cast<std::size_t>(static_cast<std::ptrdiff_t>(token.position) + grown), token.text.size(),
                 name);
    grown += static_cast<std::ptrdiff_t>(name.size()) - static_cast<std::ptrdiff_t>(token.text.size());
  });
  return AString(text);
}

} // namespace desktop
