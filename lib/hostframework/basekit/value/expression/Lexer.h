#pragma once

#include "basekit/value/expression/Error.h"
#include "basekit/value/units/QuantityText.h"

#include <string>
#include <string_view>

namespace expr {

/// A number, a text in double quotes, a name, the name of a function with its opening parenthesis still to come, or an
/// operator, which is its own text.
struct Token {
  enum class Kind { kEnd, kNumber, kText, kName, kFunction, kOperator, kBad } kind = Kind::kEnd;
  std::wstring_view text; ///< as it stands in the source
  std::size_t position = 0;
  val::Quantity number;
  std::wstring name; ///< of names and texts, without quotes

  bool Is(std::wstring_view operatorText) const { return kind == Kind::kOperator && text == operatorText; }
};

/// Splits an expression into tokens; the source must outlive them.
///
/// A name begins with a letter, '_' or '$' and goes on with those, digits, and '.' or ':' between two of them; a group
/// in parentheses or brackets directly behind it belongs to the name, S(2,1), unless the name is a function's.  Any
/// other name stands in single quotes, in which '' is one.
class Lexer {
public:
  explicit Lexer(std::wstring_view source) : m_source(source) {}

  /// A token of kind kBad fills the error; the one after it goes on behind it.
  Token Next(Error & error);

private:
  Token Number(Error & error);
  Token Word(Error & error);
  Token Quoted(wchar_t quote, Error & error);
  Token Operator(Error & error);
  Token Bad(std::size_t length, Error & error, AString const & problem, AString const & hint = AString());
  Token Make(Token::Kind kind, std::size_t end);
  std::size_t EndOfUnit(std::size_t from) const;
  std::size_t EndOfWord(std::size_t from) const;
  std::size_t EndOfGroup(std::size_t from) const;
  std::size_t EndOfName(std::size_t from) const;
  bool IsCall(std::size_t end) const;
  wchar_t At(std::size_t index) const { return index < m_source.size() ? m_source[index] : L'\0'; }

  std::wstring_view m_source;
  std::size_t m_at = 0;
};

/// True for a name that needs no quotes.
bool IsPlainName(std::wstring_view name);
/// The name as it is written in an expression.
std::wstring NameText(std::wstring_view name);
/// True when the expression language has a function of this name, whatever its case.
bool IsFunctionName(std::wstring_view name);

} // namespace expr
