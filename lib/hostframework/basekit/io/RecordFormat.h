#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Framing of block library files; docs/formats/qsol.md shows it.  All framing is printable text of fixed width, so
/// that a library of text blocks can be read in a pager.
namespace io {

inline constexpr std::string_view kLibraryMagic = "#qsol ";
inline constexpr unsigned kLibraryVersion = 1;
inline constexpr std::size_t kFileHeaderSize = 76;
inline constexpr std::size_t kRecordHeaderSize = 75;

struct FileHeader {
  unsigned version = kLibraryVersion;
  bool isPrivate = false;
  bool isBinary = false;
  /// Drawn at random for each file; all its records carry it.
  std::uint64_t salt = 0;
  /// Of a private file: the commit of the public file that it was begun on; 0 when there was none.
  std::uint64_t baseCommit = 0;
};

/// Kinds from kFirstSkippedKind on are skipped by a reader that does not know them; other unknown kinds stop it.
enum RecordKind : unsigned {
  kBlockRecord = 0x01,
  kDeleteRecord = 0x02,
  kIndexRecord = 0x03,
  kCommitRecord = 0x04,
  kCleanCloseRecord = 0x05,
  /// Edits of a block that stands before it: see BlockPatch.
  kPatchRecord = 0x10,
  kFirstSkippedKind = 0x80,
};

enum RecordFlags : unsigned {
  /// The group goes on with the next record; a group counts only when it is whole.
  kMoreFollows = 0x01,
  kBinaryPayload = 0x02,
};

struct RecordHeader {
  unsigned kind = 0;
  unsigned flags = 0;
  std::uint32_t nameLength = 0;
  std::uint64_t payloadLength = 0;
  std::uint64_t salt = 0;
  /// Over the name (the payload) and the line feed behind it.
  std::uint32_t nameChecksum = 0;
  std::uint32_t payloadChecksum = 0;

  /// Header, name, line feed, payload, line feed.
  std::uint64_t RecordSize() const { return kRecordHeaderSize + nameLength + payloadLength + 2; }
  std::uint64_t PayloadOffset() const { return kRecordHeaderSize + nameLength + 1; }
};

/// Longest name and payload that a record can hold.
inline constexpr std::uint64_t kLongestName = 0xFFFFFFF;
inline constexpr std::uint64_t kLongestPayload = 0xFFFFFFFFFFF;

std::string FormatFileHeader(FileHeader const & header);
enum class HeaderState { Good, Damaged, Foreign, Newer };
/// `bytes` is the begin of the file.  A damaged header gives what a good record behind it tells.
HeaderState ParseFileHeader(std::string_view bytes, FileHeader & header);

/// The checksum of a header covers the offset at which the record stands, so that a copy of a record inside some
/// payload is never taken for one.
void FormatRecordHeader(RecordHeader const & header, std::uint64_t offset, char (&line)[kRecordHeaderSize]);
bool ParseRecordHeader(std::string_view bytes, std::uint64_t offset, RecordHeader & header);
std::uint32_t PartChecksum(std::string_view part);

/// Digits and small letters, as many as told; false for anything else.
bool ParseHex(std::string_view digits, std::uint64_t & value);
void AppendHex(std::string & out, std::uint64_t value, int digits);
/// An even number of digits; returns the place behind them.
char * PutHex(char * at, std::uint64_t value, int digits);

/// Payload of a commit record: fixed text.
struct CommitInfo {
  std::uint64_t indexOffset = 0;
  std::uint64_t commit = 0;
  std::uint64_t number = 0;
  /// The private file whose records up to the length are part of this commit.
  std::uint64_t mergedSalt = 0;
  std::uint64_t mergedLength = 0;
};
std::string FormatCommit(CommitInfo const & commit);
bool ParseCommit(std::string_view payload, CommitInfo & commit);

} // namespace io
