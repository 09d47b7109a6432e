#include "viewkit/backup/BackupJournal.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/Checksum.h"
#include "basekit/text/Utf8.h"

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

bool ReadWhole(file::IFile & file, std::string & content) {
  file::FileInfo info;
  if (!file.Describe(info))
    return false;
  content.resize(info.length);
  std::size_t got = 0;
  if (!file.Read(0, content, got))
    return false;
  content.resize(got);
  return true;
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

bool BackupJournal::Open(LongFileName const & area) {
  return file::FileSystem().Open(area + Name(), file::OpenMode::ReadWrite, m_file).Ok();
}

bool BackupJournal::OpenForReading(LongFileName const & area) {
  return file::FileSystem().Open(area + Name(), file::OpenMode::Read, m_file).Ok();
}

bool BackupJournal::ReadEntries(std::vector<BackupEntry> & entries) {
  std::string content;
  if (!m_file || !ReadWhole(*m_file, content))
    return false;
  std::size_t start = 0;
  for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', start)) {
    BackupEntry entry;
    entry.start = start;
    if (EntryOf(std::string_view(content).substr(start, end - start), entry))
      entries.push_back(entry);
    else
      KVRO_ASSERT(!"A line of a backup journal is damaged");
    start = end + 1;
  }
  return true;
}

bool BackupJournal::CutBackTo(BackupEntry const & entry) {
  return m_file && m_file->Truncate(entry.start).Ok() && m_file->Sync().Ok();
}
