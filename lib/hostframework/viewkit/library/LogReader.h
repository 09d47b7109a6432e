#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/io/RecordReader.h"
#include "viewkit/library/CStreamioLibrary.h"

#include <chrono>

namespace library {

using LibIOReturn = CStreamioLibrary::LibIOReturn;

/// One library file, open for reading, and for writing when a LogWriter may use it.
class LogReader {
public:
  /// kLibNotFound when there is no such file; `error` says in words what a failure met.
  static LibIOReturn Open(LongFileName const & path, file::OpenMode mode,
                          std::optional<io::RecordReader::Extent> extent, std::unique_ptr<LogReader> & log,
                          AString & error);
  /// For reading: the file as it was when it had the length.
  static LibIOReturn OpenPrefix(LongFileName const & path, std::uint64_t length, std::unique_ptr<LogReader> & log,
                                AString & error);
  /// Reads what stands in a file that is open.
  static LibIOReturn Read(std::unique_ptr<file::IFile> file, LongFileName const & path,
                          std::optional<io::RecordReader::Extent> extent, std::unique_ptr<LogReader> & log,
                          AString & error);
  /// A new file, of which nothing is written yet.
  static std::unique_ptr<LogReader> Begin(std::unique_ptr<file::IFile> file, LongFileName const & path,
                                          io::FileHeader const & header);

  /// The block's bytes with their checksums verified; `name` is told when they don't fit.
  LibIOReturn LoadPayload(std::string_view name, io::BlockPlace const & place, std::string & payload, AString & error);
  /// Replaces the content of the block, which keeps its name; after a failure it is as it was.
  LibIOReturn Load(std::string_view name, io::BlockPlace const & place, io::CBlock & block, AString & error);

  LongFileName const & Path() const { return m_path; }
  void SetPath(LongFileName const & path) { m_path = path; }
  io::RecordReader & Records() { return m_records; }
  io::RecordReader const & Records() const { return m_records; }
  io::RecordIndex & Index() { return m_records.Index(); }
  io::RecordIndex const & Index() const { return m_records.Index(); }

  /// Bytes of a write that failed may stand behind the end; they go before the next one.
  bool tailIsDirty = false;
  /// The file can't be appended to in safety: a sync failed or its framing is damaged.  It is to be written anew.
  bool mustRewrite = false;
  /// Kept by LogWriter from one group to the next.
  std::string writeBuffer;
  /// When somebody looked last whether the file stands under its name.
  std::chrono::steady_clock::time_point lookedAt;

private:
  LibIOReturn Told(io::RecordReader::Payload result, std::string_view name, io::BlockPlace const & place,
                   AString & error) const;

  LongFileName m_path;
  io::RecordReader m_records;
  std::string m_payload;
};

/// Reads a block out of its bytes.
LibIOReturn DecodePayload(AString const & name, std::string_view payload, bool isBinary, io::CBlock & block,
                          AString & error);
std::uint64_t RandomNumber();
/// No name: empty, or with characters that no file can hold.
bool IsBlockName(AString const & name);

} // namespace library
