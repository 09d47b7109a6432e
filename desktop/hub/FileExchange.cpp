#include "desktop/hub/FileExchange.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"
#include "desktop/project/NewFile.h"

#include <cerrno>
#include <memory>

namespace desktop {

namespace {

[[noreturn]] void Refuse(LongFileName const & file, AString const & cause) {
  throw Error(ErrorKind::kStorage,
              file.FilePath() + L": can't be exchanged (" + cause + L"); get permission for the file and its folder");
}

} // namespace

std::optional<std::string> BytesOf(LongFileName const & file) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  auto status = file::FileSystem().Open(file, file::OpenMode::Read, opened);
  if (status.Error() == ENOENT || status.Error() == ENOTDIR)
    return std::nullopt;
  if (status.Ok())
    status = opened->Describe(info);
  std::string bytes(status.Ok() ? info.length : 0, '\0');
  std::size_t got = 0;
  if (status.Ok())
    status = opened->Read(0, bytes, got);
  if (!status.Ok())
    Refuse(file, status.Text());
  bytes.resize(got);
  return bytes;
}

void FileExchange::Exchange() {
  auto present = BytesOf(m_file);
  if (m_content)
    NewFile(m_file, *m_content).Install();
  else if (present && !LFN_DeleteFile(m_file))
    Refuse(m_file, LFN_LastError());
  m_content = std::move(present);
}

} // namespace desktop
