#pragma once

#include "basekit/file/FileStatus.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/io/RecordIndex.h"

#include <span>
#include <string>
#include <string_view>

namespace library {

class LogReader;

/// Appends one group of records: after Finish all of it counts, before or after a failure nothing does.  A failure
/// shortens the file to what it was; when that fails too, the next group begins with it.
class LogWriter {
public:
  /// Calls that write never hand over more than this.
  static constexpr std::size_t kLargestWrite = 256 * 1024;
  /// Whether the group goes on behind a record.
  enum class Group { GoesOn, Ends };

  explicit LogWriter(LogReader & log);

  /// Names are UTF-8.  Returns where the record stands.
  std::uint64_t AddBlock(std::string_view name, std::string_view payload, bool isBinary, Group group);
  std::uint64_t AddPatch(std::string_view name, std::string_view payload, bool isBinary, Group group);
  void AddDelete(std::string_view name, Group group);
  void AddCleanClose();
  /// Ends the group with the index of what changed and the commit record, which is written twice, so that damage of
  /// one of them loses nothing.  With `sync` all before it is on the disk before the commit record is written.
  /// `wholeIndex`: the index record tells all that the file holds.
  void AddCommit(io::CommitInfo commit, bool sync, bool wholeIndex = false);
  [[nodiscard]] file::FileStatus Finish();
  /// Takes back what was written so far.
  void Abandon();

private:
  std::uint64_t AddChange(unsigned kind, std::string_view name, std::string_view payload, unsigned flags, Group group);
  std::uint32_t Emit(unsigned kind, std::string_view name, std::string_view payload, unsigned flags, Group group);
  void Append(std::string_view bytes);
  void Write(std::span<std::string_view const> pieces, std::size_t size);
  void WriteOut();
  void Sync();
  void TakeBack();

  LogReader & m_log;
  file::FileStatus m_status;
  std::uint64_t m_start;
  std::uint64_t m_at;
  std::uint64_t m_written;
  std::string & m_buffer;
  std::vector<io::RecordIndex::Change> m_changes;
  io::RecordIndex::Plan m_plan;
  io::CommitInfo m_commit;
  bool m_commits = false;
  bool m_syncs = false;
  bool m_syncFailed = false;
  bool m_closes = false;
};

} // namespace library
