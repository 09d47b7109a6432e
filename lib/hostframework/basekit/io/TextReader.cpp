#include "basekit/io/TextReader.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"

namespace io {

namespace {

bool CanBeName(TextLexer::Token const & token) {
  return token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted;
}

} // namespace

CBlock_ptr<CBlock_item> TextReader::Item(int depth) {
  if (!m_lexer.Next(m_token))
    return {};
  bool const named =
      CanBeName(m_token) && (m_lexer.AtMark('=') || m_lexer.AtMark('(') || m_lexer.AtMark('{') || m_lexer.AtMark('['));
  if (named) {
    AString name;
    return m_lexer.Name(m_token, name) ? Named(name, depth) : CBlock_ptr<CBlock_item>();
  }
  CBlock_value value;
  if (depth > 0 || !ValueOfToken(m_lexer, m_token, value))
    return {};
  return CBlock_ptr<CBlock_item>(new CBlock_value(value));
}

CBlock_ptr<CBlock_item> TextReader::Named(AString const & name, int depth) {
  m_lexer.Next(m_token);
  if (m_token.IsMark('{'))
    return Body(name, depth);
  if (m_token.IsMark('(')) {
    CBlock_ptr<CBlock_func> func(new CBlock_func(name));
    return Arguments(*func, ')', true) ? CBlock_ptr<CBlock_item>(func) : CBlock_ptr<CBlock_item>();
  }
  if (m_token.IsMark('[')) {
    CBlock_ptr<CBlock_vec> vec(new CBlock_vec(name));
    return Arguments(vec->Values(), ']', false) ? CBlock_ptr<CBlock_item>(vec) : CBlock_ptr<CBlock_item>();
  }
  CBlock_ptr<CBlock_named_value> value(new CBlock_named_value(name));
  if (!m_lexer.Next(m_token) || !ValueOfToken(m_lexer, m_token, value->Value()))
    return {};
  return value;
}

CBlock_ptr<CBlock_item> TextReader::Body(AString const & name, int depth) {
  if (depth >= kMaxDepth)
    return {};
  CBlock_ptr<CBlock> block(new CBlock(name));
  while (!m_lexer.AtMark('}')) {
    auto const child = Item(depth + 1);
    if (!child)
      return {};
    *block << child;
  }
  m_lexer.Next(m_token);
  return block;
}

bool TextReader::Arguments(CBlock_func_arg & arguments, char close, bool mayBeNamed) {
  if (m_lexer.AtMark(close))
    return m_lexer.Next(m_token);
  do {
    if (!Argument(arguments, mayBeNamed) || !m_lexer.Next(m_token))
      return false;
  } while (m_token.IsMark(','));
  return m_token.IsMark(close);
}

bool TextReader::Argument(CBlock_func_arg & arguments, bool mayBeNamed) {
  if (!m_lexer.Next(m_token))
    return false;
  if (m_token.kind == CToken::Kind::Number) {
    bool whole = false;
    long integer = 0;
    double real = 0;
    if (!TextLexer::Number(m_token.text, whole, integer, real))
      return false;
    whole ? arguments.AppendInteger(integer) : arguments.AppendReal(real);
    return true;
  }
  if (mayBeNamed && CanBeName(m_token) && m_lexer.AtMark('=')) {
    AString name;
    if (!m_lexer.Name(m_token, name))
      return false;
    CBlock_ptr<CBlock_named_value> named(new CBlock_named_value(name));
    if (!m_lexer.Next(m_token) || !m_lexer.Next(m_token) || !ValueOfToken(m_lexer, m_token, named->Value()))
      return false;
    arguments.AppendArgument(named);
    return true;
  }
  CBlock_value value;
  if (!ValueOfToken(m_lexer, m_token, value))
    return false;
  arguments.AppendArgument(value);
  return true;
}

} // namespace io
