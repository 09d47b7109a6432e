#pragma once

#include "viewkit/library/BlockEncoding.h"
#include "viewkit/library/JournaledBlocks.h"
#include "viewkit/library/LibraryLock.h"
#include "viewkit/library/LogReader.h"
#include "viewkit/library/NameSet.h"

#include <list>
#include <map>
#include <span>

namespace library {

/// A public file with its private twin.
///
///                     Attach                        first write (AcquireForWriting)
///   unattached ------------------> pending --------------------------------------> attached
///        ^                           |  ^                                          |      ^
///        |                           |  | reset, delete, commit of a library       |      | done, or failed
///        |            Attach, mode 1 |  | that has no public file to lock          v      | with nothing changed
///        |                           v  +---------------------------------------- committing
///        +-- Close -------------- recovered: attached, the private file of an earlier run in use
///
/// Pending: the files were read, nothing is locked or changed.  Attached: this library alone writes.
///
/// Invariants, which the tests cite by number:
///  1. What a name stands for is told by the held deletions, then the private file, then the public file.
///  2. The public file changes by a commit alone; until a commit's record is on the disk, its former state stands.
///  3. A group of records in the private file counts whole or not at all; no group counts before an earlier one.
///  4. After a failed write a file is as it was, or its tail goes before the next write.
///  5. After a failed sync a public file is never appended to again: the next commit writes it anew.
///  6. A public file that names the private one as merged holds all its records up to the told length.
///  7. A private file is dropped only when a commit that holds all of it is on the disk, or on an explicit reset.
///  8. A private file that is not this library's to go on with is moved aside, never deleted.
///  9. Files are written only while both that exist are locked and, as of two milliseconds ago, stand under their
///  names.
/// 10. A record that edits a block goes on from the newest record of that block in the same private file; a public file
///     holds whole blocks alone.
/// 11. The edits of a journaled block whose record failed go out before any later record does.
struct LibraryState {
  /// A private file that stands on the disk and is not in use.
  enum class Stranger { None, LeftByCrash, OtherGeneration, Unreadable };
  struct CachedPayload {
    std::string bytes;
    bool isBinary = false;
  };

  LongFileName path;
  LongFileName privatePath;
  /// Null when there is no such file, or none in use.
  std::unique_ptr<LogReader> publicLog;
  std::unique_ptr<LogReader> privateLog;
  /// What stands in the private file from here on is no part of the public one.
  std::uint64_t mergedLength = 0;
  /// Deletions that wait for the group that replaces the blocks; see Flush.
  NameSet heldDeletes;
  JournaledBlocks journaled;
  /// Bytes of the block that is being saved; kept from one save to the next.
  std::string scratch;
  std::map<AString, CachedPayload, AString::NoCaseLess> cache;
  LibraryLock lock;
  Stranger stranger = Stranger::None;
  /// Why the library can't be written; kLibNotAttached before the first attach.
  LibIOReturn status = CStreamioLibrary::kLibNotAttached;
  /// A copy to another path failed: the statistics tell of it until the next attach.
  LibIOReturn copyResult = CStreamioLibrary::kLibSuccess;
  /// The private file is passed over, and every write refused.
  bool isReadOnly = false;
  /// Of a library that is open for reading only: shows it as it was when it had that length; 0 as it is.
  std::uint64_t readLength = 0;
  bool isRecovered = false;
  bool wasWriter = false;
  /// The form of files that are begun.
  bool writesBinary = false;
  AString setAside;
  AString error;

  LibIOReturn Fail(LibIOReturn result, AString const & text) {
    error = text;
    return result;
  }
  LibIOReturn Fail(file::FileStatus const & failed) { return Fail(CStreamioLibrary::kLibWriteFailed, failed.Text()); }
};

// LibraryIndex.cpp: the view over both files.

/// A block as its record spells it, in UTF-8; the name is valid until the log changes.
struct FoundBlock {
  std::string_view name;
  io::BlockPlace place;
  LogReader * log = nullptr;
};
/// Where a name stands; `log` is null for a name that is not there.
FoundBlock FindBlock(LibraryState & state, std::string_view name);
/// All live blocks: those of the public file in its order, then those of the private one.
std::vector<FoundBlock> AllBlocks(LibraryState & state);
/// What the private file holds that the public one lacks, deletions too, in the order in which it was saved.
std::vector<io::RecordIndex::Named> Unmerged(LibraryState const & state);
bool HasUnmerged(LibraryState const & state);
CStreamioLibraryStats Statistics(LibraryState const & state);

/// Replaced also when it can't be told.
file::Standing StandsUnderItsName(LogReader & log);

// Takeover.cpp: attaching, and which private file is gone on with.

LibIOReturn Attach(LibraryState & state, LongFileName const & path, CStreamioLibrary::TMode mode);
LibIOReturn AcquireForWriting(LibraryState & state, bool takesOver = false);
/// Makes the private file exist, for a library that may write; one that vanished is made again.
LibIOReturn EnsurePrivateFile(LibraryState & state, std::optional<std::uint64_t> baseCommit = {});
/// Locks the files that a copy is to replace; a private one is set aside.  `publicFile` holds the lock until it closes.
LibIOReturn LockTarget(LibraryState & state, std::unique_ptr<file::IFile> & publicFile);
/// Drops the private file and what it holds.
LibIOReturn DropPrivateFile(LibraryState & state);
/// Leaves the files in order: a private file that holds nothing of its own goes, another is closed cleanly.
void Close(LibraryState & state);
/// The private file belongs to this state of the public one; `mergedLength` of it is part of that already.
bool IsTwin(LogReader const & privateLog, io::CommitInfo const & publicCommit, std::uint64_t & mergedLength);
LongFileName PrivatePath(LongFileName const & path);
LibIOReturn SetPrivateFileAside(LongFileName const & privatePath, AString & setAside, AString & error);

// SaveGroup.cpp: what goes to the private file.

/// All of the blocks are stored or none is.
LibIOReturn SaveGroup(LibraryState & state, std::span<io::CBlock const * const> blocks, Encoding const & encoding);
/// Writes what stands in one private file behind the merged length as a group of another.
LibIOReturn CopyUnmerged(LibraryState & from, LogReader & log, LogReader & to, AString & error);
LibIOReturn HoldDeletes(LibraryState & state, std::vector<AString> const & names);
/// Writes deletions that are held, and edits that failed to go out.
LibIOReturn Flush(LibraryState & state);

} // namespace library
