#include "desktop/project/SourceFiles.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/Checksum.h"
#include "desktop/Error.h"
#include "desktop/project/SourcePlace.h"

namespace desktop {

namespace {

AString const kFile(L"File");
AString const kPath(L"Path");
AString const kSize(L"Size");
AString const kChecksum(L"Checksum");
constexpr std::size_t kPiece = std::size_t{256} * 1024;

void Refuse(file::FileStatus const & status, LongFileName const & file) {
  throw Error(ErrorKind::kSource, file.FilePath() + L": the source can't be read (" + status.Text() +
                                      L"); put the file there, readable for you");
}

} // namespace

SourceFile SourceFile::Read(LongFileName const & file, LongFileName const & projectFolder) {
  SourceFile source;
  AString const path = LFN_AbsolutePath(file).FilePath();
  AString const & folder = projectFolder.FilePath();
  bool const isInside = !folder.empty() && path.StartsWith(folder) && path.size() > folder.size();
  source.path = isInside ? path.substr(folder.size()) : path;
  std::unique_ptr<file::IFile> opened;
  if (auto const status = file::FileSystem().Open(path, file::OpenMode::Read, opened); !status.Ok())
    Refuse(status, file);
  std::vector<char> buffer(kPiece);
  for (std::size_t got = buffer.size(); got == buffer.size(); source.size += got) {
    if (auto const status = opened->Read(source.size, buffer, got); !status.Ok())
      Refuse(status, file);
    source.checksum = io::Checksum({buffer.data(), got}, source.checksum);
  }
  return source;
}

LongFileName SourceFile::PathIn(LongFileName const & projectFolder) const {
  return path.StartsWith(L"/") ? LongFileName(path) : projectFolder + path;
}

void WriteSourceFiles(SourceFiles const & files, io::CBlock & block) {
  for (SourceFile const & file : files) {
    io::CBlock_func item(kFile);
    item << io::named(kPath, file.path) << io::named(kSize, static_cast<long>(file.size))
         << io::named(kChecksum, static_cast<long>(file.checksum));
    block << item;
  }
}

bool ReadSourceFiles(io::CBlock const & block, SourceFiles & files) {
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    SourceFile file;
    long size = -1;
    long checksum = -1;
    if (!item)
      return false;
    *item >> io::named(kPath, file.path) >> io::named(kSize, size) >> io::named(kChecksum, checksum);
    if (file.path.empty() || size < 0 || checksum < 0)
      return false;
    file.size = static_cast<std::uint64_t>(size);
    file.checksum = static_cast<std::uint32_t>(checksum);
    files.push_back(file);
  }
  return !files.empty();
}

void CheckUnchanged(SourceFiles const & files, LongFileName const & projectFolder) {
  for (SourceFile const & file : files) {
    LongFileName const path = PlaceOf(file, projectFolder);
    SourceFile const now = SourceFile::Read(path, projectFolder);
    if (now.size != file.size || now.checksum != file.checksum)
      throw Error(ErrorKind::kSource, path.FilePath() +
                                          L": the source has changed since the project read it; read it again with "
                                          L"'solvedesk reload', or put the former file back");
  }
}

} // namespace desktop
