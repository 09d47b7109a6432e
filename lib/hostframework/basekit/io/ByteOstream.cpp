#include "basekit/io/ByteOstream.h"

#include "basekit/io/StreamFlags.h"
#include "basekit/io/TextTokens.h"

namespace io {

bool ByteOstream::IsBinary() const { return (m_flags & kStreamBinary) != 0; }

// Two words in a row, or a word before an item, need a blank between.
void ByteOstream::SeparateWord() {
  if (m_afterWord)
    m_bytes += ' ';
  m_afterWord = false;
}

void ByteOstream::WriteItem(CBlock_item const & item) {
  if (m_failed)
    return;
  SeparateWord();
  bool const written = IsBinary()  ? EncodeItem(item, Form::Binary, m_digits, m_bytes)
                       : m_oneLine ? EncodeLine(item, m_digits, m_bytes)
                                   : EncodeItem(item, Form::Text, m_digits, m_bytes);
  if (!written)
    m_failed = true;
  else if (!IsBinary() && !m_oneLine)
    m_bytes += '\n';
  m_afterWord = m_oneLine && !IsBinary();
  Grown();
}

void ByteOstream::WriteKeyword(AString const & keyword) {
  if (m_failed)
    return;
  SeparateWord();
  AppendName(m_bytes, keyword);
  m_afterWord = true;
  Grown();
}

void ByteOstream::WriteBool(bool value) {
  if (m_failed)
    return;
  SeparateWord();
  m_bytes += value ? "true" : "false";
  m_afterWord = true;
  Grown();
}

void ByteOstream::WriteMark(char mark) {
  if (m_failed)
    return;
  m_bytes += mark;
  m_afterWord = false;
  Grown();
}

} // namespace io
