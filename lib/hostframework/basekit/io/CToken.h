#pragma once

#include "basekit/text/AString.h"

namespace io {

/// One token of a text stream, without its quotes and escapes.
class CToken {
public:
  enum class Kind : unsigned char { End, Word, Quoted, Number, Mark };

  CToken() = default;
  CToken(AString const & text, Kind kind) : m_text(text), m_kind(kind) {}

  wchar_t const * ACharPtr() const { return m_text.c_str(); }
  AString const & Text() const { return m_text; }
  Kind TokenKind() const { return m_kind; }
  bool IsMark(wchar_t mark) const { return m_kind == Kind::Mark && m_text.size() == 1 && m_text[0] == mark; }
  bool operator==(CToken const & other) const = default;

private:
  AString m_text;
  Kind m_kind = Kind::End;
};

} // namespace io
