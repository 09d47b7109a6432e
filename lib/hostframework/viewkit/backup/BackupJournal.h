#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace file {
class IFile;
enum class OpenMode;
} // namespace file

/// What a backup area did or is about to do, told so that it can be taken back.  Paths count from the area's root.
struct BackupEntry {
  enum class Kind {
    /// What stood at `path` lies, or is about to lie, in the area under the entry's number.
    Kept,
    /// `path` is about to become `to`, where nothing stands.
    Renamed,
    /// Nothing stood at `path`.
    Absent,
    /// The line is damaged: nobody knows what was done.
    Unknown
  };

  Kind kind = Kind::Kept;
  long number = 0;
  AString path;
  AString to;
  /// Where the entry's line starts in the journal, in bytes.
  std::uint64_t start = 0;
};

/// The journal of a backup area: one line for each entry, its checksum in front.  Every change is on the disk when it
/// returns true.
class BackupJournal {
public:
  BackupJournal();
  ~BackupJournal();

  static AString Name() { return L"journal"; }
  static bool StandsIn(LongFileName const & area);
  /// Fails when there is one.
  bool Create(LongFileName const & area);
  /// After a failure all that follow fail too.
  bool Append(BackupEntry const & entry);
  /// For several entries at once: Queue tells nothing, Flush brings them to the disk.
  void Queue(BackupEntry const & entry);
  bool Flush();

  /// Both fail when a link stands in the journal's place.
  bool Open(LongFileName const & area);
  bool OpenForReading(LongFileName const & area);
  /// The entries, in order, damaged ones too, which are reported.  A last line that was cut off, and lines that the
  /// disk never wrote before a loss of power, were never acted on.
  bool ReadEntries(std::vector<BackupEntry> & entries);
  /// Forgets the entry and all behind it.
  bool CutBackTo(BackupEntry const & entry);

private:
  bool OpenAs(LongFileName const & area, file::OpenMode mode);

  std::unique_ptr<file::IFile> m_file;
  std::uint64_t m_length = 0;
  std::string m_queued;
};
