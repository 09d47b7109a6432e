#pragma once

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CAbstract_ostream.h"

#include <string>

namespace io {

/// Items and tokens into a buffer of bytes.  Flags: StreamFlags.
class ByteOstream : public CAbstract_ostream {
public:
  /// oneLine: text items without line ends, as packed texts are.
  ByteOstream(int flags, int digits, bool oneLine) : m_flags(flags), m_digits(digits), m_oneLine(oneLine) {}

  std::string const & Bytes() const { return m_bytes; }
  void SetPrecision(int digits) { m_digits = digits; }

  void WriteItem(CBlock_item const & item) override;
  void WriteKeyword(AString const & keyword) override;
  void WriteBool(bool value) override;
  void WriteMark(char mark) override;
  bool IsBinary() const override;
  bool fail() const override { return m_failed; }
  void SetFail() override { m_failed = true; }

protected:
  std::string & Buffer() { return m_bytes; }
  /// Called when the buffer has grown.
  virtual void Grown() {}

private:
  void SeparateWord();

  std::string m_bytes;
  int m_flags;
  int m_digits;
  bool m_oneLine;
  bool m_afterWord = false;
  bool m_failed = false;
};

} // namespace io
