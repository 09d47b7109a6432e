// Attaching, taking the files for writing, and which private file is gone on with.
#include "basekit/file/FileOperations.h"
#include "viewkit/library/Compaction.h"
#include "viewkit/library/LibraryState.h"
#include "viewkit/library/LogWriter.h"

#include <cerrno>

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
using Extent = io::RecordReader::Extent;
using Stranger = LibraryState::Stranger;
constexpr std::chrono::milliseconds kMoment(2);

io::CommitInfo PublicCommit(LibraryState const & state) {
  return state.publicLog ? state.publicLog->Records().LastCommit() : io::CommitInfo();
}

// Takes a private file into use, or notes why it isn't.
void Judge(LibraryState & state, std::unique_ptr<LogReader> log, bool takesOver) {
  state.privateLog.reset();
  state.mergedLength = 0;
  state.journaled.ForgetAll(); // Of what was read before; the file may have gone on.
  std::uint64_t mergedLength = 0;
  bool const isTwin =
      IsTwin(*log, PublicCommit(state), mergedLength) || (takesOver && log->Records().HeaderIsDamaged());
  bool const holdsNothing = log->Index().IsEmpty() && log->Records().Damages().empty();
  // A loss of power took records that are part of the public file; what came behind them would pass for merged too.
  bool const isTorn = mergedLength > log->Records().End();
  if (isTorn)
    state.stranger = log->Records().FileLength() <= mergedLength ? Stranger::None : Stranger::OtherGeneration;
  else if (!isTwin)
    state.stranger = holdsNothing ? Stranger::None : Stranger::OtherGeneration;
  else if (!takesOver && !log->Records().WasClosedCleanly())
    state.stranger = holdsNothing ? Stranger::None : Stranger::LeftByCrash;
  else {
    state.stranger = Stranger::None;
    if (!log->Records().Damages().empty())
      state.error = log->Path().FilePath() + L": " + log->Records().Damages().front().what;
    state.privateLog = std::move(log);
    state.mergedLength = mergedLength;
  }
}

// A handle on a file that still stands under its name, locked; null with success when there is none.
LibIOReturn OpenLocked(LibraryState & state, LibraryLock & lock, LongFileName const & path, bool takesOver,
                       std::unique_ptr<file::IFile> & file) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    file.reset();
    file::FileStatus status = file::FileSystem().Open(path, file::OpenMode::ReadWrite, file);
    if (status.Error() == ENOENT || status.Error() == ENOTDIR)
      return kSuccess;
    if (!status.Ok())
      return state.Fail(status);
    status = lock.Add(*file);
    if (!status.Ok() && takesOver && LibraryLock::TakeFromThisProcess(*file))
      status = lock.Add(*file);
    if (!status.Ok()) {
      file.reset();
      return state.Fail(CStreamioLibrary::kLibLocked, status.Text());
    }
    file::FileInfo mine;
    file::FileInfo named;
    if (file->Describe(mine).Ok() && file::FileSystem().Describe(path, named).Ok() && mine.IsSameFile(named))
      return kSuccess;
    lock.Forget(*file);
  }
  return state.Fail(CStreamioLibrary::kLibLocked, path.FilePath() + L" is being replaced by another library");
}

// The index that was read before serves on when the file has not changed since.
LibIOReturn ReadLocked(LibraryState & state, std::unique_ptr<file::IFile> file, LongFileName const & path,
                       Extent extent, std::unique_ptr<LogReader> & log) {
  file::FileInfo now;
  file::FileInfo before;
  bool const isSame = log && file->Describe(now).Ok() && log->Records().File().Describe(before).Ok() &&
                      now.IsSameFile(before) && now.length == log->Records().FileLength() &&
                      before.length == now.length;
  if (!isSame)
    state.journaled.ForgetAll();
  if (!isSame)
    return LogReader::Read(std::move(file), path, extent, log, state.error);
  log->Records().Reopen(std::move(file));
  return kSuccess;
}

struct LockedFiles {
  std::unique_ptr<file::IFile> publicFile;
  std::unique_ptr<file::IFile> privateFile;
};

LibIOReturn LockBoth(LibraryState & state, bool takesOver, LockedFiles & files) {
  LibIOReturn result = OpenLocked(state, state.lock, state.path, takesOver, files.publicFile);
  if (result == kSuccess)
    result = OpenLocked(state, state.lock, state.privatePath, takesOver, files.privateFile);
  // A public file that came up meanwhile is its maker's.
  if (result == kSuccess && !files.publicFile && LFN_Exists(state.path))
    result = state.Fail(CStreamioLibrary::kLibLocked, state.path.FilePath() + L" was just made by another library");
  return result;
}

// With both files locked: reads what stands in them now.
LibIOReturn ReadBoth(LibraryState & state, LockedFiles & files, bool takesOver) {
  LibIOReturn result = kSuccess;
  if (files.publicFile) {
    file::IFile * const handle = files.publicFile.get();
    auto const read = ReadLocked(state, std::move(files.publicFile), state.path, Extent::Committed, state.publicLog);
    result = read == CStreamioLibrary::kLibNotFound ? kSuccess : read;
    if (read != kSuccess)
      state.lock.Forget(*handle);
    if (read == CStreamioLibrary::kLibNotFound)
      state.publicLog.reset();
  } else {
    state.publicLog.reset();
  }
  if (result != kSuccess || !files.privateFile)
    return result;
  file::IFile * const handle = files.privateFile.get();
  std::unique_ptr<LogReader> log;
  auto const read =
      LogReader::Read(std::move(files.privateFile), state.privatePath, Extent::WholeGroups, log, state.error);
  if (log)
    Judge(state, std::move(log), takesOver);
  else if (read == CStreamioLibrary::kLibReadFailed)
    result = read; // The disk failed: what the file holds may be this library's work.
  else
    state.stranger = read == CStreamioLibrary::kLibNotFound ? Stranger::None : Stranger::Unreadable;
  if (!state.privateLog)
    state.lock.Forget(*handle);
  return result;
}

} // namespace

LongFileName PrivatePath(LongFileName const & path) { return path.FilePath() + L"_priv"; }

bool IsTwin(LogReader const & privateLog, io::CommitInfo const & publicCommit, std::uint64_t & mergedLength) {
  auto const & header = privateLog.Records().Header();
  bool const isMerged = publicCommit.mergedSalt == header.salt;
  mergedLength = isMerged ? publicCommit.mergedLength : 0;
  return isMerged || (!privateLog.Records().HeaderIsDamaged() && header.baseCommit == publicCommit.commit);
}

LibIOReturn Attach(LibraryState & state, LongFileName const & path, CStreamioLibrary::TMode mode) {
  state.path = path;
  state.privatePath = PrivatePath(path);
  state.status = kSuccess;
  auto & error = state.error;
  auto const result = state.isReadOnly && state.readLength > 0
                          ? LogReader::OpenPrefix(path, state.readLength, state.publicLog, error)
                          : LogReader::Open(path, file::OpenMode::Read, Extent::Committed, state.publicLog, error);
  if (result != kSuccess && result != CStreamioLibrary::kLibNotFound)
    return state.status = result;
  if (state.publicLog && !state.publicLog->Records().Damages().empty())
    error = path.FilePath() + L": " + state.publicLog->Records().Damages().front().what;
  else
    error.clear();
  if (state.isReadOnly)
    return kSuccess;
  file::FileInfo left;
  file::FileStatus const seen = file::FileSystem().Describe(state.privatePath, left);
  if (mode == CStreamioLibrary::kRecoveryMode && !seen.Ok())
    return state.status = state.Fail(CStreamioLibrary::kLibReadFailed, seen.Text());
  if (mode == CStreamioLibrary::kRecoveryMode && left.kind != file::FileKind::None) {
    auto const taken = AcquireForWriting(state, true);
    if (taken == CStreamioLibrary::kLibReadFailed)
      state.status = taken; // Else the first write would set aside what was not read.
    state.isRecovered = taken == kSuccess && state.stranger == Stranger::None;
    return taken;
  }
  std::unique_ptr<LogReader> log;
  AString reason;
  auto const read = LogReader::Open(state.privatePath, file::OpenMode::Read, Extent::WholeGroups, log, reason);
  if (log)
    Judge(state, std::move(log), false);
  else if (read != CStreamioLibrary::kLibNotFound)
    state.stranger = Stranger::Unreadable;
  return kSuccess;
}

LibIOReturn AcquireForWriting(LibraryState & state, bool takesOver) {
  if (state.status != kSuccess)
    return state.status;
  if (state.isReadOnly)
    return state.Fail(CStreamioLibrary::kLibLocked, state.path.FilePath() + L" is open for reading only");
  if (state.lock.IsHeld())
    return kSuccess;
  if (state.wasWriter && (state.publicLog || state.privateLog))
    return state.Fail(CStreamioLibrary::kLibLocked, state.path.FilePath() + L" was taken over by another library");
  LockedFiles files;
  LibIOReturn result = LockBoth(state, takesOver, files);
  if (result == kSuccess)
    result = ReadBoth(state, files, takesOver);
  if (result != kSuccess) {
    // The files that are still open here lose their locks as they close.
    if (files.publicFile)
      state.lock.Forget(*files.publicFile);
    if (files.privateFile)
      state.lock.Forget(*files.privateFile);
    state.lock.Release();
    return result;
  }
  if (!takesOver)
    result = EnsurePrivateFile(state);
  if (result != kSuccess)
    state.lock.Release();
  state.wasWriter = state.lock.IsHeld();
  return result;
}

LibIOReturn LockTarget(LibraryState & state, std::unique_ptr<file::IFile> & publicFile) {
  LockedFiles files;
  LibIOReturn result = LockBoth(state, false, files);
  if (files.privateFile) {
    if (result == kSuccess)
      result = SetPrivateFileAside(state.privatePath, state.setAside, state.error);
    state.lock.Forget(*files.privateFile);
  }
  publicFile = std::move(files.publicFile);
  return result;
}

LibIOReturn SetPrivateFileAside(LongFileName const & privatePath, AString & setAside, AString & error) {
  LongFileName const aside = FreeNameBeside(privatePath, L"set-aside");
  file::FileStatus const status = file::FileSystem().Rename(privatePath, aside);
  if (status.Ok())
    setAside = aside.FilePath();
  else
    error = status.Text();
  return status.Ok() ? kSuccess : CStreamioLibrary::kLibWriteFailed;
}

file::Standing StandsUnderItsName(LogReader & log) {
  auto standing = file::Standing::Replaced;
  file::FileStatus const status = log.Records().File().StandsUnder(log.Path(), standing);
  return status.Ok() ? standing : file::Standing::Replaced;
}

namespace {

// Somebody removed the file under its writer; what it held is still to be read through the open file.
LibIOReturn MakePrivateFileAgain(LibraryState & state) {
  auto vanished = std::move(state.privateLog);
  LibIOReturn result = EnsurePrivateFile(state);
  std::uint64_t const mergedLength = state.mergedLength;
  if (result == kSuccess) {
    result = CopyUnmerged(state, *vanished, *state.privateLog, state.error);
    if (result != kSuccess)
      static_cast<void>(DropPrivateFile(state)); // The failure is told already.
  }
  if (result != kSuccess) {
    state.privateLog = std::move(vanished);
    state.mergedLength = mergedLength;
  } else {
    state.lock.Forget(vanished->Records().File());
    state.mergedLength = 0;
    state.journaled.ForgetAll();
  }
  return result;
}

} // namespace

LibIOReturn EnsurePrivateFile(LibraryState & state, std::optional<std::uint64_t> baseCommit) {
  if (state.privateLog) {
    // To look costs a good part of a save: not again within a moment.
    auto const now = std::chrono::steady_clock::now();
    if (now - state.privateLog->lookedAt < kMoment)
      return kSuccess;
    state.privateLog->lookedAt = now;
    auto const standing = StandsUnderItsName(*state.privateLog);
    if (standing == file::Standing::Replaced)
      return state.Fail(CStreamioLibrary::kLibWriteFailed, state.privatePath.FilePath() + L" is another file now");
    return standing == file::Standing::Same ? kSuccess : MakePrivateFileAgain(state);
  }
  if (state.stranger != Stranger::None) {
    auto const moved = SetPrivateFileAside(state.privatePath, state.setAside, state.error);
    if (moved != kSuccess)
      return moved;
    state.stranger = Stranger::None;
  } else if (LFN_Exists(state.privatePath)) {
    // It holds nothing.
    if (auto const status = file::FileSystem().RemoveFile(state.privatePath); !status.Ok())
      return state.Fail(status);
  }
  std::unique_ptr<file::IFile> file;
  if (auto const status = file::FileSystem().Open(state.privatePath, file::OpenMode::CreateNew, file); !status.Ok())
    return state.Fail(status);
  if (auto const status = state.lock.Add(*file); !status.Ok())
    return state.Fail(CStreamioLibrary::kLibLocked, status.Text());
  io::FileHeader header;
  header.isPrivate = true;
  header.isBinary = state.writesBinary;
  header.salt = RandomNumber();
  header.baseCommit = baseCommit.value_or(PublicCommit(state).commit);
  state.privateLog = LogReader::Begin(std::move(file), state.privatePath, header);
  return kSuccess;
}

LibIOReturn DropPrivateFile(LibraryState & state) {
  if (!state.privateLog)
    return kSuccess;
  if (auto const status = file::FileSystem().RemoveFile(state.privatePath); !status.Ok() && status.Error() != ENOENT)
    return state.Fail(status);
  if (HasUnmerged(state))
    state.journaled.Clear();
  else
    state.journaled.MovedToPublic(state.privateLog->Index());
  state.lock.Forget(state.privateLog->Records().File());
  state.privateLog.reset();
  state.mergedLength = 0;
  state.wasWriter = state.wasWriter && state.lock.IsHeld();
  return kSuccess;
}

void Close(LibraryState & state) {
  if (!state.lock.IsHeld())
    return;
  static_cast<void>(Flush(state)); // Nobody is left to be told.
  if (state.privateLog && !HasUnmerged(state)) {
    static_cast<void>(DropPrivateFile(state));
  } else if (state.privateLog) {
    LogWriter writer(*state.privateLog);
    writer.AddCleanClose();
    static_cast<void>(writer.Finish());
  }
  state.lock.Release();
}

} // namespace library
