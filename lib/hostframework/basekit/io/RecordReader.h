#pragma once

#include "basekit/file/IFileSystem.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/io/RecordIndex.h"

#include "basekit/text/AString.h"

#include <functional>
#include <optional>

namespace io {

class CBlock;

/// A place of a library file that does not fit its checksum.
struct RecordDamage {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  /// The block that is lost with it; empty when that can't be told.
  AString name;
  AString what;
};

/// Reads one library file, whatever state it is in.  A public file counts up to its last commit, a private one up to
/// its last whole group; what stands behind that is a torn tail and no damage.  Damage before it is collected, the
/// rest is read.  Memory is bounded by what the file holds.
class RecordReader {
public:
  enum class State {
    Good,
    /// The operating system failed to read.
    Unreadable,
    /// No library file.
    Foreign,
    /// Written in a later format, or stopped at a record of an unknown kind.
    Newer,
  };
  enum class Payload { Good, Damaged, Unreadable };
  /// Where a file counts to.  CommitAlone: as Committed, but the index stays empty, for whoever asks for facts of the
  /// last commit.
  enum class Extent { Committed, WholeGroups, CommitAlone };

  /// Reads header and index.  By default a public file counts to its last commit, a private one to its last group.
  State Open(std::unique_ptr<file::IFile> file, std::optional<Extent> extent = {});
  /// Goes on with another handle on the same file.
  void Reopen(std::unique_ptr<file::IFile> file) { m_file = std::move(file); }
  /// Reads the file anew through the same handle.
  State Restart() { return Open(std::move(m_file), m_extent); }
  /// Begins a new file, which holds its header alone.
  void Begin(std::unique_ptr<file::IFile> file, FileHeader const & header);
  /// A private file that was renamed with all its content committed.
  void BecomePublic();
  /// Reads what another writer has appended since; false when the file must be opened anew.
  bool Follow();
  /// The bytes of a block in the form that the place tells; nothing that fails a checksum is handed out.  A block that
  /// was edited is put together from its edits.
  Payload ReadPayload(BlockPlace const & place, std::string & payload);
  /// The block itself, which keeps its name, of a place that IsEdited(): put together without the way over bytes.
  Payload ReadEdited(BlockPlace const & place, CBlock & block);
  /// Reads the whole file up to its end and calls for each damage; returns the number of records that are whole.
  std::size_t Verify(std::function<void(RecordDamage const &)> const & report);

  /// False also for a file that began as a private one and became public: its commits name what they merged.
  bool IsPrivate() const { return m_header.isPrivate && m_commit.mergedSalt == 0; }
  FileHeader const & Header() const { return m_header; }
  /// Nothing but the begin of a header stands there: the writer stopped before it stored anything.
  bool IsTornHeader() const { return m_isTornHeader; }
  /// The salt was told by the first record; what the header alone tells is lost.
  bool HeaderIsDamaged() const { return m_headerIsDamaged; }
  RecordIndex const & Index() const { return m_index; }
  RecordIndex & Index() { return m_index; }
  /// All zero for a file that has none.
  CommitInfo const & LastCommit() const { return m_commit; }
  void SetCommit(CommitInfo const & commit) { m_commit = commit; }
  /// The end of what counts: the next record goes here.
  std::uint64_t End() const { return m_end; }
  void SetEnd(std::uint64_t end);
  std::uint64_t FileLength() const { return m_length; }
  /// Where the records begin that no index record tells of.
  std::uint64_t IndexedTo() const { return m_indexedTo; }
  void SetIndexedTo(std::uint64_t offset) { m_indexedTo = offset; }
  bool WasClosedCleanly() const { return m_cleanlyClosed; }
  void SetClosedCleanly(bool closed) { m_cleanlyClosed = closed; }
  std::vector<RecordDamage> const & Damages() const { return m_damages; }
  AString const & ErrorText() const { return m_error; }
  file::IFile & File() { return *m_file; }

  /// False when no commit ends at the length.
  bool FindCommitEndingAt(std::uint64_t length, CommitInfo & commit);

private:
  static constexpr std::uint64_t kScanAhead = 256 * 1024;
  struct Record {
    RecordHeader header;
    std::uint64_t offset = 0;
    std::uint64_t End() const { return offset + header.RecordSize(); }
  };

  bool Bytes(std::uint64_t offset, std::uint64_t size, std::string_view & bytes);
  bool HeaderAt(std::uint64_t offset, std::uint64_t limit, Record & record);
  bool PartAt(std::uint64_t offset, std::uint64_t size, std::uint32_t checksum, std::string_view & part);
  bool CommitAt(std::uint64_t offset, std::uint64_t limit, CommitInfo & commit, std::uint64_t & end);
  bool FindLastCommit();
  bool LoadChain();
  void Scan(std::uint64_t from, std::uint64_t to, bool checksPayloads);
  BlockPlace PlaceOf(Record const & record) const;
  bool TakeRecord(Record const & record, bool checksPayloads, std::vector<RecordIndex::Change> & group);
  std::uint64_t NextHeader(std::uint64_t from, std::uint64_t to);
  Payload ReadWhole(BlockPlace const & place, std::string & payload);
  Payload ReadPatched(BlockPlace const & place, std::string & payload);
  Payload PutTogether(BlockPlace const & place, std::string & payload, CBlock & block);
  void Report(std::uint64_t offset, std::uint64_t length, AString const & name, wchar_t const * what);
  State ReadState();
  State Fail(State state, AString const & text);

  std::unique_ptr<file::IFile> m_file;
  FileHeader m_header;
  RecordIndex m_index;
  CommitInfo m_commit;
  Extent m_extent = Extent::Committed;
  State m_state = State::Good;
  std::uint64_t m_end = 0;
  std::uint64_t m_length = 0;
  std::uint64_t m_indexedTo = 0;
  bool m_cleanlyClosed = false;
  bool m_headerIsDamaged = false;
  bool m_isTornHeader = false;
  std::vector<RecordDamage> m_damages;
  AString m_error;
  // The part of the file that was read last.
  std::string m_window;
  std::uint64_t m_windowAt = 0;
  std::uint64_t m_readAhead = kScanAhead;
  // Where the payload ended that was read last: one behind it is likely to be wanted next.
  std::uint64_t m_lastReadEnd = 0;
  std::string m_large;
};

} // namespace io
