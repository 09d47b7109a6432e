#include "viewkit/library/Compaction.h"

#include "basekit/file/FileOperations.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "viewkit/library/LibraryState.h"
#include "viewkit/library/LogWriter.h"

namespace library {

namespace {

LibIOReturn Convert(FoundBlock const & block, Conversion const & conversion, std::string & payload, AString & error) {
  AString const name = text::FromUtf8(block.name);
  io::CBlock decoded(name);
  bool const wasBinary = (block.place.flags & io::kBinaryPayload) != 0;
  LibIOReturn const result = DecodePayload(name, payload, wasBinary, decoded, error);
  if (result != CStreamioLibrary::kLibSuccess)
    return result;
  payload.clear();
  if (io::EncodeBlock(decoded, conversion.isBinary ? io::Form::Binary : io::Form::Text, conversion.precision, payload))
    return CStreamioLibrary::kLibSuccess;
  error = AString(L"block ") + name + L" is nested too deeply";
  return CStreamioLibrary::kLibWriteFailed;
}

LibIOReturn WriteBlocks(LogReader & log, std::vector<FoundBlock> const & blocks, Conversion const & conversion,
                        io::CommitInfo const & commit, AString & error) {
  LogWriter writer(log);
  std::string payload;
  for (auto const & block : blocks) {
    LibIOReturn result = block.log->LoadPayload(block.name, block.place, payload, error);
    bool isBinary = (block.place.flags & io::kBinaryPayload) != 0;
    if (result == CStreamioLibrary::kLibSuccess && conversion.converts) {
      result = Convert(block, conversion, payload, error);
      isBinary = conversion.isBinary;
    }
    if (result != CStreamioLibrary::kLibSuccess)
      return result;
    writer.AddBlock(block.name, payload, isBinary, LogWriter::Group::GoesOn);
  }
  writer.AddCommit(commit, true);
  file::FileStatus const status = writer.Finish();
  if (!status.Ok())
    error = status.Text();
  return status.Ok() ? CStreamioLibrary::kLibSuccess : CStreamioLibrary::kLibWriteFailed;
}

} // namespace

LongFileName FreeNameBeside(LongFileName const & path, AString const & word) {
  for (unsigned long number = 1;; ++number) {
    LongFileName const name = path.FilePath() + AString::Format(L".%s-%lu", word, number);
    if (!LFN_Exists(name))
      return name;
  }
}

LibIOReturn WriteNewFile(LongFileName const & path, io::FileHeader const & header,
                         std::vector<FoundBlock> const & blocks, Conversion const & conversion,
                         io::CommitInfo const & commit, LibraryLock * lock, std::unique_ptr<LogReader> & log,
                         AString & error) {
  auto & system = file::FileSystem();
  LongFileName const temporary = path.FilePath() + L".new";
  if (LFN_Exists(temporary))
    static_cast<void>(system.RemoveFile(temporary)); // Left by a crash; should it stay, the opening tells.
  std::unique_ptr<file::IFile> file;
  if (file::FileStatus const status = system.Open(temporary, file::OpenMode::CreateNew, file); !status.Ok()) {
    error = status.Text();
    return CStreamioLibrary::kLibWriteFailed;
  }
  auto written = LogReader::Begin(std::move(file), path, header);
  LibIOReturn result = WriteBlocks(*written, blocks, conversion, commit, error);
  auto & handle = written->Records().File();
  if (result == CStreamioLibrary::kLibSuccess && lock) {
    file::FileStatus const locked = lock->Add(handle);
    result = locked.Ok() ? result : CStreamioLibrary::kLibLocked;
    error = locked.Ok() ? error : locked.Text();
  }
  if (result == CStreamioLibrary::kLibSuccess) {
    file::FileStatus const renamed = system.Rename(temporary, path);
    result = renamed.Ok() ? result : CStreamioLibrary::kLibWriteFailed;
    error = renamed.Ok() ? error : renamed.Text();
  }
  if (result != CStreamioLibrary::kLibSuccess) {
    if (lock)
      lock->Forget(handle);
    static_cast<void>(system.RemoveFile(temporary)); // The failure is told already.
    return result;
  }
  log = std::move(written);
  file::FileStatus const synced = system.SyncFolder(path.DirPath());
  log->mustRewrite = !synced.Ok();
  if (!synced.Ok())
    error = synced.Text();
  return synced.Ok() ? CStreamioLibrary::kLibSuccess : CStreamioLibrary::kLibWriteFailed;
}

} // namespace library
