#pragma once

#include "viewkit/library/Compaction.h"
#include "viewkit/library/LibraryState.h"

namespace library {

/// One library file in which each save is at once a commit, though not synced: it survives the end of the process.
class InPlaceFile {
public:
  InPlaceFile(LongFileName const & path, AString & error);

  LibIOReturn Save(std::span<io::CBlock const * const> blocks, std::vector<AString> const & deletes,
                   Encoding const & encoding);
  LibIOReturn Load(io::CBlock & block);
  /// All blocks in file order, appended to the parent.
  LibIOReturn LoadAll(io::CBlock & parent, bool stopAtDamage);
  /// Writes the file anew, with its blocks or without.
  LibIOReturn Rewrite(bool keepsBlocks, Conversion const & conversion);
  bool IsBinary() const { return m_log && m_log->Records().Header().isBinary; }
  CStreamioLibraryStats Statistics() const;
  AString const & Error() const { return m_error; }

private:
  LibIOReturn PrepareToWrite(bool isBinary);
  LibIOReturn Fail(LibIOReturn result, AString const & text);

  LongFileName m_path;
  LibIOReturn m_status = CStreamioLibrary::kLibSuccess;
  AString m_error;
  std::unique_ptr<LogReader> m_log;
  LibraryLock m_lock;
};

} // namespace library
