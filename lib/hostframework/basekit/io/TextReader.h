#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/TextLexer.h"

namespace io {

class CBlock_func_arg;

/// Reads items of the text form.  Malformed or too deeply nested input gives null.
class TextReader {
public:
  TextReader(std::string_view bytes, std::size_t position) : m_lexer(bytes, position) {}

  CBlock_ptr<CBlock_item> Item() { return Item(0); }
  std::size_t Position() const { return m_lexer.Position(); }

private:
  CBlock_ptr<CBlock_item> Item(int depth);
  CBlock_ptr<CBlock_item> Named(AString const & name, int depth);
  CBlock_ptr<CBlock_item> Body(AString const & name, int depth);
  bool Arguments(CBlock_func_arg & arguments, char close, bool mayBeNamed);
  bool Argument(CBlock_func_arg & arguments, bool mayBeNamed);

  TextLexer m_lexer;
  TextLexer::Token m_token;
};

} // namespace io
