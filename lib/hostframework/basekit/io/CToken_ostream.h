#pragma once

#include "basekit/io/CAbstract_ostream.h"

#include <concepts>
#include <cstdio>
#include <string>

namespace io {

/// What names a file by its whole path: a LongFileName.
template <class File>
concept NamesFile = requires(File const & file) {
  { file.FilePath() } -> std::convertible_to<AString>;
};

/// Writes a file of items and tokens, which replaces one of that name; its content is whole when Close left fail()
/// false.  Flags: StreamFlags.
class CToken_ostream : public CAbstract_ostream {
public:
  CToken_ostream(AString const & path, int flags);
  template <NamesFile File>
  CToken_ostream(File const & file, int flags) : CToken_ostream(AString(file.FilePath()), flags) {}
  ~CToken_ostream() override;

  void SetPrecision(int digits) { m_digits = digits; }
  void Close();

  void WriteItem(CBlock_item const & item) override;
  void WriteKeyword(AString const & keyword) override;
  void WriteBool(bool value) override;
  void WriteMark(char mark) override;
  bool IsBinary() const override;
  bool fail() const override { return m_failed; }
  void SetFail() override { m_failed = true; }

private:
  void BeginWord();
  void Flush();

  std::FILE * m_file = nullptr;
  std::string m_buffer;
  int m_flags;
  int m_digits;
  bool m_afterWord = false;
  bool m_failed = false;
};

} // namespace io
