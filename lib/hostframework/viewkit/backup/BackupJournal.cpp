#include "viewkit/backup/BackupJournal.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/Checksum.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace {

using Kind = BackupEntry::Kind;

constexpr std::array kKinds{L"Kept", L"Renamed", L"Absent"};
constexpr std::size_t kChecksumDigits = 8;

std::string LineOf(BackupEntry const & entry) {
  io::CBlock_func func(kKinds[static_cast<std::size_t>(entry.kind)]);
  func << entry.number << entry.path << entry.to;
  std::string const packed = text::ToUtf8(func.Pack());
  std::array<char, kChecksumDigits> digits;
  digits.fill('0');
  std::array<char, kChecksumDigits> number;
  auto const end = std::to_chars(number.data(), number.data() + number.size(), io::Checksum(packed), 16).ptr;
  std::copy_backward(number.data(), end, digits.end());
  return std::string(digits.data(), digits.size()) + ' ' + packed + '\n';
}

bool HoldsItsChecksum(std::string_view line) {
  if (line.size() <= kChecksumDigits || line[kChecksumDigits] != ' ')
    return false;
  std::uint32_t told = 0;
  char const * const end = line.data() + kChecksumDigits;
  auto const read = std::from_chars(line.data(), end, told, 16);
  return read.ec == std::errc() && read.ptr == end && told == io::Checksum(line.substr(kChecksumDigits + 1));
}

bool EntryOf(std::string_view line, BackupEntry & entry) {
  io::CBlock_func func;
  if (!HoldsItsChecksum(line) || !func.Unpack(text::FromUtf8(line.substr(kChecksumDigits + 1))))
    return false;
  auto place = func.begin();
  if (!func.QueryUnamedValues(place, entry.number) || !func.QueryUnamedValues(place, entry.path) ||
      !func.QueryUnamedValues(place, entry.to))
    return false;
  for (std::size_t kind = 0; kind < kKinds.size(); ++kind)
    if (func.Name() == kKinds[kind]) {
      entry.kind = static_cast<Kind>(kind);
      return true;
    }
  return false;
}

// No path is as long: what has no line end for so long is no journal, and is not taken into memory.
constexpr std::size_t kLongestLine = std::size_t{1} << 20;
// What a disk shows that lost its power between the length of a file and its content.
constexpr std::string_view kUnwritten("\0\0\0\0\0\0\0\0", 8);
constexpr std::size_t kPiece = std::size_t{1} << 16;

/// Takes the whole lines off the front, which stands at `start` in the file.
void TakeLines(std::string & text, std::uint64_t & start, std::vector<BackupEntry> & entries) {
  std::size_t from = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', from)) {
    std::string_view const line = std::string_view(text).substr(from, end - from);
    BackupEntry entry;
    if (!EntryOf(line, entry))
      entry.kind = Kind::Unknown;
    entry.start = start + from;
    if (line.find(kUnwritten) == std::string_view::npos)
      entries.push_back(std::move(entry));
    from = end + 1;
  }
  text.erase(0, from);
  start += from;
}

bool HasUnknown(std::vector<BackupEntry> const & entries) {
  return std::any_of(entries.begin(), entries.end(),
                     [](BackupEntry const & entry) { return entry.kind == Kind::Unknown; });
}

} // namespace

BackupJournal::BackupJournal() = default;
BackupJournal::~BackupJournal() = default;

bool BackupJournal::StandsIn(LongFileName const & area) { return LFN_Exists(area + Name()); }

bool BackupJournal::Create(LongFileName const & area) {
  auto & system = file::FileSystem();
  m_length = 0;
  return system.Open(area + Name(), file::OpenMode::CreateNew, m_file).Ok() && m_file->Sync().Ok() &&
         system.SyncFolder(area).Ok();
}

bool BackupJournal::Append(BackupEntry const & entry) {
  Queue(entry);
  return Flush();
}

void BackupJournal::Queue(BackupEntry const & entry) { m_queued += LineOf(entry); }

bool BackupJournal::Flush() {
  std::string const lines = std::exchange(m_queued, std::string());
  std::string_view const piece = lines;
  if (!m_file || !m_file->Write(m_length, std::span(&piece, 1)).Ok() || !m_file->Sync().Ok()) {
    // Nobody knows what stands on the disk now, so nothing goes behind it.
    m_file.reset();
    return false;
  }
  m_length += lines.size();
  return true;
}

bool BackupJournal::OpenAs(LongFileName const & area, file::OpenMode mode) {
  file::FileInfo info;
  auto & system = file::FileSystem();
  LongFileName const journal = area + Name();
  return system.Describe(journal, info).Ok() && !info.isLink && system.Open(journal, mode, m_file).Ok();
}

bool BackupJournal::Open(LongFileName const & area) { return OpenAs(area, file::OpenMode::ReadWrite); }

bool BackupJournal::OpenForReading(LongFileName const & area) { return OpenAs(area, file::OpenMode::Read); }

bool BackupJournal::ReadEntries(std::vector<BackupEntry> & entries) {
  std::string text;
  std::uint64_t start = 0;
  for (bool isAtEnd = false; !isAtEnd && text.size() < kLongestLine;) {
    std::size_t const known = text.size();
    std::size_t got = 0;
    text.resize(known + kPiece);
    if (!m_file || !m_file->Read(start + known, std::span(text).subspan(known), got).Ok())
      return false;
    isAtEnd = got < kPiece;
    text.resize(known + got);
    TakeLines(text, start, entries);
  }
  if (text.size() >= kLongestLine)
    entries.push_back({Kind::Unknown, 0, AString(), AString(), start});
  if (HasUnknown(entries))
    KVRO_ASSERT(!"A line of a backup journal is damaged");
  return true;
}

bool BackupJournal::CutBackTo(BackupEntry const & entry) {
  return m_file && m_file->Truncate(entry.start).Ok() && m_file->Sync().Ok();
}
