#include "basekit/io/CToken_ostream.h"

#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"

namespace io {

namespace {

constexpr std::size_t kFlushAt = 64 * 1024;

std::unique_ptr<file::IFile> OpenEmpty(AString const & path) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  bool const isEmpty = path.find(L'\0') == AString::npos &&
                       file::FileSystem().Open(LongFileName(path), file::OpenMode::Create, opened).Ok() &&
                       opened->Describe(info).Ok() && (info.length == 0 || opened->Truncate(0).Ok());
  if (!isEmpty)
    opened.reset();
  return opened;
}

} // namespace

CToken_ostream::CToken_ostream(AString const & path, int flags) : CToken_ostream(OpenEmpty(path), flags) {}

CToken_ostream::CToken_ostream(std::unique_ptr<file::IFile> file, int flags)
    : ByteOstream(flags, kExactDigits, false), m_file(std::move(file)) {
  if (!m_file)
    SetFail();
}

CToken_ostream::~CToken_ostream() { Close(); }

void CToken_ostream::Grown() {
  if (Buffer().size() >= kFlushAt)
    Flush();
}

void CToken_ostream::Flush() {
  std::string_view const piece = Buffer();
  if (m_file && !piece.empty() && !m_file->Write(m_length, std::span(&piece, 1)).Ok())
    SetFail();
  m_length += piece.size();
  Buffer().clear();
}

void CToken_ostream::Close() {
  if (!m_file)
    return;
  Flush();
  m_file.reset();
}

} // namespace io
