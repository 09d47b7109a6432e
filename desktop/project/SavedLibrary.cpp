// The file is a block in the text form:
//
//     SavedLibrary {
//       Generation = 3
//       Length = 4711
//       Ending = "9a3b0c11"
//     }
//
// Ending is the CRC-32C of the last bytes of that length.  They are those of a commit, which bears a random number, so
// another library, or one that was written anew, has others.
#include "desktop/project/SavedLibrary.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/Checksum.h"
#include "desktop/Error.h"
#include "desktop/project/NewFile.h"

#include <fmt/format.h>

namespace desktop {

namespace {

constexpr std::uint64_t kEnding = 256;
constexpr std::uint64_t kMostBytes = 4096;

struct Noted {
  long generation = -1;
  long length = 0;
  AString ending;
};

std::uint64_t LengthOf(LongFileName const & path) {
  file::FileInfo info;
  return file::FileSystem().Describe(path, info).Ok() ? info.length : 0;
}

// Empty when the file does not reach that far.
std::string Bytes(LongFileName const & path, std::uint64_t from, std::uint64_t count) {
  std::unique_ptr<file::IFile> opened;
  std::string bytes(count, '\0');
  std::size_t got = 0;
  bool const isRead = file::FileSystem().Open(path, file::OpenMode::Read, opened).Ok() &&
                      opened->Read(from, bytes, got).Ok() && got == count;
  return isRead ? bytes : std::string();
}

AString EndingOf(LongFileName const & library, std::uint64_t length) {
  std::uint64_t const count = std::min(length, kEnding);
  std::string const bytes = Bytes(library, length - count, count);
  return bytes.empty() ? AString() : text::FromUtf8(fmt::format("{:08x}", io::Checksum(bytes)));
}

// What can't be read is none.
Noted Read(LongFileName const & file) {
  Noted noted;
  io::CBlock block(L"SavedLibrary");
  std::uint64_t const length = LengthOf(file);
  if (length == 0 || length > kMostBytes || !io::DecodeBlock(Bytes(file, 0, length), io::Form::Text, block))
    return noted;
  block >> io::named(L"Generation", noted.generation) >> io::named(L"Length", noted.length) >>
      io::named(L"Ending", noted.ending);
  return noted;
}

bool Fits(Noted const & noted, long generation, LongFileName const & library) {
  return noted.generation == generation && noted.length > 0 && !noted.ending.empty() &&
         EndingOf(library, static_cast<std::uint64_t>(noted.length)) == noted.ending;
}

} // namespace

SavedLibrary::SavedLibrary(AString const & libraryPath) : m_library(libraryPath), m_file(libraryPath + L"_saved") {}

void SavedLibrary::Note(long generation, std::uint64_t committedLength) const {
  if (Fits(Read(m_file), generation, m_library))
    return;
  if (committedLength == 0) { // A library that is not there yet.
    Forget();
    return;
  }
  io::CBlock block(L"SavedLibrary");
  block << io::named(L"Generation", generation) << io::named(L"Length", static_cast<long>(committedLength))
        << io::named(L"Ending", EndingOf(m_library, committedLength));
  std::string bytes;
  static_cast<void>(io::EncodeBlock(block, io::Form::Text, io::kExactDigits, bytes)); // It is flat.
  NewFile(m_file, bytes).Install();
}

std::optional<std::uint64_t> SavedLibrary::Length(long generation) const {
  Noted const noted = Read(m_file);
  if (!Fits(noted, generation, m_library))
    return {};
  return static_cast<std::uint64_t>(noted.length);
}

void SavedLibrary::GoBack(std::uint64_t length) const {
  std::unique_ptr<file::IFile> opened;
  auto status = file::FileSystem().Open(m_library, file::OpenMode::ReadWrite, opened);
  if (status.Ok())
    status = opened->Truncate(length);
  if (status.Ok())
    status = opened->Sync();
  if (!status.Ok())
    throw Error(ErrorKind::kStorage, m_library.FilePath() + L": can't be taken back to what was saved (" +
                                         status.Text() + L"); get permission to write it, and try again");
}

// One that stays is of an older generation, or tells of what the library is.
void SavedLibrary::Forget() const {
  if (LFN_Exists(m_file))
    LFN_DeleteFile(m_file);
}

void SavedLibrary::ForgetObsolete(long generation) const {
  if (LFN_Exists(m_file) && !Fits(Read(m_file), generation, m_library))
    Forget();
}

} // namespace desktop
