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

namespace managed {

namespace {

bool SyncFile(LongFileName const & path) {
  std::unique_ptr<file::IFile> opened;
  return file::FileSystem().Open(path, file::OpenMode::Read, opened).Ok() && opened->Sync().Ok();
}

template <class WriteContent> bool Replace(LongFileName const & path, WriteContent writeContent) {
  LongFileName const beside(path.FilePath() + L"_new");
  io::CToken_ostream out(beside, kWriteFlags);
  writeContent(out);
  out.Close();
  bool const isReplaced = !out.fail() && SyncFile(beside) && LFN_Move(beside, path, kOverwriteReadOnly);
  KVRO_ASSERT(isReplaced);
  if (!isReplaced)
    LFN_DeleteFile(beside);
  return isReplaced;
}

} // namespace

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
    if (io::CBlock_ptr<io::CBlock_vec> const vec(item); vec) {
      folders.emplace_back(vec->Name(), std::vector<AString>());
      vec->QueryValues(folders.back().second);
    }
  return folders;
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
