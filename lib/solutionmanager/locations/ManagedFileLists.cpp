#include "solutionmanager/locations/ManagedFileLists.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockVecPtr.h"
#include "basekit/io/CToken.h"
#include "basekit/io/CToken_istream.h"
#include "basekit/io/CToken_ostream.h"
#include "basekit/io/GByteOrder.h"
#include "basekit/io/StreamFunctions.h"

#include <algorithm>

namespace managed {

namespace {

// Some 100,000 names.
constexpr std::uint64_t kLongestList = std::uint64_t{64} << 20;

bool SyncFile(LongFileName const & path) {
  std::unique_ptr<file::IFile> opened;
  return file::FileSystem().Open(path, file::OpenMode::Read, opened).Ok() && opened->Sync().Ok();
}

/// An empty file that was not there before: a link that stands there goes, and is never written through.
std::unique_ptr<file::IFile> OpenNew(LongFileName const & path) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  auto & system = file::FileSystem();
  bool const isTaken = system.Describe(path, info).Ok() && (info.isLink || info.kind != file::FileKind::None);
  if ((isTaken && !LFN_DeleteFile(path)) || !system.Open(path, file::OpenMode::CreateNew, opened).Ok())
    opened.reset();
  return opened;
}

std::vector<AString> TextsOf(io::CBlock_func_arg const & values) {
  std::vector<AString> texts;
  for (auto place = values.begin(); place != values.end();) {
    auto const run = values.Texts(place);
    KVRO_ASSERT(!run.empty());
    texts.insert(texts.end(), run.begin(), run.end());
    values.Skip(place, std::max<std::size_t>(run.size(), 1));
  }
  return texts;
}

template <class WriteContent> bool Replace(LongFileName const & path, WriteContent writeContent) {
  LongFileName const beside(path.FilePath() + L"_new");
  io::CToken_ostream out(OpenNew(beside), kWriteFlags);
  writeContent(out);
  out.Close();
  bool const isReplaced = !out.fail() && SyncFile(beside) && LFN_Move(beside, path, kOverwriteReadOnly) &&
                          file::FileSystem().SyncFolder(path.DirPath()).Ok();
  KVRO_ASSERT(isReplaced);
  if (!isReplaced && LFN_Exists(beside))
    LFN_DeleteFile(beside);
  return isReplaced;
}

} // namespace

AString FolderName(AString const & baseDir) {
  AString name = baseDir;
  while (name.size() > 1 && name.EndsWith(L"/"))
    name = name.substr(0, name.size() - 1);
  return name;
}

bool CanRead(LongFileName const & list) {
  file::FileInfo info;
  std::unique_ptr<file::IFile> opened;
  auto & system = file::FileSystem();
  bool const canRead = system.Describe(list, info).Ok() && info.kind == file::FileKind::File && !info.isLink &&
                       info.length <= kLongestList && system.Open(list, file::OpenMode::Read, opened).Ok();
  KVRO_ASSERT(canRead);
  return canRead;
}

bool IsNoFolder(LongFileName const & path) {
  bool const isNoFolder = !LFN_IsDirectory(path);
  KVRO_ASSERT(isNoFolder);
  return isNoFolder;
}

bool ReadBlocks(io::CToken_istream & in, io::CBlock & managedFiles, io::CBlock * deletedFiles) {
  if (!in.AtBeginBlock(kManagedFiles))
    return false;
  in >> managedFiles;
  if (deletedFiles)
    in >> *deletedFiles;
  bool const isListWhole = !in.fail();
  KVRO_ASSERT(isListWhole);
  return isListWhole;
}

bool ReadByteOrder(io::CToken_istream & in) {
  if (!in.AtKeyword(kIsBigEndian))
    return false;
  io::CToken keyword;
  bool isBigEndian = false;
  in >> keyword >> io::OpenParen >> isBigEndian >> io::CloseParen;
  return isBigEndian;
}

void AppendName(io::CBlock & block, AString const & baseDir, AString const & fileName) {
  // The index of a block ignores case, folders don't.
  for (auto place = block.begin(baseDir); place != block.end(baseDir); ++place)
    if (io::CBlock_ptr<io::CBlock_vec> const vec(block.Item(place)); vec && vec->Name() == baseDir) {
      *vec << fileName;
      return;
    }
  io::CBlockVecPtr const vec(baseDir);
  *vec << fileName;
  block << vec;
}

std::vector<std::pair<AString, std::vector<AString>>> FoldersOf(io::CBlock const & block) {
  std::vector<std::pair<AString, std::vector<AString>>> folders;
  for (auto const & item : block)
    if (io::CBlock_ptr<io::CBlock_vec> const vec(item); vec)
      folders.emplace_back(FolderName(vec->Name()), TextsOf(vec->Values()));
  return folders;
}

Names NamesOf(io::CBlock const & block) {
  Names names;
  for (auto const & [dir, files] : FoldersOf(block))
    names[dir].insert(files.begin(), files.end());
  return names;
}

io::CBlock BlockOf(Names const & names) {
  io::CBlock block(kManagedFiles);
  for (auto const & [baseDir, files] : names) {
    io::CBlockVecPtr const vec(baseDir);
    vec->AppendValues(std::vector<AString>(files.begin(), files.end()));
    block << vec;
  }
  return block;
}

bool WritePrivateList(LongFileName const & path, io::CBlock const & managedFiles, io::CBlock const & deletedFiles) {
  return Replace(path, [&](io::CToken_ostream & out) { out << managedFiles << deletedFiles; });
}

bool WriteCommittedList(LongFileName const & path, io::CBlock const & managedFiles) {
  return Replace(path, [&](io::CToken_ostream & out) {
    out << AString(kIsBigEndian) << io::OpenParen << io::GByteOrder << io::CloseParen << io::EndLine << managedFiles;
  });
}

} // namespace managed
