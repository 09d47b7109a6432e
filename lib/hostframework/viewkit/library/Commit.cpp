// How the private file's work reaches the public file.
#include "viewkit/library/Commit.h"
#include "basekit/file/FileOperations.h"

#include "viewkit/library/LibraryState.h"
#include "viewkit/library/LogWriter.h"

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

io::CommitInfo NextCommit(LibraryState const & state) {
  io::CommitInfo next = state.publicLog ? state.publicLog->Records().LastCommit() : io::CommitInfo();
  next.commit = RandomNumber();
  ++next.number;
  if (state.privateLog) {
    next.mergedSalt = state.privateLog->Records().Header().salt;
    next.mergedLength = state.privateLog->Records().End();
  }
  return next;
}

void NoteMerged(LibraryState & state) { state.mergedLength = state.privateLog ? state.privateLog->Records().End() : 0; }

// A block of the private file that is damaged is left out, once and told; the public file's own version stays.
LibIOReturn AppendCommit(LibraryState & state) {
  auto & target = *state.publicLog;
  std::vector<std::string> damaged;
  AString damage;
  LogWriter writer(target);
  std::string payload;
  for (auto const & [name, place] : Unmerged(state)) {
    if (!place.IsBlock()) {
      if (target.Index().Find(name))
        writer.AddDelete(name, LogWriter::Group::GoesOn);
      continue;
    }
    LibIOReturn const read = state.privateLog->LoadPayload(name, place, payload, state.error);
    if (read == CStreamioLibrary::kLibDamaged) {
      damaged.emplace_back(name);
      damage = state.error;
    } else if (read != kSuccess) {
      writer.Abandon();
      return read;
    } else {
      writer.AddBlock(name, payload, (place.flags & io::kBinaryPayload) != 0, LogWriter::Group::GoesOn);
    }
  }
  writer.AddCommit(NextCommit(state), true);
  if (file::FileStatus const status = writer.Finish(); !status.Ok())
    return state.Fail(status);
  for (auto const & name : damaged)
    state.privateLog->Index().Forget(name);
  return damaged.empty() ? kSuccess : state.Fail(CStreamioLibrary::kLibDamaged, damage);
}

// Leaves out what can't be read; a block that is damaged in the private file alone falls back to the public one.
void LeaveOutDamaged(LibraryState & state, std::vector<FoundBlock> & blocks) {
  std::vector<FoundBlock> whole;
  std::vector<std::string> damaged;
  std::string payload;
  for (auto & block : blocks) {
    auto const isGood = [&] {
      return block.log->LoadPayload(block.name, block.place, payload, state.error) != CStreamioLibrary::kLibDamaged;
    };
    bool good = isGood();
    if (!good && block.log == state.privateLog.get())
      damaged.emplace_back(block.name);
    io::RecordIndex::Named former;
    if (!good && state.publicLog && block.log != state.publicLog.get() &&
        state.publicLog->Index().Find(block.name, former)) {
      block = {former.name, former.place, state.publicLog.get()};
      good = isGood();
    }
    if (good)
      whole.push_back(block);
  }
  blocks.swap(whole);
  for (auto const & name : damaged)
    state.journaled.Forget(name);
}

// Nothing is lost and little copied when the private file itself becomes the first public one.
bool CanBecomePublic(LibraryState const & state) {
  if (state.publicLog || !state.privateLog || state.privateLog->mustRewrite)
    return false;
  auto const & log = *state.privateLog;
  return log.Index().LiveBytes() * 2 > log.Records().End();
}

LibIOReturn BecomePublic(LibraryState & state) {
  auto & log = *state.privateLog;
  LogWriter writer(log);
  std::string payload;
  LibIOReturn read = kSuccess;
  log.Index().ForEach([&](io::RecordIndex::Named const & named) {
    if (named.place.kind != io::kPatchRecord || read != kSuccess)
      return;
    read = log.LoadPayload(named.name, named.place, payload, state.error);
    if (read == kSuccess)
      writer.AddBlock(named.name, payload, (named.place.flags & io::kBinaryPayload) != 0, LogWriter::Group::GoesOn);
  });
  if (read != kSuccess) {
    writer.Abandon();
    return read;
  }
  writer.AddCommit(NextCommit(state), true, true);
  file::FileStatus status = writer.Finish();
  if (status.Ok())
    status = file::FileSystem().Rename(state.privatePath, state.path);
  if (!status.Ok())
    return state.Fail(status);
  state.journaled.MovedToPublic(log.Index());
  state.publicLog = std::move(state.privateLog);
  state.publicLog->SetPath(state.path);
  state.publicLog->Records().BecomePublic();
  state.mergedLength = 0;
  status = file::FileSystem().SyncFolder(state.path.DirPath());
  state.publicLog->mustRewrite = !status.Ok();
  return status.Ok() ? kSuccess : state.Fail(status);
}

} // namespace

LibIOReturn CheckPublicFile(LibraryState & state) {
  if (!state.publicLog || !state.lock.IsHeld())
    return kSuccess;
  auto const standing = StandsUnderItsName(*state.publicLog);
  if (standing == file::Standing::Replaced)
    return state.Fail(CStreamioLibrary::kLibWriteFailed, state.path.FilePath() + L" is another file now");
  state.publicLog->mustRewrite = state.publicLog->mustRewrite || standing == file::Standing::Vanished;
  return kSuccess;
}

LibIOReturn CommitWhole(LibraryState & state, Conversion const & conversion, bool isBinary) {
  auto blocks = AllBlocks(state);
  io::FileHeader header;
  header.salt = RandomNumber();
  header.isBinary = isBinary;
  bool isCopied = false;
  auto const keepDamaged = [&] {
    isCopied = isCopied || LFN_Copy(state.path, FreeNameBeside(state.path, L"damaged"), kFailIfExists);
    return isCopied;
  };
  if (state.publicLog && !state.publicLog->Records().Damages().empty() && !keepDamaged())
    return state.Fail(CStreamioLibrary::kLibWriteFailed, LFN_LastError());
  std::unique_ptr<LogReader> written;
  auto const write = [&] {
    return WriteNewFile(state.path, header, blocks, conversion, NextCommit(state), &state.lock, written, state.error);
  };
  LibIOReturn result = write();
  bool const isDamaged = result == CStreamioLibrary::kLibDamaged;
  if (isDamaged) {
    if (state.publicLog && !keepDamaged())
      return state.Fail(CStreamioLibrary::kLibWriteFailed, LFN_LastError());
    LeaveOutDamaged(state, blocks);
    result = write();
  }
  if (written) {
    if (state.publicLog)
      state.lock.Forget(state.publicLog->Records().File());
    state.publicLog = std::move(written);
  }
  if (result == kSuccess) {
    NoteMerged(state);
    state.heldDeletes.clear();
  }
  return result == kSuccess && isDamaged ? CStreamioLibrary::kLibDamaged : result;
}

LibIOReturn Commit(LibraryState & state, bool mayEndPrivateFile) {
  LibIOReturn result = state.status == kSuccess ? CheckPublicFile(state) : state.status;
  bool const isUpToDate = state.publicLog && !state.publicLog->mustRewrite && !HasUnmerged(state) &&
                          state.heldDeletes.empty() && !state.journaled.HasUnsent();
  if (result != kSuccess || isUpToDate)
    return result;
  result = AcquireForWriting(state);
  if (result == kSuccess)
    result = Flush(state);
  if (result != kSuccess)
    return result;
  if (mayEndPrivateFile && CanBecomePublic(state)) {
    result = BecomePublic(state);
    if (result != CStreamioLibrary::kLibDamaged)
      return result;
  }
  if (!state.publicLog || state.publicLog->mustRewrite) {
    bool const isBinary = state.publicLog ? state.publicLog->Records().Header().isBinary : state.writesBinary;
    return CommitWhole(state, Conversion(), isBinary);
  }
  result = AppendCommit(state);
  if (result == kSuccess || result == CStreamioLibrary::kLibDamaged)
    NoteMerged(state);
  return result;
}

LibIOReturn RevertCommit(LibraryState & state, std::uint64_t length) {
  LibIOReturn result = CheckPublicFile(state);
  if (result == kSuccess)
    result = AcquireForWriting(state);
  if (result == kSuccess)
    result = Flush(state);
  if (result != kSuccess)
    return result;
  io::CommitInfo commit;
  std::uint64_t mergedLength = 0;
  if (!state.publicLog || !state.privateLog || !state.publicLog->Records().FindCommitEndingAt(length, commit) ||
      !IsTwin(*state.privateLog, commit, mergedLength))
    return state.Fail(CStreamioLibrary::kLibNotFound, L"there is no such commit to go back to");
  auto & handle = state.publicLog->Records().File();
  file::FileStatus status = handle.Truncate(length);
  if (status.Ok())
    status = handle.Sync();
  if (!status.Ok()) {
    state.publicLog->mustRewrite = true;
    return state.Fail(status);
  }
  result = state.publicLog->Records().Restart() == io::RecordReader::State::Good ? kSuccess
                                                                                 : CStreamioLibrary::kLibReadFailed;
  state.cache.clear();
  state.mergedLength = mergedLength;
  return result;
}

} // namespace library
