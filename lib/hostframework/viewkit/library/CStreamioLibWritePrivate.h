#pragma once

#include "viewkit/library/CStreamioLibPrivate.h"

#include <cstdint>
#include <list>
#include <vector>

class LongFileName;
namespace library {
struct LibraryState;
}

/// A library with a private working file.  The public file holds the state of the last commit; writes go to the
/// private file beside it ("_priv" behind the extension).  Attaching in mode 0 reads and changes nothing on disk; the
/// first write takes both files for this library until it is detached, and fails with kLibLocked while another library
/// has them.  A save survives the end of the process, a commit a loss of power.
class CStreamioLibWritePrivate : public CStreamioLibPrivate {
public:
  CStreamioLibWritePrivate();
  CStreamioLibWritePrivate(LongFileName const & path, TMode mode);
  ~CStreamioLibWritePrivate() override;

  bool IsBinaryModeFile() const override;
  CStreamioLibraryStats GetFileStats() const override;
  LibIOReturn LoadDefinition(io::CBlock & block) override;
  LibIOReturn SaveDefinition(io::CBlock & block) override;
  LibIOReturn DeleteDefinition(AString const & name) override;
  /// Commits, and writes the public file anew without dead space.
  LibIOReturn RewriteLibrary(bool convert) override;
  LibIOReturn SaveBlocks(io::CBlock & block) override;
  /// Mode 0 goes on with a private file that was closed in order and belongs to the public file; one that a crash left
  /// or that belongs to another public file is not shown, and set aside under another name by the first write.  Mode 1
  /// takes over the one that a crash left.
  void SetLibPath(AString const & path, TMode mode) override;
  LibIOReturn DeleteBlocks(std::vector<AString> const & names) override;

  /// Merges the private file into the public one and drops it.  With `compact` the public file is written anew when
  /// more than half of it is dead.
  LibIOReturn CommitAll(bool compact);
  /// Merges the private file into the public one and keeps it, so that RevertCommit can go back.
  LibIOReturn UpdateOriginal();
  void ResetPrivateLib();
  void CacheBlock(AString const & name);
  /// Removes the files; the library stays attached to the path, empty.
  void DeleteLibrary();
  bool IsRecovered() const;
  LibIOReturn PrivIndexKeyList(std::list<AString> & names) const;
  /// Copies the committed and the private state and goes on there; the old files stay.
  bool CopyToNewLibPath(AString const & path);

  LibIOReturn LoadBlocks(io::CBlock & block, bool stopAtDamage);
  LibIOReturn ClearLibrary();

  /// Before an attach: shows the committed state alone and refuses every write with kLibLocked, so that it can be used
  /// beside a writer and in a folder that can't be written.
  void SetReadOnly(bool readOnly);
  /// Likewise, as the public file was when it had the length.
  void SetReadOnlyAt(std::uint64_t length);
  /// Takes the files for writing now, so that a caller learns early whether it may; the first write does it else.
  LibIOReturn AcquireForWriting();
  bool HasUnsavedChanges() const;
  /// Tries again to store edits of journaled blocks that failed to go out; their owner calls it before it goes.
  void SendUnsent();
  /// The blocks that a commit would bring to the public file, in the order in which they were saved.
  std::vector<AString> UncommittedBlocks() const;
  bool HasBlock(AString const & name) const;
  /// Of a block with a journal: the library holds what the journal tells, which was just made of a block that was read.
  void NoteStored(io::CBlock const & block);
  /// Where the first write put a private file that was not this library's to go on with; empty when there was none.
  AString const & WasSetAside() const;
  /// The public file's length as of the last commit; 0 without one.
  std::uint64_t CommittedLength() const;
  /// Takes the public file back to the commit that ended at the length, as long as the private file holds all that
  /// came since (no CommitAll or RewriteLibrary in between).
  LibIOReturn RevertCommit(std::uint64_t length);

private:
  LibIOReturn Checked(LibIOReturn result);

  std::unique_ptr<library::LibraryState> m_state;
};
