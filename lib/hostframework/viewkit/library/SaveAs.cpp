#include "viewkit/library/SaveAs.h"

#include "viewkit/library/Compaction.h"

namespace library {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

LibIOReturn CopyCommitted(LibraryState & from, LibraryState & copy, std::uint64_t commitNumber) {
  std::vector<FoundBlock> blocks;
  if (from.publicLog)
    for (auto const & [name, place] : from.publicLog->Index().InFileOrder())
      blocks.push_back({name, place, from.publicLog.get()});
  io::FileHeader header;
  header.salt = RandomNumber();
  header.isBinary = from.writesBinary;
  io::CommitInfo commit;
  commit.commit = commitNumber;
  commit.number = 1;
  return WriteNewFile(copy.path, header, blocks, Conversion(), commit, &copy.lock, copy.publicLog, copy.error);
}

LibIOReturn CopyPrivate(LibraryState & from, LibraryState & copy, std::uint64_t baseCommit) {
  if (!HasUnmerged(from))
    return kSuccess;
  LibIOReturn result = EnsurePrivateFile(copy, baseCommit);
  if (result == kSuccess)
    result = CopyUnmerged(from, *from.privateLog, *copy.privateLog, copy.error);
  return result;
}

} // namespace

LibIOReturn CopyLibrary(LibraryState & from, LongFileName const & path, std::unique_ptr<LibraryState> & copy) {
  if (from.status != kSuccess)
    return from.status;
  auto made = std::make_unique<LibraryState>();
  made->path = path;
  made->privatePath = PrivatePath(path);
  made->writesBinary = from.writesBinary;
  std::uint64_t const commit = RandomNumber();
  std::unique_ptr<file::IFile> replaced;
  LibIOReturn result = LockTarget(*made, replaced);
  // The private file first: until the last step the target's public file stands.
  if (result == kSuccess)
    result = CopyPrivate(from, *made, commit);
  if (result == kSuccess)
    result = CopyCommitted(from, *made, commit);
  if (replaced)
    made->lock.Forget(*replaced);
  if (result != kSuccess) {
    from.error = made->error;
    if (!made->publicLog)
      static_cast<void>(DropPrivateFile(*made)); // The failure is told already.
    return result;
  }
  // Not written to the old place first: its disk may be the reason for the move.
  made->heldDeletes = from.heldDeletes;
  made->journaled.TakeUnsent(from.journaled);
  made->status = kSuccess;
  made->wasWriter = true;
  copy = std::move(made);
  return kSuccess;
}

} // namespace library
