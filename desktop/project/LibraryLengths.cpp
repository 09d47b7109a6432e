#include "desktop/project/LibraryLengths.h"

#include "basekit/file/IFileSystem.h"

namespace desktop {

namespace {

std::uint64_t LengthOf(LongFileName const & path) {
  file::FileInfo info;
  return file::FileSystem().Describe(path, info).Ok() ? info.length : 0;
}

} // namespace

LibraryLengths::LibraryLengths(AString const & libraryPath)
    : m_public(libraryPath), m_private(libraryPath + L"_priv"), m_publicLength(LengthOf(m_public)),
      m_privateLength(LengthOf(m_private)) {}

void LibraryLengths::PutBack() const {
  if (LengthOf(m_public) != m_publicLength || LengthOf(m_private) <= m_privateLength)
    return;
  std::unique_ptr<file::IFile> opened;
  if (file::FileSystem().Open(m_private, file::OpenMode::ReadWrite, opened).Ok())
    static_cast<void>(opened->Truncate(m_privateLength)); // Else the next session goes on with it as it is.
}

} // namespace desktop
