#pragma once

#include "basekit/io/ByteOstream.h"

#include <concepts>
#include <cstdint>
#include <memory>

namespace file {
class IFile;
}

namespace io {

/// What names a file by its whole path: a LongFileName.
template <class File>
concept NamesFile = requires(File const & file) {
  { file.FilePath() } -> std::convertible_to<AString>;
};

/// Writes a file of items and tokens, which replaces one of that name; its content is whole when Close left fail()
/// false.  Flags: StreamFlags.
class CToken_ostream : public ByteOstream {
public:
  CToken_ostream(AString const & path, int flags);
  /// Into a file that is open and empty.
  CToken_ostream(std::unique_ptr<file::IFile> file, int flags);
  template <NamesFile File>
  CToken_ostream(File const & file, int flags) : CToken_ostream(AString(file.FilePath()), flags) {}
  ~CToken_ostream() override;

  void Close();

private:
  void Grown() override;
  void Flush();

  std::unique_ptr<file::IFile> m_file;
  std::uint64_t m_length = 0;
};

} // namespace io
