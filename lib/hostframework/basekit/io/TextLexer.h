#pragma once

#include "basekit/io/CToken.h"
#include "basekit/io/KnownNames.h"

#include <memory>
#include <string>
#include <string_view>

namespace io {

class CBlock_value;

/// The tokens of the text form, as views on the bytes; nothing is allocated until a text is asked for.
class TextLexer {
public:
  struct Token {
    CToken::Kind kind = CToken::Kind::End;
    std::string_view text; ///< without quotes, escapes as they stand
    std::size_t start = 0;
    bool plain = true; ///< printable ASCII without escapes
    bool IsMark(char mark) const { return kind == CToken::Kind::Mark && text.front() == mark; }
  };

  TextLexer(std::string_view bytes, std::size_t position) : m_bytes(bytes), m_position(position) {}

  std::size_t Position() const { return m_position; }
  void MoveTo(std::size_t position) { m_position = position; }
  /// False for malformed input; at the end of the bytes a token of kind End.
  bool Next(Token & token);
  /// The next token is the mark; it is not consumed.
  bool AtMark(char mark);
  /// The characters of a word or quoted text; false for bad escapes and bytes that are no UTF-8.
  bool Text(Token const & token, AString & text);
  /// The same for names, which repeat: equal names share their text.
  bool Name(Token const & token, AString & name);

  static bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
  static std::size_t SkipBlanks(std::string_view bytes, std::size_t from);
  /// Whole: an integer in range; otherwise a floating number.  False when it is neither.
  static bool Number(std::string_view text, bool & whole, long & integer, double & real);

private:
  bool Quoted(Token & token);
  bool Unescape(std::string_view raw);
  /// The escape behind its backslash.
  static bool Escape(std::string_view raw, std::size_t & at, wchar_t & character);

  std::string_view m_bytes;
  std::size_t m_position;
  std::wstring m_scratch;
  std::unique_ptr<KnownNames> m_known; // made by the first name: many lexers read one token
};

/// The value that a word, number or quoted token stands for; false for anything else.
bool ValueOfToken(TextLexer & lexer, TextLexer::Token const & token, CBlock_value & value);
bool ValueOfToken(CToken const & token, CBlock_value & value);

} // namespace io
