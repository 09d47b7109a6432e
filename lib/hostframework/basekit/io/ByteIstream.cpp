#include "basekit/io/ByteIstream.h"

#include "basekit/io/BinaryReader.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/io/TextLexer.h"
#include "basekit/io/XStreamioError.h"

namespace io {

namespace {

constexpr std::size_t kRemembered = 8;

bool IsNameLike(TextLexer::Token const & token) {
  return token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted;
}

// The lexer stands behind the name afterwards.
bool NextIsName(TextLexer & lexer, AString const & name) {
  TextLexer::Token token;
  AString text;
  return lexer.Next(token) && IsNameLike(token) && lexer.Text(token, text) && AString::MatchNoCase(text, name);
}

} // namespace

bool ByteIstream::AtEnd() const { return TextLexer::SkipBlanks(m_bytes, m_position) == m_bytes.size(); }

void ByteIstream::SetBytes(std::string_view bytes) {
  m_bytes = bytes;
  MoveTo(0);
}

void ByteIstream::MoveTo(std::size_t position) {
  m_position = position;
  m_taken.clear();
}

bool ByteIstream::AtKeyword(AString const & keyword) {
  TextLexer lexer(m_bytes, m_position);
  return !m_failed && NextIsName(lexer, keyword);
}

bool ByteIstream::AtBeginBlock(AString const & name) {
  if (m_failed)
    return false;
  TextLexer lexer(m_bytes, m_position);
  if (NextIsName(lexer, name))
    return lexer.AtMark('{');
  AString found;
  std::size_t end = 0;
  BinaryReader reader(m_bytes, TextLexer::SkipBlanks(m_bytes, m_position));
  return reader.BlockHead(found, end) && AString::MatchNoCase(found, name);
}

CBlock_ptr<CBlock_item> ByteIstream::ReadItem() {
  if (m_failed)
    return {};
  auto const item = DecodeItemAt(m_bytes, m_position);
  if (!item)
    m_failed = true;
  m_taken.clear();
  return item;
}

CToken ByteIstream::NextToken() {
  TextLexer lexer(m_bytes, m_position);
  TextLexer::Token raw;
  if (!lexer.Next(raw))
    throw XStreamioError("no token here");
  AString text;
  if (!lexer.Text(raw, text))
    throw XStreamioError("bad text in a token");
  CToken token(text, raw.kind);
  if (raw.kind == CToken::Kind::End)
    return token;
  if (m_taken.size() == kRemembered)
    m_taken.erase(m_taken.begin());
  m_taken.push_back({token, raw.start});
  m_position = lexer.Position();
  return token;
}

void ByteIstream::ExpectMark(wchar_t mark) {
  auto const token = NextToken();
  if (token.IsMark(mark))
    return;
  if (token.TokenKind() != CToken::Kind::End)
    PushBack(token);
  throw XStreamioError("another mark was expected");
}

// The stream goes back to where the token began; marks taken after it come again too.
void ByteIstream::PushBack(CToken const & token) {
  while (!m_taken.empty()) {
    auto const last = m_taken.back();
    m_taken.pop_back();
    m_position = last.start;
    if (last.token == token)
      return;
  }
  m_failed = true;
}

} // namespace io
