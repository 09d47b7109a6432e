// Writing a library anew: who must not be disturbed, and what must not be lost.

#include "apps/qsol/Rewriting.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/Text.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <cerrno>
#include <cstring>

namespace qsol {

using library::LibraryReader;
using PrivateFile = LibraryReader::PrivateFile;

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;

std::uint64_t LengthOf(AString const & path) {
  file::FileInfo info;
  bool const isFile = file::FileSystem().Describe(LongFileName(path), info).Ok() && info.kind == file::FileKind::File;
  return isFile ? info.length : 0;
}

bool StandsThere(AString const & path) {
  file::FileInfo info;
  return file::FileSystem().Describe(LongFileName(path), info).Ok() && info.kind != file::FileKind::None;
}

// A project whose save is not settled, or that goes back to what was saved by the length that its library had then,
// needs the library as it is.
void RefuseWhatAProjectNeeds(AString const & library) {
  if (StandsThere(library + L"_saved"))
    throw Failure(Exit::Failed, OneLine(library) +
                                    "_saved: the library holds unsaved work of its project, which could not be taken "
                                    "back any more; save or discard it first: solvedesk save PROJECT");
  AString const extension(L".results/");
  AString const folder = LFN_AbsolutePath(library).DirPath();
  if (!folder.EndsWith(extension))
    return;
  AString const note = folder.substr(0, folder.size() - extension.size()) + L".sproject.saving";
  if (StandsThere(note))
    throw Failure(Exit::Failed, OneLine(note) + ": a save of the project is under way or was interrupted; wait for its "
                                                "end, or open the project, which settles it: solvedesk save PROJECT");
}

// A library that a compaction would do harm to is told before anything is touched.
void RefuseWhatIsNotReady(OpenedLibrary const & opened) {
  std::string const name = OneLine(opened.publicPath);
  std::string const twin = OneLine(opened.privatePath);
  if (opened.publicPath == opened.privatePath)
    throw Failure(Exit::Usage, name + ": is a private file; name the library that it stands beside");
  if (!opened.ShowsPublic())
    throw Failure(Exit::Failed, name + ": nothing was ever committed there; save the project first");
  file::FileInfo info;
  if (file::FileSystem().Describe(LongFileName(opened.publicPath), info).Ok() && info.isLink)
    throw Failure(Exit::Usage, name + ": is a link; name the file that it leads to");
  RefuseWhatAProjectNeeds(opened.publicPath);
  switch (opened.privateState) {
  case PrivateFile::None:
  case PrivateFile::ClosedInOrder:
    return;
  case PrivateFile::InUse:
    throw Failure(Exit::Failed, name + ": another process is writing it; wait for its end");
  case PrivateFile::LeftByCrash:
    throw Failure(
        Exit::Failed,
        twin + ": holds work that a crash left; open its project first, which takes it over: solvedesk save PROJECT");
  case PrivateFile::OtherGeneration:
    throw Failure(Exit::Failed, twin + ": belongs to another state of the library; move it elsewhere first");
  case PrivateFile::Unreadable:
    throw Failure(Exit::Failed, WhyUnreadable(opened.privatePath) + "; move it elsewhere first");
  }
}

// Only where a permission lacks is there no doubt about the space.
char const * RemedyFor(std::string const & error) {
  for (int const number : {EACCES, EPERM, EROFS})
    if (error.ends_with(std::strerror(number)))
      return "check the permissions of the file and of its folder";
  return "check the folder's permissions and space";
}

void Check(CStreamioLibrary::LibIOReturn result, CStreamioLibWritePrivate const & library, std::string const & name) {
  if (result == kGood)
    return;
  if (result == CStreamioLibrary::kLibLocked)
    throw Failure(Exit::Failed, name + ": another process is writing it; wait for its end");
  std::string const error = OneLine(library.LastError());
  if (result == CStreamioLibrary::kLibDamaged)
    throw Failure(Exit::Failed, error + "; nothing was changed, 'qsol verify' tells what else is damaged");
  throw Failure(Exit::Failed, error + "; nothing was changed, " + RemedyFor(error));
}

// The same tree must come out of the new form, to the last bit of each number.
bool StaysTheSame(io::CBlock const & content, io::Form form) {
  std::string converted;
  std::string before;
  std::string after;
  io::CBlock again;
  return io::EncodeBlock(content, form, io::kExactDigits, converted) && io::DecodeBlock(converted, form, again) &&
         io::EncodeBlock(content, io::Form::Text, io::kExactDigits, before) &&
         io::EncodeBlock(again, io::Form::Text, io::kExactDigits, after) && before == after;
}

// Each block is read, since the library leaves out of a new file what it can't read, and tried in its new form.
void CheckBlocks(AString const & path, std::optional<bool> toBinary) {
  LibraryReader reader;
  if (reader.Open(LongFileName(path), true) != kGood)
    throw Failure(Exit::Failed, OneLine(reader.LastError()) + "; nothing was changed");
  auto const form = toBinary.value_or(false) ? io::Form::Binary : io::Form::Text;
  for (auto const & entry : reader.List()) {
    io::CBlock content(entry.name);
    if (reader.Load(content) != kGood)
      throw Failure(Exit::Failed,
                    OneLine(reader.LastError()) + "; nothing was changed, 'qsol verify' tells what else is damaged");
    if (toBinary && !StaysTheSame(content, form))
      throw Failure(Exit::Failed,
                    "block " + OneLine(entry.name) + ": would not be the same in the other form; nothing was changed");
  }
}

} // namespace

RewriteResult Rewrite(RewriteOptions const & options) {
  OpenedLibrary opened;
  OpenLibrary({options.file, false, false}, opened);
  RefuseWhatIsNotReady(opened);
  std::string const name = OneLine(opened.publicPath);
  RewriteResult told;
  told.bytesBefore = LengthOf(opened.publicPath) + LengthOf(opened.privatePath);
  {
    CStreamioLibWritePrivate library;
    library.SetLibPath(opened.publicPath, CStreamioLibrary::kOrdinaryMode);
    told.committed = library.HasUnsavedChanges();
    if (told.committed && !options.commit)
      throw Failure(Exit::Failed, OneLine(opened.privatePath) +
                                      ": holds work that is not committed; save the project, or give --commit");
    Check(library.AcquireForWriting(), library, name);
    if (library.HasUnsavedChanges() != told.committed)
      throw Failure(Exit::Failed, name + ": another process wrote it just now; try again");
    CheckBlocks(opened.publicPath, options.toBinary);
    if (options.toBinary)
      library.SetBinaryMode(*options.toBinary);
    Check(library.RewriteLibrary(options.toBinary.has_value()), library, name);
    told.blocks = library.GetFileStats().blocks;
  }
  told.bytesAfter = LengthOf(opened.publicPath) + LengthOf(opened.privatePath);
  return told;
}

} // namespace qsol
